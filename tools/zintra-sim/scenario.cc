#include "tools/zintra-sim/scenario.h"

#include <cctype>
#include <cstdio>
#include <utility>

#include "src/core/text.h"
#include "src/toolbars/toolbars.h"

namespace zintra::simtool {

namespace {

struct ClassName {
  ItemClass item_class;
  const char* name;
};
constexpr ClassName kClassNames[] = {
    {ItemClass::kMail, "mail"},
    {ItemClass::kContact, "contact"},
    {ItemClass::kJournal, "journal"},
    {ItemClass::kAppointment, "appointment"},
    {ItemClass::kMeeting, "meeting"},
    {ItemClass::kTask, "task"},
    {ItemClass::kTaskRequest, "task-request"},
    {ItemClass::kTaskRequestUpdate, "task-request-update"},
    {ItemClass::kTaskRequestAccept, "task-request-accept"},
    {ItemClass::kTaskRequestDecline, "task-request-decline"},
    {ItemClass::kNote, "note"},
    {ItemClass::kPost, "post"},
    {ItemClass::kReport, "report"},
    {ItemClass::kRemote, "remote"},
    {ItemClass::kDocument, "document"},
    {ItemClass::kDistList, "distribution-list"},
    {ItemClass::kSharing, "sharing"},
};

constexpr const char* kSensitivities[] = {"normal", "personal", "private", "confidential"};

struct FolderTypeName_ {
  int32_t type;
  const char* name;
};
constexpr FolderTypeName_ kFolderTypes[] = {
    {kOlMailItem, "mail"}, {kOlAppointmentItem, "appointment"}, {kOlContactItem, "contact"},
    {kOlTaskItem, "task"}, {kOlJournalItem, "journal"},         {kOlNoteItem, "note"},
    {kOlPostItem, "post"},
};

constexpr std::pair<StepKind, const char*> kSteps[] = {
    {StepKind::kStart, "start"},
    {StepKind::kDeliver, "deliver"},
    {StepKind::kSend, "send"},
    {StepKind::kAdd, "add"},
    {StepKind::kChange, "change"},
    {StepKind::kDelete, "delete"},
    {StepKind::kWait, "wait"},
    {StepKind::kSettings, "settings"},
    {StepKind::kClick, "click"},
    {StepKind::kOpenInspector, "open-inspector"},
    {StepKind::kCloseInspector, "close-inspector"},
    {StepKind::kLoadAddin, "load-addin"},
    {StepKind::kUnloadAddin, "unload-addin"},
    {StepKind::kQuit, "quit"},
    {StepKind::kFail, "fail"},
    {StepKind::kHeal, "heal"},
    {StepKind::kRemoveFolder, "remove-folder"},
    {StepKind::kAnswer, "answer"},
    {StepKind::kCheck, "check"},
    {StepKind::kWindowMessage, "window-message"},
};

bool ReadInt(const std::string& s, size_t& pos, size_t digits, int& out) {
  if (pos + digits > s.size()) return false;
  out = 0;
  for (size_t i = 0; i < digits; ++i) {
    char c = s[pos + i];
    if (!std::isdigit(static_cast<unsigned char>(c))) return false;
    out = out * 10 + (c - '0');
  }
  pos += digits;
  return true;
}

}  // namespace

const char* ItemClassName(ItemClass c) {
  for (const auto& n : kClassNames) {
    if (n.item_class == c) return n.name;
  }
  return "mail";
}

std::optional<ItemClass> ItemClassFromName(const std::string& name) {
  for (const auto& n : kClassNames) {
    if (text::EqualsNoCase(name, n.name)) return n.item_class;
  }
  return std::nullopt;
}

const char* SensitivityName(int32_t s) { return s >= 0 && s <= 3 ? kSensitivities[s] : "normal"; }

std::optional<int32_t> SensitivityFromName(const std::string& name) {
  for (int32_t i = 0; i < 4; ++i) {
    if (text::EqualsNoCase(name, kSensitivities[i])) return i;
  }
  return std::nullopt;
}

int32_t FolderTypeFor(ItemClass c) {
  switch (c) {
    case ItemClass::kContact:
    case ItemClass::kDistList:
      return kOlContactItem;
    case ItemClass::kJournal:
      return kOlJournalItem;
    case ItemClass::kAppointment:
      return kOlAppointmentItem;
    case ItemClass::kTask:
      return kOlTaskItem;
    case ItemClass::kNote:
      return kOlNoteItem;
    case ItemClass::kPost:
      return kOlPostItem;
    default:
      return kOlMailItem;
  }
}

ItemClass ItemClassForFolderType(int32_t item_type) {
  switch (item_type) {
    case kOlContactItem:
      return ItemClass::kContact;
    case kOlJournalItem:
      return ItemClass::kJournal;
    case kOlAppointmentItem:
      return ItemClass::kAppointment;
    case kOlTaskItem:
      return ItemClass::kTask;
    case kOlNoteItem:
      return ItemClass::kNote;
    case kOlPostItem:
      return ItemClass::kPost;
    default:
      return ItemClass::kMail;
  }
}

const char* FolderTypeName(int32_t item_type) {
  for (const auto& f : kFolderTypes) {
    if (f.type == item_type) return f.name;
  }
  return "mail";
}

std::optional<int32_t> FolderTypeFromName(const std::string& name) {
  for (const auto& f : kFolderTypes) {
    if (text::EqualsNoCase(name, f.name)) return f.type;
  }
  return std::nullopt;
}

const char* StepName(StepKind k) {
  for (const auto& [kind, name] : kSteps) {
    if (kind == k) return name;
  }
  return "?";
}

std::optional<StepKind> StepFromName(const std::string& name) {
  for (const auto& [kind, n] : kSteps) {
    if (name == n) return kind;
  }
  return std::nullopt;
}

const char* ButtonTag(const std::string& name) {
  static constexpr std::pair<const char*, const char*> kButtons[] = {
      {"phone-call", kTagPhoneCall},    {"email", kTagEmail},
      {"file-link", kTagFileLink},      {"note", kTagNote},
      {"appointment", kTagAppointment}, {"letter", kTagLetter}};
  for (const auto& [n, tag] : kButtons) {
    if (name == n) return tag;
  }
  return nullptr;
}

std::optional<double> ParseIsoTime(const std::string& s) {
  size_t pos = 0;
  int y, mo, d, h = 0, mi = 0, sec = 0;
  if (!ReadInt(s, pos, 4, y) || pos >= s.size() || s[pos++] != '-' || !ReadInt(s, pos, 2, mo) ||
      pos >= s.size() || s[pos++] != '-' || !ReadInt(s, pos, 2, d)) {
    return std::nullopt;
  }
  if (pos < s.size()) {
    if (s[pos] != 'T' && s[pos] != ' ') return std::nullopt;
    ++pos;
    if (!ReadInt(s, pos, 2, h) || pos >= s.size() || s[pos++] != ':' || !ReadInt(s, pos, 2, mi)) {
      return std::nullopt;
    }
    if (pos < s.size() && s[pos] == ':') {
      ++pos;
      if (!ReadInt(s, pos, 2, sec)) return std::nullopt;
    }
    if (pos < s.size() && s[pos] == 'Z') ++pos;
  }
  if (pos != s.size() || mo < 1 || mo > 12 || d < 1 || d > 31 || h > 23 || mi > 59 || sec > 59) {
    return std::nullopt;
  }
  return MakeDate(y, mo, d, h, mi, sec);
}

std::string FormatIsoTime(double serial) {
  if (serial == kUnsetDate) return "";
  DateParts p = SplitDate(serial);
  char buf[32];
  std::snprintf(buf, sizeof buf, "%04d-%02d-%02dT%02d:%02d:%02d", p.year, p.month, p.day, p.hour,
                p.minute, p.second);
  return buf;
}

std::optional<PersonSpec> ParsePersonText(const std::string& raw) {
  std::string s = text::Trim(raw);
  PersonSpec p;
  std::string address = s;
  size_t lt = s.rfind('<');
  if (lt != std::string::npos && !s.empty() && s.back() == '>') {
    p.name = text::Trim(s.substr(0, lt));
    if (p.name.size() >= 2 && p.name.front() == '"' && p.name.back() == '"') {
      p.name = p.name.substr(1, p.name.size() - 2);
    }
    address = text::Trim(s.substr(lt + 1, s.size() - lt - 2));
  }
  if (address.empty()) return std::nullopt;
  if (text::StartsWith(text::LCase(address), "/o=")) {  // distinguished names hold spaces
    p.exchange = address;
  } else if (address.find('@') != std::string::npos && address.find(' ') == std::string::npos) {
    p.smtp = address;
  } else {
    return std::nullopt;
  }
  if (p.name.empty()) p.name = address;
  return p;
}

std::string PersonText(const PersonSpec& person) {
  return person.smtp.empty() ? person.exchange : person.smtp;
}

std::optional<double> ParseDuration(const std::string& s) {
  if (s.empty()) return std::nullopt;
  size_t used = 0;
  double n;
  try {
    n = std::stod(s, &used);
  } catch (...) {
    return std::nullopt;
  }
  if (n < 0) return std::nullopt;
  std::string unit = s.substr(used);
  if (unit.empty() || unit == "s") return n;
  if (unit == "ms") return n / 1000;
  if (unit == "m") return n * 60;
  if (unit == "h") return n * 3600;
  if (unit == "d") return n * 86400;
  return std::nullopt;
}

}  // namespace zintra::simtool
