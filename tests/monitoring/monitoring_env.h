// Folder monitoring over the simulated host (SimWorld: an Exchange mailbox, the
// library's classes, the real error handling over a recording log, the real settings)
// with ZintraUtils, JobQueue (asynchronous, on the event loop) and TrackedContacts, and
// an add-in object that ties them together the way the add-in's services do for its
// monitoring part. Also used by the folder-scan benchmark.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "src/contacts/tracked_contacts.h"
#include "src/core/date.h"
#include "src/core/event.h"
#include "src/errors/cached_error.h"
#include "src/jobs/job_addin.h"
#include "src/jobs/job_queue.h"
#include "src/logging/zintra_utils.h"
#include "src/monitoring/monitored_folder.h"
#include "src/monitoring/monitoring.h"
#include "src/monitoring/monitoring_addin.h"
#include "tests/support/sim_world.h"

namespace zintra::monitoring_test {

using testing_support::SimWorld;

class MonitoringEnv;

class TestMonitoringAddin : public MonitoringAddin,
                            public JobAddin,
                            public std::enable_shared_from_this<TestMonitoringAddin> {
 public:
  explicit TestMonitoringAddin(MonitoringEnv& env) : env_(env) {}

  const RegSettings& Settings() override;
  std::shared_ptr<JobQueue> GetJobQueue() override;
  std::shared_ptr<Namespace> Session() override;
  std::shared_ptr<MapiUtils> LibraryUtils() override;
  std::shared_ptr<AutomationObject> CreateLibraryObject(int32_t kind) override;
  bool Quitting() override { return quitting; }
  void SetCheckLinger(std::shared_ptr<ICheckLinger> obj) override;
  std::string GenerateKey() override;
  bool OptionalMsgBox(int32_t DialogIdx, const std::string& Message,
                      const std::string& Caption) override {
    messages.push_back(std::to_string(DialogIdx) + "|" + Caption + "|" + Message);
    return true;
  }
  const StringTable& Strings() override;
  JobEngineLog& Log() override;
  double Now() override;
  ZintraUtils* Utils() override;
  std::shared_ptr<TrackedContacts> Tracked() override;
  std::shared_ptr<RdoSession> RDOSession() override;
  Event<>& KillBroadcast() override { return kill; }
  std::shared_ptr<Application> OLApp() override;
  ErrorHandling& Errors() override;
  std::shared_ptr<JobAddin> JobHost() override { return shared_from_this(); }
  Clock& TimeSource() override;
  MessagePump& Pump() override;
  ObjectFactory& Objects() override;

  JobQueueSettings QueueSettings() override;
  bool Outlook12OrHigher() override { return true; }
  void TouchOutlook() override {}
  void Shutdown() override {}

  Event<> kill;
  bool quitting = false;
  std::vector<std::string> messages;  // "dialog|caption|text"

 private:
  MonitoringEnv& env_;
};

class MonitoringEnv : public SimWorld {
 public:
  MonitoringEnv() {
    settings.ProcessingDelay = 0;
    settings.ScanInbox = false;
  }
  ~MonitoringEnv() { Stop(); }

  // Starts the queue, ZintraUtils, the tracked contacts and the manager.
  void Start(bool with_monitoring = true) {
    utils.Connect({app, &settings, nullptr});
    utils.SetLibrary(mapi_utils, rdo);
    queue = std::make_shared<JobQueue>(QueueHost());
    queue->Initialize(addin);
    tracked = std::make_shared<TrackedContacts>();
    tracked->Initialize(addin);
    if (with_monitoring) {
      monitoring = std::make_shared<Monitoring>();
      monitoring->Initialize(addin);
    }
  }
  // The add-in's shut-down order: flush, abandon, Kill broadcast, kills, check.
  void Stop() {
    if (!queue) return;
    addin->quitting = true;
    if (monitoring) monitoring->StopMonitoring();
    queue->Flush(false);
    queue->Abandon();
    addin->kill.Raise();
    if (monitoring) monitoring->Kill();
    tracked->Kill();
    queue->Kill();
    for (auto& check : lingers) check->CheckLingeringRefs();
    lingers.clear();
    utils.Kill();
    queue.reset();
  }
  void Run() { loop.RunUntilIdle(); }

  std::shared_ptr<Folder> Default(int32_t type) { return FolderOf(builder.Default(type)); }
  // A received mail in `folder` created at `when` (a date serial).
  std::shared_ptr<sim::MessageRecord> Mail(const std::string& subject, double when,
                                           std::shared_ptr<sim::FolderRecord> folder = nullptr) {
    return builder.MailFrom(sim::ProfileBuilder::Smtp("Ann Lee", "ann@fabrikam.com"),
                            {subject, "", when}, std::move(folder));
  }
  void MarkLogged(const std::shared_ptr<sim::MessageRecord>& record) {
    auto item = ItemOf(record);
    utils.SetUserProperty(item->UserProperties(), kPropZintraLogged, kOlYesNo, Value(true), false);
    utils.SaveItem(item);
  }

