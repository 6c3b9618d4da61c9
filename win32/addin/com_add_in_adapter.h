// ComAddInAdapter: Office's COMAddIn object (the add-in instance Outlook passes to
// OnConnection) as the ComAddIn port, read late-bound by its member names ProgId,
// Description and Connect. Holds its own reference to the object; failures throw the
// ZError of the call (438 for a member the object lacks).
#pragma once

#include <string>

#include "src/host/idt_extensibility2.h"
#include "win32/com/dispatch_client.h"

namespace zintra::win32 {

class ComAddInAdapter : public ComAddIn {
 public:
  explicit ComAddInAdapter(ComPtr<IDispatch> object) : client_(std::move(object), "COMAddIn") {}

  std::string TypeName() const override { return "COMAddIn"; }
  std::string ProgId() const override;
  std::string Description() const override;
  bool Connect() const override;

 private:
  DispatchClient client_;
};

}  // namespace zintra::win32
