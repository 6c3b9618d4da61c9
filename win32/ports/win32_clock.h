// Win32Clock: the local time of the machine (GetLocalTime), as a date serial in whole
// seconds and as seconds since midnight in the system clock's own steps.
#pragma once

#include "src/host/clock.h"

namespace zintra::win32 {

class Win32Clock : public Clock {
 public:
  double Now() override;
  float SecondsSinceMidnight() override;
};

}  // namespace zintra::win32
