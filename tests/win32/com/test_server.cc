#include "tests/win32/com/test_server.h"

#include <cwchar>

namespace zintra::win32::testing {
namespace {

const wchar_t* const kNames[] = {L"Name", L"Add", L"Fail", L"Toggle", L"Child"};

}  // namespace

HRESULT TestServer::QueryInterface(REFIID iid, void** out) {
  if (IsEqualIID(iid, IID_IUnknown) || IsEqualIID(iid, IID_IDispatch)) {
    *out = static_cast<IDispatch*>(this);
  } else if (IsEqualIID(iid, IID_IConnectionPointContainer)) {
    *out = static_cast<IConnectionPointContainer*>(this);
  } else if (IsEqualIID(iid, IID_IConnectionPoint)) {
    *out = static_cast<IConnectionPoint*>(this);
  } else {
    *out = nullptr;
    return E_NOINTERFACE;
  }
  AddRef();
  return S_OK;
}

ULONG TestServer::Release() {
  LONG left = --refs_;
  if (left == 0) delete this;
  return static_cast<ULONG>(left);
}

HRESULT TestServer::GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) {
  ++name_lookups;
  for (UINT n = 0; n < count; ++n) ids[n] = DISPID_UNKNOWN;
  for (DISPID id = 0; id < static_cast<DISPID>(std::size(kNames)); ++id) {
    if (_wcsicmp(names[0], kNames[id]) == 0) {
      ids[0] = id + 1;
      return S_OK;
    }
  }
  return DISP_E_UNKNOWNNAME;
}

HRESULT TestServer::Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* p, VARIANT* result,
                           EXCEPINFO* info, UINT*) {
  switch (id) {
    case 1:  // Name
      if (flags & DISPATCH_PROPERTYPUT) {
        if (p->cNamedArgs != 1 || p->rgdispidNamedArgs[0] != DISPID_PROPERTYPUT) {
          return DISP_E_PARAMNOTFOUND;
        }
        if (p->rgvarg[0].vt != VT_BSTR) return DISP_E_TYPEMISMATCH;
        name = p->rgvarg[0].bstrVal;
        return S_OK;
      }
      result->vt = VT_BSTR;
      result->bstrVal = SysAllocString(name.c_str());
      return S_OK;
    case 2:  // Add(a, b): arguments arrive last first
      if (p->cArgs != 2) return DISP_E_BADPARAMCOUNT;
      result->vt = VT_I4;
      result->lVal = p->rgvarg[1].lVal * 10 + p->rgvarg[0].lVal;
      return S_OK;
    case 3:  // Fail
      *info = EXCEPINFO{};
      info->wCode = 1234;
      info->bstrDescription = SysAllocString(L"it broke");
      info->bstrSource = SysAllocString(L"TestServer");
      return DISP_E_EXCEPTION;
    case 4: {  // Toggle(ByRef flag)
      VARIANT& v = p->rgvarg[0];
      if (v.vt != (VT_BYREF | VT_VARIANT)) return DISP_E_TYPEMISMATCH;
      bool was = v.pvarVal->vt == VT_BOOL && v.pvarVal->boolVal;
      VariantClear(v.pvarVal);
      v.pvarVal->vt = VT_BOOL;
      v.pvarVal->boolVal = was ? VARIANT_FALSE : VARIANT_TRUE;
      return S_OK;
    }
    case 5:  // Child
      if (flags & DISPATCH_PROPERTYPUTREF) {
        child = ObjectOf(p->rgvarg[0]);
        return S_OK;
      }
      if (flags & DISPATCH_PROPERTYPUT) return DISP_E_MEMBERNOTFOUND;  // Set is required
      result->vt = VT_DISPATCH;
      result->pdispVal = child.Get();
      if (child) child->AddRef();
      return S_OK;
    default:
      return DISP_E_MEMBERNOTFOUND;
  }
}

HRESULT TestServer::FindConnectionPoint(REFIID iid, IConnectionPoint** out) {
  if (!IsEqualIID(iid, kTestEvents)) {
    *out = nullptr;
    return CONNECT_E_NOCONNECTION;
  }
  *out = static_cast<IConnectionPoint*>(this);
  AddRef();
  return S_OK;
}

HRESULT TestServer::GetConnectionPointContainer(IConnectionPointContainer** out) {
  *out = static_cast<IConnectionPointContainer*>(this);
  AddRef();
  return S_OK;
}

HRESULT TestServer::Advise(IUnknown* sink, DWORD* cookie) {
  ComPtr<IDispatch> dispatch;
  if (FAILED(sink->QueryInterface(kTestEvents, reinterpret_cast<void**>(dispatch.Put())))) {
    return CONNECT_E_CANNOTCONNECT;
  }
  *cookie = next_cookie_++;
  sinks_.emplace_back(*cookie, dispatch);
  return S_OK;
}

HRESULT TestServer::Unadvise(DWORD cookie) {
  if (refuse_unadvise) return RPC_E_DISCONNECTED;
  for (auto it = sinks_.begin(); it != sinks_.end(); ++it) {
    if (it->first == cookie) {
      sinks_.erase(it);
      return S_OK;
    }
  }
  return CONNECT_E_NOCONNECTION;
}

size_t TestServer::SinkCount() const { return sinks_.size(); }

HRESULT TestServer::Fire(DISPID id, std::vector<VARIANT> args) {
  DISPPARAMS params{args.data(), nullptr, static_cast<UINT>(args.size()), 0};
  HRESULT last = S_OK;
  auto sinks = sinks_;  // a sink may unadvise while it runs
  for (auto& [cookie, sink] : sinks) {
    EXCEPINFO info{};
    HRESULT hr = sink->Invoke(id, IID_NULL, 0, DISPATCH_METHOD, &params, nullptr, &info, nullptr);
    SysFreeString(info.bstrDescription);
    SysFreeString(info.bstrSource);
    if (FAILED(hr)) last = hr;
  }
  return last;
}

}  // namespace zintra::win32::testing
