// ProfileFolders: every folder of the user's profile that the options page offers to
// choose from, read late-bound from Outlook's NameSpace (Folders of each store, then
// their Folders, depth first), each with its path as Outlook writes it ("\\Mailbox -
// Jane Doe\Inbox") and its entry and store identifiers. A store or folder that cannot
// be read is left out with what is below it; the walk stops after kMaxFolders.
#pragma once

#include <string>
#include <vector>

#include "win32/com/com_ptr.h"
#include "win32/com/windows_api.h"
#include "win32/controls/folder_lists.h"

namespace zintra::win32 {

struct ProfileFolder {
  std::string path;
  FolderRef ref;
};

inline constexpr size_t kMaxFolders = 5000;

std::vector<ProfileFolder> ReadProfileFolders(const ComPtr<IDispatch>& name_space);

// The path of a folder the list holds, else its entry identifier in brackets (a folder
// of the settings that the profile no longer has), "" for none.
std::string PathOf(const std::vector<ProfileFolder>& folders, const FolderRef& ref);

}  // namespace zintra::win32
