#include "sim/outlook/sim_item_parts.h"

#include "sim/outlook/message_props.h"
#include "sim/outlook/sim_address_entry.h"
#include "sim/outlook/sim_item.h"
#include "src/core/date.h"
#include "src/core/text.h"
#include "src/core/z_error.h"
#include "src/host/mapi_object.h"

namespace zintra::sim {

size_t CheckIndex(int32_t index, size_t count) {
  if (index < 1 || static_cast<size_t>(index) > count) {
    throw ZError(kErrInvalidCall, "Array index out of bounds.");
  }
  return static_cast<size_t>(index - 1);
}

namespace {

Value DefaultUserValue(int32_t type) {
  switch (type) {
    case kOlYesNo:
      return Value(false);
    case kOlNumber:
      return Value(0.0);
    case kOlInteger:
      return Value(int32_t{0});
    case kOlDateTime:
      return Value::Date(MakeDate(4501, 1, 1));  // Outlook's "None"
    default:
      return Value(std::string());
  }
}

}  // namespace

// --- user properties ---

SimUserProperty::SimUserProperty(Profile* profile, std::shared_ptr<MessageRecord> record,
                                 std::string name)
    : RecordView(profile, std::move(record)), name_(std::move(name)) {}

const UserPropDef& SimUserProperty::Def() const {
  for (const UserPropDef& def : record_->user_props) {
    if (text::EqualsNoCase(def.name, name_)) return def;
  }
  throw ZError(kMapiObjectDeleted, "The property has been deleted");
}

std::string SimUserProperty::Name() const {
  HostCall host_call = Hit("UserProperty.Name");
  return Def().name;
}

int32_t SimUserProperty::Type() const {
  HostCall host_call = Hit("UserProperty.Type");
  return Def().type;
}

Value SimUserProperty::GetValue() const {
  HostCall host_call = Hit("UserProperty.Value");
  const UserPropDef& def = Def();
  Value v = MessageProps::GetNamed(*record_, named::UserProperty(def.name),
                                   UserPropertyPropType(def.type));
  return v.IsEmpty() ? DefaultUserValue(def.type) : v;
}

void SimUserProperty::SetValue(const Value& value) {
  HostCall host_call = Hit("UserProperty.SetValue");
  const UserPropDef& def = Def();
  MessageProps::SetNamed(*record_, named::UserProperty(def.name), UserPropertyPropType(def.type),
                         value);
}

int32_t SimUserProperties::Count() const {
  HostCall host_call = Hit("UserProperties.Count");
  return static_cast<int32_t>(record_->user_props.size());
}

std::shared_ptr<UserProperty> SimUserProperties::Item(int32_t index) {
  HostCall host_call = Hit("UserProperties.Item");
  size_t i = CheckIndex(index, record_->user_props.size());
  return std::make_shared<SimUserProperty>(profile_, record_, record_->user_props[i].name);
}

std::shared_ptr<UserProperty> SimUserProperties::Find(std::string_view name) {
  HostCall host_call = Hit("UserProperties.Find");
  for (const UserPropDef& def : record_->user_props) {
    if (text::EqualsNoCase(def.name, name)) {
      return std::make_shared<SimUserProperty>(profile_, record_, def.name);
    }
  }
  return nullptr;
}

std::shared_ptr<UserProperty> SimUserProperties::Add(std::string_view name, int32_t type,
                                                     bool /*add_to_folder_fields*/) {
  HostCall host_call = Hit("UserProperties.Add");
  if (name.empty()) throw ZError(kErrInvalidCall, "A property name is required");
  for (const UserPropDef& def : record_->user_props) {
    if (text::EqualsNoCase(def.name, name)) {
      if (def.type != type) {
        throw ZError(kMapiCallFailed,
                     "A property named '" + std::string(name) + "' exists with another type");
      }
      return std::make_shared<SimUserProperty>(profile_, record_, def.name);
    }
  }
  record_->user_props.push_back(UserPropDef{std::string(name), type});
  MessageProps::SetNamed(*record_, named::UserProperty(std::string(name)),
                         UserPropertyPropType(type), DefaultUserValue(type));
  return std::make_shared<SimUserProperty>(profile_, record_, std::string(name));
}

void SimUserProperties::Remove(int32_t index) {
  HostCall host_call = Hit("UserProperties.Remove");
  size_t i = CheckIndex(index, record_->user_props.size());
  const UserPropDef def = record_->user_props[i];
  record_->user_props.erase(record_->user_props.begin() + static_cast<ptrdiff_t>(i));
  int32_t tag = MessageProps::NamedTag(*record_, named::UserProperty(def.name), 0, false);
  if (tag != 0) record_->props.Remove(PropId(tag));
}

// --- links ---

SimLink::SimLink(Profile* profile, std::shared_ptr<MessageRecord> record, std::string name,
                 std::string target)
    : RecordView(profile, std::move(record)), name_(std::move(name)), target_(std::move(target)) {}

std::string SimLink::Name() const {
  HostCall host_call = Hit("Link.Name");
  return name_;
}

std::shared_ptr<zintra::Item> SimLink::Item() {
  HostCall host_call = Hit("Link.Item");
  size_t colon = target_.find(':');
  if (colon == std::string::npos) throw ZError(kMapiNotFound, "The link cannot be resolved");
  return MakeItem(profile_,
                  profile_->FindMessage(target_.substr(colon + 1), target_.substr(0, colon)));
}

Value::StringArray SimLinks::Ids() const {
  Value v = MessageProps::GetNamed(*record_, named::LinkIds(), kPtMvString8);
  return v.Type() == ValueType::kStringArray ? v.ToStringArray() : Value::StringArray{};
}

Value::StringArray SimLinks::Names() const {
  Value v = MessageProps::GetNamed(*record_, named::LinkNames(), kPtMvString8);
  return v.Type() == ValueType::kStringArray ? v.ToStringArray() : Value::StringArray{};
}

void SimLinks::Store(const Value::StringArray& ids, const Value::StringArray& names) {
  MessageProps::SetNamed(*record_, named::LinkIds(), kPtMvString8, Value(ids));
  MessageProps::SetNamed(*record_, named::LinkNames(), kPtMvString8, Value(names));
}

int32_t SimLinks::Count() const {
  HostCall host_call = Hit("Links.Count");
  return static_cast<int32_t>(Ids().size());
}

std::shared_ptr<zintra::Link> SimLinks::Item(int32_t index) {
  HostCall host_call = Hit("Links.Item");
  auto ids = Ids();
  auto names = Names();
  size_t i = CheckIndex(index, ids.size());
  return std::make_shared<SimLink>(profile_, record_, i < names.size() ? names[i] : "", ids[i]);
}

std::shared_ptr<zintra::Link> SimLinks::Add(const std::shared_ptr<zintra::Item>& item) {
  HostCall host_call = Hit("Links.Add");
  auto target = RecordOf(item);
  if (!target || !target->stored) {
    throw ZError(kMapiInvalidParameter, "Only a saved item can be linked");
  }
  std::string name = target->item_class == ItemClass::kContact
                         ? MessageProps::Text(*target, kPrDisplayName)
                         : MessageProps::Text(*target, kPrSubject);
  std::string id = profile_->StoreIdOf(*target->store) + ":" + profile_->EntryIdOf(*target);
  auto ids = Ids();
  auto names = Names();
  names.resize(ids.size());
  ids.push_back(id);
  names.push_back(name);
  Store(ids, names);
  return std::make_shared<SimLink>(profile_, record_, name, id);
}

void SimLinks::Remove(int32_t index) {
  HostCall host_call = Hit("Links.Remove");
  auto ids = Ids();
  auto names = Names();
  size_t i = CheckIndex(index, ids.size());
  names.resize(ids.size());
  ids.erase(ids.begin() + static_cast<ptrdiff_t>(i));
  names.erase(names.begin() + static_cast<ptrdiff_t>(i));
  Store(ids, names);
}

// --- recipients ---

SimRecipient::SimRecipient(Profile* profile, std::shared_ptr<MessageRecord> record, size_t index)
    : RecordView(profile, std::move(record)), index_(index) {}

RecipientRecord& SimRecipient::Rec() const {
  if (index_ >= record_->recipients.size()) {
    throw ZError(kMapiObjectDeleted, "The recipient has been removed");
  }
  return record_->recipients[index_];
}

std::string SimRecipient::Name() const {
  HostCall host_call = Hit("Recipient.Name");
  return Rec().name;
}

std::string SimRecipient::Address() const {
  HostCall host_call = Hit("Recipient.Address");
  return Rec().address;
}

int32_t SimRecipient::Type() const {
  HostCall host_call = Hit("Recipient.Type");
  return Rec().type;
}

void SimRecipient::SetType(int32_t type) {
  HostCall host_call = Hit("Recipient.SetType");
  Rec().type = type;
}

bool SimRecipient::Resolved() const {
  HostCall host_call = Hit("Recipient.Resolved");
  return Rec().resolved;
}

std::shared_ptr<zintra::AddressEntry> SimRecipient::AddressEntry() {
  HostCall host_call = Hit("Recipient.AddressEntry");
  const RecipientRecord& r = Rec();
  if (!r.resolved) return nullptr;
  return std::make_shared<SimAddressEntry>(profile_, r.name, r.address, r.addr_type, r.smtp);
}

RecipientRecord SimRecipients::Resolve(const Profile& profile, const std::string& name) {
  RecipientRecord r;
  if (const Person* person = profile.FindPerson(name)) {
    r.name = person->name;
    r.smtp = person->smtp;
    r.address = person->IsExchange() ? person->ex_dn : person->smtp;
    r.addr_type = person->IsExchange() ? "EX" : "SMTP";
  } else if (name.find('@') != std::string::npos) {
    r.name = name;
    r.address = name;
    r.smtp = name;
    r.addr_type = "SMTP";
  } else {
    r.name = name;
    r.resolved = false;
  }
  return r;
}

int32_t SimRecipients::Count() const {
  HostCall host_call = Hit("Recipients.Count");
  return static_cast<int32_t>(record_->recipients.size());
}

std::shared_ptr<Recipient> SimRecipients::Item(int32_t index) {
  HostCall host_call = Hit("Recipients.Item");
  return std::make_shared<SimRecipient>(profile_, record_,
                                        CheckIndex(index, record_->recipients.size()));
}

std::shared_ptr<Recipient> SimRecipients::Add(const std::string& name) {
  HostCall host_call = Hit("Recipients.Add");
  record_->recipients.push_back(Resolve(*profile_, name));
  return std::make_shared<SimRecipient>(profile_, record_, record_->recipients.size() - 1);
}

void SimRecipients::Remove(int32_t index) {
  HostCall host_call = Hit("Recipients.Remove");
  size_t i = CheckIndex(index, record_->recipients.size());
  record_->recipients.erase(record_->recipients.begin() + static_cast<ptrdiff_t>(i));
}

// --- attachments ---

SimAttachment::SimAttachment(Profile* profile, std::shared_ptr<MessageRecord> record, size_t index)
    : RecordView(profile, std::move(record)), index_(index) {}

AttachmentRecord& SimAttachment::Rec() const {
  if (index_ >= record_->attachments.size()) {
    throw ZError(kMapiObjectDeleted, "The attachment has been removed");
  }
  return record_->attachments[index_];
}

std::string SimAttachment::DisplayName() const {
  HostCall host_call = Hit("Attachment.DisplayName");
  return Rec().display_name;
}

std::string SimAttachment::FileName() const {
  HostCall host_call = Hit("Attachment.FileName");
  return Rec().file_name;
}

std::string SimAttachment::PathName() const {
  HostCall host_call = Hit("Attachment.PathName");
  return Rec().type == kOlByReference ? Rec().path_name : std::string();
}

int32_t SimAttachment::Type() const {
  HostCall host_call = Hit("Attachment.Type");
  return Rec().type;
}

int32_t SimAttachment::Index() const {
  HostCall host_call = Hit("Attachment.Index");
  Rec();
  return static_cast<int32_t>(index_ + 1);
}

int32_t SimAttachment::Size() const {
  HostCall host_call = Hit("Attachment.Size");
  return static_cast<int32_t>(Rec().data.size());
}

void SimAttachment::Delete() {
  HostCall host_call = Hit("Attachment.Delete");
  Rec();
  record_->attachments.erase(record_->attachments.begin() + static_cast<ptrdiff_t>(index_));
}

int32_t SimAttachments::Count() const {
  HostCall host_call = Hit("Attachments.Count");
  return static_cast<int32_t>(record_->attachments.size());
}

std::shared_ptr<Attachment> SimAttachments::Item(int32_t index) {
  HostCall host_call = Hit("Attachments.Item");
  return std::make_shared<SimAttachment>(profile_, record_,
                                         CheckIndex(index, record_->attachments.size()));
}

std::shared_ptr<Attachment> SimAttachments::Add(const std::string& source, int32_t type,
                                                int32_t position, const std::string& display_name) {
  HostCall host_call = Hit("Attachments.Add");
  AttachmentRecord a;
  a.type = type;
  a.path_name = source;
  size_t slash = source.find_last_of("\\/");
  a.file_name = slash == std::string::npos ? source : source.substr(slash + 1);
  a.display_name = display_name.empty() ? a.file_name : display_name;
  if (type != kOlByReference) {
    auto data = profile_->ReadFile(source);
    if (!data)
      throw ZError(kMapiNotFound,
                   "Cannot find this file. Verify the path and file name are correct.");
    a.data = std::move(*data);
  }
  auto& list = record_->attachments;
  size_t at = position >= 1 && static_cast<size_t>(position) <= list.size()
                  ? static_cast<size_t>(position - 1)
                  : list.size();
  list.insert(list.begin() + static_cast<ptrdiff_t>(at), std::move(a));
  return std::make_shared<SimAttachment>(profile_, record_, at);
}

void SimAttachments::Remove(int32_t index) {
  HostCall host_call = Hit("Attachments.Remove");
  size_t i = CheckIndex(index, record_->attachments.size());
  record_->attachments.erase(record_->attachments.begin() + static_cast<ptrdiff_t>(i));
}

}  // namespace zintra::sim
