// Timer: a window timer (VB's Timer control). While enabled with a non-zero
// interval it raises Tick every Interval milliseconds, between other window
// messages on the user-interface thread; a tick never interrupts running code
// except inside MessagePump::DoEvents. Enabling a disabled timer starts a fresh
// interval; enabling an enabled one changes nothing. The owner of the Timer object
// owns the timer: destroying it stops the ticks, even from inside a Tick handler.
#pragma once

#include <cstdint>
#include <memory>

#include "src/core/event.h"

namespace zintra {

class Timer {
 public:
  virtual ~Timer() = default;
  virtual int32_t Interval() const = 0;
  virtual void SetInterval(int32_t milliseconds) = 0;  // 0 stops the ticks
  virtual bool Enabled() const = 0;
  virtual void SetEnabled(bool enabled) = 0;

  Event<> Tick;
};

// Creates timers; each form that needs a timer control asks for its own.
class TimerFactory {
 public:
  virtual ~TimerFactory() = default;
  virtual std::unique_ptr<Timer> CreateTimer() = 0;
};

}  // namespace zintra
