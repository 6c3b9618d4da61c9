#include "src/monitoring_part/monitoring_part.h"

#include "src/contacts_part/tracked_contacts_part.h"

namespace zintra {

void MonitoringPart::Initialize(const std::shared_ptr<ZintraAddinApp>& AddinApp) {
  Bind(AddinApp);
  monitoring_ = std::make_shared<zintra::Monitoring>();
  monitoring_->Initialize(shared_from_this());
}

void MonitoringPart::Kill() {
  if (monitoring_) monitoring_->Kill();
  monitoring_.reset();
  Unbind();
}

void MonitoringPart::StopMonitoring() {
  if (monitoring_) monitoring_->StopMonitoring();
}

void MonitoringPart::Addin_RegSettingsChanged(const RegSettings& OldSettings) {
  if (monitoring_) monitoring_->Addin_RegSettingsChanged(&OldSettings);
}

ZintraUtils* MonitoringPart::Utils() {
  std::shared_ptr<ZintraAddinApp> app = LockApp();
  return app ? app->Utils() : nullptr;
}

std::shared_ptr<TrackedContacts> MonitoringPart::Tracked() {
  std::shared_ptr<ZintraAddinApp> app = LockApp();
  return app ? TrackedContactsOf(*app) : nullptr;
}

std::shared_ptr<RdoSession> MonitoringPart::RDOSession() {
  std::shared_ptr<RdoSession> session = App().RDOSession();
  if (!session) throw ZError(kErrObjectNotSet, "The library session is gone");
  return session;
}

bool MonitoringPart::LeavingWorkForNextStart() {
  std::shared_ptr<ZintraAddinApp> app = LockApp();
  return app && app->LeavingWorkForNextStart();
}

Event<>& MonitoringPart::KillBroadcast() {
  std::shared_ptr<ZintraAddinApp> app = LockApp();
  return app ? app->Kill : no_kill_;
}

std::shared_ptr<Application> MonitoringPart::OLApp() {
  std::shared_ptr<ZintraAddinApp> app = LockApp();
  return app ? app->OLApp() : nullptr;
}

AddinPartFactory MonitoringPartFactory() {
  return []() -> std::shared_ptr<AddinPart> { return std::make_shared<MonitoringPart>(); };
}

}  // namespace zintra
