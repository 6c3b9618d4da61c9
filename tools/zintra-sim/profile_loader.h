// ProfileLoader: builds the simulated Outlook profile a scenario describes, and finds
// its folders and items again for the timeline and the expectations. Items are
// stored through the profile (their events fire, though nobody listens yet at load).
//
// Folder paths: "Inbox" (a default folder or a top folder of the mailbox by name),
// "Mailbox - Jane Doe/Customers/Journal" (a store name, then folder names), or
// "Personal Folders/Archive". Item ids are the scenario's.
#pragma once

#include <map>
#include <memory>
#include <set>
#include <string>

#include "sim/outlook/profile.h"
#include "sim/outlook/profile_builder.h"
#include "tools/zintra-sim/scenario.h"

namespace zintra::simtool {

class ProfileLoader {
 public:
  explicit ProfileLoader(sim::Profile& profile) : profile_(profile), builder_(profile) {}

  void Load(const ProfileSpec& desc, const std::string& outlook_version);

  // A stored item in `folder` (kind-appropriate fields only; links to known ids).
  std::shared_ptr<sim::MessageRecord> AddItem(const ItemSpec& desc,
                                              const std::shared_ptr<sim::FolderRecord>& folder);
  // An unsaved item whose first Save stores it in `home`.
  std::shared_ptr<sim::MessageRecord> NewItem(const ItemSpec& desc,
                                              const std::shared_ptr<sim::FolderRecord>& home);
  void Link(const std::shared_ptr<sim::MessageRecord>& item, const std::string& id);

  // nullptr when there is no such folder.
  std::shared_ptr<sim::FolderRecord> FindFolder(const std::string& path) const;
  // nullptr when the id is unknown or the item is gone.
  std::shared_ptr<sim::MessageRecord> FindItem(const std::string& id) const;
  void Remember(const std::string& id, const std::shared_ptr<sim::MessageRecord>& record);
  // The scenario id of a record ("" when it has none).
  std::string IdOf(const sim::MessageRecord& record) const;

  // Whether the scenario made the record (else the add-in did: a copy).
  bool Made(const sim::MessageRecord& record) const { return made_.count(&record) != 0; }

  static std::string PathOf(const sim::FolderRecord& folder);

 private:
  void LoadFolder(const FolderSpec& desc, const std::shared_ptr<sim::FolderRecord>& parent,
                  bool top_of_mailbox);
  void Fill(sim::MessageRecord& m, const ItemSpec& desc);
  sim::Person PersonOf(const PersonSpec& p) const;

  sim::Profile& profile_;

 public:
  const sim::Profile& profile() const { return profile_; }

 private:
  sim::ProfileBuilder builder_;
  std::map<std::string, std::weak_ptr<sim::MessageRecord>> ids_;
  std::map<const sim::MessageRecord*, std::string> names_;
  std::set<const sim::MessageRecord*> made_;
  std::vector<std::pair<std::shared_ptr<sim::MessageRecord>, std::vector<std::string>>> links_;
  std::vector<std::pair<std::shared_ptr<sim::MessageRecord>, PresetMarks>> marks_;
};

}  // namespace zintra::simtool
