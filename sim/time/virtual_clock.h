// VirtualClock: the simulated host's clock. Time is virtual: it stands still until
// a test or the event loop moves it, so every run is deterministic. The time of day
// is read in ticks of a configurable resolution (15.625 ms by default, the usual
// Windows timer tick), as the platform's seconds-since-midnight reading is.
#pragma once

#include <cstdint>

#include "src/host/clock.h"

namespace zintra::sim {

class VirtualClock : public Clock {
 public:
  static constexpr int64_t kMicrosPerSecond = 1'000'000;
  static constexpr int64_t kMicrosPerDay = 86'400 * kMicrosPerSecond;
  static constexpr int64_t kDefaultResolutionMicros = 15'625;

  // Starts at `start_serial` (a date serial, not before 1899-12-30).
  explicit VirtualClock(double start_serial, int64_t resolution_micros = kDefaultResolutionMicros);

  double Now() override;
  float SecondsSinceMidnight() override;

  // Moves time forward by `micros` (negative values are ignored: time never runs back).
  void Advance(int64_t micros);
  void AdvanceMs(double ms) { Advance(static_cast<int64_t>(ms * 1000.0)); }
  // Jumps forward to `micros` since the epoch; earlier values are ignored.
  void AdvanceTo(int64_t micros);
  // Moves to the given time of day, on the next day when that time has passed today.
  void AdvanceToTimeOfDay(int hour, int minute, int second, int64_t extra_micros = 0);

  int64_t micros() const { return micros_; }
  int64_t resolution_micros() const { return resolution_; }
  void set_resolution_micros(int64_t micros) { resolution_ = micros > 0 ? micros : 1; }
  // The first tick boundary at or after `micros`.
  int64_t CeilToTick(int64_t micros) const;
  // Exact date serial of the current moment (below one second).
  double ExactSerial() const;

 private:
  int64_t micros_;  // since 1899-12-30 00:00
  int64_t resolution_;
};

}  // namespace zintra::sim
