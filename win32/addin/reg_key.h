// RegKey: one open registry key (a UniqueHKey), with the few wide-character operations
// the server's self-registration needs: class keys hold the DLL's path, which may use any
// character, so they are written with the W functions.
// Every member answers the platform's error code (ERROR_SUCCESS, ERROR_FILE_NOT_FOUND
// for a missing key or value, ERROR_ACCESS_DENIED ...); none throws.
#pragma once

#include <string>

#include "win32/com/unique_handles.h"
#include "win32/com/windows_api.h"

namespace zintra::win32 {

class RegKey {
 public:
  // RegOpenKeyExW / RegCreateKeyExW on parent\path; *created (may be null) says whether
  // the last key of the path was new.
  LONG Open(HKEY parent, const std::wstring& path, REGSAM access);
  LONG Create(HKEY parent, const std::wstring& path, REGSAM access, bool* created = nullptr);
  void Close() { key_.reset(); }

  HKEY Get() const { return key_.get(); }
  explicit operator bool() const { return key_.valid(); }

  // A REG_SZ value; `name` "" is the key's default value.
  LONG SetString(const std::wstring& name, const std::wstring& value);
  LONG DeleteValue(const std::wstring& name);
  // Whether the key holds neither values nor subkeys.
  bool IsEmpty() const;

 private:
  UniqueHKey key_;
};

// Deletes parent\path with every subkey and value; a missing key is not an error.
LONG DeleteKeyTree(HKEY parent, const std::wstring& path);
// Deletes parent\path when it holds nothing, then each enclosing key of the path that
// is left empty, up to (not including) parent itself: open the key where pruning must
// stop and pass the rest of the path. Keys that hold anything stay.
void PruneEmptyKeys(HKEY parent, const std::wstring& path);
// Whether parent\path exists.
bool KeyExists(HKEY parent, const std::wstring& path);

}  // namespace zintra::win32
