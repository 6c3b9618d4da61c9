// EventLoop: the simulated host's message loop on a VirtualClock. It makes the
// timers (TimerFactory) and is the message pump (DoEvents). Nothing happens on its
// own: a test lets idle time pass with AdvanceBy or RunUntilIdle, and timers fire
// in order as virtual time reaches them, on the clock's tick boundaries as window
// timers do (a 10 ms timer on a 15.625 ms clock fires every 15.625 ms). Work done
// inside a handler takes no virtual time unless the handler moves the clock.
//
// A timer never fires again while its own Tick handler runs (not even from DoEvents
// inside it). Timers and the loop may be destroyed in any order; a timer destroyed
// from its own Tick handler stops at once. An exception thrown by a handler leaves
// the loop through the call that fired it.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>

#include "sim/time/virtual_clock.h"
#include "src/host/message_pump.h"
#include "src/host/timer.h"

namespace zintra::sim {

class EventLoop : public TimerFactory, public MessagePump {
 public:
  explicit EventLoop(VirtualClock& clock);
  ~EventLoop() override;
  EventLoop(const EventLoop&) = delete;
  EventLoop& operator=(const EventLoop&) = delete;

  std::unique_ptr<Timer> CreateTimer() override;

  // Runs the messages waiting when called, then every timer already due.
  void DoEvents() override;

  // A window message (a click, a repaint) that the loop delivers at the next
  // DoEvents, AdvanceBy or RunUntilIdle.
  void Post(std::function<void()> message);

  // Lets `micros` of idle time pass, firing timers as they come due.
  void AdvanceBy(int64_t micros);
  void AdvanceByMs(double ms) { AdvanceBy(static_cast<int64_t>(ms * 1000.0)); }
  // Runs messages and timers until no timer is enabled and no message waits.
  // Returns false when `limit_micros` of virtual time passed first.
  bool RunUntilIdle(int64_t limit_micros = 3600 * VirtualClock::kMicrosPerSecond);

  VirtualClock& clock() { return clock_; }
  int64_t do_events_count() const { return do_events_count_; }
  int64_t ticks_fired() const { return ticks_fired_; }
  int EnabledTimerCount() const;

 private:
  class SimTimer;
  friend class SimTimer;

  void RunPosted();
  // The enabled timer that fires first, not later than `until`; nullptr if none.
  SimTimer* NextDue(int64_t until) const;
  void Fire(SimTimer* timer);

  VirtualClock& clock_;
  std::map<uint64_t, SimTimer*> timers_;  // by creation order
  uint64_t next_id_ = 0;
  std::deque<std::function<void()>> posted_;
  int64_t do_events_count_ = 0;
  int64_t ticks_fired_ = 0;
  std::shared_ptr<EventLoop*> self_;  // lets timers outliving the loop notice its end
};

}  // namespace zintra::sim
