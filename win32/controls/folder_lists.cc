#include "win32/controls/folder_lists.h"

namespace zintra::win32 {
namespace {

struct RoleLists {
  StringList RegSettings::*entry_ids;
  StringList RegSettings::*store_ids;
};

constexpr RoleLists kRoleLists[kSetRoleCount] = {
    {&RegSettings::ContactFolderEntryIDs, &RegSettings::ContactFolderStoreIDs},
    {&RegSettings::JournalFolderEntryIDs, &RegSettings::JournalFolderStoreIDs},
    {&RegSettings::EmailFolderEntryIDs, &RegSettings::EmailFolderStoreIDs},
    {&RegSettings::SharedCalendarEntryIDs, &RegSettings::SharedCalendarStoreIDs},
    {&RegSettings::SharedJournalEntryIDs, &RegSettings::SharedJournalStoreIDs},
    {&RegSettings::SharedTaskListEntryIDs, &RegSettings::SharedTaskListStoreIDs},
};

// Element i (1-based) of a list that may be shorter than its count.
template <typename T>
T At(const KeyedCollection<T>& list, int32_t i) {
  return i <= list.Count() ? list.Item(i) : T{};
}

}  // namespace

std::vector<FolderSetRow> ReadFolderSets(const RegSettings& settings) {
  std::vector<FolderSetRow> rows;
  for (int32_t i = 1; i <= settings.FoldersetCount; ++i) {
    FolderSetRow row;
    for (int r = 0; r < kSetRoleCount; ++r) {
      row.folders[r] = {At(settings.*kRoleLists[r].entry_ids, i),
                        At(settings.*kRoleLists[r].store_ids, i)};
    }
    row.flags = At(settings.FoldersetFlags, i);
    rows.push_back(std::move(row));
  }
  return rows;
}

void WriteFolderSets(const std::vector<FolderSetRow>& rows, RegSettings& settings) {
  for (const RoleLists& lists : kRoleLists) {
    settings.*lists.entry_ids = StringList();
    settings.*lists.store_ids = StringList();
  }
  settings.FoldersetFlags = LongList();
  for (const FolderSetRow& row : rows) {
    for (int r = 0; r < kSetRoleCount; ++r) {
      (settings.*kRoleLists[r].entry_ids).Add(row.folders[r].entry_id);
      (settings.*kRoleLists[r].store_ids).Add(row.folders[r].store_id);
    }
    settings.FoldersetFlags.Add(row.flags);
  }
  settings.FoldersetCount = static_cast<int32_t>(rows.size());
}

std::vector<MonitoredRow> ReadMonitoredFolders(const RegSettings& settings) {
  std::vector<MonitoredRow> rows;
  for (int32_t i = 1; i <= settings.MonitorFoldersCount; ++i) {
    rows.push_back({{At(settings.MonitorFolderEntryIDs, i), At(settings.MonitorFolderStoreIDs, i)},
                    At(settings.MonitorFolderFlags, i)});
  }
  return rows;
}

void WriteMonitoredFolders(const std::vector<MonitoredRow>& rows, RegSettings& settings) {
  settings.MonitorFolderEntryIDs = StringList();
  settings.MonitorFolderStoreIDs = StringList();
  settings.MonitorFolderFlags = LongList();
  for (const MonitoredRow& row : rows) {
    settings.MonitorFolderEntryIDs.Add(row.folder.entry_id);
    settings.MonitorFolderStoreIDs.Add(row.folder.store_id);
    settings.MonitorFolderFlags.Add(row.item_types);
  }
  settings.MonitorFoldersCount = static_cast<int32_t>(rows.size());
}

}  // namespace zintra::win32
