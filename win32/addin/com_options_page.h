// ComOptionsPage: the options page control (created by its ProgID from
// ZintraControls.ocx) as the add-in's OptionsPage port. Initialize hands the control an
// OptionsPageLink to the add-in through the control's late-bound Initialize; Outlook's
// PropertyPages.Add then receives the control's own IDispatch (ComAdapter's object).
#pragma once

#include <memory>
#include <string>

#include "src/addin/options_page.h"
#include "win32/outlook/com_adapter.h"

namespace zintra::win32 {

class ComOptionsPage final : public OptionsPage, public ComAdapter {
 public:
  explicit ComOptionsPage(ComPtr<IDispatch> control)
      : ComAdapter(DispatchClient(std::move(control), "OutlookPropertiesPage")) {}
  std::string TypeName() const override { return "OutlookPropertiesPage"; }
  void Initialize(const std::shared_ptr<ZintraAddinApp>& AddinApp) override;
};

}  // namespace zintra::win32
