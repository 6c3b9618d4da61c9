// The DLL's entry points: DllMain and the five functions COM and regsvr32 call. Each
// runs its body through GuardCall, so no exception leaves the DLL.
//
//   regsvr32 ZintraAddin.dll                 per user (DllRegisterServer)
//   regsvr32 /n /i:machine ZintraAddin.dll   per machine (DllInstall only)
//   regsvr32 /u ZintraAddin.dll              removes the per-user registration
//   regsvr32 /u /n /i:machine ZintraAddin.dll removes the per-machine registration
#include <cwctype>
#include <string>

#include "win32/addin/class_factory.h"
#include "win32/addin/connect_object.h"
#include "win32/addin/dll_module.h"
#include "win32/addin/idt_extensibility2_com.h"
#include "win32/addin/server_registration.h"
#include "win32/addin/word_letter_handler_object.h"
#include "win32/com/com_error.h"
#include "win32/ports/win32_file_system.h"
#include "win32/ports/win32_platform.h"
#include "win32/ports/win32_registry.h"

using zintra::win32::ClassFactory;
using zintra::win32::ConnectObject;
using zintra::win32::DllModule;
using zintra::win32::GuardCall;
using zintra::win32::RegistrationScope;
using zintra::win32::ServerRegistration;
using zintra::win32::WordLetterHandlerObject;

namespace {

HRESULT Register(RegistrationScope scope, bool install) {
  zintra::win32::Win32Registry registry;
  zintra::win32::Win32FileSystem files;
  zintra::win32::Win32Platform platform;
  ServerRegistration registration(scope, registry, files, platform);
  return install ? registration.Register(DllModule::Instance().Path()) : registration.Unregister();
}

// DllInstall's command line: "user" (or nothing) or "machine", in any letter case.
bool ParseScope(const wchar_t* command_line, RegistrationScope* scope) {
  std::wstring text = command_line ? command_line : L"";
  for (wchar_t& c : text) c = static_cast<wchar_t>(std::towlower(c));
  if (text.empty() || text == L"user") {
    *scope = RegistrationScope::kUser;
  } else if (text == L"machine") {
    *scope = RegistrationScope::kMachine;
  } else {
    return false;
  }
  return true;
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
    zintra::win32::ObjectCreator creator = nullptr;
    if (clsid == zintra::win32::kClsidConnect) creator = &ConnectObject::Create;
    if (clsid == zintra::win32::kClsidWordLetterHandler) creator = &WordLetterHandlerObject::Create;
    if (!creator) return CLASS_E_CLASSNOTAVAILABLE;
    ClassFactory* factory = new ClassFactory(creator);
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
  return GuardCall("DllRegisterServer", nullptr,
                   [] { return Register(RegistrationScope::kUser, true); });
}

extern "C" HRESULT STDAPICALLTYPE DllUnregisterServer() {
  return GuardCall("DllUnregisterServer", nullptr,
                   [] { return Register(RegistrationScope::kUser, false); });
}

extern "C" HRESULT STDAPICALLTYPE DllInstall(BOOL install, const wchar_t* command_line) {
  return GuardCall("DllInstall", nullptr, [&] {
    RegistrationScope scope;
    if (!ParseScope(command_line, &scope)) return E_INVALIDARG;
    return Register(scope, install != FALSE);
  });
}
