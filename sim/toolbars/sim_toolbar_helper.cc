#include "sim/toolbars/sim_toolbar_helper.h"

#include "src/core/z_error.h"

namespace zintra::sim {

std::shared_ptr<ToolbarHelper> SimToolbarLibrary::CreateToolbarHelper() {
  if (unavailable) throw ZError(429, "ActiveX component can't create object");
  auto helper = std::make_shared<SimToolbarHelper>();
  ++created_;
  last_ = helper;
  return helper;
}

}  // namespace zintra::sim
