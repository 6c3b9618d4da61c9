#include "src/monitoring/monitored_folder.h"

#include <algorithm>
#include <string_view>

#include "src/core/z_error.h"
#include "src/errors/cached_error.h"
#include "src/errors/error_handling.h"
#include "src/host/outlook_application.h"
#include "src/host/outlook_constants.h"
#include "src/host/outlook_folder.h"
#include "src/host/outlook_item.h"
#include "src/jobs/job_engine_log.h"
#include "src/jobs/job_queue.h"
#include "src/logging/job_changed.h"
#include "src/logging/job_process.h"
#include "src/logging/zintra_utils.h"
#include "src/monitoring/monitoring.h"
#include "src/monitoring/monitoring_addin.h"
#include "src/outlook/folder_helpers.h"
#include "src/resources/string_table.h"
#include "src/settings/reg_settings.h"

namespace zintra {

namespace {

constexpr char kMonitoredFolderModule[] = "MonitoredFolder";
constexpr int32_t kErrFolderMonitoring = static_cast<int32_t>(0x80040301u);

std::string_view ClassName(ItemClass item_class) {
  switch (item_class) {
    case ItemClass::kAppointment:
      return "AppointmentItem";
    case ItemClass::kContact:
      return "ContactItem";
    case ItemClass::kDistList:
      return "DistListItem";
    case ItemClass::kDocument:
      return "DocumentItem";
    case ItemClass::kJournal:
      return "JournalItem";
    case ItemClass::kMail:
      return "MailItem";
    case ItemClass::kMeeting:
      return "MeetingItem";
    case ItemClass::kNote:
      return "NoteItem";
    case ItemClass::kPost:
      return "PostItem";
    case ItemClass::kRemote:
      return "RemoteItem";
    case ItemClass::kReport:
      return "ReportItem";
    case ItemClass::kTask:
      return "TaskItem";
    case ItemClass::kTaskRequestAccept:
      return "TaskRequestAcceptItem";
    case ItemClass::kTaskRequestDecline:
      return "TaskRequestDeclineItem";
    case ItemClass::kTaskRequest:
      return "TaskRequestItem";
    case ItemClass::kTaskRequestUpdate:
      return "TaskRequestUpdateItem";
    default:
      return {};
  }
}

// The name an item goes by in log lines: a contact's full name, else its subject.
std::string ItemName(const Item& item) {
  return item.Class() == ItemClass::kContact ? item.FullName() : item.Subject();
}

}  // namespace

bool ItemIsLoggedType(const FolderSetting& setting, const Item& item) {
  const std::string_view name = ClassName(item.Class());
  return setting.ItemIsLoggedType([name](std::string_view cls) { return cls == name; });
}

MonitoredFolder::MonitoredFolder(std::weak_ptr<MonitoringAddin> app) : app_(std::move(app)) {}

MonitoredFolder::~MonitoredFolder() = default;

bool MonitoredFolder::Initialize(const std::shared_ptr<zintra::Folder>& folder,
                                 const std::shared_ptr<Monitoring>& monitoring,
                                 const FolderSetting& setting) {
  std::shared_ptr<MonitoringAddin> app = app_.lock();
  if (!app || !monitoring) return false;
  try {
    std::string entry_id = setting.EntryID;
    if (entry_id.empty() && folder) entry_id = folder->EntryID();
    LogLine("Initializing MonitoredFolder for EntryID {" + entry_id + "}");
    monitoring_ = monitoring;
    key_ = app->GenerateKey();
    monitoring->monitors_.Add(shared_from_this(), key_);

    current_creation_time_ = kUnsetDate;
    folder_setting_ = setting;
    folder_ = folder ? folder : app->Session()->GetFolderFromID(setting.EntryID, setting.StoreID);
    if (!folder_)
      throw ZError(kErrObjectNotSet, "The folder could not be opened", kMonitoredFolderModule);
    const std::string name = folder_->Name();
    description_ = app->Strings().Load(kStrScanningFolder) + name;

    items_ = folder_->Items();
    std::weak_ptr<MonitoredFolder> weak = weak_from_this();
    item_add_ = items_->ItemAdd.Connect([weak](std::shared_ptr<Item> item) {
      if (auto self = weak.lock()) self->Items_ItemAdd(item);
    });
    item_change_ = items_->ItemChange.Connect([weak](std::shared_ptr<Item> item) {
      if (auto self = weak.lock()) self->Items_ItemChange(item);
    });
    item_remove_ = items_->ItemRemove.Connect([weak] {
      if (auto self = weak.lock()) self->Items_ItemRemove();
    });
    addin_kill_ = app->KillBroadcast().Connect([weak] {
      if (auto self = weak.lock()) self->Addin_Kill();
    });

    const bool inbox = IsDefaultFolder(kOlFolderInbox);
    const bool sent = IsDefaultFolder(kOlFolderSentMail);
    IsIncomingFolder_ = inbox;
    IsOutgoingFolder_ =
        sent || IsDefaultFolder(kOlFolderOutbox) || (app->Settings().InboxIsOutgoingToo && inbox);
    // Mail in any other mail folder may have been received or sent.
    if (folder_->DefaultItemType() == kOlMailItem && !IsIncomingFolder_ && !IsOutgoingFolder_) {
      IsIncomingFolder_ = true;
      IsOutgoingFolder_ = true;
    }
    ignore_changes_ = inbox || sent || IsDefaultFolder(kOlFolderDeletedItems);

    LogLine("Successfully initialized monitoring of folder " + name);
    Decide(DecisionKind::kFolderMonitored, "");
    return true;
  } catch (...) {
    LogCurrentException("Initialize");
    // A monitor without its folder must not stay among the manager's monitors.
    Kill();
    return false;
  }
}

bool MonitoredFolder::IsDefaultFolder(int32_t folder_type) {
  std::shared_ptr<MonitoringAddin> app = app_.lock();
  if (!app) return false;
  std::shared_ptr<zintra::Folder> other;
  try {
    other = app->Session()->GetDefaultFolder(folder_type);
  } catch (const ZError&) {
    return false;  // a profile without that default folder
  }
  std::shared_ptr<MapiUtils> utils = app->LibraryUtils();
  if (!utils) return folder_->EntryID() == other->EntryID();
  return FoldersSame(folder_, other, *utils, app->Errors());
}

void MonitoredFolder::Kill() {
  if (killed_) return;
  killed_ = true;
  std::shared_ptr<MonitoredFolder> keep = weak_from_this().lock();
  std::shared_ptr<MonitoringAddin> app = app_.lock();
  try {
    if (std::shared_ptr<Monitoring> monitoring = monitoring_.lock()) {
      if (!key_.empty()) {
        // A killed monitor's scan is lost with it: keep the manager's books straight.
        if (monitoring->monitors_.Contains(key_)) monitoring->monitors_.Remove(key_);
        if (monitoring->FoldersScanning.Contains(key_)) monitoring->FoldersScanning.Remove(key_);
        if (monitoring->FoldersToRescan.Contains(key_)) monitoring->FoldersToRescan.Remove(key_);
      }
    }
    if (!task_id_.empty() && app) {
      if (std::shared_ptr<JobQueue> queue = app->GetJobQueue()) queue->TaskListRemove(task_id_);
    }
  } catch (...) {
    LogCurrentException("Kill");
  }
  task_id_.clear();
  scanning_ = false;
  item_add_.Disconnect();
  item_change_.Disconnect();
  item_remove_.Disconnect();
  addin_kill_.Disconnect();
  items_.reset();
  folder_.reset();
  monitoring_.reset();
  app_.reset();
}

std::string MonitoredFolder::FolderName() const {
  try {
    return folder_ ? folder_->Name() : std::string();
  } catch (const ZError&) {
    return {};
  }
}

void MonitoredFolder::Items_ItemAdd(const std::shared_ptr<Item>& item) {
  std::shared_ptr<MonitoringAddin> app = app_.lock();
  if (!app || !item) return;
  try {
    changed_since_step_ = true;
    // The add-in's own items (copies on their way, working copies) are not new work, and
    // never count as bumps: they leave again, and a bump they left behind would cost a
    // user's item its turn. The scan checks its position instead.
    if (ZintraUtils* utils = app->Utils(); utils && utils->SquelchItemSend(item)) return;
    const std::string name = ItemName(*item);
    LogLine("Item in " + FolderName() + " intercepted: " + name);
    if (scanning_ && current_creation_time_ != kUnsetDate &&
        item->CreationTime() > current_creation_time_) {
      ++bump_count_;
    }
    if (!ItemIsLoggedType(folder_setting_, *item)) {
      Decide(DecisionKind::kNotProcessed, "its kind is not logged in this folder", item);
      return;
    }
    std::shared_ptr<Monitoring> monitoring = monitoring_.lock();
    if (monitoring && monitoring->ProcessingDelay() >= 1) {
      Decide(DecisionKind::kNotProcessed, "it was left to the delayed scan of its folder", item);
      monitoring->QueueDelayedScan(folder_);
      return;
    }
    LogLine("Initializing JobProcess for " + name);
    StartProcessing(item, "MonitoredFolder.Items_ItemAdd");
  } catch (...) {
    LogCurrentException("Items_ItemAdd");
  }
}

void MonitoredFolder::Items_ItemChange(const std::shared_ptr<Item>& item) {
  std::shared_ptr<MonitoringAddin> app = app_.lock();
  if (!app || ignore_changes_ || !item) return;
  try {
    if (ZintraUtils* utils = app->Utils(); utils && utils->SquelchItemSend(item)) return;
    if (!ItemIsLoggedType(folder_setting_, *item)) return;
    if (app->Errors().DebugMode()) {
      std::shared_ptr<zintra::Folder> parent = item->Parent();
      LogLine("Item changed in " + (parent ? parent->Name() : std::string()) + ": " +
              item->Subject());
    }
    auto job = std::make_shared<JobChanged>(app);
    job->Initialize(item);
  } catch (...) {
    LogCurrentException("Items_ItemChange");
  }
}

void MonitoredFolder::Items_ItemRemove() {
  changed_since_step_ = true;
  // Before the first step the sort has not been taken: nothing to correct.
  if (scanning_ && scanned_count_ > 0) ++removed_since_step_;
}

void MonitoredFolder::StartProcessing(const std::shared_ptr<Item>& item, const char* caller) {
  std::shared_ptr<MonitoringAddin> app = app_.lock();
  if (!app) return;
  auto job = std::make_shared<JobProcess>(app);
  job->Initialize(caller, item, IsIncomingFolder_, IsOutgoingFolder_);
}

void MonitoredFolder::Scan(bool StopWhenFound) {
  if (scanning_ || killed_) return;
  std::shared_ptr<MonitoringAddin> app = app_.lock();
  if (!app) return;
  try {
    scanning_ = true;
    bump_count_ = 0;
    scanned_count_ = 0;
    removed_since_step_ = 0;
    changed_since_step_ = false;
    handled_at_time_.clear();
    first_processed_time_ = kUnsetDate;
    StopWhenFound_ = StopWhenFound;
    const int32_t count = items_->Count();
    std::shared_ptr<JobQueue> queue = app->GetJobQueue();
    if (!queue) throw ZError(kErrObjectNotSet, "The job queue is gone", kMonitoredFolderModule);
    task_id_ = queue->TaskListAdd(description_, kScanTaskIcon, static_cast<float>(count), false);
    Decide(DecisionKind::kScanStarted,
           StopWhenFound ? "up to the first item already processed" : "to the end of the folder");
    QueueSelf();
  } catch (...) {
    LogCurrentException("Scan");
    // The scan never started: the manager must not wait for it.
    const bool had_task = !task_id_.empty();
    Abort();
    if (!had_task) {
      if (std::shared_ptr<Monitoring> monitoring = monitoring_.lock()) {
        monitoring->ScanFinished(key_);
      }
    }
  }
}

void MonitoredFolder::QueueSelf() {
  std::shared_ptr<MonitoringAddin> app = app_.lock();
  std::shared_ptr<JobQueue> queue = app ? app->GetJobQueue() : nullptr;
  if (!queue) throw ZError(kErrObjectNotSet, "The job queue is gone", kMonitoredFolderModule);
  queue->Queue(shared_from_this(), false);
}

void MonitoredFolder::Activate() {
  if (!items_ || !scanning_) return;
  std::shared_ptr<MonitoringAddin> app = app_.lock();
  if (!app) return;
  try {
    // Outlook is closing: the rest of the folder waits for the next start.
    if (app->Quitting()) {
      Decide(DecisionKind::kScanEnded, "Outlook was closing");
      Abort();
      return;
    }
    std::shared_ptr<Item> candidate;
    bool check_position = false;
    if (scanned_count_ == 0) {
      items_->Sort(app->Strings().Load(kStrCreatedField), true);
      candidate = items_->GetFirst();
    } else {
      check_position = changed_since_step_;
      candidate = NextCandidate();
    }
    changed_since_step_ = false;
    for (;;) {
      if (!candidate) {
        if (bump_count_ > 0) {
          LogErrorLine(
              "GetNext() returned Nothing while there were still "
              "messages that were supposed to be bumped.",
              "IJob_Activate");
        }
        LogLine("Completing scan for folder '" + FolderName() + "'; reached end of messages.");
        Decide(DecisionKind::kScanEnded, "it reached the end of the folder");
        Abort();
        return;
      }
      if (bump_count_ >= 1) {
        LogLine("Bumping GetNext() result to correct next-item pointer: " + candidate->Subject());
        --bump_count_;
        candidate = items_->GetNext();
        continue;
      }
      if (!check_position || !AlreadyPassed(*candidate)) break;
      candidate = items_->GetNext();
    }

    NoteHandled(*candidate);
    ZintraUtils* utils = app->Utils();
    if (!utils) throw ZError(kErrObjectNotSet, "ZintraUtils is gone", kMonitoredFolderModule);
    const bool processed =
        !utils->GetUserProperty(candidate->UserProperties(), kPropZintraLogged).IsEmpty();
    if (processed && StopWhenFound_) {
      if (first_processed_time_ == kUnsetDate) first_processed_time_ = current_creation_time_;
      const int32_t overlap = app->Settings().QuickscanOverlapHours;
      const int64_t hours_back = DateDiff("h", current_creation_time_, first_processed_time_);
      if (overlap < 1 || hours_back > overlap) {
        LogLine("Completing scan for folder '" + FolderName() +
                "'; reached "
                "a message that's already been processed: '" +
                candidate->Subject() + "'");
        Decide(DecisionKind::kScanEnded, "it reached an item already processed", candidate);
        Abort();
        return;
      }
    }

    ++scanned_count_;
    if (std::shared_ptr<JobQueue> queue = app->GetJobQueue()) {
      queue->TaskListProgress(task_id_, static_cast<float>(scanned_count_));
    }
    StartProcessing(candidate, "MonitoredFolder.IJob_Activate");
    QueueSelf();
  } catch (...) {
    LogCurrentException("IJob_Activate");
    Decide(DecisionKind::kScanEnded, "an error (see the error log)");
    // A step that failed would fail again: end the scan, so the manager can rescan.
    Abort();
  }
}

std::shared_ptr<Item> MonitoredFolder::NextCandidate() {
  // An item removed before the position (the add-in's working copy or a copy leaving,
  // or the user filing a mail) moved the next item under the position: step back over
  // it. A removal behind the position makes the step back land on a passed item, which
  // the position check skips. (A position left past the end reads as no item, so every
  // step is taken.)
  const int32_t back = removed_since_step_;
  removed_since_step_ = 0;
  for (int32_t i = 0; i < back; ++i) items_->GetPrevious();
  return items_->GetNext();
}

bool MonitoredFolder::AlreadyPassed(Item& candidate) const {
  const double created = candidate.CreationTime();
  if (created > current_creation_time_) return true;
  if (created < current_creation_time_) return false;
  const std::string entry_id = candidate.EntryID();
  return std::find(handled_at_time_.begin(), handled_at_time_.end(), entry_id) !=
         handled_at_time_.end();
}

void MonitoredFolder::NoteHandled(Item& candidate) {
  const double created = candidate.CreationTime();
  if (created != current_creation_time_) handled_at_time_.clear();
  current_creation_time_ = created;
  handled_at_time_.push_back(candidate.EntryID());
}

void MonitoredFolder::Abort() {
  std::shared_ptr<MonitoredFolder> keep = weak_from_this().lock();
  const std::string task = task_id_;
  task_id_.clear();
  current_creation_time_ = kUnsetDate;
  first_processed_time_ = kUnsetDate;
  handled_at_time_.clear();
  // Idle before the manager hears of it, so that a rescan it starts can run.
  scanning_ = false;
  if (task.empty()) return;
  try {
    std::shared_ptr<MonitoringAddin> app = app_.lock();
    if (std::shared_ptr<JobQueue> queue = app ? app->GetJobQueue() : nullptr) {
      queue->TaskListRemove(task);
    }
  } catch (...) {
    LogCurrentException("IJob_Abort");
  }
  if (std::shared_ptr<Monitoring> monitoring = monitoring_.lock()) monitoring->ScanFinished(key_);
}

void MonitoredFolder::LogLine(const std::string& text) {
  if (std::shared_ptr<MonitoringAddin> app = app_.lock()) app->Log().WriteLogMessage(text, false);
}

void MonitoredFolder::LogErrorLine(const std::string& text, const char* proc) {
  if (std::shared_ptr<MonitoringAddin> app = app_.lock()) {
    app->Log().LogCachedError(CachedError(
        ZError(kErrFolderMonitoring, text, kMonitoredFolderModule), kMonitoredFolderModule, proc));
  }
}

void MonitoredFolder::LogCurrentException(const char* proc) {
  CachedError rec;
  rec.SetToCurrentException(kMonitoredFolderModule, proc);
  if (std::shared_ptr<MonitoringAddin> app = app_.lock()) app->Log().LogCachedError(rec);
}

}  // namespace zintra
