#include "sim/mapi/sim_rdo.h"

#include "sim/outlook/message_props.h"
#include "sim/outlook/sim_address_entry.h"
#include "sim/outlook/sim_item.h"
#include "sim/outlook/sim_mapi_object.h"
#include "src/core/z_error.h"
#include "src/host/mapi_object.h"

namespace zintra::sim {

namespace {

constexpr int32_t kPrSenderSmtpAddress = 0x5D01001E;

class SimAddressList : public AddressList {
 public:
  explicit SimAddressList(Profile* profile) : profile_(profile) {
    for (const Person& p : profile_->People()) {
      if (p.IsExchange()) people_.push_back(&p - profile_->People().data());
    }
  }
  std::string TypeName() const override { return "AddressList"; }
  std::string Name() const override { return "Global Address List"; }
  int32_t Count() const override { return static_cast<int32_t>(people_.size()); }
  std::shared_ptr<AddressEntry> Item(int32_t index) override {
    HostCall host_call = profile_->Faults().Check("AddressList.Item", profile_);
    return SimAddressEntry::ForPerson(
        profile_, profile_->People()[people_[CheckIndex(index, people_.size())]]);
  }

 private:
  Profile* profile_;
  std::vector<ptrdiff_t> people_;
};

}  // namespace

std::shared_ptr<AddressEntry> SenderOf(Profile* profile, const MessageRecord& m) {
  std::string address = MessageProps::Text(m, kPrSenderEmailAddress);
  if (address.empty()) return nullptr;
  std::string type = MessageProps::Text(m, kPrSenderAddrType);
  std::string name = MessageProps::Text(m, kPrSenderName);
  std::string smtp = MessageProps::Text(m, kPrSenderSmtpAddress);
  if (smtp.empty()) {
    if (type == "SMTP") {
      smtp = address;
    } else if (const Person* person = profile->FindPerson(address)) {
      smtp = person->smtp;
    }
  }
  return std::make_shared<SimAddressEntry>(profile, name, address, type.empty() ? "SMTP" : type,
                                           smtp);
}

// --- message ---

std::string SimRdoMessage::EntryID() const {
  HostCall host_call = Hit("RdoMessage.EntryID");
  return profile_->EntryIdOf(*record_);
}

std::string SimRdoMessage::StoreID() const {
  HostCall host_call = Hit("RdoMessage.StoreID");
  return profile_->StoreIdOf(*Profile::StoreOf(*record_));
}

std::string SimRdoMessage::MessageClass() const {
  HostCall host_call = Hit("RdoMessage.MessageClass");
  return MessageProps::Text(*record_, kPrMessageClass);
}

std::string SimRdoMessage::Subject() const {
  HostCall host_call = Hit("RdoMessage.Subject");
  return MessageProps::Text(*record_, kPrSubject);
}

void SimRdoMessage::SetSubject(const std::string& subject) {
  HostCall host_call = Hit("RdoMessage.SetSubject");
  record_->props.Set(kPrSubject, Value(subject));
}

std::string SimRdoMessage::Body() const {
  HostCall host_call = Hit("RdoMessage.Body");
  return MessageProps::Text(*record_, kPrBody);
}

void SimRdoMessage::SetBody(const std::string& body) {
  HostCall host_call = Hit("RdoMessage.SetBody");
  record_->props.Set(kPrBody, Value(body));
}

std::shared_ptr<RdoFolder> SimRdoMessage::Parent() {
  HostCall host_call = Hit("RdoMessage.Parent");
  auto folder = record_->folder.lock();
  if (!folder || folder->deleted) return nullptr;
  return std::make_shared<SimRdoFolder>(profile_, "TovuRDOFolder", folder);
}

Value SimRdoMessage::Fields(int32_t prop_tag) {
  HostCall host_call = Hit("RdoMessage.Fields");
  return MessageProps::Get(*record_, prop_tag);
}

void SimRdoMessage::SetFields(int32_t prop_tag, const Value& value) {
  HostCall host_call = Hit("RdoMessage.SetFields");
  record_->props.Set(prop_tag, value);
}

std::shared_ptr<zintra::UserProperties> SimRdoMessage::UserProperties() {
  HostCall host_call = Hit("RdoMessage.UserProperties");
  return std::make_shared<SimUserProperties>(profile_, record_);
}

std::shared_ptr<zintra::Recipients> SimRdoMessage::Recipients() {
  HostCall host_call = Hit("RdoMessage.Recipients");
  return std::make_shared<SimRecipients>(profile_, record_);
}

std::shared_ptr<zintra::Attachments> SimRdoMessage::Attachments() {
  HostCall host_call = Hit("RdoMessage.Attachments");
  return std::make_shared<SimAttachments>(profile_, record_);
}

std::shared_ptr<AddressEntry> SimRdoMessage::Sender() {
  HostCall host_call = Hit("RdoMessage.Sender");
  return SenderOf(profile_, *record_);
}

void SimRdoMessage::Save() {
  HostCall host_call = Hit("RdoMessage.Save");
  profile_->SaveMessage(record_);
}

void SimRdoMessage::Delete() {
  HostCall host_call = Hit("RdoMessage.Delete");
  profile_->DestroyMessage(record_);
}

std::shared_ptr<RdoMessage> SimRdoMessage::CopyTo(const std::shared_ptr<AutomationObject>& folder) {
  HostCall host_call = Hit("RdoMessage.CopyTo");
  auto target = FolderRecordOf(folder);
  if (!target) throw ZError(kMapiInvalidParameter, "The destination is not a folder");
  return std::make_shared<SimRdoMessage>(profile_, profile_->CopyMessage(record_, target));
}

std::shared_ptr<RdoMessage> SimRdoMessage::Move(const std::shared_ptr<AutomationObject>& folder) {
  HostCall host_call = Hit("RdoMessage.Move");
  auto target = FolderRecordOf(folder);
  if (!target) throw ZError(kMapiInvalidParameter, "The destination is not a folder");
  record_ = profile_->MoveMessage(record_, target);
  return std::make_shared<SimRdoMessage>(profile_, record_);
}

std::shared_ptr<MapiObject> SimRdoMessage::MAPIOBJECT() {
  HostCall host_call = Hit("RdoMessage.MAPIOBJECT");
  return std::make_shared<SimMapiObject>(profile_, record_);
}

// --- folder ---

HostCall SimRdoFolder::Hit(std::string_view member) const {
  HostCall call = profile_->Faults().Check(member, FaultKey());
  if (!folder_) throw ZError(kErrObjectNotSet, "The folder's MAPIOBJECT is not set");
  Profile::CheckAlive(*folder_);
  return call;
}

void SimRdoFolder::SetMAPIOBJECT(const std::shared_ptr<MapiObject>& folder) {
  HostCall host_call = profile_->Faults().Check("RdoFolder.SetMAPIOBJECT", FaultKey());
  auto record = FolderRecordOf(folder);
  if (!record) throw ZError(kMapiInvalidParameter, "The object is not a MAPI folder");
  folder_ = std::move(record);
}

std::shared_ptr<MapiObject> SimRdoFolder::MAPIOBJECT() {
  HostCall host_call = Hit("RdoFolder.MAPIOBJECT");
  return std::make_shared<SimMapiObject>(profile_, folder_);
}

std::string SimRdoFolder::Name() const {
  HostCall host_call = Hit("RdoFolder.Name");
  return folder_->name;
}

std::string SimRdoFolder::EntryID() const {
  HostCall host_call = Hit("RdoFolder.EntryID");
  return profile_->EntryIdOf(*folder_);
}

std::string SimRdoFolder::StoreID() const {
  HostCall host_call = Hit("RdoFolder.StoreID");
  return profile_->StoreIdOf(*folder_->store);
}

int32_t SimRdoFolder::DefaultItemType() const {
  HostCall host_call = Hit("RdoFolder.DefaultItemType");
  return folder_->default_item_type;
}

std::shared_ptr<RdoFolder> SimRdoFolder::Parent() {
  HostCall host_call = Hit("RdoFolder.Parent");
  auto parent = folder_->parent.lock();
  if (!parent) return nullptr;
  return std::make_shared<SimRdoFolder>(profile_, class_name_, parent);
}

int32_t SimRdoFolder::ItemCount() {
  HostCall host_call = Hit("RdoFolder.ItemCount");
  return static_cast<int32_t>(folder_->messages.size());
}

Value SimRdoFolder::Fields(int32_t prop_tag) {
  HostCall host_call = Hit("RdoFolder.Fields");
  return FolderProperty(*folder_, prop_tag);
}

std::shared_ptr<RdoMessage> SimRdoFolder::AddItem(const std::string& message_class) {
  HostCall host_call = Hit("RdoFolder.AddItem");
  ItemClass item_class = ItemClass::kMail;
  for (int32_t type : {kOlAppointmentItem, kOlContactItem, kOlTaskItem, kOlJournalItem, kOlNoteItem,
                       kOlPostItem, kOlDistributionListItem}) {
    ItemClass c = ItemClassForType(type);
    if (message_class == DefaultMessageClass(c)) item_class = c;
  }
  auto record = profile_->NewMessage(item_class, folder_);
  if (!message_class.empty()) record->props.Set(kPrMessageClass, Value(message_class));
  return std::make_shared<SimRdoMessage>(profile_, record);
}

// --- session ---

HostCall SimRdoSession::Hit(std::string_view member) const {
  HostCall call = profile_->Faults().Check(member, profile_);
  if (!logged_on_) throw ZError(kMapiNotInitialized, "The session is not logged on");
  return call;
}

void SimRdoSession::SetMAPIOBJECT(const std::shared_ptr<MapiObject>& session) {
  HostCall host_call = profile_->Faults().Check("RdoSession.SetMAPIOBJECT", profile_);
  auto sim = std::dynamic_pointer_cast<SimMapiObject>(session);
  if (!sim || sim->kind() != SimMapiObject::Kind::kSession || sim->profile() != profile_) {
    throw ZError(kMapiInvalidParameter, "The object is not this profile's MAPI session");
  }
  session_ = session;
  logged_on_ = true;
}

std::shared_ptr<MapiObject> SimRdoSession::MAPIOBJECT() {
  HostCall host_call = Hit("RdoSession.MAPIOBJECT");
  return session_;
}

std::shared_ptr<AddressEntry> SimRdoSession::CurrentUser() {
  HostCall host_call = Hit("RdoSession.CurrentUser");
  return SimAddressEntry::ForPerson(profile_, profile_->CurrentUser());
}

std::shared_ptr<RdoMessage> SimRdoSession::GetMessageFromID(const std::string& entry_id,
                                                            const std::string& store_id) {
  HostCall host_call = Hit("RdoSession.GetMessageFromID");
  return std::make_shared<SimRdoMessage>(profile_, profile_->FindMessage(entry_id, store_id));
}

std::shared_ptr<RdoFolder> SimRdoSession::GetFolderFromID(const std::string& entry_id,
                                                          const std::string& store_id) {
  HostCall host_call = Hit("RdoSession.GetFolderFromID");
  return std::make_shared<SimRdoFolder>(profile_, "TovuRDOFolder",
                                        profile_->FindFolder(entry_id, store_id));
}

std::shared_ptr<RdoFolder> SimRdoSession::GetDefaultFolder(int32_t folder_type) {
  HostCall host_call = Hit("RdoSession.GetDefaultFolder");
  auto folder = profile_->DefaultFolder(folder_type);
  if (!folder) throw ZError(kMapiNotFound, "The default folder does not exist");
  return std::make_shared<SimRdoFolder>(profile_, "TovuRDOFolder", folder);
}

std::shared_ptr<zintra::AddressLists> SimRdoSession::AddressLists() {
  HostCall host_call = Hit("RdoSession.AddressLists");
  return std::make_shared<SimAddressLists>(profile_);
}

int32_t SimAddressLists::Count() const {
  HostCall host_call = profile_->Faults().Check("AddressLists.Count", profile_);
  return 1;
}

std::shared_ptr<AddressList> SimAddressLists::Item(int32_t index) {
  HostCall host_call = profile_->Faults().Check("AddressLists.Item", profile_);
  CheckIndex(index, 1);
  return std::make_shared<SimAddressList>(profile_);
}

}  // namespace zintra::sim
