// JobProcess: the end of a job (Kill and the final marks), finding the item again,
// and the job's log lines.
#include "src/logging/job_process.h"

#include "src/contacts/contact_search.h"
#include "src/core/text.h"
#include "src/core/z_error.h"
#include "src/errors/cached_error.h"
#include "src/host/mapi_session.h"
#include "src/host/outlook_application.h"
#include "src/host/outlook_constants.h"
#include "src/host/outlook_folder.h"
#include "src/host/outlook_item.h"
#include "src/jobs/job_queue.h"
#include "src/logging/copy_job.h"
#include "src/logging/logging_addin.h"
#include "src/logging/zintra_utils.h"
#include "src/outlook/folder_helpers.h"
#include "src/resources/string_table.h"
#include "src/settings/reg_settings.h"

namespace zintra {

namespace {

constexpr char kJobProcessEndModule[] = "JobProcess";
// Errors the job reports in its own words carry this number (VB's vbObjectError + 513).
constexpr int32_t kErrProcessing = static_cast<int32_t>(0x80040201u);

}  // namespace

void JobProcess::Kill() {
  if (killed_) {
    LogLine(std::string(kJobProcessEndModule) + "_Kill called more than once");
    return;
  }
  killed_ = true;
  const bool copying_started = stage_ != Stage::kSearch;
  stage_ = Stage::kDone;
  std::shared_ptr<JobProcess> self = shared_from_this();
  addin_kill_.Disconnect();
  std::shared_ptr<LoggingAddin> app = App();

  // Copy jobs still alive end with their owner.
  for (auto* pending : {&pending_logs_, &pending_shared_}) {
    // Told that their owner ended, they do not report back.
    const std::vector<std::shared_ptr<CopyJob>> jobs = std::move(*pending);
    pending->clear();
    for (const std::shared_ptr<CopyJob>& job : jobs) job->JobProcess_Kill();
  }
  search_complete_.Disconnect();
  if (search_) {
    std::shared_ptr<ContactSearch> search = std::move(search_);
    search->Kill();
  }
  if (marked_ && app && app->Utils()) {
    if (!copying_started && app->LeavingWorkForNextStart()) {
      ClearMark();
    } else {
      WriteFinalMarks();
    }
  }
  if (failed_) LogErrorLine("Failed processing item: '" + subject_ + "'", "Kill");
  if (app) {
    if (std::shared_ptr<JobQueue> queue = app->GetJobQueue()) {
      if (!task_id_.empty()) {
        try {
          queue->TaskListRemove(task_id_);
        } catch (...) {
          LogCurrentException("Kill");
        }
      }
      if (!wait_key_.empty()) {
        try {
          queue->WaitListRelease(wait_key_);
        } catch (...) {
          LogCurrentException("Kill");
        }
      }
    }
  }
  task_id_.clear();
  wait_key_.clear();
  if (working_copy_ && app && app->Utils()) {
    try {
      Utils().PermDeleteItem(working_copy_);
    } catch (...) {
      LogCurrentException("Kill");
    }
  }
  working_copy_.reset();
  item_.reset();
  final_item_.reset();
  final_props_.reset();
  final_object_.reset();
  last_copy_.reset();
  screened_props_.reset();
  screened_tag_.reset();
  screened_logged_.reset();
  marked_props_.reset();
  safe_.reset();
  parent_.reset();
  found_contacts_.clear();
  logged_copies_.clear();
  shared_copies_.clear();
}

void JobProcess::ClearTag(const std::shared_ptr<Item>& item) {
  Utils().SetUserProperty(item->UserProperties(), kPropZintraTag, kOlText, Value(std::string()),
                          true);
  Utils().SaveItem(item);
}

void JobProcess::ClearMark() {
  try {
    if (std::shared_ptr<Item> item = FindOriginal()) ClearTag(item);
  } catch (...) {
    LogCurrentException("Kill");
  }
}

void JobProcess::WriteFinalMarks() {
  // A failed write is tried once more on the item found afresh: an item left with its
  // "Processing" tag would never be looked at again.
  for (int attempt = 1; attempt <= 2; ++attempt) {
    std::shared_ptr<Item> item = std::move(final_item_);
    std::shared_ptr<UserProperties> props = std::move(final_props_);
    std::shared_ptr<MapiObject> object = std::move(final_object_);
    const bool logged_written = item != nullptr;
    try {
      if (!item) item = FindOriginal();
    } catch (...) {
      item = nullptr;
    }
    if (!item) {
      if (!original_missing_) {
        original_missing_ = true;
        LogErrorLine("Unable to find original item '" + subject_ + "' " + ItemDescription() +
                         " to mark it as logged",
                     "Kill");
      }
      return;
    }
    try {
      ZintraUtils& utils = Utils();
      std::shared_ptr<LoggingAddin> app = App();
      if (!props) props = item->UserProperties();
      if (!logged_written) {
        utils.SetUserProperty(props, kPropZintraLogged, kOlYesNo, Value(logged_), true);
      }
      if (!object) object = item->MAPIOBJECT();
      // store_id_ is the store of the item found again (see LinkCopies).
      utils.SetNamedTextProp(store_id_, object, kPropZintraLastAudited, Value::Date(app->Now()),
                             kPtSystime, false);
      utils.SetUserProperty(props, kPropZintraTag, kOlText, Value(std::string()), true);
      utils.SaveItem(item);
      return;
    } catch (...) {
      failed_ = true;
      LogCurrentException("Kill");
      // The held reference may be what failed: the second attempt looks the item up.
      if (!working_copy_) item_.reset();
    }
  }
}

std::shared_ptr<Item> JobProcess::FindOriginal() {
  if (!working_copy_ && item_) {
    try {
      (void)item_->Subject();
      return item_;
    } catch (const ZError&) {
      // The held reference went stale (moved or deleted): look it up by its identifiers.
    }
  }
  std::shared_ptr<LoggingAddin> app = App();
  std::shared_ptr<Namespace> session = app ? app->Session() : nullptr;
  if (!session || entry_id_.empty()) return nullptr;
  try {
    return session->GetItemFromID(entry_id_, store_id_);
  } catch (const ZError&) {
    return nullptr;
  }
}

void JobProcess::QueueSelf() {
  std::shared_ptr<LoggingAddin> app = App();
  std::shared_ptr<JobQueue> queue = app ? app->GetJobQueue() : nullptr;
  if (!queue) {
    Kill();
    return;
  }
  queue->Queue(shared_from_this(), true);
}

int32_t JobProcess::FoundContactCount() const {
  int32_t n = 0;
  for (const auto& group : found_contacts_) n += static_cast<int32_t>(group.contacts.size());
  return n;
}

int32_t JobProcess::PendingCopyJobs(CopyKind kind) const {
  return static_cast<int32_t>((kind == CopyKind::kLogged ? pending_logs_ : pending_shared_).size());
}

size_t JobProcess::CopyCount(CopyKind kind) const {
  return (kind == CopyKind::kLogged ? logged_copies_ : shared_copies_).size();
}

void JobProcess::LogLine(const std::string& text) {
  if (std::shared_ptr<LoggingAddin> app = App()) app->Log().WriteLogMessage(text, false);
}

void JobProcess::LogErrorLine(const std::string& text, const char* proc) {
  if (std::shared_ptr<LoggingAddin> app = App()) {
    app->Log().LogCachedError(CachedError(ZError(kErrProcessing, text, kJobProcessEndModule),
                                          kJobProcessEndModule, proc));
  }
}

void JobProcess::LogError(const ZError& error, const char* proc) {
  if (std::shared_ptr<LoggingAddin> app = App()) {
    app->Log().LogCachedError(CachedError(error, kJobProcessEndModule, proc));
  }
}

void JobProcess::LogCurrentException(const char* proc) {
  CachedError rec;
  rec.SetToCurrentException(kJobProcessEndModule, proc);
  if (std::shared_ptr<LoggingAddin> app = App()) app->Log().LogCachedError(rec);
}

void JobProcess::Fail(const char* proc) {
  LogCurrentException(proc);
  Decide(nullptr, {.kind = DecisionKind::kEnded, .reason = std::string("an error in ") + proc});
  failed_ = true;
  if (!killed_) Kill();
}

}  // namespace zintra
