// SimNamespace: the profile's MAPI namespace (one object per profile, as Outlook's
// Session). Fault key: the Profile.
#pragma once

#include <memory>

#include "sim/outlook/profile.h"
#include "sim/outlook/sim_keys.h"
#include "src/host/outlook_application.h"

namespace zintra::sim {

class SimNamespace : public Namespace, public SimKeyed {
 public:
  explicit SimNamespace(Profile* profile) : profile_(profile) {}
  std::string TypeName() const override { return "NameSpace"; }
  const void* FaultKey() const override { return profile_; }

  std::shared_ptr<Folder> GetDefaultFolder(int32_t folder_type) override;
  std::shared_ptr<Item> GetItemFromID(const std::string& entry_id,
                                      const std::string& store_id) override;
  std::shared_ptr<Folder> GetFolderFromID(const std::string& entry_id,
                                          const std::string& store_id) override;
  std::shared_ptr<zintra::Folders> Folders() override;
  std::shared_ptr<Recipient> CurrentUser() override;
  std::shared_ptr<MapiObject> MAPIOBJECT() override;

 private:
  Profile* profile_;
};

// A resolved recipient that belongs to no message (the current user).
class SimDirectoryRecipient : public Recipient, public SimKeyed {
 public:
  SimDirectoryRecipient(Profile* profile, RecipientRecord record)
      : profile_(profile), record_(std::move(record)) {}
  std::string TypeName() const override { return "Recipient"; }
  const void* FaultKey() const override { return profile_; }
  std::string Name() const override;
  std::string Address() const override;
  int32_t Type() const override { return record_.type; }
  void SetType(int32_t type) override { record_.type = type; }
  bool Resolved() const override { return record_.resolved; }
  std::shared_ptr<zintra::AddressEntry> AddressEntry() override;

 private:
  Profile* profile_;
  RecipientRecord record_;
};

std::shared_ptr<SimNamespace> MakeNamespace(Profile* profile);

}  // namespace zintra::sim
