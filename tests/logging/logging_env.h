// Item logging over the simulated host (SimWorld: an Exchange mailbox, the library's
// classes, the real error handling over a recording log, the real settings) with
// ZintraUtils, JobQueue and TrackedContacts, and an add-in object that ties them
// together the way the add-in's services do.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "src/contacts/tracked_contacts.h"
#include "src/core/event.h"
#include "src/errors/cached_error.h"
#include "src/jobs/job_addin.h"
#include "src/jobs/job_queue.h"
#include "src/logging/logging_addin.h"
#include "src/logging/zintra_utils.h"
#include "tests/support/sim_world.h"

namespace zintra::testing_support {

class LoggingEnv;

class TestLoggingAddin : public LoggingAddin, public JobAddin {
 public:
  explicit TestLoggingAddin(LoggingEnv& env) : env_(env) {}

  // ContactsAddin / LoggingAddin.
  const RegSettings& Settings() override;
  std::shared_ptr<JobQueue> GetJobQueue() override;
  std::shared_ptr<Namespace> Session() override;
  std::shared_ptr<MapiUtils> LibraryUtils() override;
  std::shared_ptr<AutomationObject> CreateLibraryObject(int32_t kind) override;
  bool Quitting() override { return false; }
  void SetCheckLinger(std::shared_ptr<ICheckLinger> obj) override;
  std::string GenerateKey() override;
  bool OptionalMsgBox(int32_t, const std::string&, const std::string&) override { return true; }
  const StringTable& Strings() override;
  JobEngineLog& Log() override;
  double Now() override;
  ZintraUtils* Utils() override;
  std::shared_ptr<TrackedContacts> Tracked() override;
  std::shared_ptr<RdoSession> RDOSession() override;
  Event<>& KillBroadcast() override { return kill_; }
  bool LeavingWorkForNextStart() override { return leaving_work; }

  // JobAddin.
  JobQueueSettings QueueSettings() override;
  bool Outlook12OrHigher() override { return true; }
  void TouchOutlook() override {}
  void Shutdown() override {}

  Event<> kill_;
  bool leaving_work = false;

 private:
  LoggingEnv& env_;
  std::shared_ptr<Namespace> session_;
};

class LoggingEnv : public SimWorld {
 public:
  explicit LoggingEnv(bool async = false) { settings.RunJobsAsync = async; }
  ~LoggingEnv() { Stop(); }

  // Starts the queue, ZintraUtils and the tracked contacts with the settings as they are.
  // Starts the parts; with `run` false the contact caches' first fill is only queued.
  void Start(bool run = true) {
    utils.Connect({app, &settings, nullptr});
    utils.SetLibrary(mapi_utils, rdo);
    queue = std::make_shared<JobQueue>(QueueHost(queue_clock));
    queue->Initialize(addin);
    tracked = std::make_shared<TrackedContacts>();
    tracked->Initialize(addin);
    if (run) RunQueue();
  }
  void Stop() {
    if (!queue) return;
    addin->kill_.Raise();
    tracked->Kill();
    queue->Kill();
    utils.Kill();
    queue.reset();
  }
  void RunQueue() { loop.RunUntilIdle(); }

  // A folder set: a contact folder with its journal (and optionally e-mail and shared
  // folders); returns the contact folder.
  struct FolderSet {
    std::shared_ptr<sim::FolderRecord> contacts, journal, email, shared_calendar, shared_journal,
        shared_tasks;
  };
  FolderSet AddFolderSet(const std::string& name, bool email = false, bool shared = false);

  // Reads a user property of the stored item (Empty when absent).
  Value UserProp(const std::shared_ptr<Item>& item, const std::string& name) {
    return utils.GetUserProperty(item->UserProperties(), name);
  }
  Value NamedProp(const std::shared_ptr<Item>& item, const std::string& name, uint16_t type) {
    return utils.GetNamedProp(item->MAPIOBJECT(), Value(name), type);
  }
  std::vector<std::string> Errors() const { return Lines("Error"); }

  ZintraUtils utils{errors};
  std::shared_ptr<TestLoggingAddin> addin = std::make_shared<TestLoggingAddin>(*this);
  std::shared_ptr<JobQueue> queue;
  std::shared_ptr<TrackedContacts> tracked;
  std::vector<std::shared_ptr<ICheckLinger>> lingers;
  // The clock the queue measures its slices with (default: the virtual clock).
  Clock* queue_clock = nullptr;
};

}  // namespace zintra::testing_support
