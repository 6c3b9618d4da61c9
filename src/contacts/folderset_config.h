// FoldersetConfig: one folder set as the settings describe it (the i-th element of
// the Foldersets\... lists): the tracked contact folder, the set's other folders and
// its flag word. Folders are identified by (entry ID, store ID); a blank pair means
// the set has no such folder.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace zintra {

class RegSettings;

struct FolderIds {
  std::string EntryID;
  std::string StoreID;
  bool Blank() const { return EntryID.empty() || StoreID.empty(); }
};

struct FoldersetConfig {
  FolderIds Contact;
  FolderIds Email;
  FolderIds Journal;
  FolderIds SharedCalendar;
  FolderIds SharedJournal;
  FolderIds SharedTaskList;
  int32_t Flags = 0;

  // Set `index` (1-based) of the settings; elements the lists lack read as blank and 0.
  static FoldersetConfig FromSettings(const RegSettings& settings, int32_t index);
};

// The 1-based index of the configured set whose contact folder has these identifiers
// (entry IDs compared as hexadecimal text, without regard to letter case); nullopt
// when none.
std::optional<int32_t> FindFoldersetIndex(const RegSettings& settings, const std::string& EntryID,
                                          const std::string& StoreID);

}  // namespace zintra
