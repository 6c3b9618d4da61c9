// RegistrySnapshot: the keys, value names, types and data below one registry key, read
// with the wide-character functions, so that two snapshots compare equal exactly when
// nothing they cover changed. Each key also records the names of its subkeys, so a
// shallow snapshot (depth 0: the key's values and the names of its subkeys) still sees
// a subkey come or go. A missing key reads as an empty snapshot.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "win32/com/windows_api.h"

namespace zintra::win32::testing {

struct RegistrySnapshot {
  // Key path (relative to the root, "" for the root) -> "name|type|data bytes" per value.
  std::map<std::wstring, std::vector<std::wstring>> keys;

  static constexpr int kWholeTree = 1 << 20;
  // Keys down to `depth` levels below `path` are read in full.
  static RegistrySnapshot Take(HKEY hive, const std::wstring& path, int depth = kWholeTree);
  bool operator==(const RegistrySnapshot&) const = default;
  // The keys present in one snapshot and not the other, or whose values differ.
  std::vector<std::wstring> Differences(const RegistrySnapshot& other) const;
};

}  // namespace zintra::win32::testing
