#include "tests/win32/addin/failing_dispatch.h"

#include "win32/com/bstr.h"

namespace zintra::win32::testing {

HRESULT FailingDispatch::QueryInterface(REFIID iid, void** out) {
  if (iid == IID_IUnknown || iid == IID_IDispatch) {
    *out = static_cast<IDispatch*>(this);
    AddRef();
    return S_OK;
  }
  *out = nullptr;
  return E_NOINTERFACE;
}

ULONG FailingDispatch::Release() {
  long left = --refs_;
  if (left == 0) delete this;
  return static_cast<ULONG>(left);
}

HRESULT FailingDispatch::GetTypeInfoCount(UINT* count) {
  *count = 0;
  return S_OK;
}

HRESULT FailingDispatch::GetTypeInfo(UINT, LCID, ITypeInfo** info) {
  *info = nullptr;
  return E_NOTIMPL;
}

HRESULT FailingDispatch::GetIDsOfNames(REFIID, LPOLESTR*, UINT count, LCID, DISPID* ids) {
  // Every name is known, so that the failure comes from the call itself.
  for (UINT i = 0; i < count; ++i) ids[i] = static_cast<DISPID>(100 + i);
  return S_OK;
}

HRESULT FailingDispatch::Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT* result,
                                EXCEPINFO* info, UINT*) {
  if (result) VariantInit(result);
  if (info) {
    *info = EXCEPINFO{};
    info->wCode = 440;
    info->bstrDescription = Bstr("The server is shutting down").Detach();
  }
  return DISP_E_EXCEPTION;
}

}  // namespace zintra::win32::testing
