// KeepAliveClient: the add-in's "ZintraKeepAlive.KeepAlive", the keep-alive program's
// object in its own process. Its Initialize hands the program the Application of the
// Outlook the add-in runs in, so that the program holds that very Outlook even while
// Outlook, its last window closed, is withdrawing from the running object table. Any
// other member goes to the object as it is; failures throw as ComObject's do.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "src/core/dispatchable.h"
#include "src/host/automation_object.h"
#include "win32/outlook/com_adapter.h"

namespace zintra::win32 {

class KeepAliveClient final : public AutomationObject, public Dispatchable {
 public:
  // `outlook` answers the Application to hand over (null when there is none).
  KeepAliveClient(ComPtr<IDispatch> object, std::function<ComPtr<IDispatch>()> outlook)
      : object_(std::move(object)), outlook_(std::move(outlook)) {}
  std::string TypeName() const override { return "KeepAlive"; }
  Value Invoke(std::string_view name, const Value* arg) override;

 private:
  ComObject object_;
  std::function<ComPtr<IDispatch>()> outlook_;
};

}  // namespace zintra::win32
