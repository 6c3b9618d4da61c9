// TestAddin: the add-in as the logging and monitoring fixtures hand it to the parts they
// test. `Base` is the interface the part asks for (LoggingAddin, MonitoringAddin); every
// service comes from `Env`, a SimWorld that also holds the utility object, the job queue,
// the tracked contacts and the lingering-reference checks. It records its optional
// messages instead of showing them.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "src/core/event.h"
#include "src/jobs/job_addin.h"
#include "src/outlook/library_factory.h"

namespace zintra::testing_support {

template <class Base, class Env>
class TestAddin : public Base, public JobAddin {
 public:
  explicit TestAddin(Env& env) : env_(env) {}

  const RegSettings& Settings() override { return env_.settings; }
  std::shared_ptr<JobQueue> GetJobQueue() override { return env_.queue; }
  // The add-in holds Outlook's session from start-up on; so does the test add-in.
  std::shared_ptr<Namespace> Session() override {
    if (!session_) session_ = env_.app->Session();
    return session_;
  }
  std::shared_ptr<MapiUtils> LibraryUtils() override { return env_.mapi_utils; }
  std::shared_ptr<AutomationObject> CreateLibraryObject(int32_t kind) override {
    return env_.factory.CreateObject(kLibraryProgIdPrefix + LibraryClassName(kind));
  }
  bool Quitting() override { return quitting; }
  void SetCheckLinger(std::shared_ptr<ICheckLinger> obj) override {
    env_.lingers.push_back(std::move(obj));
  }
  std::string GenerateKey() override { return env_.utils.GenerateKey(); }
  bool OptionalMsgBox(int32_t DialogIdx, const std::string& Message,
                      const std::string& Caption) override {
    messages.push_back(std::to_string(DialogIdx) + "|" + Caption + "|" + Message);
    return true;
  }
  const StringTable& Strings() override { return env_.strings; }
  JobEngineLog& Log() override { return env_.log; }
  double Now() override { return env_.clock.Now(); }
  ZintraUtils* Utils() override { return &env_.utils; }
  std::shared_ptr<TrackedContacts> Tracked() override { return env_.tracked; }
  std::shared_ptr<RdoSession> RDOSession() override { return env_.rdo; }
  Event<>& KillBroadcast() override { return kill; }
  bool LeavingWorkForNextStart() override { return leaving_work; }

  JobQueueSettings QueueSettings() override {
    JobQueueSettings s;
    s.RunJobsAsync = env_.settings.RunJobsAsync;
    s.QueuedWorkTimeInterval = env_.settings.QueuedWorkTimeInterval;
    s.QueuedWorkTimechunk = env_.settings.QueuedWorkTimechunk;
    return s;
  }
  bool Outlook12OrHigher() override { return true; }
  void TouchOutlook() override {}
  void Shutdown() override {}

  Event<> kill;
  bool quitting = false;
  bool leaving_work = false;
  std::vector<std::string> messages;  // "dialog|caption|text"

 protected:
  Env& env_;

 private:
  std::shared_ptr<Namespace> session_;
};

}  // namespace zintra::testing_support
