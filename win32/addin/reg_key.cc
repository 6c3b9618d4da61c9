#include "win32/addin/reg_key.h"

namespace zintra::win32 {

LONG RegKey::Open(HKEY parent, const std::wstring& path, REGSAM access) {
  return RegOpenKeyExW(parent, path.c_str(), 0, access, key_.put());
}

LONG RegKey::Create(HKEY parent, const std::wstring& path, REGSAM access, bool* created) {
  DWORD disposition = 0;
  LONG result = RegCreateKeyExW(parent, path.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE, access,
                                nullptr, key_.put(), &disposition);
  if (created) *created = result == ERROR_SUCCESS && disposition == REG_CREATED_NEW_KEY;
  return result;
}

LONG RegKey::SetString(const std::wstring& name, const std::wstring& value) {
  // The size counts the terminating zero, as REG_SZ data must.
  return RegSetValueExW(key_.get(), name.c_str(), 0, REG_SZ,
                        reinterpret_cast<const BYTE*>(value.c_str()),
                        static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t)));
}

LONG RegKey::DeleteValue(const std::wstring& name) {
  return RegDeleteValueW(key_.get(), name.c_str());
}

bool RegKey::IsEmpty() const {
  DWORD sub_keys = 0;
  DWORD values = 0;
  if (RegQueryInfoKeyW(key_.get(), nullptr, nullptr, nullptr, &sub_keys, nullptr, nullptr, &values,
                       nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS) {
    return false;  // what cannot be inspected is not ours to remove
  }
  return sub_keys == 0 && values == 0;
}

LONG DeleteKeyTree(HKEY parent, const std::wstring& path) {
  LONG result = RegDeleteTreeW(parent, path.c_str());
  return result == ERROR_FILE_NOT_FOUND ? ERROR_SUCCESS : result;
}

void PruneEmptyKeys(HKEY parent, const std::wstring& path) {
  std::wstring current = path;
  while (!current.empty()) {
    RegKey key;
    if (key.Open(parent, current, KEY_READ) != ERROR_SUCCESS) {
      // Already gone: its parent may still be empty.
    } else {
      bool empty = key.IsEmpty();
      key.Close();
      if (!empty || RegDeleteKeyW(parent, current.c_str()) != ERROR_SUCCESS) return;
    }
    size_t slash = current.rfind(L'\\');
    if (slash == std::wstring::npos) return;
    current.resize(slash);
  }
}

bool KeyExists(HKEY parent, const std::wstring& path) {
  RegKey key;
  return key.Open(parent, path, KEY_READ) == ERROR_SUCCESS;
}

}  // namespace zintra::win32
