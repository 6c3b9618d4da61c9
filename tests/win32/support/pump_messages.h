// Pumps this thread's messages, as Outlook's message loop does, until a condition holds
// or the time is up; the tests wait on it for timers and calls from other processes.
#pragma once

#include <chrono>
#include <functional>

#include "win32/com/windows_api.h"

namespace zintra::win32::testing {

// Whether `done` held before `timeout_ms` passed; between rounds it sleeps until a
// message arrives or `slice_ms` have passed.
inline bool PumpMessagesUntil(const std::function<bool()>& done, DWORD timeout_ms, DWORD slice_ms) {
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeout_ms);
  while (true) {
    MSG msg;
    while (PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE)) {
      TranslateMessage(&msg);
      DispatchMessageW(&msg);
    }
    if (done && done()) return true;
    if (std::chrono::steady_clock::now() >= deadline) return false;
    MsgWaitForMultipleObjects(0, nullptr, FALSE, slice_ms, QS_ALLINPUT);
  }
}

}  // namespace zintra::win32::testing
