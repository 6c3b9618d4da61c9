// DllMain and the five functions COM and regsvr32 call, the same in each of our
// in-process servers: compiled into each DLL (its .def file exports them undecorated),
// they hand their work to the DLL's own InProcessServer (ThisServer).
#include "win32/addin/in_process_server.h"

using zintra::win32::InProcessServer;
using zintra::win32::ThisServer;

extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID /*reserved*/) {
  return InProcessServer::Main(instance, reason);
}

extern "C" HRESULT STDAPICALLTYPE DllGetClassObject(REFCLSID clsid, REFIID iid, void** out) {
  return ThisServer().GetClassObject(clsid, iid, out);
}

extern "C" HRESULT STDAPICALLTYPE DllCanUnloadNow() { return InProcessServer::CanUnloadNow(); }

extern "C" HRESULT STDAPICALLTYPE DllRegisterServer() { return ThisServer().RegisterServer(); }

extern "C" HRESULT STDAPICALLTYPE DllUnregisterServer() { return ThisServer().UnregisterServer(); }

extern "C" HRESULT STDAPICALLTYPE DllInstall(BOOL install, const wchar_t* command_line) {
  return ThisServer().Install(install, command_line);
}
