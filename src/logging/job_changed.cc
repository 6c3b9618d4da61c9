#include "src/logging/job_changed.h"

#include "src/core/z_error.h"
#include "src/errors/cached_error.h"
#include "src/errors/programming_error.h"
#include "src/host/mapi_object.h"
#include "src/host/outlook_application.h"
#include "src/host/outlook_constants.h"
#include "src/host/outlook_item.h"
#include "src/jobs/job_queue.h"
#include "src/logging/job_process.h"
#include "src/logging/logged_items_link.h"
#include "src/logging/logging_addin.h"
#include "src/logging/zintra_utils.h"
#include "src/resources/string_table.h"
#include "src/settings/reg_settings.h"

namespace zintra {

namespace {

constexpr char kJobChangedModule[] = "JobChanged";
constexpr double kSecondsPerDay = 86400.0;

}  // namespace

JobChanged::JobChanged(std::weak_ptr<LoggingAddin> app) : app_(std::move(app)) {}

JobChanged::~JobChanged() = default;

void JobChanged::Addin_RegSettingsChanged() {
  if (std::shared_ptr<LoggingAddin> app = app_.lock()) {
    audit_trail_ = app->Settings().AuditTrail;
    min_audit_interval_ = app->Settings().MinAuditInterval;
  }
}

bool JobChanged::Initialize(const std::shared_ptr<Item>& item) {
  std::shared_ptr<LoggingAddin> app = app_.lock();
  ZintraUtils* utils = app ? app->Utils() : nullptr;
  if (!utils || !item) return false;
  // The audit trail setting is read first, the interval only when it is needed.
  audit_trail_ = app->Settings().AuditTrail;
  if (!audit_trail_) return false;
  try {
    std::shared_ptr<UserProperties> props = item->UserProperties();
    if (!utils->GetUserProperty(props, kPropZintraTag).ToString().empty()) return false;
    const Value logged = utils->GetUserProperty(props, kPropZintraLogged);
    const Value shared = utils->GetUserProperty(props, kPropZintraShared);
    const bool is_logged = !logged.IsEmpty() && logged.ToBool();
    const bool is_shared = !shared.IsEmpty() && shared.ToBool();
    if (!is_logged && !is_shared) return false;
    min_audit_interval_ = app->Settings().MinAuditInterval;
    const Value last = utils->GetNamedProp(item->MAPIOBJECT(),
                                           Value(std::string(kPropZintraLastAudited)), kPtSystime);
    // A change within the interval is the echo of the system's own last save.
    if (!last.IsEmpty() && last.ToDouble() + min_audit_interval_ / kSecondsPerDay >= app->Now()) {
      return false;
    }
    subject_ = item->Class() == ItemClass::kContact ? item->FullName() : item->Subject();
    LogLine("Begin auditing for item '" + subject_ + "'");
    std::shared_ptr<JobQueue> queue = app->GetJobQueue();
    if (!queue) return false;
    const int32_t offset = TaskPrefixOffset(static_cast<int32_t>(item->Class()));
    const std::string prefix =
        offset < 0 ? std::string() : app->Strings().Load(kAuditTaskPrefixBase + offset);
    task_id_ =
        queue->TaskListAdd(prefix + subject_, TaskIconFor(utils->OLItemType(item)), 1.0f, false);
    item_ = item;
    marked_ = true;
    utils->SetUserProperty(props, kPropZintraTag, kOlText, Value(std::string(kZintraTagProcessing)),
                           true);
    utils->SaveItem(item);
    addin_kill_ = app->KillBroadcast().Connect([this] { Kill(); });
    queue->Queue(shared_from_this(), false);
    return true;
  } catch (...) {
    LogCurrentException("Initialize");
    failed_ = true;
    if (marked_ || !task_id_.empty()) Kill();
    return false;
  }
}

void JobChanged::Activate() {
  if (killed_ || activated_) return;
  activated_ = true;
  std::shared_ptr<JobChanged> self = shared_from_this();
  try {
    if (!ValidateItem()) {
      Kill();
      return;
    }
    LogLine("Searching for derived items for item '" + subject_ + "'");
    StartAudits(kPropLoggedEntryIds, kPropLoggedStoreIds);
    StartAudits(kPropSharedCopyEntryIds, kPropSharedCopyStoreIds);
    if (audits_.Count() == 0) {
      Kill();
      return;
    }
    for (const std::shared_ptr<JobAudit>& audit : audits_.Values()) audit->Start();
  } catch (...) {
    LogCurrentException("IJob_Activate");
    failed_ = true;
    Kill();
  }
}

void JobChanged::StartAudits(const std::string& entry_ids_name, const std::string& store_ids_name) {
  std::shared_ptr<LoggingAddin> app = app_.lock();
  LoggedItemsLink link(*app->Utils());
  link.Initialize(item_, entry_ids_name, store_ids_name);
  for (const auto& [entry_id, store_id] : link.Links()) {
    std::shared_ptr<Item> copy;
    try {
      copy = app->Session()->GetItemFromID(entry_id, store_id);
    } catch (const ZError&) {
      continue;  // a copy deleted since is not audited
    }
    if (!copy) continue;
    const std::string key = app->GenerateKey();
    auto audit = std::make_shared<JobAudit>(app_);
    audit->Initialize(shared_from_this(), copy, key);
    audits_.Add(audit, key);
    ++audits_started_;
    app->Utils()->WatchLingeringJob("Lingering JobAudit after JobChanged killed: ", audit);
  }
  link.Kill();
}

void JobChanged::JobAuditEnded(const std::string& key) {
  if (audits_.Contains(key)) audits_.Remove(key);
  if (!killed_ && activated_ && audits_.Count() == 0) Kill();
}

void JobChanged::Abort() {
  LogLine("Aborted auditing item: '" + subject_ + "'");
  Kill();
}

bool JobChanged::ValidateItem() {
  if (killed_ || !item_) return false;
  try {
    (void)item_->Subject();
    return true;
  } catch (const ZError&) {
    return false;
  }
}

void JobChanged::Kill() {
  if (killed_) {
    LogLine(std::string(kJobChangedModule) + "_Kill called more than once");
    return;
  }
  killed_ = true;
  std::shared_ptr<JobChanged> self = shared_from_this();
  addin_kill_.Disconnect();
  for (const std::shared_ptr<JobAudit>& audit : audits_.Values()) audit->JobChanged_Kill();
  audits_.Clear();
  std::shared_ptr<LoggingAddin> app = app_.lock();
  ZintraUtils* utils = app ? app->Utils() : nullptr;
  // A failed write is tried once more: the tag must not stay on the item.
  for (int attempt = 1; marked_ && utils && item_ && attempt <= 2; ++attempt) {
    try {
      utils->SetNamedProp(item_->MAPIOBJECT(), Value(std::string(kPropZintraLastAudited)),
                          Value::Date(app->Now()), kPtSystime, false);
      utils->SetUserProperty(item_->UserProperties(), kPropZintraTag, kOlText, Value(std::string()),
                             true);
      utils->SaveItem(item_);
      break;
    } catch (...) {
      LogCurrentException("Kill");
      failed_ = true;
    }
  }
  if (failed_ && app) {
    app->Log().LogCachedError(
        CachedError(ZError(static_cast<int32_t>(0x80040201u),
                           "Failed auditing item: '" + subject_ + "'", kJobChangedModule),
                    kJobChangedModule, "Kill"));
  }
  if (app && !task_id_.empty()) {
    if (std::shared_ptr<JobQueue> queue = app->GetJobQueue()) {
      try {
        queue->TaskListRemove(task_id_);
      } catch (...) {
        IgnoreCurrentException();
      }
    }
  }
  task_id_.clear();
  item_.reset();
}

void JobChanged::LogLine(const std::string& text) {
  if (std::shared_ptr<LoggingAddin> app = app_.lock()) app->Log().WriteLogMessage(text, false);
}

void JobChanged::LogCurrentException(const char* proc) {
  CachedError rec;
  rec.SetToCurrentException(kJobChangedModule, proc);
  if (std::shared_ptr<LoggingAddin> app = app_.lock()) app->Log().LogCachedError(rec);
}

}  // namespace zintra
