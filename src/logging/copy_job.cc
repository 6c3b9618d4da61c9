#include "src/logging/copy_job.h"

#include "src/core/z_error.h"
#include "src/errors/cached_error.h"
#include "src/errors/programming_error.h"
#include "src/host/outlook_constants.h"
#include "src/host/outlook_folder.h"
#include "src/host/outlook_item.h"
#include "src/jobs/job_engine_log.h"
#include "src/jobs/job_queue.h"
#include "src/logging/logging_addin.h"
#include "src/logging/zintra_utils.h"
#include "src/outlook/folder_helpers.h"
#include "src/settings/reg_settings.h"

namespace zintra {

void CopyJob::Initialize(const std::shared_ptr<JobProcess>& owner,
                         const std::shared_ptr<Folder>& target, const std::string& key) {
  owner_ = owner;
  target_ = target;
  key_ = key;
  subject_ = owner->Subject();
  described_folder_ = target;
}

const std::string& CopyJob::Description() const {
  if (!described_) {
    std::string path;
    if (std::shared_ptr<Folder> folder = described_folder_.lock()) {
      try {
        path = FullMAPIPathName(folder);
        described_ = true;
      } catch (const ZError&) {
      }
    }
    description_ = std::string(DescriptionPrefix()) + subject_ + "' in folder '" + path + "'";
  }
  return description_;
}

void CopyJob::Start() {
  std::shared_ptr<LoggingAddin> app = app_.lock();
  if (!app || killed_) return;
  if (app->Log().KeepsDebugLines()) {
    app->Log().WriteLogMessage(std::string("Queueing ") + ClassName() + ": " + Description(),
                               false);
  }
  if (std::shared_ptr<JobQueue> queue = app->GetJobQueue()) queue->Queue(shared_from_this(), true);
}

void CopyJob::Activate() {
  if (killed_) return;
  std::shared_ptr<CopyJob> self = shared_from_this();
  std::shared_ptr<LoggingAddin> app = app_.lock();
  ZintraUtils* utils = app ? app->Utils() : nullptr;
  if (!app || !utils || !owner_) {
    End(true);
    return;
  }
  if (app->Log().KeepsDebugLines()) {
    app->Log().WriteLogMessage("Activated: " + Description(), false);
  }
  std::shared_ptr<Item> copy;
  bool recorded = false;
  try {
    copy = owner_->CopyItemTo(target_);
    if (app->Settings().StripAttachments) owner_->StripAttachments(copy);
    owner_->AddCopy(kind_, copy, target_);
    recorded = true;
    utils->SetUserProperty(copy->UserProperties(), kPropZintraTag, kOlText, Value(std::string()),
                           true);
    utils->SaveItem(copy);
  } catch (...) {
    CachedError rec;
    rec.SetToCurrentException(ClassName(), "IJob_Activate");
    app->Log().LogCachedError(rec);
    if (copy && !recorded) {
      // A copy nobody will link to would sit in the folder with its "Processing" tag
      // for ever: it goes.
      try {
        utils->PermDeleteItem(copy);
      } catch (...) {
        CachedError del;
        del.SetToCurrentException(ClassName(), "IJob_Activate");
        app->Log().LogCachedError(del);
      }
    } else if (copy) {
      // Recorded and linked later: it must at least lose its tag (two tries).
      for (int attempt = 1; attempt <= 2; ++attempt) {
        try {
          utils->SetUserProperty(copy->UserProperties(), kPropZintraTag, kOlText,
                                 Value(std::string()), true);
          utils->SaveItem(copy);
          break;
        } catch (...) {
          IgnoreCurrentException();
        }
      }
    }
  }
  End(false);
}

void CopyJob::Abort() { End(true); }

void CopyJob::JobProcess_Kill() {
  owner_.reset();
  Kill();
}

void CopyJob::Kill() { End(false); }

void CopyJob::End(bool aborted) {
  if (killed_) return;
  killed_ = true;
  std::shared_ptr<JobProcess> owner = std::move(owner_);
  target_.reset();
  if (owner) owner->CopyJobEnded(kind_, key_, aborted);
}

}  // namespace zintra
