#include "src/resources/string_table_data.h"

namespace zintra::resources {
namespace {

// Text numbers group by use: 2 the product, 50-56 Outlook names, 135-150 item kinds,
// 155-186 task descriptions, 500-504 form captions, 1000-1212 windows and toolbar,
// 1901 letters, 2137-2652 options and monitoring, 2852 auditing, 3000 start-up.
constexpr StringRow kRows[] = {
    {2, "Zintra", "Zintra", "Zintra"},
    {50, "Public Folders", "Dossiers publics", "Dossiers publics"},
    {52, "Phone Call", "Appel téléphonique", "Appel téléphonique"},
    {54, "Note", "Note", "Note"},
    {55, "Letter", "Lettre", "Lettre"},
    {56, "Created", "Créé", "Créé"},
    {135, "Appointment Items", "Éléments de rendez-vous", "Éléments de rendez-vous"},
    {136, "Contact Items", "Éléments de contact", "Éléments de contact"},
    {137, "Distribution List Items", "Éléments de liste de distribution",
     "Éléments de liste de distribution"},
    {138, "Document Items", "Éléments de document", "Éléments de document"},
    {139, "Journal Items", "Éléments de journal", "Éléments de journal"},
    {140, "Mail Items", "Éléments de messagerie", "Éléments de courriel"},
    {141, "Meeting Items", "Éléments de réunion", "Éléments de réunion"},
    {142, "Note Items (not recommended)", "Éléments de note (déconseillé)",
     "Éléments de note (non recommandé)"},
    {143, "Post Items", "Éléments de publication", "Éléments de publication"},
    {144, "Remote Items (not recommended)", "Éléments distants (déconseillé)",
     "Éléments distants (non recommandé)"},
    {145, "Report Items", "Éléments de rapport", "Éléments de rapport"},
    {146, "Task Items", "Éléments de tâche", "Éléments de tâche"},
    {147, "Task Accept Items", "Acceptations de tâche", "Acceptations de tâche"},
    {148, "Task Decline Items", "Refus de tâche", "Refus de tâche"},
    {149, "Task Request Items", "Demandes de tâche", "Demandes de tâche"},
    {150, "Task Update Items", "Mises à jour de tâche", "Mises à jour de tâche"},
    {155, "Process appointment: ", "Traitement du rendez-vous : ", "Traitement du rendez-vous : "},
    {156, "Process contact item: ", "Traitement du contact : ", "Traitement du contact : "},
    {157, "Process distribution list: ", "Traitement de la liste de distribution : ",
     "Traitement de la liste de distribution : "},
    {158, "Process document item: ", "Traitement du document : ", "Traitement du document : "},
    {159, "Process journal entry: ", "Traitement de l'entrée de journal : ",
     "Traitement de l'entrée de journal : "},
    {160, "Process email: ", "Traitement du message : ", "Traitement du courriel : "},
    {161, "Process meeting: ", "Traitement de la réunion : ", "Traitement de la réunion : "},
    {162, "Process note: ", "Traitement de la note : ", "Traitement de la note : "},
    {163, "Process post: ", "Traitement de la publication : ", "Traitement de la publication : "},
    {164, "Process remote item: ", "Traitement de l'élément distant : ",
     "Traitement de l'élément distant : "},
    {165, "Process report item: ", "Traitement du rapport : ", "Traitement du rapport : "},
    {166, "Process task item: ", "Traitement de la tâche : ", "Traitement de la tâche : "},
    {167, "Process task accept item: ", "Traitement de l'acceptation de tâche : ",
     "Traitement de l'acceptation de tâche : "},
    {168, "Process task decline item: ", "Traitement du refus de tâche : ",
     "Traitement du refus de tâche : "},
    {169, "Process task request item: ", "Traitement de la demande de tâche : ",
     "Traitement de la demande de tâche : "},
    {170, "Process task update item: ", "Traitement de la mise à jour de tâche : ",
     "Traitement de la mise à jour de tâche : "},
    {171,
     "Audit appointment: ", "Vérification du rendez-vous : ", "Vérification du rendez-vous : "},
    {172, "Audit contact item: ", "Vérification du contact : ", "Vérification du contact : "},
    {173, "Audit distribution list: ", "Vérification de la liste de distribution : ",
     "Vérification de la liste de distribution : "},
    {174, "Audit document item: ", "Vérification du document : ", "Vérification du document : "},
    {175, "Audit journal entry: ", "Vérification de l'entrée de journal : ",
     "Vérification de l'entrée de journal : "},
    {176, "Audit email: ", "Vérification du message : ", "Vérification du courriel : "},
    {177, "Audit meeting: ", "Vérification de la réunion : ", "Vérification de la réunion : "},
    {178, "Audit note: ", "Vérification de la note : ", "Vérification de la note : "},
    {179, "Audit post: ", "Vérification de la publication : ", "Vérification de la publication : "},
    {180, "Audit remote item: ", "Vérification de l'élément distant : ",
     "Vérification de l'élément distant : "},
    {181, "Audit report item: ", "Vérification du rapport : ", "Vérification du rapport : "},
    {182, "Audit task item: ", "Vérification de la tâche : ", "Vérification de la tâche : "},
    {183, "Audit task accept item: ", "Vérification de l'acceptation de tâche : ",
     "Vérification de l'acceptation de tâche : "},
    {184, "Audit task decline item: ", "Vérification du refus de tâche : ",
     "Vérification du refus de tâche : "},
    {185, "Audit task request item: ", "Vérification de la demande de tâche : ",
     "Vérification de la demande de tâche : "},
    {186, "Audit task update item: ", "Vérification de la mise à jour de tâche : ",
     "Vérification de la mise à jour de tâche : "},
    {500, "OK", "OK", "OK"},
    {502, "Please reinstall this product.", "Veuillez réinstaller ce produit.",
     "Veuillez réinstaller ce produit."},
    {504, "Do not show this message again", "Ne plus afficher ce message",
     "Ne plus afficher ce message"},
    {1000, "Zintra is finishing tasks", "Zintra termine des tâches", "Zintra termine des tâches"},
    {1001, "Abort All", "Tout annuler", "Tout annuler"},
    {1100,
     "Zintra has lost its connection to the folder shown below.  Items related to contacts in "
     "this folder can no longer be logged.  An error report has been recorded, and it is "
     "suggested that you check your connection to the Exchange server (if applicable), as well "
     "as your Zintra settings.",
     "Zintra a perdu la connexion avec le dossier ci-dessous.  Les éléments liés aux contacts "
     "de ce dossier ne peuvent plus être consignés.  Un rapport d'erreur a été enregistré ; "
     "vérifiez votre connexion au serveur Exchange (le cas échéant) ainsi que vos paramètres "
     "Zintra.",
     "Zintra a perdu la connexion avec le dossier ci-dessous.  Les éléments liés aux contacts "
     "de ce dossier ne peuvent plus être consignés.  Un rapport d'erreur a été enregistré ; "
     "vérifiez votre connexion au serveur Exchange (s'il y a lieu) ainsi que vos paramètres "
     "Zintra."},
    {1101,
     "Zintra cannot connect to one or more contact folders.  Items to or from these contacts "
     "will not be logged.  Use the Zintra options dialog to see which folders are affected.",
     "Zintra ne peut pas se connecter à un ou plusieurs dossiers de contacts.  Les éléments "
     "envoyés à ces contacts ou reçus d'eux ne seront pas consignés.  Consultez les options de "
     "Zintra pour voir les dossiers concernés.",
     "Zintra ne peut pas se connecter à un ou plusieurs dossiers de contacts.  Les éléments "
     "envoyés à ces contacts ou reçus d'eux ne seront pas consignés.  Consultez les options de "
     "Zintra pour voir les dossiers touchés."},
    {1202, "Phone Call", "Appel", "Appel"},
    {1203, "Email", "E-mail", "Courriel"},
    {1204, "File Link", "Lien fichier", "Lien fichier"},
    {1205, "Note", "Note", "Note"},
    {1206, "Appointment", "Rendez-vous", "Rendez-vous"},
    {1207,
     "Are you sure you want to link all these items?  Note that due to an Outlook limitation, "
     "selecting too many items can cause the action to fail.",
     "Voulez-vous vraiment lier tous ces éléments ?  En raison d'une limite d'Outlook, une "
     "sélection trop importante peut faire échouer l'opération.",
     "Voulez-vous vraiment lier tous ces éléments?  En raison d'une limite d'Outlook, une "
     "sélection trop importante peut faire échouer l'opération."},
    {1209, "Letter to |1 on |2", "Lettre à |1 du |2", "Lettre à |1 du |2"},
    {1210, "Letter", "Lettre", "Lettre"},
    {1211, "Show Zintra Monitor", "Afficher le moniteur Zintra", "Afficher le moniteur Zintra"},
    {1212, "Hide Zintra Monitor", "Masquer le moniteur Zintra", "Masquer le moniteur Zintra"},
    {1901, "Could not log the document", "Impossible de consigner le document",
     "Impossible de consigner le document"},
    {2137, "Log items that are routed to the above shared folders",
     "Consigner les éléments acheminés vers les dossiers partagés ci-dessus",
     "Consigner les éléments acheminés vers les dossiers partagés ci-dessus"},
    {2139, "Leave a copy in the creator's personal folder",
     "Laisser une copie dans le dossier personnel du créateur",
     "Laisser une copie dans le dossier personnel du créateur"},
    {2305, "Monitor only these folders...", "Surveiller uniquement ces dossiers...",
     "Surveiller uniquement ces dossiers..."},
    {2306, "Window monitoring mode", "Mode de surveillance des fenêtres",
     "Mode de surveillance des fenêtres"},
    {2311, "Scan Inbox at startup", "Analyser la boîte de réception au démarrage",
     "Analyser la boîte de réception au démarrage"},
    {2312, "Immediately search all monitored folders for items to log",
     "Rechercher immédiatement les éléments à consigner dans tous les dossiers surveillés",
     "Rechercher immédiatement les éléments à consigner dans tous les dossiers surveillés"},
    {2313, "All personal folders except Drafts, Outbox, Notes and Deleted Items",
     "Tous les dossiers personnels sauf Brouillons, Boîte d'envoi, Notes et Éléments supprimés",
     "Tous les dossiers personnels sauf Brouillons, Boîte d'envoi, Notes et Éléments supprimés"},
    {2315, "Complete Folder Search", "Recherche complète des dossiers",
     "Recherche complète des dossiers"},
    {2407, "Delay processing of new items by:", "Retarder le traitement des nouveaux éléments de :",
     "Retarder le traitement des nouveaux éléments de :"},
    {2450, "Value must be between 1 and 10,000", "La valeur doit être comprise entre 1 et 10 000",
     "La valeur doit être comprise entre 1 et 10 000"},
    {2451,
     "It is recommended you do not download greater than 100 records at a time into the "
     "cache.  Click OK to proceed, or Cancel to change your entry.",
     "Il est conseillé de ne pas charger plus de 100 enregistrements à la fois dans le cache.  "
     "Cliquez sur OK pour continuer, ou sur Annuler pour modifier votre saisie.",
     "Il est recommandé de ne pas télécharger plus de 100 enregistrements à la fois dans "
     "l'antémémoire.  Cliquez sur OK pour continuer, ou sur Annuler pour modifier votre "
     "entrée."},
    {2506, "Assume no two contacts share the same email address",
     "Considérer que deux contacts n'ont jamais la même adresse de messagerie",
     "Considérer que deux contacts n'ont jamais la même adresse de courriel"},
    {2515, "Everything", "Tout", "Tout"},
    {2516, "Errors and Warnings", "Erreurs et avertissements", "Erreurs et avertissements"},
    {2517, "Only Errors", "Erreurs uniquement", "Erreurs seulement"},
    {2518, "Nothing", "Rien", "Rien"},
    {2544, "Minimum hours back to scan:", "Nombre minimal d'heures à analyser :",
     "Nombre minimal d'heures à analyser :"},
    {2650,
     "Zintra cannot connect to one or more folders that it needs to monitor.  Items in these "
     "folders will not be logged.  An error report has been recorded, and it is suggested that "
     "you check your connection to the Exchange server (if applicable), as well as your Zintra "
     "settings.",
     "Zintra ne peut pas se connecter à un ou plusieurs dossiers à surveiller.  Les éléments de "
     "ces dossiers ne seront pas consignés.  Un rapport d'erreur a été enregistré ; vérifiez "
     "votre connexion au serveur Exchange (le cas échéant) ainsi que vos paramètres Zintra.",
     "Zintra ne peut pas se connecter à un ou plusieurs dossiers à surveiller.  Les éléments de "
     "ces dossiers ne seront pas consignés.  Un rapport d'erreur a été enregistré ; vérifiez "
     "votre connexion au serveur Exchange (s'il y a lieu) ainsi que vos paramètres Zintra."},
    {2652,
     "Scanning folder for items to log: ", "Recherche des éléments à consigner dans le dossier : ",
     "Recherche des éléments à consigner dans le dossier : "},
    {2852, "Changed by |1 on |2", "Modifié par |1 le |2", "Modifié par |1 le |2"},
    {3000, "You must be running Outlook 2000 or later to use this add-in.",
     "Ce complément nécessite Outlook 2000 ou une version ultérieure.",
     "Ce complément nécessite Outlook 2000 ou une version ultérieure."},
};

}  // namespace

std::span<const StringRow> StringRows() { return kRows; }

}  // namespace zintra::resources
