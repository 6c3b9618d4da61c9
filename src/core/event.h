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

namespace event_detail {
// A handler's place in an Event, which a Connection removes it from.
class SlotBase {
 public:
  virtual void Detach() = 0;

 protected:
  ~SlotBase() = default;
};
}  // namespace event_detail

class [[nodiscard]] Connection {
 public:
  Connection() = default;
  explicit Connection(std::function<void()> disconnect) : disconnect_(std::move(disconnect)) {}
  // An Event's handler, held weakly: the event may go first.
  explicit Connection(std::weak_ptr<event_detail::SlotBase> slot)
      : slot_(std::move(slot)), has_slot_(true) {}
  Connection(Connection&& other) noexcept
      : disconnect_(std::exchange(other.disconnect_, {})),
        slot_(std::exchange(other.slot_, {})),
        has_slot_(std::exchange(other.has_slot_, false)) {}
  Connection& operator=(Connection&& other) noexcept {
    if (this != &other) {
      Disconnect();
      disconnect_ = std::exchange(other.disconnect_, {});
      slot_ = std::exchange(other.slot_, {});
      has_slot_ = std::exchange(other.has_slot_, false);
    }
    return *this;
  }
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;
  ~Connection() { Disconnect(); }

  void Disconnect() {
    if (auto fn = std::exchange(disconnect_, {})) fn();
    if (std::exchange(has_slot_, false)) {
      // Held while it detaches: removing it from its event may drop the last owner.
      if (auto slot = std::exchange(slot_, {}).lock()) slot->Detach();
    }
  }
  bool Connected() const { return static_cast<bool>(disconnect_) || has_slot_; }

 private:
  std::function<void()> disconnect_;
  std::weak_ptr<event_detail::SlotBase> slot_;
  bool has_slot_ = false;
};

template <typename... Args>
class Event {
 public:
  using Handler = std::function<void(Args...)>;

  Event() = default;
  Event(const Event&) = delete;
  Event& operator=(const Event&) = delete;
  ~Event() {
    if (state_) state_->watch = nullptr;  // a raise in progress may outlive the event
  }

  [[nodiscard]] Connection Connect(Handler handler) {
    State& state = Shared();
    if (state.slots.empty() && state.watch) state.watch(true);
    auto slot = std::make_shared<Slot>(std::move(handler), state_);
    state.slots.push_back(slot);
    return Connection(std::weak_ptr<event_detail::SlotBase>(slot));
  }

  // Handlers may take arguments by reference (a Cancel flag): they see the caller's object.
  template <typename... CallArgs>
  void Raise(CallArgs&&... args) const {
    if (!state_ || state_->slots.empty()) return;
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

  size_t HandlerCount() const { return state_ ? state_->slots.size() : 0; }

  // Replaces the watcher (see above); an empty function stops watching.
  void Watch(std::function<void(bool has_handlers)> watch) { Shared().watch = std::move(watch); }

 private:
  struct State;
  struct Slot final : event_detail::SlotBase {
    Slot(Handler h, const std::shared_ptr<State>& s) : handler(std::move(h)), state(s) {}
    void Detach() override {
      std::shared_ptr<State> owner = state.lock();
      if (!owner) return;
      alive = false;
      std::erase_if(owner->slots,
                    [this](const std::shared_ptr<Slot>& s) { return s.get() == this; });
      if (owner->slots.empty() && owner->watch) owner->watch(false);
    }
    Handler handler;
    bool alive = true;
    std::weak_ptr<State> state;
  };
  struct State {
    std::vector<std::shared_ptr<Slot>> slots;
    std::function<void(bool)> watch;
  };
  // The handlers and the watcher, made when the first of them comes: most events of
  // short-lived objects are never connected.
  State& Shared() {
    if (!state_) state_ = std::make_shared<State>();
    return *state_;
  }

  std::shared_ptr<State> state_;
};

}  // namespace zintra
