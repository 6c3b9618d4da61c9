// LazyAdvise: one connection point of an adapter's object, advised only while some
// port Event fed by it has handlers. An item read in a folder scan costs no connection;
// the first handler of any watched event advises, the last one leaving unadvises.
//
// The sink's handler receives (DISPID, arguments) and raises the port events; an
// exception from it is reported through ReportEventError under `what` and returned
// to the source as a failed call. Owned by the adapter, which must outlive it
// (declare it after the Events it watches, so it is destroyed first).
#pragma once

#include <string>

#include "src/core/event.h"
#include "win32/com/dispatch_client.h"
#include "win32/com/event_sink.h"

namespace zintra::win32 {

class LazyAdvise {
 public:
  LazyAdvise(const DispatchClient& source, const IID& iid, EventHandler handler, std::string what);
  LazyAdvise(const LazyAdvise&) = delete;
  LazyAdvise& operator=(const LazyAdvise&) = delete;
  ~LazyAdvise();

  template <typename... Args>
  void Watch(Event<Args...>& event) {
    event.Watch([this](bool on) { on ? Up() : Down(); });
  }
  bool Connected() const { return advise_.Connected(); }

 private:
  void Up();
  void Down();

  const DispatchClient& source_;
  IID iid_;
  EventHandler handler_;
  std::string what_;
  int users_ = 0;
  Advise advise_;
};

// The object's default source interface when it describes one (IProvideClassInfo2),
// else `fallback`.
IID DefaultSourceOf(IDispatch* object, const IID& fallback);

}  // namespace zintra::win32
