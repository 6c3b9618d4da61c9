#include "sim/outlook/message_props.h"

#include "sim/outlook/entry_id.h"
#include "sim/outlook/profile.h"
#include "src/core/date.h"
#include "src/core/text.h"
#include "src/host/mapi_object.h"

namespace zintra::sim {

namespace named {
NamedPropKey Email(int index) {
  static const int32_t kIds[] = {0x8083, 0x8093, 0x80A3};
  return NamedPropMap::Key(kPsetidAddress, kIds[index - 1]);
}
NamedPropKey Keywords() { return NamedPropMap::Key(kPsPublicStrings, "Keywords"); }
NamedPropKey Companies() { return NamedPropMap::Key(kPsetidCommon, 0x8539); }
NamedPropKey TaskOwner() { return NamedPropMap::Key(kPsetidTask, 0x811F); }
NamedPropKey TaskOwnership() { return NamedPropMap::Key(kPsetidTask, 0x8129); }
NamedPropKey JournalType() { return NamedPropMap::Key(kPsetidLog, 0x8700); }
NamedPropKey LinkIds() { return NamedPropMap::Key(kPsetidCommon, 0x8585); }
NamedPropKey LinkNames() { return NamedPropMap::Key(kPsetidCommon, 0x8586); }
NamedPropKey UserProperty(const std::string& name) {
  return NamedPropMap::Key(kPsPublicStrings, name);
}
}  // namespace named

uint16_t UserPropertyPropType(int32_t ol_type) {
  switch (ol_type) {
    case kOlYesNo:
      return kPtBoolean;
    case kOlNumber:
      return kPtDouble;
    case kOlDateTime:
      return kPtSystime;
    case kOlInteger:
      return kPtLong;
    default:
      return kPtString8;
  }
}

Value MessageProps::Get(const MessageRecord& m, int32_t tag) {
  if (tag == kPrEntryId) {
    if (!m.stored) return {};
    return Value(MakeEntryId(m.store->uid, EntryKind::kMessage, m.number));
  }
  if (tag == kPrStoreEntryId) {
    return Value(MakeStoreId(Profile::StoreOf(m)->uid));
  }
  const Value* v = m.props.Get(tag);
  return v ? *v : Value{};
}

std::string MessageProps::Text(const MessageRecord& m, int32_t tag) {
  const Value* v = m.props.Get(tag);
  return v ? v->ToString() : std::string();
}

double MessageProps::Date(const MessageRecord& m, int32_t tag) {
  const Value* v = m.props.Get(tag);
  return v ? v->ToDate() : kUnsetDate;
}

void MessageProps::Set(MessageRecord& m, int32_t tag, const Value& value) {
  m.props.Set(tag, value);
}

int32_t MessageProps::NamedTag(const MessageRecord& m, const NamedPropKey& key, uint16_t type,
                               bool create) {
  auto id = Profile::StoreOf(m)->names.IdFor(key, create);
  return id ? PropTag(*id, type) : 0;
}

Value MessageProps::GetNamed(const MessageRecord& m, const NamedPropKey& key, uint16_t type) {
  int32_t tag = NamedTag(m, key, type, false);
  if (tag == 0) return {};
  const Value* v = m.props.Get(tag);
  return v ? *v : Value{};
}

std::string MessageProps::NamedText(const MessageRecord& m, const NamedPropKey& key) {
  return GetNamed(m, key, kPtString8).ToString();
}

void MessageProps::SetNamed(MessageRecord& m, const NamedPropKey& key, uint16_t type,
                            const Value& value) {
  m.props.Set(NamedTag(m, key, type, true), value);
}

std::string MessageProps::Categories(const MessageRecord& m) {
  Value v = GetNamed(m, named::Keywords(), kPtMvString8);
  if (v.Type() != ValueType::kStringArray) return {};
  std::string out;
  for (const std::string& c : v.ToStringArray()) {
    if (!out.empty()) out += ", ";
    out += c;
  }
  return out;
}

void MessageProps::SetCategories(MessageRecord& m, const std::string& categories) {
  Value::StringArray list;
  for (const std::string& part : text::Split(categories, ",")) {
    std::string c = text::Trim(part);
    if (!c.empty()) list.push_back(c);
  }
  SetNamed(m, named::Keywords(), kPtMvString8, Value(list));
}

Value FolderProperty(const FolderRecord& folder, int32_t tag) {
  switch (tag) {
    case kPrEntryId:
      return Value(MakeEntryId(folder.store->uid, EntryKind::kFolder, folder.number));
    case kPrStoreEntryId:
      return Value(MakeStoreId(folder.store->uid));
    case kPrDisplayName:
      return Value(folder.name);
    case kPrContentCount:
      return Value(static_cast<int32_t>(folder.messages.size()));
    default: {
      const Value* v = folder.props.Get(tag);
      return v ? *v : Value{};
    }
  }
}

}  // namespace zintra::sim
