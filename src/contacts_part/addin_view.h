// AddinView<Base>: the members of ContactsAddin (the add-in as contact tracking sees
// it) implemented over ZintraAddinApp, for a part that implements ContactsAddin or an
// interface derived from it (LoggingAddin, MonitoringAddin). The part binds it to the
// add-in in its Initialize.
//
// The add-in is held weakly. Members that must hand out a reference throw 91
// (kErrObjectNotSet) once the add-in is gone; Quitting then answers True, GetJobQueue
// and LibraryUtils nullptr, OptionalMsgBox False. Log stays valid after the add-in is
// gone (it writes through the borrowed error handling, which outlives the add-in).
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "src/addin/errors_job_log.h"
#include "src/addin/zintra_addin_app.h"
#include "src/core/z_error.h"
#include "src/host/host.h"
#include "src/outlook/library_factory.h"

namespace zintra {

template <typename Base>
class AddinView : public Base {
 public:
  const RegSettings& Settings() override { return App().RegSettings(); }
  std::shared_ptr<JobQueue> GetJobQueue() override {
    std::shared_ptr<ZintraAddinApp> app = app_.lock();
    return app ? app->GetJobQueue() : nullptr;
  }
  std::shared_ptr<Namespace> Session() override {
    std::shared_ptr<Application> ol_app = App().OLApp();
    if (!ol_app) throw ZError(kErrObjectNotSet, "Outlook has been released");
    return ol_app->Session();
  }
  std::shared_ptr<MapiUtils> LibraryUtils() override {
    std::shared_ptr<ZintraAddinApp> app = app_.lock();
    return app ? app->MAPIUtils() : nullptr;
  }
  std::shared_ptr<AutomationObject> CreateLibraryObject(int32_t kind) override {
    ZintraAddinApp& app = App();
    LibraryFactory factory(app.Host().objects, app.Errors(), app.Strings());
    return factory.CreateLibraryObject(kind);
  }
  bool Quitting() override {
    std::shared_ptr<ZintraAddinApp> app = app_.lock();
    return !app || app->Quitting();
  }
  void SetCheckLinger(std::shared_ptr<ICheckLinger> obj) override {
    if (std::shared_ptr<ZintraAddinApp> app = app_.lock()) app->SetCheckLinger(std::move(obj));
  }
  std::string GenerateKey() override { return App().GenerateKey(); }
  bool OptionalMsgBox(int32_t DialogIdx, const std::string& Message,
                      const std::string& Caption) override {
    std::shared_ptr<ZintraAddinApp> app = app_.lock();
    ZintraUtils* utils = app ? app->Utils() : nullptr;
    return utils != nullptr && utils->OptionalMsgBox(DialogIdx, Message, Caption);
  }
  const StringTable& Strings() override { return App().Strings(); }
  JobEngineLog& Log() override {
    if (!log_) throw ZError(kErrObjectNotSet, "Not bound to the add-in");
    return *log_;
  }
  double Now() override { return App().Host().clock.Now(); }
  DecisionLog& Decisions() override {
    std::shared_ptr<ZintraAddinApp> app = app_.lock();
    return app && app->Host().decisions ? *app->Host().decisions : NoDecisionLog();
  }

 protected:
  void Bind(const std::shared_ptr<ZintraAddinApp>& app) {
    if (!app) throw ZError(kErrObjectNotSet, "Object variable not set");
    app_ = app;
    log_.emplace(app->Errors());
  }
  void Unbind() { app_.reset(); }
  ZintraAddinApp& App() {
    std::shared_ptr<ZintraAddinApp> app = app_.lock();
    if (!app) throw ZError(kErrObjectNotSet, "Object variable not set");
    // The add-in owns its parts, so it outlives every call made through them.
    return *app;
  }
  std::shared_ptr<ZintraAddinApp> LockApp() const { return app_.lock(); }

 private:
  std::weak_ptr<ZintraAddinApp> app_;
  std::optional<ErrorsJobLog> log_;
};

}  // namespace zintra
