// Event<Args...>: a VB WithEvents source. Connect returns a move-only Connection
// whose destruction unsubscribes. A raise walks a snapshot of the handlers, so a
// handler may connect or disconnect others (or itself) or destroy the event while
// it runs: handlers disconnected during the raise are not called afterwards, and
// handlers connected during it are first called on the next raise.
//
// A source that must subscribe upstream to raise the event (a platform adapter) may
// watch it: the watcher hears true before the first handler is added and false after
// the last one is removed. A watcher that throws on true fails that Connect.
#pragma once

#include <algorithm>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace zintra {

class [[nodiscard]] Connection {
 public:
  Connection() = default;
  explicit Connection(std::function<void()> disconnect) : disconnect_(std::move(disconnect)) {}
  Connection(Connection&& other) noexcept : disconnect_(std::exchange(other.disconnect_, {})) {}
  Connection& operator=(Connection&& other) noexcept {
    if (this != &other) {
      Disconnect();
      disconnect_ = std::exchange(other.disconnect_, {});
    }
    return *this;
  }
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;
  ~Connection() { Disconnect(); }

  void Disconnect() {
    if (auto fn = std::exchange(disconnect_, {})) fn();
  }
  bool Connected() const { return static_cast<bool>(disconnect_); }

 private:
  std::function<void()> disconnect_;
};

template <typename... Args>
class Event {
 public:
  using Handler = std::function<void(Args...)>;

  Event() = default;
  Event(const Event&) = delete;
  Event& operator=(const Event&) = delete;
  ~Event() { state_->watch = nullptr; }  // a raise in progress may outlive the event

  [[nodiscard]] Connection Connect(Handler handler) {
    if (state_->slots.empty() && state_->watch) state_->watch(true);
    auto slot = std::make_shared<Slot>(Slot{std::move(handler), true});
    state_->slots.push_back(slot);
    std::weak_ptr<State> weak_state = state_;
    std::weak_ptr<Slot> weak_slot = slot;
    return Connection([weak_state, weak_slot] {
      auto state = weak_state.lock();
      auto dead = weak_slot.lock();
      if (!state || !dead) return;
      dead->alive = false;
      auto& slots = state->slots;
      slots.erase(std::remove(slots.begin(), slots.end(), dead), slots.end());
      if (slots.empty() && state->watch) state->watch(false);
    });
  }

  // Handlers may take arguments by reference (a Cancel flag): they see the caller's object.
  template <typename... CallArgs>
  void Raise(CallArgs&&... args) const {
    if (state_->slots.empty()) return;
    std::shared_ptr<State> keep = state_;  // the event may be destroyed by a handler
    if (keep->slots.size() == 1) {         // the usual case: a snapshot of one needs no vector
      const std::shared_ptr<Slot> only = keep->slots.front();
      if (only->alive) only->handler(args...);
      return;
    }
    std::vector<std::shared_ptr<Slot>> snapshot = keep->slots;
    for (const auto& slot : snapshot) {
      if (slot->alive) slot->handler(args...);
    }
  }

  size_t HandlerCount() const { return state_->slots.size(); }

  // Replaces the watcher (see above); an empty function stops watching.
  void Watch(std::function<void(bool has_handlers)> watch) { state_->watch = std::move(watch); }

 private:
  struct Slot {
    Handler handler;
    bool alive;
  };
  struct State {
    std::vector<std::shared_ptr<Slot>> slots;
    std::function<void(bool)> watch;
  };
  std::shared_ptr<State> state_ = std::make_shared<State>();
};

}  // namespace zintra
