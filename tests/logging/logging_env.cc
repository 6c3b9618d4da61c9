#include "tests/logging/logging_env.h"

namespace zintra::testing_support {

const RegSettings& TestLoggingAddin::Settings() { return env_.settings; }
std::shared_ptr<JobQueue> TestLoggingAddin::GetJobQueue() { return env_.queue; }
// The add-in holds Outlook's session from start-up on; so does the test add-in.
std::shared_ptr<Namespace> TestLoggingAddin::Session() {
  if (!session_) session_ = env_.app->Session();
  return session_;
}
std::shared_ptr<MapiUtils> TestLoggingAddin::LibraryUtils() { return env_.mapi_utils; }
std::shared_ptr<AutomationObject> TestLoggingAddin::CreateLibraryObject(int32_t kind) {
  return env_.factory.CreateObject(kLibraryProgIdPrefix + LibraryClassName(kind));
}
void TestLoggingAddin::SetCheckLinger(std::shared_ptr<ICheckLinger> obj) {
  env_.lingers.push_back(std::move(obj));
}
std::string TestLoggingAddin::GenerateKey() { return env_.utils.GenerateKey(); }
const StringTable& TestLoggingAddin::Strings() { return env_.strings; }
JobEngineLog& TestLoggingAddin::Log() { return env_.log; }
double TestLoggingAddin::Now() { return env_.clock.Now(); }
ZintraUtils* TestLoggingAddin::Utils() { return &env_.utils; }
std::shared_ptr<TrackedContacts> TestLoggingAddin::Tracked() { return env_.tracked; }
std::shared_ptr<RdoSession> TestLoggingAddin::RDOSession() { return env_.rdo; }
JobQueueSettings TestLoggingAddin::QueueSettings() {
  JobQueueSettings s;
  s.RunJobsAsync = env_.settings.RunJobsAsync;
  s.QueuedWorkTimeInterval = env_.settings.QueuedWorkTimeInterval;
  s.QueuedWorkTimechunk = env_.settings.QueuedWorkTimechunk;
  return s;
}

LoggingEnv::FolderSet LoggingEnv::AddFolderSet(const std::string& name, bool email, bool shared) {
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

}  // namespace zintra::testing_support
