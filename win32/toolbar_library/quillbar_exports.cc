// Quillbar.dll's entry points: DllMain and the functions COM and regsvr32 call, each
// run through GuardCall so that no exception leaves the DLL.
//
//   regsvr32 Quillbar.dll                   per user (DllRegisterServer)
//   regsvr32 /n /i:machine Quillbar.dll     per machine (DllInstall only)
//   regsvr32 /u Quillbar.dll                removes the per-user registration
//   regsvr32 /u /n /i:machine Quillbar.dll  removes the per-machine registration
#include <cwctype>
#include <string>

#include "win32/addin/class_factory.h"
#include "win32/addin/dll_module.h"
#include "win32/com/com_error.h"
#include "win32/toolbar_library/toolbar_helper_object.h"
#include "win32/toolbar_library/toolbar_registration.h"

using zintra::win32::ClassFactory;
using zintra::win32::DllModule;
using zintra::win32::GuardCall;
using zintra::win32::ToolbarHelperObject;
using zintra::win32::ToolbarRegistration;

namespace {

HRESULT Register(HKEY hive, bool install) {
  ToolbarRegistration registration(hive);
  return install ? registration.Register(DllModule::Instance().Path()) : registration.Unregister();
}

}  // namespace

extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID /*reserved*/) {
  if (reason == DLL_PROCESS_ATTACH) {
    DllModule::Instance().Attach(instance);
    DisableThreadLibraryCalls(instance);
  }
  return TRUE;
}

extern "C" HRESULT STDAPICALLTYPE DllGetClassObject(REFCLSID clsid, REFIID iid, void** out) {
  if (!out) return E_POINTER;
  *out = nullptr;
  return GuardCall("DllGetClassObject", nullptr, [&]() -> HRESULT {
    if (clsid != zintra::win32::kClsidToolbarHelper) return CLASS_E_CLASSNOTAVAILABLE;
    ClassFactory* factory = new ClassFactory(&ToolbarHelperObject::Create);
    HRESULT hr = factory->QueryInterface(iid, out);
    factory->Release();
    return hr;
  });
}

extern "C" HRESULT STDAPICALLTYPE DllCanUnloadNow() {
  return GuardCall("DllCanUnloadNow", nullptr,
                   [] { return DllModule::Instance().CanUnload() ? S_OK : S_FALSE; });
}

extern "C" HRESULT STDAPICALLTYPE DllRegisterServer() {
  return GuardCall("DllRegisterServer", nullptr, [] { return Register(HKEY_CURRENT_USER, true); });
}

extern "C" HRESULT STDAPICALLTYPE DllUnregisterServer() {
  return GuardCall("DllUnregisterServer", nullptr,
                   [] { return Register(HKEY_CURRENT_USER, false); });
}

// "user" (or nothing) or "machine", in any letter case.
extern "C" HRESULT STDAPICALLTYPE DllInstall(BOOL install, const wchar_t* command_line) {
  return GuardCall("DllInstall", nullptr, [&] {
    std::wstring text = command_line ? command_line : L"";
    for (wchar_t& c : text) c = static_cast<wchar_t>(std::towlower(c));
    if (text.empty() || text == L"user") return Register(HKEY_CURRENT_USER, install != FALSE);
    if (text == L"machine") return Register(HKEY_LOCAL_MACHINE, install != FALSE);
    return E_INVALIDARG;
  });
}
