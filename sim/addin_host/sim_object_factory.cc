#include "sim/addin_host/sim_object_factory.h"

#include <utility>

#include "src/core/text.h"
#include "src/core/z_error.h"

namespace zintra::sim {

std::shared_ptr<AutomationObject> SimObjectFactory::CreateObject(const std::string& prog_id) {
  requests_.push_back(prog_id);
  auto it = classes_.find(text::LCase(prog_id));
  if (it == classes_.end()) {
    throw ZError(kErrCannotCreateObject, "ActiveX component can't create object");
  }
  std::shared_ptr<AutomationObject> object;
  try {
    object = it->second();
  } catch (const ZError&) {
    throw;
  } catch (...) {
    throw ZError(kErrCannotCreateObject, "ActiveX component can't create object");
  }
  if (!object) throw ZError(kErrCannotCreateObject, "ActiveX component can't create object");
  return object;
}

void SimObjectFactory::Register(const std::string& prog_id, Creator creator) {
  if (creator) {
    classes_[text::LCase(prog_id)] = std::move(creator);
  } else {
    classes_.erase(text::LCase(prog_id));
  }
}

bool SimObjectFactory::IsRegistered(const std::string& prog_id) const {
  return classes_.count(text::LCase(prog_id)) > 0;
}

SimKeepAlive::~SimKeepAlive() {
  if (initialized_ && on_hold_) on_hold_(false);
}

Value SimKeepAlive::Invoke(std::string_view name, const Value* /*arg*/) {
  if (!text::EqualsNoCase(std::string(name), "Initialize")) {
    throw ZError(kErrNoSuchMember, "Object doesn't support this property or method");
  }
  if (!initialized_) {
    initialized_ = true;
    if (on_hold_) on_hold_(true);
  }
  return Value{};
}

}  // namespace zintra::sim
