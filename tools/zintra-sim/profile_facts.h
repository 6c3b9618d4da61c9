// ProfileFacts: what a run's resulting profile says about its items, read from the
// stored properties alone: which items are the add-in's copies and of which item
// (the original keeps its copies' entry identifiers), the contacts an item or copy is
// linked to, the addresses an item was sent from and to, and the addresses of a
// contact. The report of why and the results on disk are built from these facts.
//
// Borrows the profile, which must not change while the facts are used.
#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "sim/outlook/profile.h"

namespace zintra::simtool {

struct CopyOf {
  const sim::MessageRecord* original = nullptr;
  bool shared = false;  // a shared copy (shared journal, calendar or task list)
};

class ProfileFacts {
 public:
  explicit ProfileFacts(const sim::Profile& profile);

  // The item this one is a copy of; nullptr original when it is no copy.
  CopyOf CopyInfo(const sim::MessageRecord& m) const;
  // The stored copies an item names (logged, then shared), those still in the profile.
  std::vector<const sim::MessageRecord*> Copies(const sim::MessageRecord& m, bool shared) const;
  // The items an item is linked to (those still in the profile).
  std::vector<const sim::MessageRecord*> Linked(const sim::MessageRecord& m) const;
  // Lower-case SMTP addresses of the sender and recipients, Exchange addresses resolved
  // through the directory; the profile's own user left out.
  std::vector<std::string> Addresses(const sim::MessageRecord& m) const;
  // A contact's lower-case e-mail addresses ("*@domain" for a blanket-domain contact).
  static std::vector<std::string> ContactAddresses(const sim::MessageRecord& contact);
  // "Client Journal" below the mailbox, else "Store/Folder".
  static std::string FolderOf(const sim::MessageRecord& m);

 private:
  const sim::MessageRecord* ByEntry(const std::string& store_id, const std::string& entry_id) const;
  std::string Smtp(const std::string& address) const;

  const sim::Profile& profile_;
  std::unordered_map<std::string, const sim::MessageRecord*> by_entry_;
  std::unordered_map<const sim::MessageRecord*, CopyOf> copies_;
};

}  // namespace zintra::simtool
