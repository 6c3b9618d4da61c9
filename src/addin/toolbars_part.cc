// Toolbars as the add-in's part (not created with NeverLoadToolbars): holds the toolbar
// until Kill and hands it the add-in's services. Initialize raises the toolbar's errors;
// Kill never throws.
#include <memory>

#include "src/addin/addin_part.h"
#include "src/addin/addin_services.h"
#include "src/addin/zintra_addin_app.h"
#include "src/core/event.h"
#include "src/toolbars/toolbars.h"

namespace zintra {
namespace {

class ToolbarsPart : public AddinPart {
 public:
  void Initialize(const std::shared_ptr<ZintraAddinApp>& AddinApp) override {
    std::shared_ptr<AddinServices> services = AddinServices::Of(AddinApp);
    toolbars_ = std::make_shared<Toolbars>();
    addin_kill_ = AddinApp->Kill.Connect([this] {
      if (toolbars_) toolbars_->Addin_Kill();
    });
    toolbars_->Initialize(services);
  }
  void Kill() override {
    addin_kill_.Disconnect();
    if (toolbars_) toolbars_->Kill();
    toolbars_.reset();
  }
  void Addin_RegSettingsChanged(const RegSettings& OldSettings) override {
    if (toolbars_) toolbars_->Addin_RegSettingsChanged(OldSettings);
  }

 private:
  std::shared_ptr<Toolbars> toolbars_;
  Connection addin_kill_;
};

}  // namespace

AddinPartFactory ToolbarsPartFactory() {
  return []() -> std::shared_ptr<AddinPart> { return std::make_shared<ToolbarsPart>(); };
}

}  // namespace zintra
