#include "win32/toolbar_library/button_view.h"

#include "win32/com/unicode.h"

namespace zintra::win32 {

ComPtr<IDispatch> ButtonView::Create(const ComPtr<IDispatch>& button, const std::string& tag) {
  return ComPtr<IDispatch>::Attach(new ButtonView(button, tag));
}

ButtonView::ButtonView(const ComPtr<IDispatch>& button, const std::string& tag)
    : button_(button), tag_(Widen(tag)) {
  wchar_t name[] = L"Tag";
  LPOLESTR names[] = {name};
  if (FAILED(button_->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &tag_id_))) {
    tag_id_ = DISPID_UNKNOWN;
  }
}

HRESULT ButtonView::QueryInterface(REFIID iid, void** out) {
  if (!out) return E_POINTER;
  if (iid == IID_IUnknown || iid == IID_IDispatch) {
    *out = static_cast<IDispatch*>(this);
    AddRef();
    return S_OK;
  }
  // Its events and its own interfaces are the button's.
  return button_->QueryInterface(iid, out);
}

ULONG ButtonView::AddRef() { return static_cast<ULONG>(InterlockedIncrement(&refs_)); }

ULONG ButtonView::Release() {
  LONG left = InterlockedDecrement(&refs_);
  if (left == 0) delete this;
  return static_cast<ULONG>(left);
}

HRESULT ButtonView::GetTypeInfoCount(UINT* count) { return button_->GetTypeInfoCount(count); }

HRESULT ButtonView::GetTypeInfo(UINT index, LCID lcid, ITypeInfo** info) {
  return button_->GetTypeInfo(index, lcid, info);
}

HRESULT ButtonView::GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID lcid, DISPID* ids) {
  return button_->GetIDsOfNames(iid, names, count, lcid, ids);
}

HRESULT ButtonView::Invoke(DISPID id, REFIID iid, LCID lcid, WORD flags, DISPPARAMS* params,
                           VARIANT* result, EXCEPINFO* excepinfo, UINT* arg_error) {
  const bool reads_tag = id == tag_id_ && tag_id_ != DISPID_UNKNOWN &&
                         (flags & DISPATCH_PROPERTYGET) != 0 && (!params || params->cArgs == 0);
  if (!reads_tag)
    return button_->Invoke(id, iid, lcid, flags, params, result, excepinfo, arg_error);
  if (!result) return S_OK;
  VariantInit(result);
  result->vt = VT_BSTR;
  result->bstrVal = SysAllocStringLen(tag_.data(), static_cast<UINT>(tag_.size()));
  return result->bstrVal || tag_.empty() ? S_OK : E_OUTOFMEMORY;
}

}  // namespace zintra::win32
