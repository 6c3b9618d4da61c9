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
#include "tests/support/test_addin.h"

namespace zintra::monitoring_test {

using testing_support::SimWorld;

class MonitoringEnv;

// The logging add-in with what monitoring asks for besides.
class TestMonitoringAddin : public testing_support::TestAddin<MonitoringAddin, MonitoringEnv>,
                            public std::enable_shared_from_this<TestMonitoringAddin> {
 public:
  using TestAddin::TestAddin;
  std::shared_ptr<Application> OLApp() override;
  ErrorHandling& Errors() override;
  std::shared_ptr<JobAddin> JobHost() override { return shared_from_this(); }
  Clock& TimeSource() override;
  MessagePump& Pump() override;
  ObjectFactory& Objects() override;
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

inline std::shared_ptr<Application> TestMonitoringAddin::OLApp() { return env_.app; }
inline ErrorHandling& TestMonitoringAddin::Errors() { return env_.errors; }
inline Clock& TestMonitoringAddin::TimeSource() { return env_.clock; }
inline MessagePump& TestMonitoringAddin::Pump() { return env_.loop; }
inline ObjectFactory& TestMonitoringAddin::Objects() { return env_.factory; }

}  // namespace zintra::monitoring_test
