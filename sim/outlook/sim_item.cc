#include "sim/outlook/sim_item.h"

#include "sim/outlook/message_props.h"
#include "sim/outlook/sim_folder.h"
#include "sim/outlook/sim_mapi_object.h"
#include "src/core/date.h"
#include "src/core/z_error.h"
#include "src/host/mapi_object.h"

namespace zintra::sim {

bool KindHasRecipients(ItemClass c) {
  switch (c) {
    case ItemClass::kMail:
    case ItemClass::kMeeting:
    case ItemClass::kAppointment:
    case ItemClass::kTask:
    case ItemClass::kTaskRequest:
    case ItemClass::kTaskRequestUpdate:
    case ItemClass::kTaskRequestAccept:
    case ItemClass::kTaskRequestDecline:
    case ItemClass::kJournal:
    case ItemClass::kSharing:
    case ItemClass::kReport:
      return true;
    default:
      return false;
  }
}

bool KindHasSentReceived(ItemClass c) {
  switch (c) {
    case ItemClass::kMail:
    case ItemClass::kMeeting:
    case ItemClass::kPost:
    case ItemClass::kReport:
    case ItemClass::kRemote:
    case ItemClass::kSharing:
    case ItemClass::kTaskRequest:
    case ItemClass::kTaskRequestUpdate:
    case ItemClass::kTaskRequestAccept:
    case ItemClass::kTaskRequestDecline:
      return true;
    default:
      return false;
  }
}

bool KindHasCompanies(ItemClass c) { return c != ItemClass::kNote && c != ItemClass::kDistList; }
bool KindHasUserProperties(ItemClass c) { return c != ItemClass::kNote; }

std::shared_ptr<SimItem> MakeItem(Profile* profile, std::shared_ptr<MessageRecord> record) {
  return std::make_shared<SimItem>(profile, std::move(record));
}

std::shared_ptr<MessageRecord> RecordOf(const std::shared_ptr<AutomationObject>& item) {
  if (auto holder = std::dynamic_pointer_cast<MessageHolder>(item)) return holder->Message();
  if (auto mapi = std::dynamic_pointer_cast<SimMapiObject>(item)) return mapi->message();
  return nullptr;
}

std::shared_ptr<FolderRecord> FolderRecordOf(const std::shared_ptr<AutomationObject>& folder) {
  if (auto holder = std::dynamic_pointer_cast<FolderHolder>(folder)) return holder->FolderRec();
  if (auto mapi = std::dynamic_pointer_cast<SimMapiObject>(folder)) return mapi->folder();
  return nullptr;
}

SimItem::SimItem(Profile* profile, std::shared_ptr<MessageRecord> record)
    : RecordView(profile, std::move(record)) {}

void SimItem::Need(bool has, std::string_view member) const {
  if (!has) {
    throw ZError(kErrNoSuchMember, "Object doesn't support this property or method",
                 std::string(member));
  }
}

std::string SimItem::TypeName() const { return ItemClassTypeName(record_->item_class); }

ItemClass SimItem::Class() const {
  HostCall host_call = Hit("Item.Class");
  return record_->item_class;
}

std::string SimItem::Subject() const {
  HostCall host_call = Hit("Item.Subject");
  if (record_->item_class == ItemClass::kNote) {
    // A note's subject is the first line of its text.
    std::string body = MessageProps::Text(*record_, kPrBody);
    return body.substr(0, body.find_first_of("\r\n"));
  }
  return MessageProps::Text(*record_, kPrSubject);
}

void SimItem::SetSubject(const std::string& subject) {
  HostCall host_call = Hit("Item.SetSubject");
  Need(record_->item_class != ItemClass::kNote, "Item.SetSubject");
  MessageProps::Set(*record_, kPrSubject, Value(subject));
}

std::string SimItem::Body() const {
  HostCall host_call = Hit("Item.Body");
  return MessageProps::Text(*record_, kPrBody);
}

void SimItem::SetBody(const std::string& body) {
  HostCall host_call = Hit("Item.SetBody");
  MessageProps::Set(*record_, kPrBody, Value(body));
}

std::string SimItem::Categories() const {
  HostCall host_call = Hit("Item.Categories");
  return MessageProps::Categories(*record_);
}

void SimItem::SetCategories(const std::string& categories) {
  HostCall host_call = Hit("Item.SetCategories");
  MessageProps::SetCategories(*record_, categories);
}

std::string SimItem::Companies() const {
  HostCall host_call = Hit("Item.Companies");
  Need(KindHasCompanies(record_->item_class), "Item.Companies");
  return MessageProps::NamedText(*record_, named::Companies());
}

void SimItem::SetCompanies(const std::string& companies) {
  HostCall host_call = Hit("Item.SetCompanies");
  Need(KindHasCompanies(record_->item_class), "Item.SetCompanies");
  MessageProps::SetNamed(*record_, named::Companies(), kPtString8, Value(companies));
}

std::string SimItem::MessageClass() const {
  HostCall host_call = Hit("Item.MessageClass");
  return MessageProps::Text(*record_, kPrMessageClass);
}

void SimItem::SetMessageClass(const std::string& message_class) {
  HostCall host_call = Hit("Item.SetMessageClass");
  MessageProps::Set(*record_, kPrMessageClass, Value(message_class));
}

int32_t SimItem::Sensitivity() const {
  HostCall host_call = Hit("Item.Sensitivity");
  Need(record_->item_class != ItemClass::kNote, "Item.Sensitivity");
  const Value* v = record_->props.Get(kPrSensitivity);
  return v ? v->ToLong() : kOlNormal;
}

void SimItem::SetSensitivity(int32_t sensitivity) {
  HostCall host_call = Hit("Item.SetSensitivity");
  Need(record_->item_class != ItemClass::kNote, "Item.SetSensitivity");
  MessageProps::Set(*record_, kPrSensitivity, Value(sensitivity));
}

double SimItem::CreationTime() const {
  HostCall host_call = Hit("Item.CreationTime");
  return MessageProps::Date(*record_, kPrCreationTime);
}

double SimItem::LastModificationTime() const {
  HostCall host_call = Hit("Item.LastModificationTime");
  return MessageProps::Date(*record_, kPrLastModificationTime);
}

double SimItem::SentOn() const {
  HostCall host_call = Hit("Item.SentOn");
  Need(KindHasSentReceived(record_->item_class), "Item.SentOn");
  return MessageProps::Date(*record_, kPrClientSubmitTime);
}

double SimItem::ReceivedTime() const {
  HostCall host_call = Hit("Item.ReceivedTime");
  Need(KindHasSentReceived(record_->item_class), "Item.ReceivedTime");
  return MessageProps::Date(*record_, kPrMessageDeliveryTime);
}

std::string SimItem::EntryID() const {
  HostCall host_call = Hit("Item.EntryID");
  return profile_->EntryIdOf(*record_);
}

std::shared_ptr<Folder> SimItem::Parent() {
  HostCall host_call = Hit("Item.Parent");
  auto folder = record_->folder.lock();
  if (!folder || folder->deleted) return nullptr;
  return MakeFolder(profile_, folder);
}

std::string SimItem::FullName() const {
  HostCall host_call = Hit("Item.FullName");
  Need(record_->item_class == ItemClass::kContact, "Item.FullName");
  return MessageProps::Text(*record_, kPrDisplayName);
}

void SimItem::SetFullName(const std::string& full_name) {
  HostCall host_call = Hit("Item.SetFullName");
  Need(record_->item_class == ItemClass::kContact, "Item.SetFullName");
  MessageProps::Set(*record_, kPrDisplayName, Value(full_name));
  MessageProps::Set(*record_, kPrSubject, Value(full_name));
}

std::string SimItem::EmailAddress(int index, std::string_view member) const {
  HostCall host_call = Hit(member);
  Need(record_->item_class == ItemClass::kContact, member);
  return MessageProps::NamedText(*record_, named::Email(index));
}

void SimItem::SetEmailAddress(int index, const std::string& address, std::string_view member) {
  HostCall host_call = Hit(member);
  Need(record_->item_class == ItemClass::kContact, member);
  MessageProps::SetNamed(*record_, named::Email(index), kPtString8, Value(address));
}

std::string SimItem::Email1Address() const { return EmailAddress(1, "Item.Email1Address"); }
std::string SimItem::Email2Address() const { return EmailAddress(2, "Item.Email2Address"); }
std::string SimItem::Email3Address() const { return EmailAddress(3, "Item.Email3Address"); }
void SimItem::SetEmail1Address(const std::string& a) {
  SetEmailAddress(1, a, "Item.SetEmail1Address");
}
void SimItem::SetEmail2Address(const std::string& a) {
  SetEmailAddress(2, a, "Item.SetEmail2Address");
}
void SimItem::SetEmail3Address(const std::string& a) {
  SetEmailAddress(3, a, "Item.SetEmail3Address");
}

std::string SimItem::Owner() const {
  HostCall host_call = Hit("Item.Owner");
  Need(record_->item_class == ItemClass::kTask, "Item.Owner");
  return MessageProps::NamedText(*record_, named::TaskOwner());
}

void SimItem::SetOwner(const std::string& owner) {
  HostCall host_call = Hit("Item.SetOwner");
  Need(record_->item_class == ItemClass::kTask, "Item.SetOwner");
  MessageProps::SetNamed(*record_, named::TaskOwner(), kPtString8, Value(owner));
}

int32_t SimItem::Ownership() const {
  HostCall host_call = Hit("Item.Ownership");
  Need(record_->item_class == ItemClass::kTask, "Item.Ownership");
  Value v = MessageProps::GetNamed(*record_, named::TaskOwnership(), kPtLong);
  return v.IsEmpty() ? kOlNewTask : v.ToLong();
}

std::string SimItem::Type() const {
  HostCall host_call = Hit("Item.Type");
  Need(record_->item_class == ItemClass::kJournal, "Item.Type");
  return MessageProps::NamedText(*record_, named::JournalType());
}

void SimItem::SetType(const std::string& type) {
  HostCall host_call = Hit("Item.SetType");
  Need(record_->item_class == ItemClass::kJournal, "Item.SetType");
  MessageProps::SetNamed(*record_, named::JournalType(), kPtString8, Value(type));
}

std::shared_ptr<zintra::UserProperties> SimItem::UserProperties() {
  HostCall host_call = Hit("Item.UserProperties");
  Need(KindHasUserProperties(record_->item_class), "Item.UserProperties");
  return std::make_shared<SimUserProperties>(profile_, record_);
}

std::shared_ptr<zintra::Links> SimItem::Links() {
  HostCall host_call = Hit("Item.Links");
  return std::make_shared<SimLinks>(profile_, record_);
}

std::shared_ptr<zintra::Recipients> SimItem::Recipients() {
  HostCall host_call = Hit("Item.Recipients");
  Need(KindHasRecipients(record_->item_class), "Item.Recipients");
  return std::make_shared<SimRecipients>(profile_, record_);
}

std::shared_ptr<zintra::Attachments> SimItem::Attachments() {
  HostCall host_call = Hit("Item.Attachments");
  Need(record_->item_class != ItemClass::kNote, "Item.Attachments");
  return std::make_shared<SimAttachments>(profile_, record_);
}

void SimItem::Save() {
  HostCall host_call = Hit("Item.Save");
  profile_->SaveMessage(record_);
}

void SimItem::Delete() {
  HostCall host_call = Hit("Item.Delete");
  profile_->DeleteMessage(record_);
}

std::shared_ptr<Item> SimItem::Copy() {
  HostCall host_call = Hit("Item.Copy");
  auto folder = record_->folder.lock();
  if (!folder) throw ZError(kMapiObjectDeleted, "The folder of the item has been deleted");
  return MakeItem(profile_, profile_->CopyMessage(record_, folder));
}

std::shared_ptr<Item> SimItem::Move(const std::shared_ptr<Folder>& folder) {
  HostCall host_call = Hit("Item.Move");
  auto target = FolderRecordOf(folder);
  if (!target) throw ZError(kMapiInvalidParameter, "The destination is not a folder");
  auto moved = profile_->MoveMessage(record_, target);
  record_ = moved;  // Outlook's object follows the item to its new place
  return MakeItem(profile_, moved);
}

void SimItem::Display(bool modal) {
  HostCall host_call = Hit("Item.Display");
  profile_->OpenInspector(shared_from_this(), modal);
}

void SimItem::Close(int32_t save_mode) {
  HostCall host_call = Hit("Item.Close");
  if (save_mode == 0) profile_->SaveMessage(record_);
  bool cancel = false;
  const auto callback = profile_->Faults().Callback();
  CloseEvent.Raise(cancel);
}

std::shared_ptr<Inspector> SimItem::GetInspector() {
  HostCall host_call = Hit("Item.GetInspector");
  return profile_->OpenInspector(shared_from_this(), false);
}

std::shared_ptr<MapiObject> SimItem::MAPIOBJECT() {
  HostCall host_call = Hit("Item.MAPIOBJECT");
  return std::make_shared<SimMapiObject>(profile_, record_);
}

}  // namespace zintra::sim
