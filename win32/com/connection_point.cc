#include "win32/com/connection_point.h"

namespace zintra::win32 {

std::vector<ComPtr<IDispatch>> ConnectionPoint::Sinks() const {
  std::vector<ComPtr<IDispatch>> result;
  result.reserve(sinks_.size());
  for (const auto& [cookie, sink] : sinks_) result.push_back(sink);
  return result;
}

STDMETHODIMP ConnectionPoint::QueryInterface(REFIID iid, void** out) {
  if (!out) return E_POINTER;
  if (IsEqualIID(iid, IID_IUnknown) || IsEqualIID(iid, IID_IConnectionPoint)) {
    *out = static_cast<IConnectionPoint*>(this);
    AddRef();
    return S_OK;
  }
  *out = nullptr;
  return E_NOINTERFACE;
}

STDMETHODIMP ConnectionPoint::GetConnectionInterface(IID* iid) {
  if (!iid) return E_POINTER;
  *iid = iid_;
  return S_OK;
}

STDMETHODIMP ConnectionPoint::GetConnectionPointContainer(IConnectionPointContainer** out) {
  if (!out) return E_POINTER;
  *out = container_;
  container_->AddRef();
  return S_OK;
}

STDMETHODIMP ConnectionPoint::Advise(IUnknown* sink, DWORD* cookie) {
  if (!sink || !cookie) return E_POINTER;
  *cookie = 0;
  // A sink answers its dispinterface's IID, or at least IDispatch: events are invoked
  // by DISPID either way.
  ComPtr<IDispatch> dispatch;
  if (FAILED(sink->QueryInterface(iid_, reinterpret_cast<void**>(dispatch.Put()))) &&
      FAILED(sink->QueryInterface(IID_IDispatch, reinterpret_cast<void**>(dispatch.Put())))) {
    return CONNECT_E_CANNOTCONNECT;
  }
  *cookie = next_cookie_++;
  sinks_.emplace_back(*cookie, std::move(dispatch));
  return S_OK;
}

STDMETHODIMP ConnectionPoint::Unadvise(DWORD cookie) {
  for (auto it = sinks_.begin(); it != sinks_.end(); ++it) {
    if (it->first == cookie) {
      // Released after the list is consistent: the sink's destructor may call back.
      ComPtr<IDispatch> sink = std::move(it->second);
      sinks_.erase(it);
      return S_OK;
    }
  }
  return CONNECT_E_NOCONNECTION;
}

STDMETHODIMP ConnectionPoint::EnumConnections(IEnumConnections** out) {
  if (out) *out = nullptr;
  return E_NOTIMPL;
}

}  // namespace zintra::win32
