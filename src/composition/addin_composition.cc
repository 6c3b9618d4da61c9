#include "src/composition/addin_composition.h"

#include "src/contacts/tracked_contact_folder.h"
#include "src/contacts/tracked_contacts.h"
#include "src/contacts_part/tracked_contacts_part.h"
#include "src/monitoring_part/monitoring_part.h"
#include "src/toolbars_part/toolbars_part.h"

namespace zintra {

AddinParts MakeAddinParts(AddinLookup addin) {
  AddinParts parts;
  parts.TrackedContacts = TrackedContactsPartFactory();
  parts.Toolbars = ToolbarsPartFactory(
      [addin = std::move(addin)](const std::shared_ptr<Folder>& folder) -> std::shared_ptr<Folder> {
        std::shared_ptr<ZintraAddinApp> app = addin ? addin() : nullptr;
        return app ? JournalFolderOfSet(TrackedContactsOf(*app), folder) : nullptr;
      });
  parts.Monitoring = MonitoringPartFactory();
  return parts;
}

std::shared_ptr<Folder> JournalFolderOfSet(const std::shared_ptr<TrackedContacts>& tracked,
                                           const std::shared_ptr<Folder>& contact_folder) {
  auto set = tracked ? tracked->FoldersetFor(contact_folder) : nullptr;
  return set ? set->JournalFolder() : nullptr;
}

}  // namespace zintra
