// FailingDispatch: an automation object whose every member call fails with an error
// of its own (DISP_E_EXCEPTION, number 440), as the objects of a dying server do.
#pragma once

#include "win32/com/com_ptr.h"
#include "win32/com/windows_api.h"

namespace zintra::win32::testing {

// COM interfaces have no virtual destructor; objects delete themselves in Release.
#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"
#endif
class FailingDispatch final : public IDispatch {
 public:
  static ComPtr<IDispatch> Create() { return ComPtr<IDispatch>::Attach(new FailingDispatch()); }

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override;
  ULONG STDMETHODCALLTYPE AddRef() override { return static_cast<ULONG>(++refs_); }
  ULONG STDMETHODCALLTYPE Release() override;
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override;
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo** info) override;
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT count, LCID,
                                          DISPID* ids) override;
  HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT* result,
                                   EXCEPINFO* info, UINT*) override;

 private:
  FailingDispatch() = default;
  ~FailingDispatch() = default;
  long refs_ = 1;
};
#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif

}  // namespace zintra::win32::testing
