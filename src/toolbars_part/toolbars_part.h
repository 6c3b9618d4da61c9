// ToolbarsPart: Toolbars as one of the add-in's parts. ZintraAddinApp creates it at its
// place in the start-up order (after TrackedContacts, unless NeverLoadToolbars) through
// the factory that the composition root puts in AddinParts::Toolbars, and kills it at
// tear-down. It implements ToolbarsAddin over the add-in and its Host bundle, so that
// Toolbars and the Word letters see only that narrow interface.
//
// The tracked-contact set is reached through the lookup the composition root gives
// (it knows the TrackedContacts object it made):
//
//   parts.Toolbars = ToolbarsPartFactory([tracked](const std::shared_ptr<Folder>& f)
//       -> std::shared_ptr<Folder> {
//     auto set = tracked->FoldersetFor(f);
//     return set ? set->JournalFolder() : nullptr;
//   });
//
// Settings changes: whoever broadcasts RegSettingsChanged calls
// Addin_RegSettingsChanged(old settings). LetterHandler() makes the WordLetterHandler
// the template's macro calls. Ownership: the add-in is held weakly; Kill drops
// Toolbars and the add-in. Called on Outlook's thread only.
#pragma once

#include <functional>
#include <memory>

#include "src/addin/addin_part.h"
#include "src/core/event.h"
#include "src/toolbars/toolbars.h"
#include "src/toolbars/toolbars_addin.h"
#include "src/toolbars/word_letter_handler.h"

namespace zintra {

class Folder;

using TrackedLogFolderLookup =
    std::function<std::shared_ptr<Folder>(const std::shared_ptr<Folder>& contact_folder)>;

class ToolbarsPart : public AddinPart,
                     public ToolbarsAddin,
                     public std::enable_shared_from_this<ToolbarsPart> {
 public:
  explicit ToolbarsPart(TrackedLogFolderLookup lookup) : lookup_(std::move(lookup)) {}

  // --- AddinPart ---
  void Initialize(const std::shared_ptr<ZintraAddinApp>& AddinApp) override;
  void Kill() override;

  void Addin_RegSettingsChanged(const RegSettings& OldSettings) override;
  // A letter handler bound to this add-in.
  WordLetterHandler LetterHandler() { return WordLetterHandler(shared_from_this()); }
  const std::shared_ptr<zintra::Toolbars>& GetToolbars() const { return toolbars_; }

  // --- ToolbarsAddin --- (throw 91 once the add-in is gone, where a reference is due)
  const RegSettings& Settings() override;
  std::shared_ptr<Application> OLApp() override;
  std::shared_ptr<Namespace> Session() override;
  ZintraUtils* Utils() override;
  std::shared_ptr<Folder> TrackedLogFolder(const std::shared_ptr<Folder>& contact_folder) override;
  const StringTable& Strings() override;
  ErrorHandling& Errors() override;
  MsgBox& Prompt() override;
  Platform& PlatformFacts() override;
  FileSystem& Files() override;
  ToolbarLibrary* ToolbarLib() override;
  Word* WordProcessor() override;
  double Now() override;

 private:
  ZintraAddinApp& App();

  TrackedLogFolderLookup lookup_;
  std::weak_ptr<ZintraAddinApp> app_;
  std::shared_ptr<zintra::Toolbars> toolbars_;
  Connection addin_kill_;
};

AddinPartFactory ToolbarsPartFactory(TrackedLogFolderLookup lookup);

}  // namespace zintra
