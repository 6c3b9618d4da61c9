// JobProcess: its decisions about the item, stated to the host's decision log as they
// are taken. Nothing here may disturb the job: a host without a log costs one
// comparison, and a property that cannot be read leaves its field empty.
#include "src/contacts/contact_search.h"
#include "src/contacts/tracked_contact_folder.h"
#include "src/core/z_error.h"
#include "src/host/outlook_folder.h"
#include "src/host/outlook_item.h"
#include "src/logging/job_process.h"
#include "src/logging/logging_addin.h"

namespace zintra {

namespace {

bool Unwanted(DecisionLog& log) { return &log == &NoDecisionLog(); }

}  // namespace

bool JobProcess::Deciding() const {
  std::shared_ptr<LoggingAddin> app = App();
  return app && !Unwanted(app->Decisions());
}

void JobProcess::Decide(const std::shared_ptr<Item>& item, Decision decision) {
  std::shared_ptr<LoggingAddin> app = App();
  if (!app || Unwanted(app->Decisions())) return;
  decision.subject = subject_;
  decision.folder_name = folder_name_;
  decision.entry_id = entry_id_;
  decision.store_id = store_id_;
  try {
    // While screening, the job has not yet taken the item's identifiers.
    if (item && decision.entry_id.empty()) {
      decision.entry_id = item->EntryID();
      if (std::shared_ptr<Folder> parent = item->Parent()) decision.store_id = parent->StoreID();
    }
  } catch (const ZError&) {
  }
  app->Decisions().Record(decision);
}

void JobProcess::DecideContact(DecisionKind kind, const std::shared_ptr<Item>& contact,
                               std::string address, std::string reason,
                               const std::shared_ptr<TrackedContactFolder>& folderset) {
  std::shared_ptr<LoggingAddin> app = App();
  if (!app || Unwanted(app->Decisions())) return;
  Decision d{.kind = kind, .reason = std::move(reason), .address = std::move(address)};
  if (folderset) d.folderset = folderset->Name();
  try {
    d.contact_id = contact->EntryID();
    d.contact = contact->FullName();
  } catch (const ZError&) {
    if (d.contact.empty()) d.contact = "{Unknown}";
  }
  Decide(nullptr, std::move(d));
}

void JobProcess::DecideMatches(const ContactSearch& search) {
  std::shared_ptr<LoggingAddin> app = App();
  if (!app || Unwanted(app->Decisions())) return;
  for (const std::string& address : searched_addresses_) {
    for (const std::shared_ptr<Item>& contact : search.Results(address)) {
      DecideContact(DecisionKind::kAddressMatched, contact, address, "", nullptr);
    }
  }
}

void JobProcess::DecideCopy(CopyKind kind, const std::shared_ptr<Item>& copy) {
  std::shared_ptr<LoggingAddin> app = App();
  if (!app || Unwanted(app->Decisions())) return;
  Decision d{.kind = DecisionKind::kCopyMade, .shared = kind == CopyKind::kShared};
  try {
    d.copy_id = copy->EntryID();
    if (std::shared_ptr<Folder> folder = copy->Parent()) d.copy_folder = folder->Name();
  } catch (const ZError&) {
  }
  Decide(nullptr, std::move(d));
}

}  // namespace zintra
