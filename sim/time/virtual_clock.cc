#include "sim/time/virtual_clock.h"

#include <algorithm>
#include <cmath>

namespace zintra::sim {

VirtualClock::VirtualClock(double start_serial, int64_t resolution_micros)
    : micros_(start_serial > 0 ? std::llround(start_serial * static_cast<double>(kMicrosPerDay))
                               : 0),
      resolution_(resolution_micros > 0 ? resolution_micros : 1) {}

double VirtualClock::Now() {
  const int64_t whole_seconds = micros_ / kMicrosPerSecond;
  return static_cast<double>(whole_seconds) / 86'400.0;
}

float VirtualClock::SecondsSinceMidnight() {
  // The reading moves in whole ticks counted from midnight, so it is 0 at midnight.
  const int64_t of_day = micros_ % kMicrosPerDay;
  const int64_t ticked = of_day / resolution_ * resolution_;
  return static_cast<float>(static_cast<double>(ticked) / kMicrosPerSecond);
}

void VirtualClock::Advance(int64_t micros) {
  if (micros > 0) micros_ += micros;
}

void VirtualClock::AdvanceTo(int64_t micros) {
  if (micros > micros_) micros_ = micros;
}

void VirtualClock::AdvanceToTimeOfDay(int hour, int minute, int second, int64_t extra_micros) {
  const int64_t day_start = micros_ / kMicrosPerDay * kMicrosPerDay;
  int64_t target =
      day_start + (hour * 3600LL + minute * 60LL + second) * kMicrosPerSecond + extra_micros;
  if (target < micros_) target += kMicrosPerDay;
  micros_ = target;
}

int64_t VirtualClock::CeilToTick(int64_t micros) const {
  const int64_t day_start = micros / kMicrosPerDay * kMicrosPerDay;
  const int64_t of_day = micros - day_start;
  const int64_t ticks = (of_day + resolution_ - 1) / resolution_;
  return std::min(day_start + ticks * resolution_, day_start + kMicrosPerDay);
}

double VirtualClock::ExactSerial() const {
  return static_cast<double>(micros_) / static_cast<double>(kMicrosPerDay);
}

}  // namespace zintra::sim
