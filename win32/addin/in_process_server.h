// InProcessServer: what the exported functions of each of our in-process servers
// (ZintraAddin.dll, ZintraControls.ocx, Quillbar.dll) do, so that each DLL only names
// its classes and its registration. Every body runs through
// GuardCall, so no exception leaves the DLL.
//
//   DllGetClassObject     a ClassFactory for one of the served classes
//   DllCanUnloadNow       S_OK once DllModule holds nothing of ours
//   DllRegisterServer     registers per user (DllUnregisterServer removes it)
//   DllInstall            command line "user" (or nothing) or "machine", any letter case:
//                         regsvr32 [/u] /n /i:machine X.dll
#pragma once

#include <initializer_list>
#include <vector>

#include "win32/addin/class_factory.h"
#include "win32/com/windows_api.h"

namespace zintra::win32 {

class InProcessServer {
 public:
  struct ServedClass {
    const CLSID* clsid;
    ObjectCreator create;
  };
  // Writes (`install`) or removes the server's keys, per machine or per user.
  using Registrar = HRESULT (*)(bool per_machine, bool install);

  InProcessServer(std::initializer_list<ServedClass> classes, Registrar registrar)
      : classes_(classes), registrar_(registrar) {}

  // DllMain: records the module on attach.
  static BOOL Main(HINSTANCE instance, DWORD reason);

  HRESULT GetClassObject(REFCLSID clsid, REFIID iid, void** out) const;
  static HRESULT CanUnloadNow();
  HRESULT RegisterServer() const;
  HRESULT UnregisterServer() const;
  HRESULT Install(BOOL install, const wchar_t* command_line) const;

 private:
  std::vector<ServedClass> classes_;
  Registrar registrar_;
};

// The server of the DLL being linked: each DLL's own entry file defines it, and the
// exported functions (in_process_exports.cc, compiled into each DLL) call it.
const InProcessServer& ThisServer();

}  // namespace zintra::win32
