// ConnectionPoint: one source interface of a COM object of ours. It is a part of its
// container: AddRef and Release go to the container, which owns it. Sinks are held
// (one reference each) from Advise to Unadvise; cookies start at 1 and are never
// reused within the point.
#pragma once

#include <utility>
#include <vector>

#include "win32/com/com_ptr.h"
#include "win32/com/windows_api.h"

namespace zintra::win32 {

// COM objects are destroyed through Release, never through a base pointer.
#ifdef __GNUC__
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"
#endif
class ConnectionPoint final : public IConnectionPoint {
 public:
  ConnectionPoint(IConnectionPointContainer* container, const IID& iid)
      : container_(container), iid_(iid) {}

  const IID& Iid() const { return iid_; }
  // The sinks now, in the order advised (a copy: calling them may change the list).
  std::vector<ComPtr<IDispatch>> Sinks() const;
  size_t Count() const { return sinks_.size(); }
  // Drops every sink (the container is going away).
  void Clear() { sinks_.clear(); }

  STDMETHODIMP QueryInterface(REFIID iid, void** out) override;
  STDMETHODIMP_(ULONG) AddRef() override { return container_->AddRef(); }
  STDMETHODIMP_(ULONG) Release() override { return container_->Release(); }

  STDMETHODIMP GetConnectionInterface(IID* iid) override;
  STDMETHODIMP GetConnectionPointContainer(IConnectionPointContainer** out) override;
  STDMETHODIMP Advise(IUnknown* sink, DWORD* cookie) override;
  STDMETHODIMP Unadvise(DWORD cookie) override;
  STDMETHODIMP EnumConnections(IEnumConnections** out) override;

 private:
  IConnectionPointContainer* container_;
  IID iid_;
  std::vector<std::pair<DWORD, ComPtr<IDispatch>>> sinks_;
  DWORD next_cookie_ = 1;
};
#ifdef __GNUC__
#pragma GCC diagnostic pop
#endif

}  // namespace zintra::win32
