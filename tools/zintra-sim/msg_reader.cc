#include "tools/zintra-sim/msg_reader.h"

#include <algorithm>
#include <cstdio>
#include <map>
#include <optional>

#include "src/core/text.h"
#include "tools/zintra-sim/compound_file.h"
#include "tools/zintra-sim/input_error.h"
#include "tools/zintra-sim/mapi_property_ids.h"
#include "tools/zintra-sim/text_decoding.h"

namespace zintra::simtool {

namespace {

// Property types and the tags read (identifier << 16 | type).
constexpr uint16_t kPtLong = 0x0003, kPtString8 = 0x001E, kPtUnicode = 0x001F, kPtSystime = 0x0040,
                   kPtBinary = 0x0102, kPtMvFlag = 0x1000;
using namespace mapi_ids;  // NOLINT(google-build-using-namespace): the tags read

constexpr int32_t kAttachEmbeddedMsg = 5;

// Named properties: the property sets by their GUID bytes as stored (little-endian
// fields), and the names and numbers read from them.
const std::string kPublicStrings("\x29\x03\x02\x00\x00\x00\x00\x00\xC0\x00\x00\x00\x00\x00\x00\x46",
                                 16);
const std::string kAddressSet("\x04\x20\x06\x00\x00\x00\x00\x00\xC0\x00\x00\x00\x00\x00\x00\x46",
                              16);
constexpr uint32_t kEmailLids[] = {0x8083, 0x8093, 0x80A3};  // Email1..3EmailAddress
constexpr uint32_t kEmailTypeLids[] = {0x8082, 0x8092, 0x80A2};
constexpr uint32_t kEmailOriginalLids[] = {0x8084, 0x8094, 0x80A4};

uint32_t Le32(const std::string& s, size_t at) {
  uint32_t v = 0;
  for (size_t k = 0; k < 4 && at + k < s.size(); ++k) {
    v |= static_cast<uint32_t>(static_cast<unsigned char>(s[at + k])) << (8 * k);
  }
  return v;
}

std::string TagName(uint32_t tag) {
  char name[32];
  std::snprintf(name, sizeof name, "__substg1.0_%08X", tag);
  return name;
}

// The properties of one storage (the item, a recipient, an attachment): fixed-size
// values from its property stream, the others from their own streams.
class PropertyBag {
 public:
  PropertyBag(const CompoundFile& cf, uint32_t storage, size_t header)
      : cf_(cf), storage_(storage) {
    auto stream = cf.Find(storage, "__properties_version1.0");
    if (!stream) {
      throw InputError(cf.file(), 0, "", "not an Outlook item: it has no property stream");
    }
    std::string props = cf.Read(*stream);
    for (size_t at = header; at + 16 <= props.size(); at += 16) {
      fixed_[Le32(props, at)] = props.substr(at + 8, 8);
    }
  }

  void SetCodepage(const std::string& charset) { charset_ = charset; }

