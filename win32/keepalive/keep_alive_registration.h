// KeepAliveRegistration: what "ZintraKeepAlive.exe /RegServer" writes and /UnregServer
// removes. Per user (no administrator rights needed) below HKEY_CURRENT_USER, per
// machine ("/Machine") below HKEY_LOCAL_MACHINE, as the add-in's own registration:
//
//   Software\Classes\CLSID\{clsid}            (default) "Zintra keep-alive"
//       LocalServer32                           (default) the program's path, in quotes
//       ProgID                                  (default) "ZintraKeepAlive.KeepAlive"
//   Software\Classes\ZintraKeepAlive.KeepAlive (default) "Zintra keep-alive"
//       CLSID                                   (default) {clsid}
//
// Unregistering removes both keys and every enclosing key left empty (up to Software),
// so that a registry that had none of them is left as it was found. A registration that
// cannot be completed is rolled back. Answers S_OK, E_ACCESSDENIED (the hive may not be
// written: per machine without administrator rights) or SELFREG_E_CLASS; never throws.
#pragma once

#include <string>

#include "win32/com/windows_api.h"

namespace zintra::win32 {

class KeepAliveRegistration {
 public:
  explicit KeepAliveRegistration(bool per_machine) : per_machine_(per_machine) {}

  HRESULT Register(const std::wstring& exe_path);
  HRESULT Unregister();
  HKEY Hive() const { return per_machine_ ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER; }

 private:
  bool per_machine_;
};

}  // namespace zintra::win32
