// JobProcess: the copy stages (every logged copy before any shared copy), the two
// copy operations, and final post-processing.
#include <set>

#include "src/core/z_error.h"
#include "src/host/mapi_safe_item.h"
#include "src/host/mapi_session.h"
#include "src/host/outlook_application.h"
#include "src/host/outlook_constants.h"
#include "src/host/outlook_folder.h"
#include "src/host/outlook_item.h"
#include "src/logging/copy_job.h"
#include "src/logging/job_process.h"
#include "src/logging/logged_items_link.h"
#include "src/logging/logging_addin.h"
#include "src/logging/zintra_utils.h"
#include "src/outlook/library_factory.h"
#include "src/settings/reg_settings.h"

namespace zintra {

namespace {

// Runs a store call that raises item events inside the save bracket, so that the
// add-in's own event handlers ignore what it causes.
template <typename Fn>
auto Bracketed(ZintraUtils& utils, Fn&& fn) -> decltype(fn()) {
  utils.PreSaveItem();
  try {
    if constexpr (std::is_void_v<decltype(fn())>) {
      fn();
      utils.PostSaveItem();
    } else {
      auto result = fn();
      utils.PostSaveItem();
      return result;
    }
  } catch (...) {
    utils.PostSaveItem();
    throw;
  }
}

}  // namespace

void JobProcess::RunStage() {
  if (stage_ == Stage::kSearch) stage_ = Stage::kLogs;
  while (!killed_) {
    switch (stage_) {
      case Stage::kLogs:
        stage_ = Stage::kShared;
        if (StartCopyJobs(CopyKind::kLogged)) return;
        break;
      case Stage::kShared:
        stage_ = Stage::kFinal;
        if (StartCopyJobs(CopyKind::kShared)) return;
        break;
      case Stage::kFinal:
        FinalPostProcessing();
        return;
      case Stage::kSearch:
      case Stage::kDone:
        return;
    }
  }
}

bool JobProcess::StartCopyJobs(CopyKind kind) {
  auto& pending = kind == CopyKind::kLogged ? pending_logs_ : pending_shared_;
  if (pending.empty()) return false;
  if (DebugLines())
    LogLine(std::string(kind == CopyKind::kLogged ? "Starting JobLogs for item '"
                                                  : "Starting JobCreateShareds for item '") +
            subject_ + "'");
  // A job aborted as it is queued ends at once and leaves the list: the walk goes over a
  // copy (for the usual one job, a copy of that job).
  if (pending.size() == 1) {
    const std::shared_ptr<CopyJob> only = pending.front();
    only->Start();
  } else {
    const std::vector<std::shared_ptr<CopyJob>> jobs = pending;
    for (const std::shared_ptr<CopyJob>& job : jobs) job->Start();
  }
  return true;
}

void JobProcess::CopyJobEnded(CopyKind kind, const std::string& key, bool aborted) {
  auto& pending = kind == CopyKind::kLogged ? pending_logs_ : pending_shared_;
  std::erase_if(pending, [&](const std::shared_ptr<CopyJob>& job) { return job->Key() == key; });
  if (killed_) return;
  if (aborted) {
    Kill();
    return;
  }
  if (pending.empty()) QueueSelf();
}

void JobProcess::AddCopy(CopyKind kind, const std::shared_ptr<Item>& copy,
                         const std::shared_ptr<Folder>& folder) {
  DecideCopy(kind, copy);
  CopyMade made{copy, folder, {}, {}};
  if (copy && last_copy_.lock() == copy) {
    made.entry_id = std::move(last_copy_entry_id_);
    made.store_id = std::move(last_copy_store_id_);
  }
  last_copy_.reset();
  last_copy_entry_id_.clear();
  last_copy_store_id_.clear();
  if (kind == CopyKind::kLogged) {
    logged_copies_.push_back(std::move(made));
    logged_ = true;
  } else {
    shared_copies_.push_back(std::move(made));
    shared_ = true;
  }
}

void JobProcess::FinalPostProcessing() {
  stage_ = Stage::kDone;
  if (DebugLines()) LogLine("Final post-processing for item '" + subject_ + "'");
  std::shared_ptr<Item> item = FindOriginal();
  if (!item) {
    original_missing_ = true;
    LogErrorLine("Unable to find original item '" + subject_ + "' " + ItemDescription() +
                     " to mark it as logged",
                 "FinalPostProcessing");
    Decide(nullptr, {.kind = DecisionKind::kEnded, .reason = "the item could not be found again"});
    Kill();
    return;
  }
  // One MAPI object serves the links and Kill's "Zintra Last Audited" in this activation.
  std::shared_ptr<MapiObject> object;
  if (!logged_copies_.empty() || !shared_copies_.empty()) object = item->MAPIOBJECT();
  LinkCopies(object, CopyKind::kLogged);
  LinkCopies(object, CopyKind::kShared);
  ZintraUtils& utils = Utils();
  std::shared_ptr<UserProperties> props =
      marked_props_ && marked_item_.lock() == item ? marked_props_ : item->UserProperties();
  utils.SetUserProperty(props, kPropZintraLogged, kOlYesNo, Value(logged_), true);
  utils.SetUserProperty(props, kPropZintraShared, kOlYesNo, Value(shared_), true);
  final_item_ = item;
  final_props_ = props;
  final_object_ = object;
  if (Deciding()) {
    Decide(nullptr, {.kind = DecisionKind::kFinished, .logged = logged_, .shared = shared_});
  }
  Kill();
}

void JobProcess::LinkCopies(const std::shared_ptr<MapiObject>& object, CopyKind kind) {
  auto& copies = kind == CopyKind::kLogged ? logged_copies_ : shared_copies_;
  if (copies.empty()) return;  // nothing to link: the lists are not created
  LoggedItemsLink link(Utils());
  // store_id_ is the item's store: the item found again is the held object or the one
  // opened by its identifiers, and a message object never changes store.
  if (kind == CopyKind::kLogged) {
    link.Initialize(object, store_id_, kPropLoggedEntryIds, kPropLoggedStoreIds);
  } else {
    link.Initialize(object, store_id_, kPropSharedCopyEntryIds, kPropSharedCopyStoreIds);
  }
  const char* what =
      kind == CopyKind::kLogged ? "' to logged item in folder '" : "' to shared copy in folder '";
  const bool debug = DebugLines();
  // The copies' identifiers are not needed after their link: they are moved into it.
  for (CopyMade& made : copies) {
    const std::shared_ptr<Folder>& folder = made.folder;
    if (made.entry_id.empty()) {
      link.LinkToItem(made.item, folder);
    } else {
      link.LinkToItem(std::move(made.entry_id), std::move(made.store_id));
    }
    if (debug) {
      LogLine("Linked '" + subject_ + "' from folder '" + folder_name_ + what +
              (folder ? folder->Name() : std::string()) + "'");
    }
  }
  link.Kill();
}

std::shared_ptr<Item> JobProcess::CopyItemTo(const std::shared_ptr<Folder>& target) {
  if (!ValidateItem()) {
    throw ZError(kMapiObjectDeleted, "The item '" + subject_ + "' can no longer be read",
                 "JobProcess");
  }
  const int32_t safe_kind = SafeItemKind(ItemType(item_));
  if (Settings().UseRedemptionCopy && safe_kind != 0) return CopyThroughLibrary(item_, target);
  return CopyThroughOutlook(item_, target);
}

std::shared_ptr<Item> JobProcess::CopyThroughOutlook(const std::shared_ptr<Item>& item,
                                                     const std::shared_ptr<Folder>& target) {
  ZintraUtils& utils = Utils();
  std::shared_ptr<Item> copy = Bracketed(utils, [&] { return item->Copy(); });
  try {
    if (utils.GetUserProperty(copy->UserProperties(), kPropZintraTag).ToString() !=
        kZintraTagProcessing) {
      utils.SetUserProperty(copy->UserProperties(), kPropZintraTag, kOlText,
                            Value(std::string(kZintraTagProcessing)), true);
    }
    if (!SameFolder(copy->Parent(), target)) {
      utils.SaveItem(copy);
      copy = Bracketed(utils, [&] { return copy->Move(target); });
    }
  } catch (...) {
    DiscardCopy(copy);
    throw;
  }
  // Links the copy lacks are carried over; one that no longer resolves is left out.
  std::shared_ptr<Links> links = item->Links();
  std::shared_ptr<Links> copy_links = copy->Links();
  std::set<std::string> present;
  for (int32_t i = 1; i <= copy_links->Count(); ++i) {
    try {
      present.insert(copy_links->Item(i)->Item()->EntryID());
    } catch (const ZError&) {
    }
  }
  for (int32_t i = 1; i <= links->Count(); ++i) {
    try {
      std::shared_ptr<Item> contact = links->Item(i)->Item();
      if (contact && present.insert(contact->EntryID()).second) {
        utils.AddToLinksCollection(copy_links, contact);
      }
    } catch (const ZError&) {
    }
  }
  return copy;
}

std::shared_ptr<Item> JobProcess::CopyThroughLibrary(const std::shared_ptr<Item>& item,
                                                     const std::shared_ptr<Folder>& target) {
  ZintraUtils& utils = Utils();
  std::shared_ptr<LoggingAddin> app = App();
  std::shared_ptr<SafeItem> safe = SafeItemFor(item);
  if (!safe) throw ZError(kErrTypeMismatch, "Type mismatch", "JobProcess");
  std::shared_ptr<RdoMessage> message = Bracketed(utils, [&] { return safe->CopyTo(target); });
  std::string entry_id, store_id;
  std::shared_ptr<Item> copy;
  try {
    if (utils.GetRDOUserProperty(message->UserProperties(), kPropZintraTag).ToString() !=
        kZintraTagProcessing) {
      LogErrorLine(std::string("Redemption RDO failed to copy the ZINTRATAG user property.  If "
                               "item is being ") +
                       "copied to a monitored folder, infinite loop could result.",
                   "CopyThroughLibrary");
      utils.SetRDOUserProperty(message->UserProperties(), kPropZintraTag, kOlText,
                               Value(std::string(kZintraTagProcessing)), true);
    }
    Bracketed(utils, [&] { message->Save(); });
    entry_id = message->EntryID();
    store_id = message->StoreID();
    copy = app->Session()->GetItemFromID(entry_id, store_id);
  } catch (...) {
    // A half-made copy would keep its tag for ever: it goes at once.
    try {
      Bracketed(utils, [&] { message->Delete(); });
    } catch (...) {
      LogCurrentException("CopyThroughLibrary");
    }
    throw;
  }
  std::shared_ptr<Folder> landed = copy->Parent();
  if (!SameFolder(landed, target)) {
    LogErrorLine("Adding an item to '" + target->Name() + "' created an item in '" +
                     (landed ? landed->Name() : std::string()) + "' instead",
                 "CopyThroughLibrary");
    std::shared_ptr<Item> moved;
    try {
      moved = Bracketed(utils, [&] { return copy->Move(target); });
    } catch (...) {
      DiscardCopy(copy);
      throw;
    }
    std::shared_ptr<Item> stray;
    try {
      stray = app->Session()->GetItemFromID(entry_id, store_id);
    } catch (const ZError&) {
    }
    if (stray) utils.PermDeleteItem(stray);
    last_copy_.reset();
    return moved;  // the moved copy's identifiers are its own
  }
  // Linking, in a later activation, needs them again: a message's identifiers never
  // change (a move makes another message, whose own are read then).
  last_copy_ = copy;
  last_copy_entry_id_ = std::move(entry_id);
  last_copy_store_id_ = std::move(store_id);
  return copy;
}

void JobProcess::DiscardCopy(const std::shared_ptr<Item>& copy) {
  try {
    Utils().PermDeleteItem(copy);
  } catch (...) {
    LogCurrentException("DiscardCopy");
  }
}

void JobProcess::StripAttachments(const std::shared_ptr<Item>& item) {
  std::shared_ptr<Attachments> attachments = item->Attachments();
  for (int32_t i = attachments->Count(); i >= 1; --i) attachments->Remove(i);
  Utils().SaveItem(item);
}

}  // namespace zintra
