// EventSink: an IDispatch object a connection point calls; each Invoke hands the event's
// DISPID and arguments to a handler. EventArgs reads them in declared order and writes
// by-reference results (a Cancel flag) back to the source's variable.
//
// Advise: one RAII connection — FindConnectionPoint(iid), Advise, cookie; destruction
// unadvises, and a source that has died or refuses is tolerated (nothing to undo then).
// The sink is cut from its handler before unadvising, so a source that keeps a
// reference to it afterwards calls nothing of ours.
//
// No exception leaves Invoke: a handler's exception is caught, passed to the error
// callback (the adapter logs it) and reported to the source as a failed call.
//
// Sinks alive are counted: a source may hold one after it was unadvised (while it
// raises an event, or a leaky one for longer), and the DLL must stay loaded until the
// last reference is gone.
#pragma once

#include <functional>
#include <string>

#include "src/core/value.h"
#include "src/core/z_error.h"
#include "win32/com/com_ptr.h"
#include "win32/com/windows_api.h"

namespace zintra::win32 {

class EventArgs {
 public:
  explicit EventArgs(DISPPARAMS* params) : params_(params) {}
  size_t Count() const { return params_ ? params_->cArgs : 0; }
  // The i-th argument as the event declares it (0-based); throws 450 when absent.
  VARIANT& At(size_t i) const;
  Value ValueAt(size_t i) const;
  ComPtr<IDispatch> ObjectAt(size_t i) const;
  // Reads and writes a by-reference Boolean (Cancel); a by-value one reads only, and
  // writing it throws 13.
  bool BoolAt(size_t i) const;
  void SetBoolAt(size_t i, bool value) const;
  // Whether argument `i` is passed by reference, so that a write reaches the source.
  bool IsByRef(size_t i) const;

 private:
  DISPPARAMS* params_;
};

using EventHandler = std::function<void(DISPID id, const EventArgs& args)>;
using EventErrorHandler = std::function<void(DISPID id, const ZError& error)>;

// COM objects are destroyed by Release, never through a base pointer.
#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"
#endif
class EventSink final : public IDispatch {
 public:
  // The sink answers QueryInterface for IUnknown, IDispatch and `source_iid`.
  static ComPtr<EventSink> Create(const IID& source_iid, EventHandler handler,
                                  EventErrorHandler on_error = {});
  // Drops the handlers; later calls are accepted and ignored.
  void Detach();
  // Sinks alive in this module now.
  static long LiveCount();

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override;
  ULONG STDMETHODCALLTYPE AddRef() override;
  ULONG STDMETHODCALLTYPE Release() override;
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override;
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo** info) override;
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override;
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* params,
                                   VARIANT* result, EXCEPINFO* info, UINT* arg_err) override;

 private:
  EventSink(const IID& source_iid, EventHandler handler, EventErrorHandler on_error);
  ~EventSink();

  LONG refs_ = 1;
  IID source_iid_;
  EventHandler handler_;
  EventErrorHandler on_error_;
};
#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif

class Advise {
 public:
  Advise() = default;
  // Connects `sink` to `source`'s connection point `iid`; throws ZError (the platform's
  // number, 430 when the source has no connection points) naming `what`.
  Advise(const ComPtr<IUnknown>& source, const IID& iid, ComPtr<EventSink> sink,
         const std::string& what);
  Advise(Advise&& other) noexcept;
  Advise& operator=(Advise&& other) noexcept;
  Advise(const Advise&) = delete;
  Advise& operator=(const Advise&) = delete;
  ~Advise() { Reset(); }

  void Reset();
  bool Connected() const { return static_cast<bool>(point_); }

 private:
  ComPtr<IConnectionPoint> point_;
  ComPtr<EventSink> sink_;
  DWORD cookie_ = 0;
};

}  // namespace zintra::win32
