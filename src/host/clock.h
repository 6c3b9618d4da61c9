// Clock: the platform's reading of the current time. Called on the user-interface
// thread only; never fails.
#pragma once

namespace zintra {

class Clock {
 public:
  virtual ~Clock() = default;
  // The current date and time as a date serial, in whole seconds (VB's Now).
  virtual double Now() = 0;
  // Seconds since midnight (VB's Timer). The reading moves in the platform's timer
  // ticks (typically 10 to 16 ms), so two readings close together are often equal,
  // and it falls back to 0 when midnight passes.
  virtual float SecondsSinceMidnight() = 0;
};

}  // namespace zintra