  std::optional<std::string> Stream(uint32_t tag) const {
    auto id = cf_.Find(storage_, TagName(tag));
    if (!id) return std::nullopt;
    return cf_.Read(*id);
  }
  std::optional<std::string> String(uint16_t id) const {
    if (auto wide = Stream(uint32_t{id} << 16 | kPtUnicode)) return Utf16(*wide);
    if (auto narrow = Stream(uint32_t{id} << 16 | kPtString8)) return Narrow(*narrow);
    return std::nullopt;
  }
  std::string Text(uint16_t id) const { return String(id).value_or(""); }
  std::vector<std::string> Strings(uint16_t id) const {
    std::vector<std::string> out;
    for (uint16_t type : {kPtUnicode, kPtString8}) {
      uint32_t tag = uint32_t{id} << 16 | kPtMvFlag | type;
      auto lengths = Stream(tag);
      if (!lengths) continue;
      size_t count = lengths->size() / 4;  // one 4-byte length per value
      for (size_t i = 0; i < count && i < 4096; ++i) {
        char suffix[16];
        std::snprintf(suffix, sizeof suffix, "-%08zX", i);
        auto value = cf_.Find(storage_, TagName(tag) + suffix);
        if (!value) continue;
        std::string raw = cf_.Read(*value);
        out.push_back(type == kPtUnicode ? Utf16(raw) : Narrow(raw));
      }
      break;
    }
    return out;
  }
  std::optional<int32_t> Long(uint16_t id) const {
    auto it = fixed_.find(uint32_t{id} << 16 | kPtLong);
    if (it == fixed_.end()) return std::nullopt;
    return static_cast<int32_t>(Le32(it->second, 0));
  }
  // A FILETIME (100 ns since 1601) as a date serial (days since 30 December 1899).
  std::optional<double> Time(uint16_t id) const {
    auto it = fixed_.find(uint32_t{id} << 16 | kPtSystime);
    if (it == fixed_.end()) return std::nullopt;
    uint64_t ticks = Le32(it->second, 0) | uint64_t{Le32(it->second, 4)} << 32;
    if (ticks == 0) return std::nullopt;
    return FiletimeToSerial(ticks);
  }
  std::optional<uint32_t> Size(uint32_t tag) const {
    auto it = fixed_.find(tag);
    if (it == fixed_.end()) return std::nullopt;
    return Le32(it->second, 0);
  }
  bool Has(uint32_t tag) const { return fixed_.count(tag) > 0; }

 private:
  static std::string Utf16(std::string raw) {
    while (raw.size() >= 2 && raw[raw.size() - 1] == 0 && raw[raw.size() - 2] == 0) {
      raw.resize(raw.size() - 2);
    }
    if (raw.size() % 2 != 0) raw.pop_back();
    return ConvertToUtf8(raw, "UTF-16LE");
  }
  std::string Narrow(std::string raw) const {
    while (!raw.empty() && raw.back() == 0) raw.pop_back();
    return DecodeText(raw, charset_);
  }

  const CompoundFile& cf_;
  uint32_t storage_;
  std::map<uint32_t, std::string> fixed_;
  std::string charset_;
};

// The item's named properties: (property set, number or name) -> property identifier.
class NamedProperties {
 public:
  explicit NamedProperties(const CompoundFile& cf) {
    auto storage = cf.Find(cf.root(), "__nameid_version1.0");
    if (!storage) return;
    auto read = [&](const char* name) {
      auto id = cf.Find(*storage, name);
      return id ? cf.Read(*id) : std::string();
    };
    std::string guids = read("__substg1.0_00020102");
    std::string entries = read("__substg1.0_00030102");
    std::string strings = read("__substg1.0_00040102");
    for (size_t at = 0; at + 8 <= entries.size(); at += 8) {
      uint32_t key = Le32(entries, at);
      uint32_t bits = Le32(entries, at + 4);
      bool named = (bits & 1) != 0;
      uint32_t guid_index = (bits >> 1) & 0x7FFF;
      uint16_t id = static_cast<uint16_t>(0x8000 + (bits >> 16));
      std::string guid;
      if (guid_index == 2) {
        guid = kPublicStrings;
      } else if (guid_index >= 3 && (guid_index - 3) * 16 + 16 <= guids.size()) {
        guid = guids.substr((guid_index - 3) * 16, 16);
      }
      if (named) {
        uint32_t length = Le32(strings, key);
        if (key + 4 + size_t{length} > strings.size()) continue;
        by_name_[{guid, ConvertToUtf8(strings.substr(key + 4, length), "UTF-16LE")}] = id;
      } else {
        by_number_[{guid, key}] = id;
      }
    }
  }
  std::optional<uint16_t> Number(const std::string& guid, uint32_t lid) const {
    auto it = by_number_.find({guid, lid});
    return it == by_number_.end() ? std::nullopt : std::optional<uint16_t>(it->second);
  }
  std::optional<uint16_t> Name(const std::string& guid, const std::string& name) const {
    auto it = by_name_.find({guid, name});
    return it == by_name_.end() ? std::nullopt : std::optional<uint16_t>(it->second);
  }

