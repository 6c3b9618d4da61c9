// The folders of an imported mailbox: those of loose files (Inbox, Sent Items, Contacts)
// and those of Outlook data files, put together and settled for the dry run.
#pragma once

#include <string>
#include <vector>

#include "tools/zintra-sim/scenario.h"

namespace zintra::simtool {

// Folders of one name (in any letter case) in one parent are one folder: `from`'s
// folders, items and subfolders are merged into `into`, the new ones after those there.
void MergeFolders(std::vector<FolderSpec>& into, std::vector<FolderSpec> from);

// Takes the user's own mail (sent by `me`) out of every folder, nested ones too, into
// `sent` (it is sent again in the timeline), puts the rest of each folder in date order,
// and names in `other_contacts` the folders other than the top's "Contacts" that hold
// contacts ("Contacts/Suppliers", "Clients"), in the order met.
void SettleFolders(std::vector<FolderSpec>& folders, const PersonSpec& me,
                   std::vector<ItemSpec>& sent, std::vector<std::string>& other_contacts);

}  // namespace zintra::simtool
