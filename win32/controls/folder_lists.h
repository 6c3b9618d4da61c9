// FolderLists: the folder sets and the monitored folders of the settings as rows, the
// way the options page edits them, and back: the parallel indexed lists of RegSettings
// (entry ID and store ID per role, a flag word per row) with their counts.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "src/settings/reg_settings.h"

namespace zintra::win32 {

struct FolderRef {
  std::string entry_id;
  std::string store_id;
  bool empty() const { return entry_id.empty(); }
  bool operator==(const FolderRef&) const = default;
};

// The folders of one folder set, in the order the page shows them.
enum class SetRole { kContact, kJournal, kEmail, kSharedCalendar, kSharedJournal, kSharedTasks };
inline constexpr int kSetRoleCount = 6;

struct FolderSetRow {
  std::array<FolderRef, kSetRoleCount> folders;
  int32_t flags = 0;  // 1 log routed items, 2 leave a personal copy
  FolderRef& operator[](SetRole role) { return folders[static_cast<size_t>(role)]; }
  const FolderRef& operator[](SetRole role) const { return folders[static_cast<size_t>(role)]; }
};

struct MonitoredRow {
  FolderRef folder;
  int32_t item_types = 0;  // FolderSetting's mask
};

// Folder-set flag bits.
inline constexpr int32_t kFlagLogRoutedItems = 1;
inline constexpr int32_t kFlagLeavePersonalCopy = 2;

std::vector<FolderSetRow> ReadFolderSets(const RegSettings& settings);
void WriteFolderSets(const std::vector<FolderSetRow>& rows, RegSettings& settings);
std::vector<MonitoredRow> ReadMonitoredFolders(const RegSettings& settings);
void WriteMonitoredFolders(const std::vector<MonitoredRow>& rows, RegSettings& settings);

}  // namespace zintra::win32
