// Quillbar.dll's entry points: DllMain and the functions COM and regsvr32 call
// (InProcessServer runs them).
//
//   regsvr32 Quillbar.dll                   per user (DllRegisterServer)
//   regsvr32 /n /i:machine Quillbar.dll     per machine (DllInstall only)
//   regsvr32 /u Quillbar.dll                removes the per-user registration
//   regsvr32 /u /n /i:machine Quillbar.dll  removes the per-machine registration
#include "win32/addin/dll_module.h"
#include "win32/addin/in_process_server.h"
#include "win32/toolbar_library/toolbar_helper_object.h"
#include "win32/toolbar_library/toolbar_registration.h"

using zintra::win32::DllModule;
using zintra::win32::InProcessServer;
using zintra::win32::ToolbarHelperObject;
using zintra::win32::ToolbarRegistration;

namespace {

HRESULT Register(bool per_machine, bool install) {
  ToolbarRegistration registration(per_machine ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER);
  return install ? registration.Register(DllModule::Instance().Path()) : registration.Unregister();
}

const InProcessServer& Server() {
  static const InProcessServer server(
      {{&zintra::win32::kClsidToolbarHelper, &ToolbarHelperObject::Create}}, &Register);
  return server;
}

}  // namespace

extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID /*reserved*/) {
  return InProcessServer::Main(instance, reason);
}

extern "C" HRESULT STDAPICALLTYPE DllGetClassObject(REFCLSID clsid, REFIID iid, void** out) {
  return Server().GetClassObject(clsid, iid, out);
}

extern "C" HRESULT STDAPICALLTYPE DllCanUnloadNow() { return InProcessServer::CanUnloadNow(); }

extern "C" HRESULT STDAPICALLTYPE DllRegisterServer() { return Server().RegisterServer(); }

extern "C" HRESULT STDAPICALLTYPE DllUnregisterServer() { return Server().UnregisterServer(); }

extern "C" HRESULT STDAPICALLTYPE DllInstall(BOOL install, const wchar_t* command_line) {
  return Server().Install(install, command_line);
}
