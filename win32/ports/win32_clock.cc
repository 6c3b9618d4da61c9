#include "win32/ports/win32_clock.h"

#include "src/core/date.h"
#include "win32/com/windows_api.h"

namespace zintra::win32 {

double Win32Clock::Now() {
  SYSTEMTIME now{};
  GetLocalTime(&now);
  return MakeDate(now.wYear, now.wMonth, now.wDay, now.wHour, now.wMinute, now.wSecond);
}

float Win32Clock::SecondsSinceMidnight() {
  SYSTEMTIME now{};
  GetLocalTime(&now);
  // The system time advances in ticks of the platform timer, so this reading does too.
  const double seconds =
      now.wHour * 3600.0 + now.wMinute * 60.0 + now.wSecond + now.wMilliseconds / 1000.0;
  return static_cast<float>(seconds);
}

}  // namespace zintra::win32
