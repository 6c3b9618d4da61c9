// The entry points of ZintraControls.ocx: DllMain and the functions COM and regsvr32
// call, each run through GuardCall so that no exception leaves the file.
//
//   regsvr32 ZintraControls.ocx                 per user
//   regsvr32 /n /i:machine ZintraControls.ocx   per machine
//   regsvr32 /u [/n /i:machine] ZintraControls.ocx
#include <cwctype>
#include <string>

#include "win32/addin/class_factory.h"
#include "win32/addin/dll_module.h"
#include "win32/com/com_error.h"
#include "win32/controls/control_registration.h"
#include "win32/controls/options_page_control.h"

using zintra::win32::DllModule;
using zintra::win32::GuardCall;

namespace {

// DllInstall's command line: "user" (or nothing) or "machine", in any letter case.
bool ParseHive(const wchar_t* command_line, HKEY* hive) {
  std::wstring text = command_line ? command_line : L"";
  for (wchar_t& c : text) c = static_cast<wchar_t>(std::towlower(c));
  if (text.empty() || text == L"user") {
    *hive = HKEY_CURRENT_USER;
  } else if (text == L"machine") {
    *hive = HKEY_LOCAL_MACHINE;
  } else {
    return false;
  }
  return true;
}

HRESULT Register(HKEY hive, bool install) {
  return install ? zintra::win32::RegisterOptionsPage(hive, DllModule::Instance().Path())
                 : zintra::win32::UnregisterOptionsPage(hive);
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
    if (clsid != zintra::win32::kClsidOptionsPage) return CLASS_E_CLASSNOTAVAILABLE;
    auto* factory = new zintra::win32::ClassFactory(&zintra::win32::OptionsPageControl::Create);
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

extern "C" HRESULT STDAPICALLTYPE DllInstall(BOOL install, LPCWSTR command_line) {
  return GuardCall("DllInstall", nullptr, [&]() -> HRESULT {
    HKEY hive = nullptr;
    if (!ParseHive(command_line, &hive)) return E_INVALIDARG;
    return Register(hive, install != FALSE);
  });
}
