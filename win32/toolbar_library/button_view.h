// ButtonView: one of Office's command bar buttons as the toolbar library's events carry
// it. Each window's button has a tag of its own (Office raises Click on every button
// that shares a tag); the view reads back the tag the add-in declared and hands every
// other call, and every interface but IDispatch, to the button itself.
#pragma once

#include <string>

#include "win32/addin/dll_module.h"
#include "win32/com/com_ptr.h"
#include "win32/com/windows_api.h"

namespace zintra::win32 {

// COM interfaces have no virtual destructor; objects delete themselves in Release.
#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"
#endif
class ButtonView final : public IDispatch {
 public:
  static ComPtr<IDispatch> Create(const ComPtr<IDispatch>& button, const std::string& tag);

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override;
  ULONG STDMETHODCALLTYPE AddRef() override;
  ULONG STDMETHODCALLTYPE Release() override;
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override;
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID lcid, ITypeInfo** info) override;
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID lcid,
                                          DISPID* ids) override;
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID iid, LCID lcid, WORD flags, DISPPARAMS* params,
                                   VARIANT* result, EXCEPINFO* excepinfo, UINT* arg_error) override;

 private:
  ButtonView(const ComPtr<IDispatch>& button, const std::string& tag);
  ~ButtonView() = default;

  LONG refs_ = 1;
  ModuleObjectCount count_;
  ComPtr<IDispatch> button_;
  std::wstring tag_;
  DISPID tag_id_ = DISPID_UNKNOWN;
};
#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif

}  // namespace zintra::win32
