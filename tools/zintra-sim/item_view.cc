#include "tools/zintra-sim/item_view.h"

#include "sim/outlook/message_props.h"
#include "src/core/text.h"
#include "src/host/mapi_object.h"
#include "src/logging/zintra_utils.h"
#include "tools/zintra-sim/scenario.h"

namespace zintra::simtool {

namespace {

using sim::MessageProps;

std::optional<std::string> UserProp(const sim::MessageRecord& m, const std::string& name) {
  for (const sim::UserPropDef& def : m.user_props) {
    if (!text::EqualsNoCase(def.name, name)) continue;
    Value v = MessageProps::GetNamed(m, sim::named::UserProperty(def.name),
                                     sim::UserPropertyPropType(def.type));
    return v.IsEmpty() ? std::optional<std::string>() : v.ToString();
  }
  return std::nullopt;
}

int ListSize(const sim::MessageRecord& m, const char* name) {
  Value v =
      MessageProps::GetNamed(m, sim::NamedPropMap::Key(kZintraPropSetGuid, name), kPtMvString8);
  return v.Type() == ValueType::kStringArray ? static_cast<int>(v.ToStringArray().size()) : 0;
}

std::string JoinWithSemicolons(const std::vector<std::string>& parts) {
  std::string out;
  for (const std::string& p : parts) out += (out.empty() ? "" : "; ") + p;
  return out;
}

}  // namespace

std::string SubjectOf(const sim::MessageRecord& m) {
  return MessageProps::Text(m, m.item_class == ItemClass::kNote ? kPrBody : kPrSubject);
}

ItemMarks ReadMarks(const sim::MessageRecord& m) {
  ItemMarks marks;
  marks.tag = UserProp(m, kPropZintraTag);
  marks.logged = UserProp(m, kPropZintraLogged);
  marks.shared = UserProp(m, kPropZintraShared);
  marks.logged_copies = ListSize(m, kPropLoggedEntryIds);
  marks.shared_copies = ListSize(m, kPropSharedCopyEntryIds);
  Value names = MessageProps::GetNamed(m, sim::named::LinkNames(), kPtMvString8);
  if (names.Type() == ValueType::kStringArray) marks.links = names.ToStringArray();
  return marks;
}

std::string FieldText(const sim::MessageRecord& m, const std::string& field) {
  std::string f = text::LCase(field);
  if (f == "subject") return SubjectOf(m);
  if (f == "body") return MessageProps::Text(m, kPrBody);
  if (f == "class") return ItemClassName(m.item_class);
  if (f == "message_class") return MessageProps::Text(m, kPrMessageClass);
  if (f == "sensitivity") {
    Value v = MessageProps::Get(m, kPrSensitivity);
    return SensitivityName(v.IsEmpty() ? kOlNormal : v.ToLong());
  }
  if (f == "from") {
    std::string name = MessageProps::Text(m, kPrSenderName);
    return name;
  }
  if (f == "to") {
    std::vector<std::string> names;
    for (const auto& r : m.recipients) names.push_back(r.name);
    return JoinWithSemicolons(names);
  }
  if (f == "categories") return MessageProps::Categories(m);
  if (f == "full_name") return MessageProps::Text(m, kPrDisplayName);
  if (f == "company") return MessageProps::NamedText(m, sim::named::Companies());
  if (f == "email1" || f == "email2" || f == "email3") {
    return MessageProps::NamedText(m, sim::named::Email(f.back() - '0'));
  }
  ItemMarks marks = ReadMarks(m);
  if (f == "links") return JoinWithSemicolons(marks.links);
  if (f == "logged_copies") return std::to_string(marks.logged_copies);
  if (f == "shared_copies") return std::to_string(marks.shared_copies);
  return UserProp(m, field).value_or("");
}

}  // namespace zintra::simtool
