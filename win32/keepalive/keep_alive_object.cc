#include "win32/keepalive/keep_alive_object.h"

#include "win32/keepalive/keep_alive_ids.h"

namespace zintra::win32 {
namespace {

// EXCEPINFO for a failure the caller should log: our source, a text, the HRESULT.
HRESULT Fail(EXCEPINFO* excepinfo, HRESULT hr, const wchar_t* text) {
  if (excepinfo) {
    *excepinfo = EXCEPINFO{};
    excepinfo->bstrSource = SysAllocString(kKeepAliveProgIdW);
    excepinfo->bstrDescription = SysAllocString(text);
    excepinfo->scode = hr;
  }
  return DISP_E_EXCEPTION;
}

// The object an argument holds, looking through a by-reference variant.
IUnknown* ObjectIn(const VARIANT& arg) {
  const VARIANT* v = &arg;
  if (V_VT(v) == (VT_VARIANT | VT_BYREF) && V_VARIANTREF(v)) v = V_VARIANTREF(v);
  switch (V_VT(v)) {
    case VT_DISPATCH:
      return V_DISPATCH(v);
    case VT_UNKNOWN:
      return V_UNKNOWN(v);
    case VT_DISPATCH | VT_BYREF:
      return V_DISPATCHREF(v) ? *V_DISPATCHREF(v) : nullptr;
    case VT_UNKNOWN | VT_BYREF:
      return V_UNKNOWNREF(v) ? *V_UNKNOWNREF(v) : nullptr;
    default:
      return nullptr;
  }
}

// "Initialize" (any letter case) is the only member; it has no named arguments.
const DispatchTable kMembers{{L"Initialize", KeepAliveObject::kDispIdInitialize}};

bool IsMissing(const VARIANT& arg) {
  return V_VT(&arg) == VT_EMPTY ||
         (V_VT(&arg) == VT_ERROR && V_ERROR(&arg) == DISP_E_PARAMNOTFOUND);
}

}  // namespace

KeepAliveObject::KeepAliveObject(std::function<void()> on_hold, std::function<void()> on_release)
    : LateBoundObject(kMembers), on_hold_(std::move(on_hold)), on_release_(std::move(on_release)) {}

void KeepAliveObject::Destroy() {
  outlook_.Reset();  // Outlook may end now
  if (on_release_) on_release_();
  delete this;
}

STDMETHODIMP KeepAliveObject::Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* params,
                                     VARIANT* result, EXCEPINFO* excepinfo, UINT* arg_error) {
  if (id != kDispIdInitialize) return DISP_E_MEMBERNOTFOUND;
  if (!(flags & (DISPATCH_METHOD | DISPATCH_PROPERTYGET))) return DISP_E_MEMBERNOTFOUND;
  if (params && params->cNamedArgs > 0) return DISP_E_NONAMEDARGS;
  if (params && params->cArgs > 1) return DISP_E_BADPARAMCOUNT;
  if (result) VariantInit(result);
  HRESULT hr = Initialize(params, excepinfo);
  if (hr == DISP_E_TYPEMISMATCH && arg_error) *arg_error = 0;
  return hr;
}

HRESULT KeepAliveObject::Initialize(DISPPARAMS* params, EXCEPINFO* excepinfo) {
  if (outlook_) return S_OK;
  ComPtr<IDispatch> outlook;
  if (params && params->cArgs == 1 && !IsMissing(params->rgvarg[0])) {
    IUnknown* given = ObjectIn(params->rgvarg[0]);
    if (!given) return DISP_E_TYPEMISMATCH;
    HRESULT hr = given->QueryInterface(IID_IDispatch, reinterpret_cast<void**>(outlook.Put()));
    if (FAILED(hr)) return DISP_E_TYPEMISMATCH;
  } else {
    // Outlook publishes its Application in the running object table of the user's
    // session; one Outlook runs per session.
    ComPtr<IUnknown> running;
    HRESULT hr = GetActiveObject(kClsidOutlookApplication, nullptr, running.Put());
    if (FAILED(hr)) return Fail(excepinfo, hr, L"Outlook is not running");
    hr = running->QueryInterface(IID_IDispatch, reinterpret_cast<void**>(outlook.Put()));
    if (FAILED(hr)) return Fail(excepinfo, hr, L"Outlook's Application has no automation");
  }
  outlook_ = outlook;
  if (on_hold_) on_hold_();
  return S_OK;
}

}  // namespace zintra::win32
