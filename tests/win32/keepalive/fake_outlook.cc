#include "tests/win32/keepalive/fake_outlook.h"

namespace zintra::win32::testing {

FakeOutlook::~FakeOutlook() { Revoke(); }

HRESULT FakeOutlook::Publish() {
  return RegisterActiveObject(static_cast<IDispatch*>(this), kOutlookApplicationClsid,
                              ACTIVEOBJECT_WEAK, &cookie_);
}

void FakeOutlook::Revoke() {
  if (cookie_ != 0) RevokeActiveObject(cookie_, nullptr);
  cookie_ = 0;
}

STDMETHODIMP FakeOutlook::QueryInterface(REFIID iid, void** out) {
  if (!out) return E_POINTER;
  if (IsEqualIID(iid, IID_IUnknown) || IsEqualIID(iid, IID_IDispatch)) {
    *out = static_cast<IDispatch*>(this);
  } else if (IsEqualIID(iid, IID_IExternalConnection)) {
    *out = static_cast<IExternalConnection*>(this);
  } else {
    *out = nullptr;
    return E_NOINTERFACE;
  }
  AddRef();
  return S_OK;
}

STDMETHODIMP FakeOutlook::GetTypeInfoCount(UINT* count) {
  if (!count) return E_POINTER;
  *count = 0;
  return S_OK;
}

STDMETHODIMP_(DWORD) FakeOutlook::AddConnection(DWORD type, DWORD) {
  if (type & EXTCONN_STRONG) ++strong_;
  return strong_;
}

STDMETHODIMP_(DWORD) FakeOutlook::ReleaseConnection(DWORD type, DWORD, BOOL) {
  if ((type & EXTCONN_STRONG) && strong_ > 0) --strong_;
  return strong_;
}

}  // namespace zintra::win32::testing
