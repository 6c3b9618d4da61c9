// SimObjectFactory: the classes registered on the simulated machine, created by
// ProgID. A test (or the simulated Outlook) registers a creator per ProgID; an unknown
// ProgID, or a creator that throws, fails as COM does (429 unless the creator threw its
// own ZError). Every request is recorded in order, whether it succeeded or not.
//
// SimKeepAlive: the keep-alive program's object ("ZintraKeepAlive.KeepAlive"). While
// an initialised one is alive it holds Outlook's process open; its release is
// reported to the owner, which may then let the process end.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "src/core/dispatchable.h"
#include "src/host/object_factory.h"

namespace zintra::sim {

class SimObjectFactory : public ObjectFactory {
 public:
  using Creator = std::function<std::shared_ptr<AutomationObject>()>;

  std::shared_ptr<AutomationObject> CreateObject(const std::string& prog_id) override;

  // Registers (or replaces) a class; a null creator unregisters it.
  void Register(const std::string& prog_id, Creator creator);
  bool IsRegistered(const std::string& prog_id) const;
  const std::vector<std::string>& Requests() const { return requests_; }

 private:
  std::map<std::string, Creator> classes_;  // by lower-case ProgID
  std::vector<std::string> requests_;
};

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
