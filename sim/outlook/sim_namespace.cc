#include "sim/outlook/sim_namespace.h"

#include "sim/outlook/sim_address_entry.h"
#include "sim/outlook/sim_folder.h"
#include "sim/outlook/sim_item.h"
#include "sim/outlook/sim_mapi_object.h"
#include "src/core/z_error.h"

namespace zintra::sim {

std::shared_ptr<SimNamespace> MakeNamespace(Profile* profile) {
  auto& slot = profile->NamespaceSlot();
  if (!slot) slot = std::make_shared<SimNamespace>(profile);
  return std::static_pointer_cast<SimNamespace>(slot);
}

std::shared_ptr<Folder> SimNamespace::GetDefaultFolder(int32_t folder_type) {
  HostCall host_call = profile_->Faults().Check("Namespace.GetDefaultFolder", profile_);
  auto folder = profile_->DefaultFolder(folder_type);
  if (!folder) {
    throw ZError(kMapiNotFound, "The default folder " + std::to_string(folder_type) +
                                    " does not exist in this profile");
  }
  return MakeFolder(profile_, folder);
}

std::shared_ptr<Item> SimNamespace::GetItemFromID(const std::string& entry_id,
                                                  const std::string& store_id) {
  HostCall host_call = profile_->Faults().Check("Namespace.GetItemFromID", profile_);
  return MakeItem(profile_, profile_->FindMessage(entry_id, store_id));
}

std::shared_ptr<Folder> SimNamespace::GetFolderFromID(const std::string& entry_id,
                                                      const std::string& store_id) {
  HostCall host_call = profile_->Faults().Check("Namespace.GetFolderFromID", profile_);
  return MakeFolder(profile_, profile_->FindFolder(entry_id, store_id));
}

std::shared_ptr<zintra::Folders> SimNamespace::Folders() {
  HostCall host_call = profile_->Faults().Check("Namespace.Folders", profile_);
  return std::make_shared<SimFolders>(profile_, nullptr);
}

std::shared_ptr<Recipient> SimNamespace::CurrentUser() {
  HostCall host_call = profile_->Faults().Check("Namespace.CurrentUser", profile_);
  const Person& user = profile_->CurrentUser();
  RecipientRecord r;
  r.name = user.name;
  r.smtp = user.smtp;
  r.address = user.IsExchange() ? user.ex_dn : user.smtp;
  r.addr_type = user.IsExchange() ? "EX" : "SMTP";
  r.type = kOlOriginator;
  return std::make_shared<SimDirectoryRecipient>(profile_, r);
}

std::shared_ptr<MapiObject> SimNamespace::MAPIOBJECT() {
  HostCall host_call = profile_->Faults().Check("Namespace.MAPIOBJECT", profile_);
  return std::make_shared<SimMapiObject>(profile_);
}

std::string SimDirectoryRecipient::Name() const {
  HostCall host_call = profile_->Faults().Check("Recipient.Name", profile_);
  return record_.name;
}

std::string SimDirectoryRecipient::Address() const {
  HostCall host_call = profile_->Faults().Check("Recipient.Address", profile_);
  return record_.address;
}

std::shared_ptr<zintra::AddressEntry> SimDirectoryRecipient::AddressEntry() {
  HostCall host_call = profile_->Faults().Check("Recipient.AddressEntry", profile_);
  return std::make_shared<SimAddressEntry>(profile_, record_.name, record_.address,
                                           record_.addr_type, record_.smtp);
}

}  // namespace zintra::sim
