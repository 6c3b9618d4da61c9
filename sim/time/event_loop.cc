#include "sim/time/event_loop.h"

#include <algorithm>
#include <cstdint>
#include <utility>
#include <vector>

namespace zintra::sim {

class EventLoop::SimTimer : public Timer {
 public:
  SimTimer(std::shared_ptr<EventLoop*> loop, uint64_t id) : loop_(std::move(loop)), id_(id) {}
  ~SimTimer() override {
    if (*loop_) (*loop_)->timers_.erase(id_);
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
    if (enabled_) Restart();
  }

  bool Armed() const { return enabled_ && interval_ > 0 && !in_tick_; }
  int64_t FireTime() const { return (*loop_)->clock_.CeilToTick(due_); }
  uint64_t id() const { return id_; }

 private:
  friend class EventLoop;

  void Restart() {
    ++generation_;
    if (*loop_ == nullptr) return;
    due_ = (*loop_)->clock_.micros() + int64_t{interval_} * 1000;
  }

  std::shared_ptr<EventLoop*> loop_;
  uint64_t id_;
  int32_t interval_ = 0;
  bool enabled_ = false;
  bool in_tick_ = false;
  int64_t due_ = 0;
  uint64_t generation_ = 0;
};

EventLoop::EventLoop(VirtualClock& clock)
    : clock_(clock), self_(std::make_shared<EventLoop*>(this)) {}

EventLoop::~EventLoop() { *self_ = nullptr; }

std::unique_ptr<Timer> EventLoop::CreateTimer() {
  auto timer = std::make_unique<SimTimer>(self_, next_id_++);
  timers_[timer->id()] = timer.get();
  return timer;
}

void EventLoop::Post(std::function<void()> message) { posted_.push_back(std::move(message)); }

void EventLoop::RunPosted() {
  // Only what waits now: a message posted by a handler waits for the next pass.
  size_t count = posted_.size();
  while (count-- > 0 && !posted_.empty()) {
    auto message = std::move(posted_.front());
    posted_.pop_front();
    message();
  }
}

EventLoop::SimTimer* EventLoop::NextDue(int64_t until) const {
  SimTimer* best = nullptr;
  int64_t best_time = 0;
  for (const auto& [id, timer] : timers_) {
    if (!timer->Armed()) continue;
    const int64_t at = timer->FireTime();
    if (at > until) continue;
    if (best == nullptr || at < best_time) {
      best = timer;
      best_time = at;
    }
  }
  return best;
}

void EventLoop::Fire(SimTimer* timer) {
  const uint64_t id = timer->id();
  const uint64_t generation = timer->generation_;
  const int64_t fired_at = std::max(timer->FireTime(), clock_.micros());
  clock_.AdvanceTo(fired_at);
  timer->in_tick_ = true;
  ++ticks_fired_;
  timer->Tick.Raise();
  // The handler may have destroyed the timer, or the loop itself.
  if (*self_ == nullptr) return;
  auto it = timers_.find(id);
  if (it == timers_.end()) return;
  timer->in_tick_ = false;
  if (timer->enabled_ && timer->generation_ == generation) {
    // As with window timers, the next interval counts from this tick, so ticks never
    // pile up and a short interval fires at most once per clock tick.
    timer->due_ = fired_at + int64_t{timer->interval_} * 1000;
  }
}

void EventLoop::DoEvents() {
  ++do_events_count_;
  RunPosted();
  std::vector<uint64_t> due;
  for (const auto& [id, timer] : timers_) {
    if (timer->Armed() && timer->FireTime() <= clock_.micros()) due.push_back(id);
  }
  for (uint64_t id : due) {
    auto it = timers_.find(id);
    if (it != timers_.end() && it->second->Armed() && it->second->FireTime() <= clock_.micros()) {
      Fire(it->second);
    }
  }
}

void EventLoop::AdvanceBy(int64_t micros) {
  const int64_t target = clock_.micros() + std::max<int64_t>(micros, 0);
  for (;;) {
    RunPosted();
    SimTimer* next = NextDue(target);
    if (next == nullptr) break;
    Fire(next);
  }
  clock_.AdvanceTo(target);
  RunPosted();
}

bool EventLoop::RunUntilIdle(int64_t limit_micros) {
  const int64_t deadline = clock_.micros() + std::max<int64_t>(limit_micros, 0);
  for (;;) {
    RunPosted();
    SimTimer* next = NextDue(INT64_MAX);
    if (next == nullptr) {
      if (posted_.empty()) return true;
      continue;
    }
    if (next->FireTime() > deadline) {
      clock_.AdvanceTo(deadline);
      return false;
    }
    Fire(next);
  }
}

int EventLoop::EnabledTimerCount() const {
  int count = 0;
  for (const auto& [id, timer] : timers_) count += timer->Armed() ? 1 : 0;
  return count;
}

}  // namespace zintra::sim
