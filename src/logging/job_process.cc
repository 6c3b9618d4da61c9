#include "src/logging/job_process.h"

#include <string_view>

#include "src/contacts/contact_search.h"
#include "src/core/text.h"
#include "src/core/z_error.h"
#include "src/errors/cached_error.h"
#include "src/errors/programming_error.h"
#include "src/host/mapi_safe_item.h"
#include "src/host/mapi_session.h"
#include "src/host/outlook_application.h"
#include "src/host/outlook_constants.h"
#include "src/host/outlook_folder.h"
#include "src/host/outlook_item.h"
#include "src/host/outlook_item_parts.h"
#include "src/jobs/job_engine_log.h"
#include "src/jobs/job_queue.h"
#include "src/logging/copy_job.h"
#include "src/logging/logging_addin.h"
#include "src/logging/zintra_utils.h"
#include "src/outlook/folder_helpers.h"
#include "src/outlook/library_factory.h"
#include "src/resources/string_table.h"
#include "src/settings/reg_settings.h"

namespace zintra {

namespace {

constexpr char kJobProcessModule[] = "JobProcess";

}  // namespace

int32_t TaskPrefixOffset(int32_t item_class) {
  switch (static_cast<ItemClass>(item_class)) {
    case ItemClass::kAppointment:
      return 0;
    case ItemClass::kContact:
      return 1;
    case ItemClass::kDistList:
      return 2;
    case ItemClass::kDocument:
      return 3;
    case ItemClass::kJournal:
      return 4;
    case ItemClass::kMail:
      return 5;
    case ItemClass::kMeeting:
      return 6;
    case ItemClass::kNote:
      return 7;
    case ItemClass::kPost:
      return 8;
    case ItemClass::kRemote:
      return 9;
    case ItemClass::kReport:
      return 10;
    case ItemClass::kTask:
      return 11;
    case ItemClass::kTaskRequestAccept:
      return 12;
    case ItemClass::kTaskRequestDecline:
      return 13;
    case ItemClass::kTaskRequest:
      return 14;
    case ItemClass::kTaskRequestUpdate:
      return 15;
    case ItemClass::kSharing:
      return -1;
  }
  return -1;
}

int32_t TaskIconFor(int32_t ol_item_type) {
  // The task list's image list holds the item icons from 110 on, in OlItemType order.
  constexpr int32_t kItemIconBase = 110;
  return kItemIconBase + (ol_item_type >= 0 && ol_item_type <= 7 ? ol_item_type : 0);
}

JobProcess::JobProcess(std::weak_ptr<LoggingAddin> app) : app_(std::move(app)) {}

JobProcess::~JobProcess() = default;

ZintraUtils& JobProcess::Utils() const {
  std::shared_ptr<LoggingAddin> app = App();
  ZintraUtils* utils = app ? app->Utils() : nullptr;
  if (!utils) throw ZError(kErrObjectNotSet, "The add-in has shut down", kJobProcessModule);
  return *utils;
}

const RegSettings& JobProcess::Settings() const {
  std::shared_ptr<LoggingAddin> app = App();
  if (!app) throw ZError(kErrObjectNotSet, "The add-in has shut down", kJobProcessModule);
  return app->Settings();
}

bool JobProcess::Initialize(const std::string& caller, const std::shared_ptr<Item>& item,
                            bool AmIncomingFold, bool AmOutgoingFold) {
  std::shared_ptr<LoggingAddin> app = App();
  if (!app || !app->Utils()) return false;
  try {
    std::string reason;
    if (!pPreScreen(caller, item, AmIncomingFold, AmOutgoingFold, reason)) return false;
  } catch (...) {
    LogCurrentException("Initialize");
    Decide(item, {.kind = DecisionKind::kEnded, .reason = "an error while screening it"});
    return false;
  }
  screened_ = true;
  AmIncomingFold_ = AmIncomingFold;
  AmOutgoingFold_ = AmOutgoingFold;
  ZintraUtils& utils = Utils();
  try {
    if (DebugLines()) LogLine("Begin processing for item '" + subject_ + "'");
    entry_id_ = item->EntryID();
    std::shared_ptr<Folder> parent = parent_ ? parent_ : item->Parent();
    store_id_ = parent ? parent->StoreID() : std::string();
    std::shared_ptr<JobQueue> queue = app->GetJobQueue();
    if (!queue) throw ZError(kErrObjectNotSet, "The job queue is gone", kJobProcessModule);
    const int32_t offset = TaskPrefixOffset(static_cast<int32_t>(item_class_));
    const std::string prefix =
        offset < 0 ? std::string() : app->Strings().Load(kProcessTaskPrefixBase + offset);
    task_id_ = queue->TaskListAdd(prefix + subject_,
                                  TaskIconFor(ZintraUtils::OLItemType(item_class_)), 1.0f, false);
    marked_ = true;
    std::shared_ptr<UserProperties> props = std::move(screened_props_);
    std::shared_ptr<UserProperty> tag = std::move(screened_tag_);
    if (props) {
      // Screening looked "Zintra Tag" up in this same call: no need to find it again.
      utils.SetFoundUserProperty(props, tag, kPropZintraTag, kOlText,
                                 Value(std::string(kZintraTagProcessing)), true);
    } else {
      props = item->UserProperties();
      utils.SetUserProperty(props, kPropZintraTag, kOlText,
                            Value(std::string(kZintraTagProcessing)), true);
    }
    utils.SaveItem(item);
    marked_item_ = item;
    marked_props_ = props;
    item_ = item;
    if (app->Settings().MakeWorkingCopy) MakeWorkingCopy(item);
    addin_kill_ = app->KillBroadcast().Connect([this] { Kill(); });
    if (DebugLines()) LogLine("JobProcess queuing " + subject_);
    if (Deciding()) Decide(item, {.kind = DecisionKind::kQueued});
    queue->Queue(shared_from_this(), false);
    return true;
  } catch (...) {
    LogCurrentException("Initialize");
    Decide(item, {.kind = DecisionKind::kEnded, .reason = "an error while marking it"});
    // Nothing has been decided about the item yet: it is left as it was, so that a
    // later event or scan can try again.
    UndoMark(item);
    return false;
  }
}

void JobProcess::UndoMark(const std::shared_ptr<Item>& item) {
  killed_ = true;
  addin_kill_.Disconnect();
  std::shared_ptr<LoggingAddin> app = App();
  if (marked_ && app && app->Utils()) {
    try {
      ClearTag(item);
    } catch (...) {
      LogCurrentException("Initialize");
    }
  }
  if (working_copy_ && app && app->Utils()) {
    try {
      Utils().PermDeleteItem(working_copy_);
    } catch (...) {
      LogCurrentException("Initialize");
    }
  }
  if (!task_id_.empty() && app) {
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
  working_copy_.reset();
  marked_ = false;
}

void JobProcess::MakeWorkingCopy(const std::shared_ptr<Item>& item) {
  std::shared_ptr<LoggingAddin> app = App();
  std::shared_ptr<RdoSession> session = app->RDOSession();
  if (!session) throw ZError(kErrObjectNotSet, "No library session", kJobProcessModule);
  std::shared_ptr<RdoMessage> message = session->GetMessageFromID(entry_id_, store_id_);
  ZintraUtils& utils = Utils();
  std::shared_ptr<RdoMessage> copy;
  utils.PreSaveItem();
  try {
    copy = message->CopyTo(session->GetFolderFromID(item->Parent()->EntryID(), store_id_));
    utils.PostSaveItem();
  } catch (...) {
    utils.PostSaveItem();
    throw;
  }
  working_copy_ = app->Session()->GetItemFromID(copy->EntryID(), copy->StoreID());
  item_ = working_copy_;
}

bool JobProcess::pPreScreen(const std::string& caller, const std::shared_ptr<Item>& item,
                            bool AmIncomingFold, bool AmOutgoingFold, std::string& reason) {
  ZintraUtils& utils = Utils();
  std::string folder_name;
  ZintraUtils::ScreenedFacts facts;
  facts.describe_later = true;
  // 1-3: skipped, nothing written.
  bool skip = !utils.GeneralScreening("new", item, AmIncomingFold, AmOutgoingFold, reason, subject_,
                                      folder_name, item_description_, &facts);
  (void)caller;
  folder_name_ = folder_name;
  described_as_ = facts.described_as;
  described_on_ = facts.described_on;
  if (!skip) {
    item_class_ = facts.item_class;
    class_known_ = true;
    parent_ = facts.parent;
    screened_props_ = facts.user_properties ? facts.user_properties : item->UserProperties();
    screened_tag_ = facts.tag;
    const Value logged =
        utils.GetUserProperty(screened_props_, kPropZintraLogged, screened_logged_);
    if (!logged.IsEmpty()) {
      reason = "already marked logged";
      skip = true;
    } else {
      if (DebugLines())
        LogLine("Item '" + subject_ + "' has Zintra Logged property of '" + logged.ToString() +
                "'; continuing screening.");
    }
  }
  if (!skip && text::EqualsNoCase(std::string_view(item->MessageClass()).substr(0, 32),
                                  kAvtMessageClassPrefix)) {
    reason = "AVT MessageClass";
    skip = true;
  }
  if (skip) {
    screen_reason_ = reason;
    LogLine("Item '" + subject_ + "' skipped because " + reason);
    Decide(item, {.kind = DecisionKind::kSkipped, .reason = reason});
    return false;
  }

  // 4-8: marked not-logged for good.
  if (item_class_ == ItemClass::kTask) {
    if (InDefaultFolder(item, kOlFolderTasks)) {
      const std::string owner = item->Owner();
      const std::string user = CurrentUserName();
      if (!owner.empty() && owner != user) {
        return MarkNotLogged(item, "Task (owned by '" + owner +
                                       "') is not owned by the current user ('" + user + "').");
      }
    } else if (item->Ownership() == kOlDelegatedTask) {
      return MarkNotLogged(item, "Task is not owned by the current user.");
    }
  }
  const int32_t sensitivity = item->Sensitivity();
  if (sensitivity >= kOlPersonal && sensitivity <= kOlConfidential) {
    return MarkNotLogged(item, "Item is marked personal/private/confidential");
  }
  if (!HasLinksOrRecipients(item)) return MarkNotLogged(item, "Item has no links or recipients");
  if (AmIncomingFold && Settings().IgnoreItemsFromInternal && ItemFromInternalUser(item)) {
    return MarkNotLogged(item, "Item has no links or recipients");
  }
  if (item_class_ == ItemClass::kAppointment && InDefaultFolder(item, kOlFolderCalendar) &&
      ItemFromInternalUser(item)) {
    return MarkNotLogged(item, "Item has no links or recipients outside organization");
  }
  return true;
}

int32_t JobProcess::ItemType(const std::shared_ptr<Item>& item) const {
  return class_known_ ? ZintraUtils::OLItemType(item_class_) : Utils().OLItemType(item);
}

std::shared_ptr<SafeItem> JobProcess::SafeItemFor(const std::shared_ptr<Item>& item) {
  if (safe_ && safe_of_.lock() == item) return safe_;
  std::shared_ptr<LoggingAddin> app = App();
  if (!app || !item) return nullptr;
  auto safe =
      std::dynamic_pointer_cast<SafeItem>(app->CreateLibraryObject(SafeItemKind(ItemType(item))));
  if (!safe) return nullptr;
  safe->SetItem(item);
  safe_ = safe;
  safe_of_ = item;
  return safe;
}

bool JobProcess::DebugLines() const {
  if (app_.expired()) return false;
  if (!log_) {
    std::shared_ptr<LoggingAddin> app = App();
    if (!app) return false;
    log_ = &app->Log();
  }
  return log_->KeepsDebugLines();
}

bool JobProcess::MarkNotLogged(const std::shared_ptr<Item>& item, const std::string& reason) {
  screen_reason_ = reason;
  LogLine("Item '" + subject_ + "' being marked not-logged and aborted because " + reason);
  Decide(item, {.kind = DecisionKind::kMarkedNotLogged, .reason = reason});
  ZintraUtils& utils = Utils();
  std::shared_ptr<UserProperties> props = std::move(screened_props_);
  if (props) {
    // Screening looked "Zintra Logged" up in this same call: no need to find it again.
    utils.SetFoundUserProperty(props, screened_logged_, kPropZintraLogged, kOlYesNo, Value(false),
                               true);
  } else {
    utils.SetUserProperty(item->UserProperties(), kPropZintraLogged, kOlYesNo, Value(false), true);
  }
  screened_tag_.reset();
  screened_logged_.reset();
  utils.SaveItem(item);
  return false;
}

bool JobProcess::HasLinksOrRecipients(const std::shared_ptr<Item>& item) {
  try {
    if (item->Recipients()->Count() > 0) return true;  // the links cannot change the answer
  } catch (const ZError& e) {
    if (e.Number() != kErrNoSuchMember) throw;
  }
  return item->Links()->Count() > 0;
}

bool JobProcess::InDefaultFolder(const std::shared_ptr<Item>& item, int32_t folder_type) {
  std::shared_ptr<LoggingAddin> app = App();
  std::shared_ptr<Namespace> session = app ? app->Session() : nullptr;
  if (!session) return false;
  std::shared_ptr<Folder> folder;
  try {
    folder = session->GetDefaultFolder(folder_type);
  } catch (const ZError&) {
    return false;  // a profile without that default folder
  }
  return folder && SameFolder(item->Parent(), folder);
}

bool JobProcess::SameFolder(const std::shared_ptr<Folder>& a, const std::shared_ptr<Folder>& b) {
  std::shared_ptr<LoggingAddin> app = App();
  std::shared_ptr<MapiUtils> utils = app ? app->LibraryUtils() : nullptr;
  if (!utils) throw ZError(kErrObjectNotSet, "No library utilities", kJobProcessModule);
  if (!a || !b) return false;
  Value key_a = FolderSearchKey(a, *utils);
  // `b` is the folder looked for (a log or shared folder, a default folder): its key is
  // remembered; `a` is the folder where something is now, read afresh.
  return FoldersSame(a, key_a, b, Utils().RememberedSearchKey(b, *utils), Utils().Errors());
}

std::string JobProcess::CurrentUserName() {
  std::shared_ptr<LoggingAddin> app = App();
  std::shared_ptr<RdoSession> session = app ? app->RDOSession() : nullptr;
  std::shared_ptr<AddressEntry> user = Utils().CurrentUser(session);
  return user ? user->Name() : std::string();
}

void JobProcess::Activate() {
  if (killed_) return;
  std::shared_ptr<JobProcess> self = shared_from_this();
  const bool gone = [this] {
    std::shared_ptr<LoggingAddin> app = App();
    return !app || !app->Utils();
  }();
  if (gone) {
    Kill();
    return;
  }
  try {
    if (stage_ == Stage::kSearch) {
      if (DebugLines()) LogLine("JobProcess Activate for item '" + subject_ + "'");
      if (!ValidateItem()) {
        LogErrorLine(
            "Item '" + subject_ + "' " + ItemDescription() + " was deleted by another process.",
            "IJob_Activate");
        Decide(nullptr, {.kind = DecisionKind::kEnded, .reason = "deleted by another process"});
        // The job ends: Kill finds the item again if it can and clears its mark.
        Kill();
        return;
      }
      Step1_SearchLinks();
      return;
    }
    RunStage();
  } catch (...) {
    Fail("IJob_Activate");
  }
}

void JobProcess::Abort() {
  LogLine("Aborted processing item: '" + subject_ + "'");
  Decide(nullptr, {.kind = DecisionKind::kEnded,
                   .reason = "the queue aborted it: Outlook quit, or the user stopped the work"});
  Kill();
}

std::string JobProcess::JobDescription() {
  return "Process item: " + subject_ + " " + ItemDescription();
}

const std::string& JobProcess::ItemDescription() const {
  if (described_as_) {
    item_description_ = ZintraUtils::DescribeItem(described_as_, described_on_);
    described_as_ = nullptr;
  }
  return item_description_;
}

bool JobProcess::ValidateItem() {
  if (killed_ || !item_) return false;
  try {
    (void)item_->Subject();
    return true;
  } catch (const ZError&) {
    return false;
  }
}

}  // namespace zintra
