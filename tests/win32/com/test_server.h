// TestServer: a small automation object of the tests' own, with a fixed DISPID table,
// one outgoing interface (kTestEvents) and a count of name lookups, to prove
// DispatchClient, EventSink and Advise against a real IDispatch.
#pragma once

#include <string>
#include <vector>

#include "win32/com/com_ptr.h"
#include "win32/com/variant.h"
#include "win32/com/windows_api.h"

namespace zintra::win32::testing {

// {5A1B2C3D-0000-4000-8000-00000000E001}
inline constexpr IID kTestEvents = {
    0x5A1B2C3D, 0x0000, 0x4000, {0x80, 0x00, 0x00, 0x00, 0x00, 0x00, 0xE0, 0x01}};

// COM objects are destroyed by Release, never through a base pointer.
#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"
#endif
class TestServer final : public IDispatch,
                         public IConnectionPointContainer,
                         public IConnectionPoint {
 public:
  static ComPtr<TestServer> Create() { return ComPtr<TestServer>::Attach(new TestServer); }

  // Members: Name (get/put), Add(a, b), Fail() raises 1234 "it broke", Toggle(ByRef
  // flag), Child (an object), Child set by reference.
  int name_lookups = 0;
  std::wstring name = L"server";
  ComPtr<IDispatch> child;
  bool refuse_unadvise = false;

  // Raises an event on every advised sink; the arguments are given last first.
  HRESULT Fire(DISPID id, std::vector<VARIANT> args_last_first);
  size_t SinkCount() const;
  LONG Refs() const { return refs_; }

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override;
  ULONG STDMETHODCALLTYPE AddRef() override { return static_cast<ULONG>(++refs_); }
  ULONG STDMETHODCALLTYPE Release() override;
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* n) override {
    *n = 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID,
                                          DISPID* ids) override;
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* params,
                                   VARIANT* result, EXCEPINFO* info, UINT*) override;
  HRESULT STDMETHODCALLTYPE EnumConnectionPoints(IEnumConnectionPoints**) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE FindConnectionPoint(REFIID iid, IConnectionPoint** out) override;
  HRESULT STDMETHODCALLTYPE GetConnectionInterface(IID* iid) override {
    *iid = kTestEvents;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetConnectionPointContainer(IConnectionPointContainer** out) override;
  HRESULT STDMETHODCALLTYPE Advise(IUnknown* sink, DWORD* cookie) override;
  HRESULT STDMETHODCALLTYPE Unadvise(DWORD cookie) override;
  HRESULT STDMETHODCALLTYPE EnumConnections(IEnumConnections**) override { return E_NOTIMPL; }

 private:
  TestServer() = default;
  LONG refs_ = 1;
  std::vector<std::pair<DWORD, ComPtr<IDispatch>>> sinks_;
  DWORD next_cookie_ = 1;
};
#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif

}  // namespace zintra::win32::testing
