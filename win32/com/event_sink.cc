#include "win32/com/event_sink.h"

#include <atomic>
#include <utility>

#include "win32/com/com_error.h"
#include "win32/com/variant.h"

namespace zintra::win32 {
namespace {

std::atomic<long> live_sinks{0};

}  // namespace

VARIANT& EventArgs::At(size_t i) const {
  if (i >= Count()) {
    throw ZError(kErrWrongArgumentCount, "The event has no argument " + std::to_string(i + 1));
  }
  return params_->rgvarg[Count() - 1 - i];  // DISPPARAMS holds them last first
}

Value EventArgs::ValueAt(size_t i) const { return ValueOf(At(i)); }

ComPtr<IDispatch> EventArgs::ObjectAt(size_t i) const { return ObjectOf(At(i)); }

bool EventArgs::BoolAt(size_t i) const { return ValueOf(At(i)).ToBool(); }

bool EventArgs::IsByRef(size_t i) const {
  const VARIANT& v = At(i);
  return v.vt == (VT_BYREF | VT_BOOL) || (v.vt == (VT_BYREF | VT_VARIANT) && v.pvarVal);
}

void EventArgs::SetBoolAt(size_t i, bool value) const {
  VARIANT& v = At(i);
  VARIANT_BOOL b = value ? VARIANT_TRUE : VARIANT_FALSE;
  if (v.vt == (VT_BYREF | VT_BOOL)) {
    *v.pboolVal = b;
  } else if (v.vt == (VT_BYREF | VT_VARIANT) && v.pvarVal) {
    VariantClear(v.pvarVal);
    v.pvarVal->vt = VT_BOOL;
    v.pvarVal->boolVal = b;
  } else {
    throw ZError(kErrTypeMismatch,
                 "The event's argument " + std::to_string(i + 1) + " is not passed by reference");
  }
}

ComPtr<EventSink> EventSink::Create(const IID& source_iid, EventHandler handler,
                                    EventErrorHandler on_error) {
  return ComPtr<EventSink>::Attach(
      new EventSink(source_iid, std::move(handler), std::move(on_error)));
}

EventSink::EventSink(const IID& source_iid, EventHandler handler, EventErrorHandler on_error)
    : source_iid_(source_iid), handler_(std::move(handler)), on_error_(std::move(on_error)) {
  ++live_sinks;
}

EventSink::~EventSink() { --live_sinks; }

long EventSink::LiveCount() { return live_sinks; }

void EventSink::Detach() {
  handler_ = {};
  on_error_ = {};
}

HRESULT EventSink::QueryInterface(REFIID iid, void** out) {
  if (!out) return E_POINTER;
  if (IsEqualIID(iid, IID_IUnknown) || IsEqualIID(iid, IID_IDispatch) ||
      IsEqualIID(iid, source_iid_)) {
    *out = static_cast<IDispatch*>(this);
    AddRef();
    return S_OK;
  }
  *out = nullptr;
  return E_NOINTERFACE;
}

ULONG EventSink::AddRef() { return static_cast<ULONG>(InterlockedIncrement(&refs_)); }

ULONG EventSink::Release() {
  LONG left = InterlockedDecrement(&refs_);
  if (left == 0) delete this;
  return static_cast<ULONG>(left);
}

HRESULT EventSink::GetTypeInfoCount(UINT* count) {
  if (count) *count = 0;
  return S_OK;
}

HRESULT EventSink::GetTypeInfo(UINT, LCID, ITypeInfo** info) {
  if (info) *info = nullptr;
  return E_NOTIMPL;
}

HRESULT EventSink::GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) {
  return DISP_E_UNKNOWNNAME;  // sources call by DISPID
}

HRESULT EventSink::Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* params, VARIANT* result,
                          EXCEPINFO* info, UINT*) {
  if (result) VariantInit(result);
  if (!handler_) return S_OK;
  ComPtr<EventSink> keep(this);     // a handler may drop the last outside reference
  EventHandler handler = handler_;  // and may Detach while running
  return GuardCall("EventSink.Invoke", info, [&]() -> HRESULT {
    try {
      handler(id, EventArgs(params));
    } catch (const ZError& e) {
      if (on_error_) on_error_(id, e);
      throw;
    } catch (const std::exception& e) {
      if (on_error_) on_error_(id, ZError(kErrInvalidCall, e.what(), "EventSink.Invoke"));
      throw;
    }
    return S_OK;
  });
}

Advise::Advise(const ComPtr<IUnknown>& source, const IID& iid, ComPtr<EventSink> sink,
               const std::string& what) {
  if (!source) throw ZError(kErrObjectNotSet, "Object variable not set", what);
  ComPtr<IConnectionPointContainer> container = source.As<IConnectionPointContainer>();
  if (!container) throw ZError(kErrNoInterface, "The object raises no events", what);
  ComPtr<IConnectionPoint> point;
  CheckHr(container->FindConnectionPoint(iid, point.Put()), what);
  DWORD cookie = 0;
  CheckHr(point->Advise(static_cast<IDispatch*>(sink.Get()), &cookie), what);
  point_ = std::move(point);
  sink_ = std::move(sink);
  cookie_ = cookie;
}

Advise::Advise(Advise&& other) noexcept
    : point_(std::move(other.point_)),
      sink_(std::move(other.sink_)),
      cookie_(std::exchange(other.cookie_, 0)) {}

Advise& Advise::operator=(Advise&& other) noexcept {
  if (this != &other) {
    Reset();
    point_ = std::move(other.point_);
    sink_ = std::move(other.sink_);
    cookie_ = std::exchange(other.cookie_, 0);
  }
  return *this;
}

void Advise::Reset() {
  if (sink_) sink_->Detach();
  // A dead or unwilling source fails the Unadvise; the connection is gone either way.
  if (point_) point_->Unadvise(cookie_);
  point_.Reset();
  sink_.Reset();
  cookie_ = 0;
}

}  // namespace zintra::win32
