// ToolbarRegistration: what Quillbar.dll's DllRegisterServer, DllUnregisterServer and
// DllInstall write and remove, per user below HKEY_CURRENT_USER (no administrator
// rights) or per machine below HKEY_LOCAL_MACHINE:
//
//   Software\Classes\CLSID\{clsid}          (default) "Quillbar ToolbarHelper"
//       InprocServer32                        (default) the DLL's path, ThreadingModel Apartment
//       ProgID                                (default) "Quillbar.ToolbarHelper"
//   Software\Classes\Quillbar.ToolbarHelper (default) "Quillbar ToolbarHelper"
//       CLSID                                 (default) {clsid}
//
// Unregistering removes both keys and then the enclosing keys left empty, up to
// Software. A registration that cannot be completed is rolled back and answers
// SELFREG_E_CLASS (E_ACCESSDENIED when the hive may not be written). Nothing throws.
#pragma once

#include <string>

#include "win32/com/windows_api.h"

namespace zintra::win32 {

inline constexpr wchar_t kToolbarHelperProgIdW[] = L"Quillbar.ToolbarHelper";
inline constexpr wchar_t kToolbarHelperName[] = L"Quillbar ToolbarHelper";

class ToolbarRegistration {
 public:
  explicit ToolbarRegistration(HKEY hive) : hive_(hive) {}
  HRESULT Register(const std::wstring& dll_path);
  HRESULT Unregister();

 private:
  HKEY hive_;
};

}  // namespace zintra::win32
