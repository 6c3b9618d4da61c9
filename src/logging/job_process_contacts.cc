// JobProcess: finding the tracked contacts an item concerns, through its links and
// its e-mail addresses, and choosing the copy targets of each contact found.
#include <algorithm>
#include <iterator>
#include <utility>

#include "src/contacts/contact_search.h"
#include "src/contacts/tracked_contact_folder.h"
#include "src/contacts/tracked_contacts.h"
#include "src/core/text.h"
#include "src/core/z_error.h"
#include "src/errors/cached_error.h"
#include "src/host/mapi_safe_item.h"
#include "src/host/outlook_folder.h"
#include "src/host/outlook_item.h"
#include "src/jobs/job_queue.h"
#include "src/logging/copy_job.h"
#include "src/logging/job_create_shared.h"
#include "src/logging/job_log.h"
#include "src/logging/job_process.h"
#include "src/logging/logging_addin.h"
#include "src/logging/zintra_utils.h"
#include "src/outlook/folder_helpers.h"
#include "src/outlook/library_factory.h"
#include "src/settings/reg_settings.h"

namespace zintra {

void JobProcess::Step1_SearchLinks() {
  if (DebugLines()) LogLine("Searching for tracked contacts in links for item '" + subject_ + "'");
  std::shared_ptr<Links> links = item_->Links();
  const int32_t count = links->Count();
  if (DebugLines()) LogLine("Item '" + subject_ + "' has " + std::to_string(count) + " links");
  if (count > 0) has_links_ = true;
  std::shared_ptr<TrackedContacts> tracked = App()->Tracked();
  for (int32_t i = 1; i <= count && !killed_; ++i) {
    std::shared_ptr<Link> link = links->Item(i);
    std::shared_ptr<Item> contact;
    try {
      contact = link->Item();
      if (!contact) throw ZError(kMapiNotFound, "The linked item cannot be found");
    } catch (const ZError& e) {
      LogError(e, "Step1_SearchLinks");
      std::string name;
      try {
        name = link->Name();
      } catch (const ZError&) {
      }
      LogLine("Link '" + name + "' on item '" + subject_ + "' is \"unresolved\"; " +
              "cannot get Contact Item.  Error logged in previous message.");
      continue;
    }
    std::shared_ptr<Folder> folder = contact->Parent();
    if (DebugLines()) {
      LogLine("Checking if linked contact '" + contact->FullName() + "' in folder '" +
              FullMAPIPathName(folder) + "' is tracked");
    }
    std::shared_ptr<TrackedContactFolder> folderset =
        tracked ? tracked->FoldersetFor(folder) : nullptr;
    if (folderset) DecideContact(DecisionKind::kLinkedContact, contact, "", "", folderset);
    if (folderset) FoundLinkedContact(contact, folderset);
  }
  if (!killed_) Step2_SearchEmails();
}

void JobProcess::Step2_SearchEmails() {
  const RegSettings& settings = Settings();
  if (!settings.SearchEmailAddresses || (settings.OnlySearchIfNoLinks && has_links_)) {
    Decide(nullptr,
           {.kind = DecisionKind::kNoAddressSearch,
            .reason = settings.SearchEmailAddresses ? "it has links" : "it is switched off"});
    RunStage();
    return;
  }
  if (DebugLines()) LogLine("Searching email recipients for item '" + subject_ + "'");
  std::shared_ptr<LoggingAddin> app = App();
  std::vector<std::string> addresses;
  if (AmOutgoingFold_) {
    std::shared_ptr<SafeItem> safe = SafeItemFor(item_);
    std::shared_ptr<Recipients> recipients;
    if (safe) {
      try {
        recipients = safe->Recipients();
      } catch (const ZError& e) {
        if (e.Number() != kErrNoSuchMember) throw;
      }
    }
    const int32_t count = recipients ? recipients->Count() : 0;
    // Room for the senders' two forms too, and a blanket domain for each.
    addresses.reserve(2 * (static_cast<size_t>(count) + 2));
    const bool debug = DebugLines();
    for (int32_t i = 1; i <= count; ++i) {
      std::shared_ptr<Recipient> recipient = recipients->Item(i);
      std::string address = recipient->Address();
      if (debug) {
        LogLine("Adding recipient to search: " + address + " - (" + recipient->Name() + ")");
      }
      if (!address.empty()) addresses.push_back(std::move(address));
    }
  }
  if (AmIncomingFold_) {
    if (addresses.capacity() == 0) addresses.reserve(4);
    for (bool smtp : {false, true}) {
      std::string address = SenderAddress(item_, smtp);
      if (address.empty()) continue;
      if (DebugLines()) LogLine("Adding sender's email to search: " + address);
      addresses.push_back(std::move(address));
    }
  }
  if (!AmIncomingFold_ && !AmOutgoingFold_) {
    LogLine("Item '" + subject_ + "' is in a folder which has AmIncomingFold and " +
            "AmOutgoingFold both set as false; email addresses were NOT searched.");
    Decide(nullptr, {.kind = DecisionKind::kNoAddressSearch,
                     .reason = "its folder is neither an incoming nor an outgoing folder"});
    RunStage();
    return;
  }
  if (settings.EnableBlanketDomain) {
    const size_t added = addresses.size();
    for (size_t i = 0; i < added; ++i) {
      const size_t at = addresses[i].find('@');
      if (at != std::string::npos) addresses.push_back("*" + addresses[i].substr(at));
    }
  }
  searched_addresses_ = std::move(addresses);
  if (Deciding()) {
    for (const std::string& a : searched_addresses_) {
      Decide(nullptr, {.kind = DecisionKind::kAddressSearched, .address = a});
    }
  }
  std::shared_ptr<TrackedContacts> tracked = app->Tracked();
  if (searched_addresses_.empty() || !tracked) {
    RunStage();
    return;
  }
  search_ = tracked->Search(searched_addresses_);
  if (!search_) {
    RunStage();
    return;
  }
  if (search_->Completed()) {
    EmailSearch_SearchComplete(search_->Aborted());
    return;
  }
  std::weak_ptr<JobProcess> weak = weak_from_this();
  search_complete_ = search_->SearchComplete.Connect([weak](bool aborted) {
    if (std::shared_ptr<JobProcess> job = weak.lock()) job->EmailSearch_SearchComplete(aborted);
  });
  wait_key_ = app->GetJobQueue()->WaitListAdd(shared_from_this());
}

void JobProcess::EmailSearch_SearchComplete(bool aborted) {
  std::shared_ptr<JobProcess> self = shared_from_this();
  search_complete_.Disconnect();
  std::shared_ptr<ContactSearch> search = std::move(search_);
  const bool waited = !wait_key_.empty();
  if (waited) {
    std::shared_ptr<LoggingAddin> app = App();
    std::shared_ptr<JobQueue> queue = app ? app->GetJobQueue() : nullptr;
    const std::string key = std::move(wait_key_);
    wait_key_.clear();
    if (queue) {
      try {
        queue->WaitListRelease(key);
      } catch (...) {
        LogCurrentException("EmailSearch_SearchComplete");
      }
    }
  }
  if (killed_) return;
  try {
    if (aborted) {
      LogLine("Email search aborted for item '" + subject_ + "'");
      Decide(nullptr, {.kind = DecisionKind::kEnded, .reason = "its e-mail search was aborted"});
      Kill();
      return;
    }
    // A search that completed inside this activation needs no second look at the
    // item: the activation began by validating it.
    if (waited && !ValidateItem()) {
      Kill();
      return;
    }
    if (DebugLines()) LogLine("Email search complete for item '" + subject_ + "'");
    if (DebugLines()) LogLine("Results: " + std::to_string(search->AllResults().size()));
    DecideMatches(*search);
    // Nothing below changes the search's groups: they are walked in place.
    for (const ContactGroup& group : search->GroupedResults()) {
      for (const std::shared_ptr<Item>& contact : group.contacts) {
        if (killed_) return;
        // A search that completed inside this activation filtered its contacts in it:
        // nothing can have changed them since.
        FoundLinkedContact(contact, group.folder, !waited);
      }
    }
    // The copy stages run in activations of their own, not inside the search's event;
    // the next activation starts with them, not with a second search.
    if (waited) {
      stage_ = Stage::kLogs;
      QueueSelf();
    } else {
      RunStage();
    }
  } catch (...) {
    Fail("EmailSearch_SearchComplete");
  }
}

void JobProcess::FoundLinkedContact(const std::shared_ptr<Item>& contact,
                                    const std::shared_ptr<TrackedContactFolder>& folderset,
                                    bool filtered) {
  // The name only goes to debug lines.
  std::string name = "{Unknown}";
  if (DebugLines()) {
    try {
      name = contact->FullName();
    } catch (const ZError&) {
    }
  }
  std::shared_ptr<TrackedContacts> tracked = App()->Tracked();
  if (!tracked || (!filtered && !tracked->ShouldTrack(contact))) {
    LogLine("FoundLinkedContact: '" + name + "', but " +
            "filters or sensitivity specify this contact should not be tracked.");
    DecideContact(DecisionKind::kContactRefused, contact, "", "filters or sensitivity", nullptr);
    return;
  }
  if (!folderset || folderset->Killed()) {
    LogLine("FoundLinkedContact: '" + name + "', but " + "containing folderset was killed.");
    DecideContact(DecisionKind::kContactRefused, contact, "", "its folder set was killed", nullptr);
    return;
  }
  if (DebugLines()) LogLine("FoundLinkedContact: '" + name + "'");
  DecideContact(DecisionKind::kContactAccepted, contact, "", "", folderset);
  // Folder-set keys compare as the add-in's keys do, without regard to case.
  auto slot = std::find_if(found_contacts_.begin(), found_contacts_.end(),
                           [&](const ContactGroupFound& found) {
                             return text::EqualsNoCase(found.folderset_key, folderset->key());
                           });
  if (slot == found_contacts_.end()) {
    found_contacts_.push_back({folderset->key(), {}});
    slot = std::prev(found_contacts_.end());
  }
  std::vector<FoundContact>& group = slot->contacts;
  bool known = false;
  if (!group.empty()) {
    const std::string entry_id = contact->EntryID();
    for (FoundContact& found : group) {
      if (found.item == contact) {
        known = true;
        break;
      }
      if (!found.entry_id) found.entry_id = found.item->EntryID();
      if (text::EqualsNoCase(*found.entry_id, entry_id)) {
        known = true;
        break;
      }
    }
    if (!known) group.push_back({contact, entry_id});
  } else {
    group.push_back({contact, std::nullopt});
  }
  ChooseTargets(folderset);
}

void JobProcess::ChooseTargets(const std::shared_ptr<TrackedContactFolder>& folderset) {
  std::shared_ptr<Folder> log_folder = folderset->EmailFolder() && item_class_ == ItemClass::kMail
                                           ? folderset->EmailFolder()
                                           : folderset->JournalFolder();
  if (log_folder) AddCopyJob(CopyKind::kLogged, log_folder);
  std::shared_ptr<Folder> shared_folder;
  switch (item_class_) {
    case ItemClass::kAppointment:
      shared_folder = folderset->SharedCalendar();
      break;
    case ItemClass::kJournal:
      shared_folder = folderset->SharedJournal();
      break;
    case ItemClass::kTask:
      shared_folder = folderset->SharedTaskList();
      break;
    default:
      break;
  }
  if (shared_folder) AddCopyJob(CopyKind::kShared, shared_folder);
}

void JobProcess::AddCopyJob(CopyKind kind, const std::shared_ptr<Folder>& target) {
  auto& pending = kind == CopyKind::kLogged ? pending_logs_ : pending_shared_;
  for (const std::shared_ptr<CopyJob>& job : pending) {
    if (SameFolder(job->TargetFolder(), target)) return;  // one copy per target folder
  }
  std::shared_ptr<LoggingAddin> app = App();
  const std::string key = app->GenerateKey();
  std::shared_ptr<CopyJob> job;
  if (kind == CopyKind::kLogged) {
    job = std::make_shared<JobLog>(app_);
  } else {
    job = std::make_shared<JobCreateShared>(app_);
  }
  pending.push_back(job);
  job->Initialize(shared_from_this(), target, key);
  Utils().WatchLingeringJob(kind == CopyKind::kLogged
                                ? "Lingering JobLog after JobProcess killed: "
                                : "Lingering JobCreateShared after JobProcess killed: ",
                            job);
}

}  // namespace zintra
