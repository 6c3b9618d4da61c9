// The entry points of ZintraControls.ocx: DllMain and the functions COM and regsvr32
// call (InProcessServer runs them).
//
//   regsvr32 ZintraControls.ocx                 per user
//   regsvr32 /n /i:machine ZintraControls.ocx   per machine
//   regsvr32 /u [/n /i:machine] ZintraControls.ocx
#include "win32/addin/dll_module.h"
#include "win32/addin/in_process_server.h"
#include "win32/controls/control_registration.h"
#include "win32/controls/options_page_control.h"

using zintra::win32::DllModule;
using zintra::win32::InProcessServer;

namespace {

HRESULT Register(bool per_machine, bool install) {
  HKEY hive = per_machine ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER;
  return install ? zintra::win32::RegisterOptionsPage(hive, DllModule::Instance().Path())
                 : zintra::win32::UnregisterOptionsPage(hive);
}

const InProcessServer& Server() {
  static const InProcessServer server(
      {{&zintra::win32::kClsidOptionsPage, &zintra::win32::OptionsPageControl::Create}}, &Register);
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
