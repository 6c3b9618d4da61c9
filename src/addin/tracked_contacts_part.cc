// TrackedContacts as the add-in's part: holds the tracked contacts until Kill, hands them
// the add-in's services and registers them there. Initialize raises TrackedContacts'
// errors; Kill never throws.
#include <memory>

#include "src/addin/addin_part.h"
#include "src/addin/addin_services.h"
#include "src/addin/zintra_addin_app.h"
#include "src/contacts/tracked_contacts.h"
#include "src/core/event.h"

namespace zintra {
namespace {

// First among the parts: the processing jobs and the toolbar's letters find the tracked
// folders through the services.
class TrackedContactsPart : public AddinPart {
 public:
  void Initialize(const std::shared_ptr<ZintraAddinApp>& AddinApp) override {
    std::shared_ptr<AddinServices> services = AddinServices::Of(AddinApp);
    services_ = services;
    tracked_ = std::make_shared<TrackedContacts>();
    services->SetTracked(tracked_);
    addin_kill_ = AddinApp->Kill.Connect([this] {
      if (tracked_) tracked_->Addin_Kill();
    });
    tracked_->Initialize(services);
  }
  void Kill() override {
    addin_kill_.Disconnect();
    if (tracked_) tracked_->Kill();
    tracked_.reset();
    if (std::shared_ptr<AddinServices> services = services_.lock()) services->SetTracked(nullptr);
  }
  void Addin_RegSettingsChanged(const RegSettings& OldSettings) override {
    if (tracked_) tracked_->Addin_RegSettingsChanged(OldSettings);
  }

 private:
  std::weak_ptr<AddinServices> services_;
  std::shared_ptr<TrackedContacts> tracked_;
  Connection addin_kill_;
};

}  // namespace

AddinPartFactory TrackedContactsPartFactory() {
  return []() -> std::shared_ptr<AddinPart> { return std::make_shared<TrackedContactsPart>(); };
}

}  // namespace zintra
