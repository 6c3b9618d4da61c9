// Win32TimerFactory: window timers (SetTimer) on one message-only window of the
// creating thread. They tick when that thread pumps messages: Outlook's own loop, or
// MessagePump::DoEvents. A timer never ticks again while its own Tick handler runs (not
// even from DoEvents inside it); destroying a timer, even from its own Tick handler,
// kills it at once. Timers and the factory may be destroyed in either order: the window
// lives until the last of them is gone. An exception thrown by a Tick handler is
// reported through ReportFailure and the timer keeps running.
#pragma once

#include <memory>

#include "src/host/timer.h"

namespace zintra::win32 {

class TimerWindow;

class Win32TimerFactory : public TimerFactory {
 public:
  // Creates the window; throws ZError when the platform refuses.
  Win32TimerFactory();
  ~Win32TimerFactory() override;
  Win32TimerFactory(const Win32TimerFactory&) = delete;
  Win32TimerFactory& operator=(const Win32TimerFactory&) = delete;

  std::unique_ptr<Timer> CreateTimer() override;

 private:
  std::shared_ptr<TimerWindow> window_;
};

}  // namespace zintra::win32
