#include "sim/addin_host/sim_application.h"

#include "src/core/z_error.h"
#include "src/host/mapi_object.h"

namespace zintra::sim {

std::shared_ptr<Namespace> SimApplication::Session() {
  if (!session_) throw ZError(kMapiNotInitialized, "No profile is logged on.");
  return session_;
}

std::shared_ptr<Explorer> SimApplication::ActiveExplorer() {
  return explorers_->open.empty() ? nullptr : explorers_->open.back();
}

std::shared_ptr<Inspector> SimApplication::ActiveInspector() {
  return inspectors_->open.empty() ? nullptr : inspectors_->open.back();
}

std::shared_ptr<Item> SimApplication::CreateItem(int32_t item_type) {
  if (!item_creator_) throw ZError(kMapiNoSupport, "No profile to create items in.");
  return item_creator_(item_type);
}

}  // namespace zintra::sim
