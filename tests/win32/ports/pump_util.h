// Pumps the thread's messages until a condition holds, waiting for new ones between
// rounds; gives up after `limit_ms` so that a broken timer fails instead of hanging.
#pragma once

#include <functional>

#include "win32/com/windows_api.h"
#include "win32/ports/win32_message_pump.h"

namespace zintra::win32::testing {

inline bool PumpUntil(const std::function<bool()>& done, DWORD limit_ms = 5000) {
  Win32MessagePump pump;
  const ULONGLONG give_up = GetTickCount64() + limit_ms;
  while (!done()) {
    if (GetTickCount64() > give_up) return false;
    MsgWaitForMultipleObjects(0, nullptr, FALSE, 10, QS_ALLINPUT);
    pump.DoEvents();
  }
  return true;
}

}  // namespace zintra::win32::testing
