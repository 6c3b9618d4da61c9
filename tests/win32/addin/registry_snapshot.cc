#include "tests/win32/addin/registry_snapshot.h"

#include <algorithm>
#include <set>

#include "win32/addin/reg_key.h"

namespace zintra::win32::testing {

namespace {

void ReadKey(HKEY key, const std::wstring& path, int depth, RegistrySnapshot& out) {
  std::vector<std::wstring>& values = out.keys[path];
  std::vector<wchar_t> name(16384);
  std::vector<BYTE> data(65536);
  for (DWORD i = 0;; ++i) {
    DWORD name_len = static_cast<DWORD>(name.size());
    DWORD type = 0;
    DWORD size = static_cast<DWORD>(data.size());
    if (RegEnumValueW(key, i, name.data(), &name_len, nullptr, &type, data.data(), &size) !=
        ERROR_SUCCESS) {
      break;
    }
    std::wstring entry = std::wstring(name.data(), name_len) + L"|" + std::to_wstring(type) + L"|";
    for (DWORD b = 0; b < size; ++b) entry += std::to_wstring(data[b]) + L",";
    values.push_back(entry);
  }
  std::vector<std::wstring> children;
  for (DWORD i = 0;; ++i) {
    DWORD name_len = static_cast<DWORD>(name.size());
    if (RegEnumKeyExW(key, i, name.data(), &name_len, nullptr, nullptr, nullptr, nullptr) !=
        ERROR_SUCCESS) {
      break;
    }
    children.emplace_back(name.data(), name_len);
  }
  for (const std::wstring& child : children) values.push_back(L"key " + child);
  std::sort(values.begin(), values.end());
  if (depth <= 0) return;
  for (const std::wstring& child : children) {
    RegKey sub;
    if (sub.Open(key, child, KEY_READ) != ERROR_SUCCESS) continue;
    ReadKey(sub.Get(), path.empty() ? child : path + L"\\" + child, depth - 1, out);
  }
}

}  // namespace

RegistrySnapshot RegistrySnapshot::Take(HKEY hive, const std::wstring& path, int depth) {
  RegistrySnapshot snapshot;
  RegKey root;
  if (root.Open(hive, path, KEY_READ) == ERROR_SUCCESS) ReadKey(root.Get(), L"", depth, snapshot);
  return snapshot;
}

std::vector<std::wstring> RegistrySnapshot::Differences(const RegistrySnapshot& other) const {
  std::set<std::wstring> paths;
  for (const auto& [path, values] : keys) paths.insert(path);
  for (const auto& [path, values] : other.keys) paths.insert(path);
  std::vector<std::wstring> different;
  for (const std::wstring& path : paths) {
    auto a = keys.find(path);
    auto b = other.keys.find(path);
    if (a == keys.end() || b == other.keys.end() || a->second != b->second) {
      different.push_back(path);
    }
  }
  return different;
}

}  // namespace zintra::win32::testing
