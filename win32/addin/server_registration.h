// ServerRegistration: what DllRegisterServer, DllUnregisterServer and DllInstall write
// and remove. Per user (no administrator rights needed) everything goes below
// HKEY_CURRENT_USER, per machine below HKEY_LOCAL_MACHINE:
//
//   Software\Classes\CLSID\{clsid}            (default) the class's name
//       InprocServer32                          (default) the DLL's path, ThreadingModel Apartment
//       ProgID                                  (default) the ProgID
//   Software\Classes\<ProgID>                 (default) the class's name
//       CLSID                                   (default) {clsid}
//
// for ZintraAddin.Connect and ZintraAddin.WordLetterHandler, plus Outlook's loader key
// (RegSettings::WriteAddinLoader, through the Registry port). Unregistering removes those
// keys with everything below them, then every enclosing key that is left empty (up to
// Software), so that a registry that had none of them is left as it was found.
//
// Failures: a registration that cannot be completed is rolled back and answers
// SELFREG_E_CLASS (E_ACCESSDENIED when the hive may not be written: a per-machine
// registration without administrator rights). Unregistering what is not registered
// succeeds. Nothing throws.
#pragma once

#include <string>

#include "src/host/file_system.h"
#include "src/host/platform.h"
#include "src/host/registry.h"
#include "win32/com/windows_api.h"

namespace zintra::win32 {

enum class RegistrationScope { kUser, kMachine };

class ServerRegistration {
 public:
  // The ports are borrowed for the call (RegSettings needs all three).
  ServerRegistration(RegistrationScope scope, Registry& registry, FileSystem& file_system,
                     Platform& platform)
      : scope_(scope), registry_(registry), file_system_(file_system), platform_(platform) {}

  HRESULT Register(const std::wstring& dll_path);
  HRESULT Unregister();

  // The hive of this scope.
  HKEY Hive() const;

 private:
  LONG WriteClassKeys(const CLSID& clsid, const std::wstring& prog_id, const std::wstring& name,
                      const std::wstring& dll_path);

  RegistrationScope scope_;
  Registry& registry_;
  FileSystem& file_system_;
  Platform& platform_;
};

// The registry form of a class id, "{9BEC0744-...}".
std::wstring GuidText(const GUID& guid);

}  // namespace zintra::win32
