// SimKeepAlive: the keep-alive program's object ("ZintraKeepAlive.KeepAlive"). While
// an initialised one is alive it holds Outlook's process open; its release is
// reported to the owner, which may then let the process end.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "src/core/dispatchable.h"
#include "src/host/automation_object.h"

namespace zintra::sim {

inline constexpr char kSimKeepAliveProgId[] = "ZintraKeepAlive.KeepAlive";

class SimKeepAlive : public AutomationObject, public Dispatchable {
 public:
  // on_hold(true) when Initialize starts holding Outlook, on_hold(false) when an
  // initialised object is released.
  explicit SimKeepAlive(std::function<void(bool)> on_hold) : on_hold_(std::move(on_hold)) {}
  ~SimKeepAlive() override;
  std::string TypeName() const override { return "KeepAlive"; }
  // Initialize: starts holding Outlook; any other member throws 438.
  Value Invoke(std::string_view name, const Value* arg) override;
  bool initialized() const { return initialized_; }

 private:
  std::function<void(bool)> on_hold_;
  bool initialized_ = false;
};

}  // namespace zintra::sim
