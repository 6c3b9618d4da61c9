#include "src/contacts_part/contacts_part.h"

#include "src/addin/zintra_addin_app.h"
#include "src/core/z_error.h"
#include "src/host/host.h"
#include "src/host/outlook_application.h"
#include "src/logging/zintra_utils.h"
#include "src/ui/optional_messages.h"

namespace zintra {

void ContactsPart::Initialize(const std::shared_ptr<ZintraAddinApp>& AddinApp) {
  if (!AddinApp) throw ZError(kErrObjectNotSet);
  app_ = AddinApp;
  log_.emplace(AddinApp->Errors());
  library_.emplace(AddinApp->Host().objects, AddinApp->Errors(), AddinApp->Strings());
  tracked_ = std::make_shared<zintra::TrackedContacts>();
  addin_kill_ = AddinApp->Kill.Connect([this] {
    if (tracked_) tracked_->Addin_Kill();
  });
  tracked_->Initialize(shared_from_this());
}

void ContactsPart::Kill() {
  addin_kill_.Disconnect();
  if (tracked_) tracked_->Kill();
  tracked_.reset();
  app_.reset();
}

void ContactsPart::Addin_RegSettingsChanged(const RegSettings& OldSettings) {
  if (tracked_) tracked_->Addin_RegSettingsChanged(OldSettings);
}

ZintraAddinApp& ContactsPart::App() {
  auto app = app_.lock();
  if (!app) throw ZError(kErrObjectNotSet);
  // The add-in owns this part, so it outlives every call made through it.
  return *app;
}

const RegSettings& ContactsPart::Settings() { return App().RegSettings(); }
std::shared_ptr<JobQueue> ContactsPart::GetJobQueue() { return App().GetJobQueue(); }

std::shared_ptr<Namespace> ContactsPart::Session() {
  auto ol_app = App().OLApp();
  if (!ol_app) throw ZError(kErrObjectNotSet);
  return ol_app->Session();
}

std::shared_ptr<MapiUtils> ContactsPart::LibraryUtils() { return App().MAPIUtils(); }

std::shared_ptr<AutomationObject> ContactsPart::CreateLibraryObject(int32_t kind) {
  if (!library_) throw ZError(kErrObjectNotSet);
  return library_->CreateLibraryObject(kind);
}

bool ContactsPart::Quitting() {
  auto app = app_.lock();
  return !app || app->Quitting();
}

void ContactsPart::SetCheckLinger(std::shared_ptr<ICheckLinger> obj) {
  App().SetCheckLinger(std::move(obj));
}

std::string ContactsPart::GenerateKey() { return App().GenerateKey(); }

bool ContactsPart::OptionalMsgBox(int32_t DialogIdx, const std::string& Message,
                                  const std::string& Caption) {
  auto app = app_.lock();
  if (!app || !app->OptionalMsgs()) return false;
  try {
    return app->OptionalMsgs()->OptionalMsgBox(DialogIdx, Message, Caption);
  } catch (const ZError&) {
    return false;  // a message the user never saw is not worth failing the caller for
  }
}

const StringTable& ContactsPart::Strings() { return App().Strings(); }

JobLog& ContactsPart::Log() {
  if (!log_) throw ZError(kErrObjectNotSet);
  return *log_;
}

double ContactsPart::Now() { return App().Host().clock.Now(); }

AddinPartFactory ContactsPartFactory() {
  return []() -> std::shared_ptr<AddinPart> { return std::make_shared<ContactsPart>(); };
}

}  // namespace zintra
