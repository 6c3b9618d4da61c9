// Kept apart from the add-in's headers: the tracked folder's header and the add-in's
// both declare the product-name string number.
#include "src/contacts/tracked_contact_folder.h"
#include "src/contacts/tracked_contacts.h"
#include "tools/zintra-sim/addin_composition.h"

namespace zintra::simtool {

std::shared_ptr<Folder> JournalFolderOfSet(const std::shared_ptr<TrackedContacts>& tracked,
                                           const std::shared_ptr<Folder>& contact_folder) {
  auto set = tracked ? tracked->FoldersetFor(contact_folder) : nullptr;
  return set ? set->JournalFolder() : nullptr;
}

}  // namespace zintra::simtool
