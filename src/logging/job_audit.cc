#include "src/core/date.h"
#include "src/core/z_error.h"
#include "src/errors/cached_error.h"
#include "src/errors/programming_error.h"
#include "src/host/mapi_address.h"
#include "src/host/mapi_safe_item.h"
#include "src/host/mapi_session.h"
#include "src/host/outlook_constants.h"
#include "src/host/outlook_folder.h"
#include "src/host/outlook_item.h"
#include "src/jobs/job_queue.h"
#include "src/logging/job_changed.h"
#include "src/logging/logging_addin.h"
#include "src/logging/zintra_utils.h"
#include "src/outlook/library_factory.h"
#include "src/resources/string_table.h"

namespace zintra {

namespace {
constexpr int32_t kStrChangedBy = 2852;  // "Changed by |1 on |2"
}  // namespace

void JobAudit::Initialize(const std::shared_ptr<JobChanged>& owner,
                          const std::shared_ptr<Item>& copy, const std::string& key) {
  owner_ = owner;
  copy_ = copy;
  key_ = key;
  std::shared_ptr<Folder> folder = copy->Parent();
  description_ = "Audit '" + copy->Subject() + "' in folder '" +
                 (folder ? folder->Name() : std::string()) + "'";
}

void JobAudit::Start() {
  std::shared_ptr<LoggingAddin> app = app_.lock();
  if (!app || killed_) return;
  app->Log().WriteLogMessage("Queueing JobAudit: " + description_, false);
  if (std::shared_ptr<JobQueue> queue = app->GetJobQueue()) queue->Queue(shared_from_this(), true);
}

void JobAudit::Activate() {
  if (killed_) return;
  std::shared_ptr<JobAudit> self = shared_from_this();
  std::shared_ptr<LoggingAddin> app = app_.lock();
  ZintraUtils* utils = app ? app->Utils() : nullptr;
  if (!utils) {
    Kill();
    return;
  }
  app->Log().WriteLogMessage("Activated: " + description_, false);
  bool tagged = false;
  try {
    std::shared_ptr<UserProperties> props = copy_->UserProperties();
    if (utils->GetUserProperty(props, kPropZintraTag).ToString().empty()) {
      tagged = true;  // from here on the tag may be on the copy, even if the save fails
      utils->SetUserProperty(props, kPropZintraTag, kOlText,
                             Value(std::string(kZintraTagProcessing)), true);
      utils->SaveItem(copy_);
    }
    std::string user;
    if (std::shared_ptr<RdoSession> session = app->RDOSession()) {
      if (std::shared_ptr<AddressEntry> entry = session->CurrentUser()) user = entry->Name();
    }
    const std::string text =
        app->Strings().Format(kStrChangedBy, {user, FormatDate(app->Now(), "Short Date")});
    std::string body;
    auto safe = std::dynamic_pointer_cast<SafeItem>(
        app->CreateLibraryObject(SafeItemKind(utils->OLItemType(copy_))));
    if (safe) {
      safe->SetItem(copy_);
      body = safe->Body();
    } else {
      body = copy_->Body();
    }
    if (body.find(text) == std::string::npos) copy_->SetBody(body + "\r\n" + text);
    utils->SetUserProperty(props, kPropZintraTag, kOlText, Value(std::string()), true);
    utils->SaveItem(copy_);
    app->Log().WriteLogMessage("Completed: " + description_, false);
  } catch (...) {
    CachedError rec;
    rec.SetToCurrentException("JobAudit", "IJob_Activate");
    app->Log().LogCachedError(rec);
    // The copy must not keep a tag that nothing will clear: two tries.
    for (int attempt = 1; tagged && attempt <= 2; ++attempt) {
      try {
        utils->SetUserProperty(copy_->UserProperties(), kPropZintraTag, kOlText,
                               Value(std::string()), true);
        utils->SaveItem(copy_);
        break;
      } catch (...) {
        IgnoreCurrentException();
      }
    }
  }
  Kill();
}

void JobAudit::JobChanged_Kill() {
  owner_.reset();
  Kill();
}

void JobAudit::Kill() {
  if (killed_) return;
  killed_ = true;
  std::shared_ptr<JobChanged> owner = std::move(owner_);
  copy_.reset();
  if (owner) owner->JobAuditEnded(key_);
}

}  // namespace zintra