 private:
  std::map<std::pair<std::string, uint32_t>, uint16_t> by_number_;
  std::map<std::pair<std::string, std::string>, uint16_t> by_name_;
};

std::string CharsetOf(const PropertyBag& p) {
  std::optional<int32_t> cp = p.Long(kInternetCodepage);
  if (!cp) cp = p.Long(kMessageCodepage);
  if (!cp) return "";
  if (*cp == 65001) return "UTF-8";
  if (*cp == 20127) return "US-ASCII";
  if (*cp == 28591) return "ISO-8859-1";
  return "CP" + std::to_string(*cp);
}

std::optional<PersonSpec> Sender(const PropertyBag& p) {
  auto representing = MapiPerson(p.Text(kSentRepresentingName), p.Text(kSentRepresentingAddrType),
                                 p.Text(kSentRepresentingEmail), p.Text(kSentRepresentingSmtp));
  if (representing) return representing;
  return MapiPerson(p.Text(kSenderName), p.Text(kSenderAddrType), p.Text(kSenderEmail),
                    p.Text(kSenderSmtp));
}

std::string Categories(const PropertyBag& p, const NamedProperties& named) {
  auto id = named.Name(kPublicStrings, "Keywords");
  if (!id) return "";
  std::string joined;
  for (const std::string& c : p.Strings(*id)) {
    if (!c.empty()) joined += (joined.empty() ? "" : ", ") + c;
  }
  return joined;
}

void ReadRecipients(const CompoundFile& cf, const std::string& charset, ItemSpec& item) {
  for (uint32_t id : cf.Children(cf.root())) {
    if (!text::StartsWith(cf.entry(id).name, "__recip_version1.0_")) continue;
    PropertyBag r(cf, id, 8);
    r.SetCodepage(charset);
    auto person = MapiPerson(r.Text(kDisplayName), r.Text(kAddrType), r.Text(kEmailAddress),
                             r.Text(kSmtpAddress));
    if (!person) continue;
    int32_t type = r.Long(kRecipientType).value_or(1) & 0x0F;
    (type == 2 ? item.cc : type == 3 ? item.bcc : item.to).push_back(*person);
  }
}

void ReadAttachments(const CompoundFile& cf, const std::string& charset, ItemSpec& item) {
  std::vector<std::pair<std::string, AttachmentSpec>> found;  // by storage name: file order
  for (uint32_t id : cf.Children(cf.root())) {
    if (!text::StartsWith(cf.entry(id).name, "__attach_version1.0_")) continue;
    PropertyBag a(cf, id, 8);
    a.SetCodepage(charset);
    AttachmentSpec attachment;
    attachment.name = a.Text(kAttachLongFilename);
    if (attachment.name.empty()) attachment.name = a.Text(kAttachFilename);
    if (attachment.name.empty()) attachment.name = a.Text(kDisplayName);
    if (attachment.name.empty()) attachment.name = "attachment";
    attachment.content_type = text::LCase(a.Text(kAttachMimeTag));
    bool embedded = a.Long(kAttachMethod).value_or(0) == kAttachEmbeddedMsg;
    if (embedded && attachment.content_type.empty()) attachment.content_type = "message/rfc822";
    if (attachment.content_type.empty()) attachment.content_type = "application/octet-stream";
    auto data = a.Size(uint32_t{kAttachData} << 16 | kPtBinary);
    attachment.size = data ? *data : a.Long(kAttachSize).value_or(0);
    found.emplace_back(cf.entry(id).name, std::move(attachment));
  }
  std::sort(found.begin(), found.end(),
            [](const auto& x, const auto& y) { return x.first < y.first; });
  for (auto& [name, attachment] : found) item.attachments.push_back(std::move(attachment));
}

}  // namespace

// An address as Outlook holds it: an Exchange one ("EX") keeps its distinguished name and
// the SMTP address when the item has it; others are kept as given.
std::optional<PersonSpec> MapiPerson(const std::string& name, const std::string& type,
                                     const std::string& address, const std::string& smtp) {
  PersonSpec p;
  if (text::EqualsNoCase(type, "EX") || text::StartsWith(text::LCase(address), "/o=")) {
    p.exchange = address;
    p.smtp = smtp;
  } else {
    p.smtp = address.empty() ? smtp : address;
  }
  if (p.smtp.empty() && p.exchange.empty()) return std::nullopt;
  p.name = name.empty() ? PersonText(p) : name;
  return p;
}

double FiletimeToSerial(uint64_t ticks) {
  return static_cast<double>(ticks / 10000000) / 86400.0 - 109205.0;
}

ItemSpec ReadMsg(const std::string& bytes, const std::string& file) {
  CompoundFile cf(bytes, file);
  PropertyBag p(cf, cf.root(), 32);
  std::string charset = CharsetOf(p);
  p.SetCodepage(charset);
  NamedProperties named(cf);
  ItemSpec item;
  item.message_class = p.Text(kMessageClass);
  std::string kind = text::LCase(item.message_class);
  if (kind.empty()) kind = "ipm.note";
  item.subject = p.Text(kSubject);
  item.body = p.Text(kBody);
  item.sensitivity = p.Long(kSensitivity).value_or(kOlNormal);
  if (item.sensitivity < kOlNormal || item.sensitivity > kOlConfidential) {
    item.sensitivity = kOlNormal;
  }
  item.categories = Categories(p, named);
  if (text::StartsWith(kind, "ipm.contact")) {
    item.item_class = ItemClass::kContact;
    item.message_class.clear();
    item.full_name = p.Text(kDisplayName);
    item.company = p.Text(kCompanyName);
    for (size_t i = 0; i < 3; ++i) {
      auto id = named.Number(kAddressSet, kEmailLids[i]);
      std::string address = id ? p.Text(*id) : "";
      auto type_id = named.Number(kAddressSet, kEmailTypeLids[i]);
      auto original_id = named.Number(kAddressSet, kEmailOriginalLids[i]);
      std::string original = original_id ? p.Text(*original_id) : "";
      // An Exchange address's SMTP form, when Outlook kept it, is the one mail carries.
      if (type_id && text::EqualsNoCase(p.Text(*type_id), "EX") &&
          original.find('@') != std::string::npos && original.find(' ') == std::string::npos) {
        address = original;
      }
      if (!address.empty()) item.emails.push_back(address);
    }
    if (item.full_name.empty()) item.full_name = item.subject;
    if (item.full_name.empty()) item.full_name = item.company;
    if (item.full_name.empty() && !item.emails.empty()) item.full_name = item.emails.front();
    if (item.full_name.empty()) {
      throw InputError(file, 0, "", "the contact has no name and no e-mail address");
    }
    item.subject = item.full_name;
    return item;
  }
  if (text::StartsWith(kind, "ipm.schedule.meeting.request")) {
    item.item_class = ItemClass::kMeeting;
  } else if (text::StartsWith(kind, "report.")) {
    item.item_class = ItemClass::kReport;
  } else if (text::StartsWith(kind, "ipm.note") || text::StartsWith(kind, "ipm.schedule") ||
             text::StartsWith(kind, "ipm.post") || kind == "ipm") {
    item.item_class = ItemClass::kMail;
  } else {
    throw InputError(file, 0, "",
                     "an Outlook item of class \"" + item.message_class +
                         "\": this import reads mail and contacts");
  }
  if (text::EqualsNoCase(item.message_class, "IPM.Note")) item.message_class.clear();
  item.from = Sender(p);
  ReadRecipients(cf, charset, item);
  item.time = p.Time(kClientSubmitTime).value_or(p.Time(kDeliveryTime).value_or(kUnsetDate));
  ReadAttachments(cf, charset, item);
  return item;
}

}  // namespace zintra::simtool
