#include "win32/addin/in_process_server.h"

#include <cwctype>
#include <string>

#include "win32/addin/dll_module.h"
#include "win32/com/com_error.h"

namespace zintra::win32 {

BOOL InProcessServer::Main(HINSTANCE instance, DWORD reason) {
  if (reason == DLL_PROCESS_ATTACH) {
    DllModule::Instance().Attach(instance);
    DisableThreadLibraryCalls(instance);
  }
  return TRUE;
}

HRESULT InProcessServer::GetClassObject(REFCLSID clsid, REFIID iid, void** out) const {
  if (!out) return E_POINTER;
  *out = nullptr;
  return GuardCall("DllGetClassObject", nullptr, [&]() -> HRESULT {
    for (const ServedClass& served : classes_) {
      if (clsid != *served.clsid) continue;
      ClassFactory* factory = new ClassFactory(served.create);
      HRESULT hr = factory->QueryInterface(iid, out);
      factory->Release();
      return hr;
    }
    return CLASS_E_CLASSNOTAVAILABLE;
  });
}

HRESULT InProcessServer::CanUnloadNow() {
  return GuardCall("DllCanUnloadNow", nullptr,
                   [] { return DllModule::Instance().CanUnload() ? S_OK : S_FALSE; });
}

HRESULT InProcessServer::RegisterServer() const {
  return GuardCall("DllRegisterServer", nullptr, [this] { return registrar_(false, true); });
}

HRESULT InProcessServer::UnregisterServer() const {
  return GuardCall("DllUnregisterServer", nullptr, [this] { return registrar_(false, false); });
}

HRESULT InProcessServer::Install(BOOL install, const wchar_t* command_line) const {
  return GuardCall("DllInstall", nullptr, [&]() -> HRESULT {
    std::wstring text = command_line ? command_line : L"";
    for (wchar_t& c : text) c = static_cast<wchar_t>(std::towlower(c));
    if (text.empty() || text == L"user") return registrar_(false, install != FALSE);
    if (text == L"machine") return registrar_(true, install != FALSE);
    return E_INVALIDARG;
  });
}

}  // namespace zintra::win32
