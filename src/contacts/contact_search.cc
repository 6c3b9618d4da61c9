#include "src/contacts/contact_search.h"

#include <algorithm>
#include <utility>

#include "src/contacts/contacts_addin.h"
#include "src/contacts/tracked_contact_folder.h"
#include "src/contacts/tracked_contacts.h"
#include "src/core/text.h"
#include "src/core/z_error.h"
#include "src/host/outlook_item.h"
#include "src/jobs/job_engine_log.h"
#include "src/settings/reg_settings.h"

namespace zintra {

namespace {

std::string EntryIdOf(const Item& contact) {
  try {
    return contact.EntryID();
  } catch (const ZError&) {
    return {};
  }
}

bool Holds(const ContactList& list, const std::string& entry_id) {
  if (entry_id.empty()) return false;
  for (const auto& c : list) {
    if (text::EqualsNoCase(EntryIdOf(*c), entry_id)) return true;
  }
  return false;
}

}  // namespace

ContactSearch::ContactSearch(std::weak_ptr<ContactsAddin> app, std::weak_ptr<TrackedContacts> owner,
                             std::string key)
    : app_(std::move(app)), owner_(std::move(owner)), key_(std::move(key)) {}

void ContactSearch::Start(const std::vector<std::string>& addresses) {
  auto keep = shared_from_this();  // completion drops the owner's reference
  results_.reserve(addresses.size());
  for (const auto& address : addresses) {
    if (address.empty() || Find(address)) continue;
    results_.push_back({address, {}});
  }
  email_count_ = static_cast<int32_t>(results_.size());
  const bool all_ready = SearchReadyFolders();
  if (completed_) return;
  if (all_ready || email_count_ == 0) Complete(false);
}

void ContactSearch::Resume() {
  if (completed_) return;
  auto keep = shared_from_this();
  SearchReadyFolders();
  if (!completed_) Complete(false);
}

bool ContactSearch::SearchReadyFolders() {
  auto owner = owner_.lock();
  if (!owner) return true;
  auto app = app_.lock();
  const bool debug = app && app->Log().KeepsDebugLines();
  const bool unique = app && app->Settings().UniqueEmailAddresses;
  bool all_ready = true;
  const std::vector<std::shared_ptr<TrackedContactFolder>> folders = owner->Folders().Values();
  if (searched_.empty()) searched_.reserve(folders.size());
  for (const auto& folder : folders) {
    if (std::find(searched_.begin(), searched_.end(), folder->key()) != searched_.end() ||
        folder->Killed()) {
      continue;
    }
    if (!folder->Ready()) {
      all_ready = false;
      continue;
    }
    searched_.push_back(folder->key());
    if (debug) LogLine("Searching folder " + folder->Name());
    SearchFolder(folder, unique, debug);
    if (completed_) break;
  }
  return all_ready;
}

void ContactSearch::SearchFolder(const std::shared_ptr<TrackedContactFolder>& folder, bool unique,
                                 bool debug) {
  // The folder's group, looked up once it is first needed.
  ContactGroup* group = nullptr;
  for (AddressResults& results : results_) {
    if (results.settled) continue;
    const std::string& address = results.address;
    const ContactList contacts = folder->GetContactItems(address);
    for (const auto& contact : contacts) {
      if (debug) {
        std::string name;
        try {
          name = contact->FullName();
        } catch (const ZError&) {
          name = "{Unknown}";
        }
        LogLine("Adding result: '" + name + "' for " + address);
      }
      results.contacts.push_back(contact);
      if (debug) LogLine("Adding to grouped result");
      if (!group) {
        auto known = std::find_if(grouped_results_.begin(), grouped_results_.end(),
                                  [&](const ContactGroup& g) {
                                    return text::EqualsNoCase(g.folder->key(), folder->key());
                                  });
        group = known != grouped_results_.end()
                    ? &*known
                    : &grouped_results_.emplace_back(ContactGroup{folder, {}});
      }
      // One entry per address found: a contact that carries two of the searched
      // addresses is in its folder's group twice.
      group->contacts.push_back(contact);
    }
    if (unique && !contacts.empty()) {
      results.settled = true;
      ++found_count_;
      if (found_count_ == email_count_) {
        Complete(false);  // every address is found: the list is no longer read
        return;
      }
    }
  }
}

const ContactSearch::AddressResults* ContactSearch::Find(std::string_view address) const {
  for (const AddressResults& results : results_) {
    if (text::EqualsNoCase(results.address, address)) return &results;
  }
  return nullptr;
}

const ContactList& ContactSearch::Results(const std::string& address) const {
  static const ContactList kNone;
  const AddressResults* results = Find(address);
  return results ? results->contacts : kNone;
}

ContactList ContactSearch::AllResults() const {
  ContactList all;
  for (const AddressResults& results : results_) {
    for (const auto& contact : results.contacts) {
      // The first contact cannot repeat one: its EntryID is not needed.
      if (all.empty() || !Holds(all, EntryIdOf(*contact))) all.push_back(contact);
    }
  }
  return all;
}

void ContactSearch::Complete(bool aborted) {
  if (completed_) return;
  auto keep = shared_from_this();
  completed_ = true;
  aborted_ = aborted;
  if (auto owner = owner_.lock()) owner->SearchFinished(key_);
  SearchComplete.Raise(aborted);
}

void ContactSearch::Kill() {
  if (!completed_) Complete(true);
  results_.clear();
  grouped_results_.clear();
}

void ContactSearch::LogLine(const std::string& text) {
  if (auto app = app_.lock()) app->Log().WriteLogMessage(text, false);
}

}  // namespace zintra