  // A folder set (contact folder and journal) tracked from the next Start; returns the
  // contact folder.
  std::shared_ptr<sim::FolderRecord> AddFolderSet(const std::string& name) {
    auto contacts = builder.ContactFolder(name);
    auto journal = builder.Folder(name + " Journal", kOlJournalItem);
    auto add = [this](StringList& entries, StringList& stores,
                      const std::shared_ptr<sim::FolderRecord>& record) {
      entries.Add(record ? profile.EntryIdOf(*record) : std::string());
      stores.Add(record ? profile.StoreIdOf(*record->store) : std::string());
    };
    add(settings.ContactFolderEntryIDs, settings.ContactFolderStoreIDs, contacts);
    add(settings.JournalFolderEntryIDs, settings.JournalFolderStoreIDs, journal);
    for (StringList* list : {&settings.EmailFolderEntryIDs, &settings.EmailFolderStoreIDs,
                             &settings.SharedCalendarEntryIDs, &settings.SharedCalendarStoreIDs,
                             &settings.SharedJournalEntryIDs, &settings.SharedJournalStoreIDs,
                             &settings.SharedTaskListEntryIDs, &settings.SharedTaskListStoreIDs}) {
      list->Add(std::string());
    }
    settings.FoldersetFlags.Add(0);
    settings.FoldersetCount = settings.FoldersetFlags.Count();
    return contacts;
  }

  int Count(const std::string& prefix) const { return CountLines(prefix); }
  std::vector<std::string> Errors() const { return Lines("Error"); }
  // Subjects of the items handed to processing jobs, in order (their screening line).
  std::vector<std::string> Screened() const {
    std::vector<std::string> out;
    const std::string prefix = "Screening new ";
    for (const auto& l : recorder.lines) {
      if (l.text.rfind(prefix, 0) != 0) continue;
      const size_t open = l.text.find('\'');
      const size_t close = l.text.find("' in '", open + 1);
      if (open != std::string::npos && close != std::string::npos) {
        out.push_back(l.text.substr(open + 1, close - open - 1));
      }
    }
    return out;
  }

  ZintraUtils utils{errors};
  std::shared_ptr<TestMonitoringAddin> addin = std::make_shared<TestMonitoringAddin>(*this);
  std::shared_ptr<JobQueue> queue;
  std::shared_ptr<TrackedContacts> tracked;
  std::shared_ptr<Monitoring> monitoring;
  std::vector<std::shared_ptr<ICheckLinger>> lingers;
};

inline const RegSettings& TestMonitoringAddin::Settings() { return env_.settings; }
inline std::shared_ptr<JobQueue> TestMonitoringAddin::GetJobQueue() { return env_.queue; }
inline std::shared_ptr<Namespace> TestMonitoringAddin::Session() { return env_.app->Session(); }
inline std::shared_ptr<MapiUtils> TestMonitoringAddin::LibraryUtils() { return env_.mapi_utils; }
inline std::shared_ptr<AutomationObject> TestMonitoringAddin::CreateLibraryObject(int32_t kind) {
  return env_.factory.CreateObject(kLibraryProgIdPrefix + LibraryClassName(kind));
}
inline void TestMonitoringAddin::SetCheckLinger(std::shared_ptr<ICheckLinger> obj) {
  env_.lingers.push_back(std::move(obj));
}
inline std::string TestMonitoringAddin::GenerateKey() { return env_.utils.GenerateKey(); }
inline const StringTable& TestMonitoringAddin::Strings() { return env_.strings; }
inline JobEngineLog& TestMonitoringAddin::Log() { return env_.log; }
inline double TestMonitoringAddin::Now() { return env_.clock.Now(); }
inline ZintraUtils* TestMonitoringAddin::Utils() { return &env_.utils; }
inline std::shared_ptr<TrackedContacts> TestMonitoringAddin::Tracked() { return env_.tracked; }
inline std::shared_ptr<RdoSession> TestMonitoringAddin::RDOSession() { return env_.rdo; }
inline std::shared_ptr<Application> TestMonitoringAddin::OLApp() { return env_.app; }
inline ErrorHandling& TestMonitoringAddin::Errors() { return env_.errors; }
inline Clock& TestMonitoringAddin::TimeSource() { return env_.clock; }
inline MessagePump& TestMonitoringAddin::Pump() { return env_.loop; }
inline ObjectFactory& TestMonitoringAddin::Objects() { return env_.factory; }
inline JobQueueSettings TestMonitoringAddin::QueueSettings() {
  JobQueueSettings s;
  s.RunJobsAsync = env_.settings.RunJobsAsync;
  s.QueuedWorkTimeInterval = env_.settings.QueuedWorkTimeInterval;
  s.QueuedWorkTimechunk = env_.settings.QueuedWorkTimechunk;
  return s;
}

}  // namespace zintra::monitoring_test
