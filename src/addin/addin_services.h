// AddinServices: the add-in as its subsystems see it. ZintraAddinApp makes one before
// its parts and hands it to each of them; it is the one implementation of every
// subsystem's narrow view of the add-in (ContactsAddin, LoggingAddin, MonitoringAddin,
// ToolbarsAddin), over the add-in, its Host ports and the subsystem objects the parts
// register here (the tracked contacts, which the processing jobs and the toolbar's
// letters search, and the monitoring manager, whose complete scan the options page
// offers).
//
// The add-in is held weakly, and the add-in drops its services right after killing its
// parts, so that subsystems, which hold them weakly, see a vanished add-in as shut down.
// Members that must hand out a reference throw 91 (kErrObjectNotSet) once the add-in is
// gone; Quitting then answers True, GetJobQueue, LibraryUtils, Utils, Tracked and OLApp
// nullptr, OptionalMsgBox False. Log stays valid after the add-in is gone (it writes
// through the borrowed error handling, which outlives the add-in). Called on Outlook's
// thread only.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "src/addin/errors_job_log.h"
#include "src/core/event.h"
#include "src/monitoring/monitoring_addin.h"
#include "src/toolbars/toolbars_addin.h"

namespace zintra {

class Monitoring;
class TrackedContacts;
class ZintraAddinApp;

class AddinServices : public MonitoringAddin, public ToolbarsAddin {
 public:
  // Throws 91 without an add-in.
  explicit AddinServices(const std::shared_ptr<ZintraAddinApp>& app);
  // The services of `app`; throws 91 without an add-in or before it made them.
  static std::shared_ptr<AddinServices> Of(const std::shared_ptr<ZintraAddinApp>& app);

  // The subsystem objects as their parts register them; nullptr when not loaded.
  void SetTracked(std::shared_ptr<TrackedContacts> tracked) { tracked_ = std::move(tracked); }
  void SetMonitoring(std::shared_ptr<zintra::Monitoring> monitoring) {
    monitoring_ = std::move(monitoring);
  }
  // The monitoring manager (ScanAll, for the options page).
  const std::shared_ptr<zintra::Monitoring>& GetMonitoring() const { return monitoring_; }

  // --- ContactsAddin ---
  const RegSettings& Settings() override;
  std::shared_ptr<JobQueue> GetJobQueue() override;
  std::shared_ptr<Namespace> Session() override;
  std::shared_ptr<MapiUtils> LibraryUtils() override;
  std::shared_ptr<AutomationObject> CreateLibraryObject(int32_t kind) override;
  bool Quitting() override;
  void SetCheckLinger(std::shared_ptr<ICheckLinger> obj) override;
  std::string GenerateKey() override;
  bool OptionalMsgBox(int32_t DialogIdx, const std::string& Message,
                      const std::string& Caption) override;
  const StringTable& Strings() override;
  JobEngineLog& Log() override { return log_; }
  double Now() override;
  DecisionLog& Decisions() override;
  // --- LoggingAddin ---
  ZintraUtils* Utils() override;
  std::shared_ptr<TrackedContacts> Tracked() override;
  std::shared_ptr<RdoSession> RDOSession() override;
  Event<>& KillBroadcast() override;
  bool LeavingWorkForNextStart() override;
  // --- MonitoringAddin ---
  std::shared_ptr<Application> OLApp() override;
  ErrorHandling& Errors() override;
  std::shared_ptr<JobAddin> JobHost() override;
  Clock& TimeSource() override;
  MessagePump& Pump() override;
  ObjectFactory& Objects() override;
  // --- ToolbarsAddin ---
  std::shared_ptr<Folder> TrackedLogFolder(const std::shared_ptr<Folder>& contact_folder) override;
  MsgBox& Prompt() override;
  Platform& PlatformFacts() override;
  FileSystem& Files() override;
  ToolbarLibrary* ToolbarLib() override;
  Word* WordProcessor() override;

 private:
  // The add-in; throws 91 once it is gone.
  ZintraAddinApp& App();

  std::weak_ptr<ZintraAddinApp> app_;
  ErrorsJobLog log_;
  std::shared_ptr<TrackedContacts> tracked_;
  std::shared_ptr<zintra::Monitoring> monitoring_;
  // Stands in for the add-in's Kill event once the add-in is gone.
  Event<> no_kill_;
};

}  // namespace zintra
