#include "win32/ports/win32_timer_factory.h"

#include <algorithm>
#include <map>
#include <utility>

#include "win32/ports/failure_log.h"
#include "win32/ports/message_window.h"

namespace zintra::win32 {

class Win32Timer;

// What the window knows of one timer; outlives the timer while its Tick runs.
struct TimerSlot {
  Win32Timer* timer = nullptr;  // null once the timer is destroyed
  bool in_tick = false;
};

// The message-only window and the timers on it, by timer id.
class TimerWindow {
 public:
  TimerWindow()
      : window_([this](UINT message, WPARAM wparam, LPARAM, LRESULT* result) {
          if (message != WM_TIMER) return false;
          OnTimer(static_cast<UINT_PTR>(wparam));
          *result = 0;
          return true;
        }) {}

  HWND hwnd() const { return window_.hwnd(); }
  UINT_PTR Add(std::shared_ptr<TimerSlot> slot) {
    UINT_PTR id = next_id_++;
    slots_[id] = std::move(slot);
    return id;
  }
  void Remove(UINT_PTR id) { slots_.erase(id); }

 private:
  void OnTimer(UINT_PTR id);

  std::map<UINT_PTR, std::shared_ptr<TimerSlot>> slots_;
  UINT_PTR next_id_ = 1;
  MessageWindow window_;  // last: destroyed first, so no message reaches a dead map
};

class Win32Timer : public Timer {
 public:
  explicit Win32Timer(std::shared_ptr<TimerWindow> window)
      : window_(std::move(window)), slot_(std::make_shared<TimerSlot>()) {
    slot_->timer = this;
    id_ = window_->Add(slot_);
  }
  ~Win32Timer() override {
    Kill();
    slot_->timer = nullptr;
    window_->Remove(id_);
  }

  int32_t Interval() const override { return interval_; }
  void SetInterval(int32_t milliseconds) override {
    interval_ = std::max<int32_t>(milliseconds, 0);
    if (enabled_) Restart();
  }
  bool Enabled() const override { return enabled_; }
  void SetEnabled(bool enabled) override {
    if (enabled == enabled_) return;
    enabled_ = enabled;
    if (enabled_) {
      Restart();
    } else {
      Kill();
    }
  }

  // Called by the window: raises Tick unless this timer's Tick is already running.
  // `slot` keeps the bookkeeping alive when a handler destroys the timer.
  static void Fire(const std::shared_ptr<TimerSlot>& slot) {
    if (slot->timer == nullptr || slot->in_tick) return;
    Win32Timer* timer = slot->timer;
    if (!timer->enabled_ || timer->interval_ == 0) return;  // a message already queued
    slot->in_tick = true;
    try {
      timer->Tick.Raise();
    } catch (...) {
      ReportCurrentException("Timer tick");
    }
    slot->in_tick = false;
  }

 private:
  // SetTimer with the id in use replaces the old timer, so each restart is a fresh interval.
  void Restart() {
    Kill();
    if (interval_ == 0) return;
    if (SetTimer(window_->hwnd(), id_, static_cast<UINT>(interval_), nullptr) == 0) {
      ReportFailure("Timer", "SetTimer failed with error " + std::to_string(GetLastError()));
      return;
    }
    armed_ = true;
  }
  void Kill() {
    if (armed_) KillTimer(window_->hwnd(), id_);
    armed_ = false;
  }

  std::shared_ptr<TimerWindow> window_;
  std::shared_ptr<TimerSlot> slot_;
  UINT_PTR id_ = 0;
  int32_t interval_ = 0;
  bool enabled_ = false;
  bool armed_ = false;
};

void TimerWindow::OnTimer(UINT_PTR id) {
  auto it = slots_.find(id);
  if (it == slots_.end()) return;
  std::shared_ptr<TimerSlot> slot = it->second;
  Win32Timer::Fire(slot);
}

Win32TimerFactory::Win32TimerFactory() : window_(std::make_shared<TimerWindow>()) {}

Win32TimerFactory::~Win32TimerFactory() = default;

std::unique_ptr<Timer> Win32TimerFactory::CreateTimer() {
  return std::make_unique<Win32Timer>(window_);
}

}  // namespace zintra::win32
