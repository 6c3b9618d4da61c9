// SimWorld: the simulated host as the subsystems' test fixtures and benchmarks use it,
// built in one place. A virtual clock (2026-01-05 09:00 unless told) with its event loop; the
// recording shell, forms, windows and message box; registry, files and platform; the
// real error handling over a LogRecorder at log level 3 (every line kept), its job-engine
// view and the settings; the simulated Outlook (sim::SimOutlookHost: a profile on that
// clock, Outlook's application over it and the class registry with the MAPI library)
// with one mailbox (an Exchange user by default), and the library's utility object and
// session logged on to the profile. QueueHost() hands the job engine its part of it.
//
// A fixture derives from it (or holds one) and adds the subsystem objects it tests.
// Members are public and named after what they are, so that a test reads
// `env.registry`, `env.builder`, `env.recorder.lines`.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "sim/files/memory_file_system.h"
#include "sim/mapi/sim_class_registry.h"
#include "sim/mapi/sim_mapi_utils.h"
#include "sim/mapi/sim_outlook_host.h"
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
#include "src/addin/errors_job_log.h"
#include "src/core/date.h"
#include "src/errors/error_handling.h"
#include "src/host/error_log_store.h"
#include "src/host/mapi_session.h"
#include "src/jobs/job_queue.h"
#include "src/outlook/library_factory.h"
#include "src/resources/string_table.h"
#include "src/settings/reg_settings.h"
#include "tests/support/log_recorder.h"

namespace zintra::testing_support {

class SimWorld {
 public:
  explicit SimWorld(sim::Person mailbox = DefaultMailbox(),
                    double start = MakeDate(2026, 1, 5, 9, 0, 0))
      : clock(start), me(std::move(mailbox)) {
    registry.SetDword(kHKeyCurrentUser, "Software\\Brellow\\Zintra\\Logging", "LogLevel", 3);
    mapi_utils->SetMAPIOBJECT(app->Session()->MAPIOBJECT());
    rdo = std::dynamic_pointer_cast<RdoSession>(
        factory.CreateObject(std::string(kLibraryProgIdPrefix) + LibraryClassName(kLibRdoSession)));
    rdo->SetMAPIOBJECT(app->Session()->MAPIOBJECT());
    builder.Mailbox(me);
  }
  SimWorld(const SimWorld&) = delete;
  SimWorld& operator=(const SimWorld&) = delete;

  static sim::Person DefaultMailbox() {
    return sim::ProfileBuilder::Exchange("Jane Doe", "jdoe", "CONTOSO");
  }

  // What a job queue runs on: the clock (or `queue_clock`), the event loop as its timers
  // and message pump, the recording forms, windows and shell, the strings and the log.
  JobQueueHost QueueHost(Clock* queue_clock = nullptr) {
    return JobQueueHost{
        queue_clock ? *queue_clock : clock, loop, loop, forms, windows, shell, strings, log};
  }

  std::shared_ptr<Item> ItemOf(const std::shared_ptr<sim::MessageRecord>& record) {
    return sim::MakeItem(&profile, record);
  }
  std::shared_ptr<Folder> FolderOf(const std::shared_ptr<sim::FolderRecord>& record) {
    return sim::MakeFolder(&profile, record);
  }

  // A folder set tracked from the next start: a contact folder with its journal (and
  // optionally an e-mail folder and shared folders), added to the settings.
  struct FolderSet {
    std::shared_ptr<sim::FolderRecord> contacts, journal, email, shared_calendar, shared_journal,
        shared_tasks;
  };
  FolderSet AddFolderSet(const std::string& name, bool email = false, bool shared = false) {
    FolderSet set;
    set.contacts = builder.ContactFolder(name);
    set.journal = builder.Folder(name + " Journal", kOlJournalItem);
    if (email) set.email = builder.Folder(name + " Mail", kOlMailItem);
    if (shared) {
      set.shared_calendar = builder.Folder(name + " Shared Calendar", kOlAppointmentItem);
      set.shared_journal = builder.Folder(name + " Shared Journal", kOlJournalItem);
      set.shared_tasks = builder.Folder(name + " Shared Tasks", kOlTaskItem);
    }
    auto add = [this](StringList& entries, StringList& stores,
                      const std::shared_ptr<sim::FolderRecord>& record) {
      entries.Add(record ? profile.EntryIdOf(*record) : std::string());
      stores.Add(record ? profile.StoreIdOf(*record->store) : std::string());
    };
    add(settings.ContactFolderEntryIDs, settings.ContactFolderStoreIDs, set.contacts);
    add(settings.JournalFolderEntryIDs, settings.JournalFolderStoreIDs, set.journal);
    add(settings.EmailFolderEntryIDs, settings.EmailFolderStoreIDs, set.email);
    add(settings.SharedCalendarEntryIDs, settings.SharedCalendarStoreIDs, set.shared_calendar);
    add(settings.SharedJournalEntryIDs, settings.SharedJournalStoreIDs, set.shared_journal);
    add(settings.SharedTaskListEntryIDs, settings.SharedTaskListStoreIDs, set.shared_tasks);
    settings.FoldersetFlags.Add(0);
    settings.FoldersetCount = settings.FoldersetFlags.Count();
    return set;
  }

  // Whether a line with exactly `text` was written; how many begin with `prefix`.
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
  // The texts of the lines of `kind`, in order.
  std::vector<std::string> Lines(const std::string& kind) const {
    std::vector<std::string> out;
    for (const auto& l : recorder.lines) {
      if (l.kind == kind) out.push_back(l.text);
    }
    return out;
  }
  // The errors logged, in order.
  std::vector<LogLine> Errors() const {
    std::vector<LogLine> out;
    for (const auto& l : recorder.lines) {
      if (l.kind == "Error") out.push_back(l);
    }
    return out;
  }

  sim::VirtualClock clock;
  sim::EventLoop loop{clock};
  sim::SimFormFactory forms;
  sim::RecordingWindowManager windows;
  sim::RecordingShell shell;
  StringTable strings;
  sim::MemoryRegistry registry;
  sim::MemoryFileSystem files;
  sim::SimPlatform platform;
  sim::RecordingMsgBox msg_box;
  LogRecorder recorder;
  ErrorHandling errors{{recorder, msg_box, registry, files, platform, strings}};
  // The job engine's log written through the error handling, as the add-in does it.
  ErrorsJobLog log{errors};
  RegSettings settings{registry, files, platform};

  // The profile on the clock, Outlook's application over it and the class registry.
  sim::SimOutlookHost outlook{&clock};
  sim::Profile& profile = outlook.profile;
  sim::ProfileBuilder builder{profile};
  sim::Person me;
  std::shared_ptr<sim::SimOlApplication>& app = outlook.application;
  sim::SimClassRegistry& factory = outlook.factory;
  std::shared_ptr<sim::SimMapiUtils> mapi_utils = std::make_shared<sim::SimMapiUtils>(&profile);
  std::shared_ptr<RdoSession> rdo;
};

}  // namespace zintra::testing_support
