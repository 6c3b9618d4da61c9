#include "sim/addin_host/sim_keep_alive.h"

#include "src/core/text.h"
#include "src/core/z_error.h"

namespace zintra::sim {

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
