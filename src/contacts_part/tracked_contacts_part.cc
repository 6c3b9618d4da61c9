#include "src/contacts_part/tracked_contacts_part.h"

namespace zintra {

void TrackedContactsPart::Initialize(const std::shared_ptr<ZintraAddinApp>& AddinApp) {
  Bind(AddinApp);
  tracked_ = std::make_shared<TrackedContacts>();
  addin_kill_ = AddinApp->Kill.Connect([this] {
    if (tracked_) tracked_->Addin_Kill();
  });
  tracked_->Initialize(shared_from_this());
}

void TrackedContactsPart::Kill() {
  addin_kill_.Disconnect();
  if (tracked_) tracked_->Kill();
  tracked_.reset();
  Unbind();
}

void TrackedContactsPart::Addin_RegSettingsChanged(const RegSettings& OldSettings) {
  if (tracked_) tracked_->Addin_RegSettingsChanged(OldSettings);
}

AddinPartFactory TrackedContactsPartFactory() {
  return []() -> std::shared_ptr<AddinPart> { return std::make_shared<TrackedContactsPart>(); };
}

std::shared_ptr<TrackedContacts> TrackedContactsOf(const ZintraAddinApp& app) {
  auto part = std::dynamic_pointer_cast<TrackedContactsPart>(app.TrackedContacts());
  return part ? part->Tracked() : nullptr;
}

}  // namespace zintra
