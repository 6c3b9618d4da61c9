// ControlRegistration: the class keys of ZintraControls.OutlookPropertiesPage that
// DllRegisterServer writes and DllUnregisterServer removes, below
// HKEY_CURRENT_USER\Software\Classes (per user) or HKEY_LOCAL_MACHINE\Software\Classes
// (per machine, DllInstall "machine"):
//
//   CLSID\{8126899C-11C0-49FE-BA19-AA4AAB4DAE1B}   (default) "Zintra Options Page"
//       InprocServer32       (default) the file's path, ThreadingModel "Apartment"
//       ProgID               (default) "ZintraControls.OutlookPropertiesPage"
//   ZintraControls.OutlookPropertiesPage           (default) "Zintra Options Page"
//       CLSID                (default) the class id
//
// Outlook creates the page by ProgID: no "Control" key puts it in other containers'
// lists of insertable controls. The installer writes the same entries
// (installer/zintra.wxs). A registration that cannot be completed is removed again and
// answers SELFREG_E_CLASS (E_ACCESSDENIED for a hive that may not be written); removing
// what is not there succeeds. Nothing throws.
#pragma once

#include <string>

#include "win32/com/windows_api.h"

namespace zintra::win32 {

HRESULT RegisterOptionsPage(HKEY hive, const std::wstring& file_path);
HRESULT UnregisterOptionsPage(HKEY hive);

}  // namespace zintra::win32
