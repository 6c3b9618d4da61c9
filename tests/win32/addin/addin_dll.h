// AddinDll: ZintraAddin.dll loaded into the test (the copy the build puts next to the
// test program, or the file ZINTRA_ADDIN_DLL names), with its exported entry points.
#pragma once

#include <string>

#include "win32/com/unique_handles.h"
#include "win32/com/windows_api.h"

namespace zintra::win32::testing {

class AddinDll {
 public:
  AddinDll();

  bool Loaded() const { return module_.valid(); }
  const std::wstring& Path() const { return path_; }

  HRESULT RegisterServer() const { return register_(); }
  HRESULT UnregisterServer() const { return unregister_(); }
  HRESULT Install(bool install, const wchar_t* command_line) const {
    return install_(install ? TRUE : FALSE, command_line);
  }
  HRESULT CanUnloadNow() const { return can_unload_(); }
  HRESULT GetClassObject(REFCLSID clsid, REFIID iid, void** out) const {
    return get_class_object_(clsid, iid, out);
  }

 private:
  template <typename F>
  F Export(const char* name) const {
    // Through void*: a FARPROC does not convert to a function type of its own.
    return reinterpret_cast<F>(reinterpret_cast<void*>(GetProcAddress(module_.get(), name)));
  }

  std::wstring path_;
  UniqueHModule module_;
  HRESULT(STDAPICALLTYPE* register_)() = nullptr;
  HRESULT(STDAPICALLTYPE* unregister_)() = nullptr;
  HRESULT(STDAPICALLTYPE* install_)(BOOL, const wchar_t*) = nullptr;
  HRESULT(STDAPICALLTYPE* can_unload_)() = nullptr;
  HRESULT(STDAPICALLTYPE* get_class_object_)(REFCLSID, REFIID, void**) = nullptr;
};

}  // namespace zintra::win32::testing
