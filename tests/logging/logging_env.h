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
#include "tests/support/test_addin.h"

namespace zintra::testing_support {

class LoggingEnv;
using TestLoggingAddin = TestAddin<LoggingAddin, LoggingEnv>;

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
    addin->kill.Raise();
    tracked->Kill();
    queue->Kill();
    utils.Kill();
    queue.reset();
  }
  void RunQueue() { loop.RunUntilIdle(); }

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
