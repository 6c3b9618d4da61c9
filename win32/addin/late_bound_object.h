// LateBoundObject: the IUnknown and IDispatch plumbing our own late-bound COM classes
// share. The object starts with one reference and deletes itself when the last goes
// (the count is interlocked: COM may call from any thread); IUnknown and IDispatch
// answer the first interface; there is no type library (GetTypeInfoCount answers 0);
// member names resolve through the class's DispatchTable. The class writes Invoke.
//
// A class may hide either hook (the base must be its friend when they are private):
//   void* OtherInterface(REFIID iid)  a further interface it answers, or nullptr
//   void Destroy()                    deletes it when its last reference goes
#pragma once

#include "win32/addin/dispatch_table.h"
#include "win32/com/windows_api.h"

namespace zintra::win32 {

// COM interfaces have no virtual destructor; objects delete themselves in Release.
#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"
#endif
template <typename Derived, typename Primary, typename... Others>
class LateBoundObject : public Primary, public Others... {
 public:
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override {
    if (!out) return E_POINTER;
    *out = iid == IID_IUnknown || iid == IID_IDispatch ? static_cast<Primary*>(this)
                                                       : Self().OtherInterface(iid);
    if (!*out) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override {
    return static_cast<ULONG>(InterlockedIncrement(&refs_));
  }
  ULONG STDMETHODCALLTYPE Release() override {
    LONG left = InterlockedDecrement(&refs_);
    if (left == 0) Self().Destroy();
    return static_cast<ULONG>(left);
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
    if (!count) return E_POINTER;
    *count = 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT /*index*/, LCID /*lcid*/, ITypeInfo** info) override {
    if (info) *info = nullptr;
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID /*iid*/, LPOLESTR* names, UINT count,
                                          LCID /*lcid*/, DISPID* ids) override {
    return members_->GetIDsOfNames(names, count, ids);
  }

 protected:
  explicit LateBoundObject(const DispatchTable& members) : members_(&members) {}
  ~LateBoundObject() = default;

  void* OtherInterface(REFIID /*iid*/) { return nullptr; }
  void Destroy() { delete static_cast<Derived*>(this); }

 private:
  Derived& Self() { return static_cast<Derived&>(*this); }

  LONG refs_ = 1;
  const DispatchTable* members_;
};
#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif

}  // namespace zintra::win32
