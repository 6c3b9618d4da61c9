// Folder helpers of the access layer: naming and placing Outlook folders, and telling
// whether two folder objects are the same folder.
//
// Walks up the folder tree follow Folder::Parent while it is a folder; a parent that
// is absent, is not a folder (a store's top folder has the Namespace above it) or
// cannot be read ends the walk. Other failing reads (a folder's Name) propagate as
// the platform's ZError. Called on Outlook's thread only.
#pragma once

#include <memory>
#include <string>

#include "src/core/value.h"

namespace zintra {

class ErrorHandling;
class Folder;
class MapiUtils;
class Namespace;
class StringTable;

// Walks at most this many parents; a longer path is cut and starts with "...".
inline constexpr int kFullPathMaxSteps = 50;

// "\" + name, prefixed by "\" + the name of each parent folder: "\Mailbox - Jane\Inbox".
std::string FullMAPIPathName(const std::shared_ptr<Folder>& folder);
// The folder's name.
std::string Foldername(const std::shared_ptr<Folder>& folder);
// True when the folder or one above it is named string 50 ("Public Folders").
bool IsPublicFolder(const std::shared_ptr<Folder>& folder, const StringTable& strings);
// The top folder of the folder's store.
std::shared_ptr<Folder> RootFolder(const std::shared_ptr<Folder>& folder);
// The top folder of the user's default store (the store of the default Inbox).
std::shared_ptr<Folder> PersonalStoreRoot(Namespace& session);

// Two folders are the same when their PR_SEARCH_KEY values are equal. When either key
// cannot be read, logs "Using EntryID's to compare '" + path of a + "' to '" + path
// of b + "' because of failure reading PR_SEARCH_KEY" and compares the EntryIDs. A
// missing folder (nullptr) is the same as no other.
bool FoldersSame(const std::shared_ptr<Folder>& a, const std::shared_ptr<Folder>& b,
                 MapiUtils& utils, ErrorHandling& errors);
// The same with both search keys already read (Empty: it could not be read).
bool FoldersSame(const std::shared_ptr<Folder>& a, const Value& key_a,
                 const std::shared_ptr<Folder>& b, const Value& key_b, ErrorHandling& errors);
// The folder's PR_SEARCH_KEY; Empty when it cannot be read.
Value FolderSearchKey(const std::shared_ptr<Folder>& folder, MapiUtils& utils);

}  // namespace zintra
