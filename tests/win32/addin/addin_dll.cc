#include "tests/win32/addin/addin_dll.h"

namespace zintra::win32::testing {

namespace {

std::wstring DllPath() {
  wchar_t named[MAX_PATH] = {};
  DWORD length = GetEnvironmentVariableW(L"ZINTRA_ADDIN_DLL", named, MAX_PATH);
  if (length > 0 && length < MAX_PATH) return named;
  wchar_t exe[MAX_PATH] = {};
  GetModuleFileNameW(nullptr, exe, MAX_PATH);
  std::wstring path = exe;
  path.resize(path.rfind(L'\\') + 1);
  return path + L"ZintraAddin.dll";
}

}  // namespace

AddinDll::AddinDll() : path_(DllPath()) {
  module_.reset(LoadLibraryW(path_.c_str()));
  if (!module_) return;
  using Plain = HRESULT(STDAPICALLTYPE*)();
  register_ = Export<Plain>("DllRegisterServer");
  unregister_ = Export<Plain>("DllUnregisterServer");
  can_unload_ = Export<Plain>("DllCanUnloadNow");
  install_ = Export<HRESULT(STDAPICALLTYPE*)(BOOL, const wchar_t*)>("DllInstall");
  get_class_object_ =
      Export<HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**)>("DllGetClassObject");
  if (!register_ || !unregister_ || !can_unload_ || !install_ || !get_class_object_) {
    module_.reset();
  }
}

}  // namespace zintra::win32::testing
