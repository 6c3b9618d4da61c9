// Item logging over the simulated host: a profile built with ProfileBuilder (an
// Exchange mailbox), the library's classes, the real error handling over a recording
// log, the real settings, ZintraUtils, JobQueue and TrackedContacts, and an add-in
// object that ties them together the way ZintraAddinApp does.
#pragma once

#include "src/addin/errors_job_log.h"

#include <memory>
#include <string>
#include <vector>

#include "sim/files/memory_file_system.h"
#include "sim/mapi/sim_class_registry.h"
#include "sim/mapi/sim_mapi_utils.h"
#include "sim/outlook/profile.h"
#include "sim/outlook/profile_builder.h"
#include "sim/outlook/sim_folder.h"
#include "sim/outlook/sim_item.h"
#include "sim/outlook/sim_ol_application.h"
#include "sim/platform/sim_platform.h"
#include "sim/registry/memory_registry.h"
#include "sim/shell/recording_shell.h"
#include "sim/shell/recording_window_manager.h"
#include "sim/shell/sim_form_factory.h"
#include "sim/time/event_loop.h"
#include "sim/time/virtual_clock.h"
#include "sim/ui/recording_msg_box.h"
#include "src/contacts/tracked_contacts.h"
#include "src/core/date.h"
#include "src/errors/cached_error.h"
#include "src/errors/error_handling.h"
#include "src/host/mapi_session.h"
#include "src/jobs/job_addin.h"
#include "src/jobs/job_queue.h"
#include "src/logging/logging_addin.h"
#include "src/logging/zintra_utils.h"
#include "src/outlook/library_factory.h"
#include "src/resources/string_table.h"
#include "src/settings/reg_settings.h"

namespace zintra::testing_support {

// Every line the error handling writes, in order.
struct LoggedLine {
  std::string kind;  // "Message", "Warning", "Error"
  std::string text;  // the message, or an error's description
};

class LineRecorder : public ErrorLogStore, public ErrorLogFactory {
 public:
  std::shared_ptr<ErrorLogStore> CreateErrorLog() override {
    return std::shared_ptr<ErrorLogStore>(this, [](ErrorLogStore*) {});
  }
  void Open(const std::string& path, int32_t, bool) override { path_ = path; }
  void LogError(const std::string&, const std::string& description, const std::string&, int32_t,
                const std::string&, const std::string&, const std::string&, const std::string&,
                const std::string&, const ErrorLogVersions&) override {
    lines.push_back({"Error", description});
  }
  void LogMessage(const std::string&, const std::string& text, bool warning,
                  const ErrorLogVersions&) override {
    lines.push_back({warning ? "Warning" : "Message", text});
  }
  void Relocate(const std::string& new_path) override { path_ = new_path; }
  std::string Path() const override { return path_; }

  std::vector<LoggedLine> lines;

 private:
  std::string path_;
};

// The job engine's log written through the error handling, as the add-in does it.
using ErrorsLog = ErrorsJobLog;

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

class LoggingEnv {
 public:
  explicit LoggingEnv(bool async = false) {
    registry.SetDword(kHKeyCurrentUser, "Software\\Brellow\\Zintra\\Logging", "LogLevel", 3);
    settings.RunJobsAsync = async;
    factory.RegisterLibrary();
    mapi_utils->SetMAPIOBJECT(app->Session()->MAPIOBJECT());
    rdo = std::dynamic_pointer_cast<RdoSession>(
        factory.CreateObject(std::string(kLibraryProgIdPrefix) + LibraryClassName(kLibRdoSession)));
    rdo->SetMAPIOBJECT(app->Session()->MAPIOBJECT());
    me = sim::ProfileBuilder::Exchange("Jane Doe", "jdoe", "CONTOSO");
    builder.Mailbox(me);
  }
  ~LoggingEnv() { Stop(); }

  // Starts the queue, ZintraUtils and the tracked contacts with the settings as they are.
  // Starts the parts; with `run` false the contact caches' first fill is only queued.
  void Start(bool run = true) {
    utils.Connect({app, &settings, nullptr});
    utils.SetLibrary(mapi_utils, rdo);
    queue = std::make_shared<JobQueue>(JobQueueHost{queue_clock ? *queue_clock : clock, loop, loop,
                                                    forms, windows, shell, strings, log});
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

  std::shared_ptr<Item> ItemOf(const std::shared_ptr<sim::MessageRecord>& record) {
    return sim::MakeItem(&profile, record);
  }
  std::shared_ptr<Folder> FolderOf(const std::shared_ptr<sim::FolderRecord>& record) {
    return sim::MakeFolder(&profile, record);
  }
  // Reads a user property of the stored item (Empty when absent).
  Value UserProp(const std::shared_ptr<Item>& item, const std::string& name) {
    return utils.GetUserProperty(item->UserProperties(), name);
  }
  Value NamedProp(const std::shared_ptr<Item>& item, const std::string& name, uint16_t type) {
    return utils.GetNamedProp(item->MAPIOBJECT(), Value(name), type);
  }
  bool Logged(const std::string& text) const {
    for (const auto& l : recorder.lines) {
      if (l.text == text) return true;
    }
    return false;
  }
  int CountLines(const std::string& prefix) const {
    int n = 0;
    for (const auto& l : recorder.lines) n += l.text.rfind(prefix, 0) == 0 ? 1 : 0;
    return n;
  }
  std::vector<std::string> Errors() const {
    std::vector<std::string> out;
    for (const auto& l : recorder.lines) {
      if (l.kind == "Error") out.push_back(l.text);
    }
    return out;
  }

  sim::VirtualClock clock{MakeDate(2026, 1, 5, 9, 0, 0)};
  sim::EventLoop loop{clock};
  sim::SimFormFactory forms;
  sim::RecordingWindowManager windows;
  sim::RecordingShell shell;
  StringTable strings;
  sim::MemoryRegistry registry;
  sim::MemoryFileSystem files;
  sim::SimPlatform platform;
  sim::RecordingMsgBox msg_box;
  LineRecorder recorder;
  ErrorHandling errors{{recorder, msg_box, registry, files, platform, strings}};
  ErrorsLog log{errors};
  RegSettings settings{registry, files, platform};

  sim::Profile profile{&clock};
  sim::ProfileBuilder builder{profile};
  sim::Person me;
  std::shared_ptr<sim::SimOlApplication> app = std::make_shared<sim::SimOlApplication>(&profile);
  sim::SimClassRegistry factory{&profile};
  std::shared_ptr<sim::SimMapiUtils> mapi_utils = std::make_shared<sim::SimMapiUtils>(&profile);
  std::shared_ptr<RdoSession> rdo;

  ZintraUtils utils{errors};
  std::shared_ptr<TestLoggingAddin> addin = std::make_shared<TestLoggingAddin>(*this);
  std::shared_ptr<JobQueue> queue;
  std::shared_ptr<TrackedContacts> tracked;
  std::vector<std::shared_ptr<ICheckLinger>> lingers;
  // The clock the queue measures its slices with (default: the virtual clock).
  Clock* queue_clock = nullptr;
};

}  // namespace zintra::testing_support
