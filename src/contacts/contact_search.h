// ContactSearch: finds, for a list of e-mail addresses, the tracked contacts that
// carry them, folder by folder over the tracked folders in their order, and reports
// the end of the search once by SearchComplete.
//
// Results are kept per address (Results) and per tracked folder (GroupedResults, each
// group naming its folder). With Foldersets\UniqueEmailAddresses set an address found
// is not searched in later folders, and the search ends as soon as every address has
// been found. Folders that are not Ready (first fill running) are skipped; the search
// then stays pending in TrackedContacts until every folder is ready, and is resumed
// there: it searches only the folders it skipped, then completes.
//
// Ownership: created by TrackedContacts::Search with std::make_shared; the caller
// holds it, and TrackedContacts holds it while pending. Kill completes a pending
// search as aborted (SearchComplete(true)) and drops the results. Called on Outlook's
// thread; no member throws (a folder's errors are logged by the folder).
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "src/core/event.h"

namespace zintra {

class ContactsAddin;
class Item;
class TrackedContactFolder;
class TrackedContacts;

using ContactList = std::vector<std::shared_ptr<Item>>;

// The contacts found in one tracked folder, one entry per address that found them.
struct ContactGroup {
  std::shared_ptr<TrackedContactFolder> folder;
  ContactList contacts;
};

class ContactSearch : public std::enable_shared_from_this<ContactSearch> {
 public:
  ContactSearch(std::weak_ptr<ContactsAddin> app, std::weak_ptr<TrackedContacts> owner,
                std::string key);
  ContactSearch(const ContactSearch&) = delete;
  ContactSearch& operator=(const ContactSearch&) = delete;

  // Runs the search over the ready folders (called by TrackedContacts::Search, which
  // files the search as pending when it has to wait). Blank and repeated addresses are
  // searched once.
  void Start(const std::vector<std::string>& emails);
  // Searches the folders skipped so far, then completes. Nothing once completed.
  void Resume();

  // The contacts found for the address (empty for an address not searched).
  const ContactList& Results(const std::string& address) const;
  // The contacts of all addresses, address by address, each contact once.
  ContactList AllResults() const;
  // One group per tracked folder that found contacts, in the order the folders were
  // searched; a contact found for two addresses is listed twice in its group.
  const std::vector<ContactGroup>& GroupedResults() const { return grouped_results_; }
  bool Completed() const { return completed_; }
  bool Aborted() const { return aborted_; }
  const std::string& key() const { return key_; }
  // Addresses searched, and found (counted only with UniqueEmailAddresses).
  int32_t EmailCount() const { return email_count_; }
  int32_t FoundCount() const { return found_count_; }

  void Kill();
  void Addin_Kill() { Kill(); }
  // No state of a search depends on the settings.
  void Addin_RegSettingsChanged() {}

  // Raised once when the search ends; the argument is True when it was killed.
  Event<bool> SearchComplete;

 private:
  // `unique`: UniqueEmailAddresses; `debug`: the log keeps debug lines.
  void SearchFolder(const std::shared_ptr<TrackedContactFolder>& folder, bool unique, bool debug);
  // Searches every ready folder not searched yet, in order; false when some folder
  // was not ready.
  bool SearchReadyFolders();
  void Complete(bool aborted);
  void LogLine(const std::string& text);

  std::weak_ptr<ContactsAddin> app_;
  std::weak_ptr<TrackedContacts> owner_;
  std::string key_;
  // The contacts found per address, in the order the addresses came. An item has a
  // few addresses: they are found by walking the list (a comparison of two addresses
  // of different lengths ends at once).
  struct AddressResults {
    std::string address;
    ContactList contacts;
    bool settled = false;  // found, with unique addresses: later folders skip it
  };
  const AddressResults* Find(std::string_view address) const;
  std::vector<AddressResults> results_;
  int32_t email_count_ = 0;
  int32_t found_count_ = 0;
  std::vector<ContactGroup> grouped_results_;
  std::vector<std::string> searched_;  // keys of the folders searched (a handful)
  bool completed_ = false;
  bool aborted_ = false;
};

}  // namespace zintra
