#include "tools/zintra-sim/scenario_fields.h"

#include <algorithm>
#include <filesystem>

#include "sim/registry/memory_registry.h"
#include "src/core/text.h"
#include "tools/zintra-sim/input_error.h"
#include "tools/zintra-sim/item_marks.h"

namespace zintra::simtool {

namespace {

// The kind of a mailbox's default folder of that name; mail for any other folder.
int32_t MailboxFolderType(const std::string& name) {
  constexpr std::pair<const char*, int32_t> kDefaults[] = {{"Calendar", kOlAppointmentItem},
                                                           {"Contacts", kOlContactItem},
                                                           {"Journal", kOlJournalItem},
                                                           {"Notes", kOlNoteItem},
                                                           {"Tasks", kOlTaskItem}};
  for (const auto& [folder, type] : kDefaults) {
    if (text::EqualsNoCase(name, folder)) return type;
  }
  return kOlMailItem;
}

}  // namespace

PersonSpec ReadPerson(const JsonNode& n) {
  if (n.IsString()) {
    auto p = ParsePersonText(n.AsString());
    if (!p) {
      n.Fail(
          "expected an address: \"Name <user@domain>\", \"user@domain\" or an Exchange "
          "address \"/O=...\"");
    }
    return *p;
  }
  n.OnlyKeys({"name", "smtp", "exchange"});
  PersonSpec p{n.String("name"), n.String("smtp"), n.String("exchange")};
  if (p.smtp.empty() && p.exchange.empty()) n.Fail("a person needs \"smtp\" or \"exchange\"");
  // Old mail's local addresses ("abel") are kept as the mail gave them.
  if (!p.smtp.empty() && p.smtp.find_first_of(" <>") != std::string::npos) {
    n.Need("smtp").Fail("expected an SMTP address (user@domain, or a local name)");
  }
  if (!p.exchange.empty() && !text::StartsWith(text::LCase(p.exchange), "/o=")) {
    n.Need("exchange").Fail("expected an Exchange address starting \"/O=\"");
  }
  if (p.name.empty()) p.name = PersonText(p);
  return p;
}

std::vector<PersonSpec> ReadPeople(const JsonNode& n) {
  std::vector<PersonSpec> out;
  if (n.IsString() || n.IsObject()) {
    out.push_back(ReadPerson(n));
  } else {
    for (const JsonNode& e : n.Elements()) out.push_back(ReadPerson(e));
  }
  return out;
}

double ReadTime(const JsonNode& n) {
  auto t = ParseIsoTime(n.AsString());
  if (!t) n.Fail("expected a time as \"2026-01-05T09:30:00\"");
  return *t;
}

std::map<std::string, std::string> ReadTextMap(const JsonNode& n) {
  std::map<std::string, std::string> out;
  for (const auto& [key, value] : n.Members()) out[key] = value.AsScalarText();
  return out;
}

ItemSpec ReadItem(const JsonNode& n, ItemClass default_class, bool folder_kind_known) {
  n.OnlyKeys({"id", "class", "message_class", "subject", "body", "from", "to", "cc", "bcc",
              "sensitivity", "time", "categories", "full_name", "emails", "company", "links",
              "attachments", "properties", "marks"});
  ItemSpec item;
  item.source_line = n.Line();
  item.id = n.String("id");
  item.item_class = default_class;
  if (auto c = n.Get("class")) {
    auto parsed = ItemClassFromName(c->AsString());
    if (!parsed) {
      c->Fail(
          "expected an item class: mail, contact, journal, appointment, meeting, task, "
          "task-request, task-request-update, task-request-accept, task-request-decline, note, "
          "post, report, remote, document, distribution-list, sharing");
    }
    item.item_class = *parsed;
    item.class_given = true;
  }
  item.message_class = n.String("message_class");
  item.subject = n.String("subject");
  item.body = n.String("body");
  if (auto f = n.Get("from")) item.from = ReadPerson(*f);
  if (auto t = n.Get("to")) item.to = ReadPeople(*t);
  if (auto c = n.Get("cc")) item.cc = ReadPeople(*c);
  if (auto b = n.Get("bcc")) item.bcc = ReadPeople(*b);
  if (auto s = n.Get("sensitivity")) {
    auto parsed = SensitivityFromName(s->AsString());
    if (!parsed) s->Fail("expected normal, personal, private or confidential");
    item.sensitivity = *parsed;
  }
  if (auto t = n.Get("time")) item.time = ReadTime(*t);
  item.categories = n.String("categories");
  item.full_name = n.String("full_name");
  if (auto e = n.Get("emails")) item.emails = e->AsStrings();
  item.company = n.String("company");
  if (auto l = n.Get("links")) item.links = l->AsStrings();
  if (auto a = n.Get("attachments")) {
    for (const JsonNode& e : a->Elements()) {
      e.OnlyKeys({"name", "content_type", "size", "link"});
      item.attachments.push_back({e.Need("name").AsString(), e.String("content_type"),
                                  e.Int("size", 0, 0, int64_t{1} << 26), e.Bool("link", false)});
    }
  }
  if (auto p = n.Get("properties")) item.properties = ReadTextMap(*p);
  if (auto m = n.Get("marks")) item.marks = ReadPresetMarks(*m);
  if (item.item_class == ItemClass::kContact && item.full_name.empty()) {
    item.full_name = item.subject;
  }
  // A step's item without a class takes its folder's kind when it is played.
  if ((item.class_given || folder_kind_known) && item.item_class != ItemClass::kContact &&
      !item.emails.empty()) {
    n.Need("emails").Fail("only contacts have e-mail addresses; set \"class\": \"contact\"");
  }
  return item;
}

FolderSpec ReadFolder(const JsonNode& n, bool top_of_mailbox) {
  n.OnlyKeys({"name", "type", "folders", "items"});
  FolderSpec f;
  f.name = n.Need("name").AsString();
  if (f.name.empty() || f.name.find('/') != std::string::npos) {
    n.Need("name").Fail("expected a folder name without \"/\"");
  }
  f.item_type = kOlMailItem;
  if (auto t = n.Get("type")) {
    auto parsed = FolderTypeFromName(t->AsString());
    if (!parsed) t->Fail("expected mail, appointment, contact, task, journal, note or post");
    f.item_type = *parsed;
  } else if (top_of_mailbox) {
    f.item_type = MailboxFolderType(f.name);  // "Contacts" is the default contact folder
  }
  if (auto sub = n.Get("folders")) {
    for (const JsonNode& e : sub->Elements()) f.folders.push_back(ReadFolder(e, false));
  }
  if (auto items = n.Get("items")) {
    ItemClass default_class = ItemClassForFolderType(f.item_type);
    for (const JsonNode& e : items->Elements()) f.items.push_back(ReadItem(e, default_class));
  }
  return f;
}

ProfileSpec ReadProfile(const JsonNode& n) {
  n.OnlyKeys({"user", "directory", "stores"});
  ProfileSpec p;
  p.user = ReadPerson(n.Need("user"));
  if (auto d = n.Get("directory")) p.directory = ReadPeople(*d);
  if (auto stores = n.Get("stores")) {
    for (const JsonNode& s : stores->Elements()) {
      s.OnlyKeys({"name", "kind", "folders"});
      StoreSpec store;
      std::string kind = s.String("kind", "mailbox");
      if (kind == "mailbox") {
        store.kind = StoreKind::kMailbox;
      } else if (kind == "personal") {
        store.kind = StoreKind::kPersonal;
      } else if (kind == "public") {
        store.kind = StoreKind::kPublic;
      } else {
        s.Need("kind").Fail("expected mailbox, personal or public");
      }
      store.name = s.String("name");
      if (store.kind == StoreKind::kPersonal && store.name.empty()) store.name = "Personal Folders";
      if (auto folders = s.Get("folders")) {
        for (const JsonNode& f : folders->Elements()) {
          store.folders.push_back(ReadFolder(f, store.kind == StoreKind::kMailbox));
        }
      }
      p.stores.push_back(std::move(store));
    }
  }
  if (p.stores.empty() || p.stores.front().kind != StoreKind::kMailbox) {
    n.Fail("the first store must be the user's mailbox (\"kind\": \"mailbox\")");
  }
  return p;
}

RegistrySpec ReadRegistry(const JsonNode& n, const std::string& base_dir) {
  n.OnlyKeys({"files", "values"});
  RegistrySpec r;
  if (auto files = n.Get("files")) {
    for (const JsonNode& f : files->Elements()) {
      std::filesystem::path path = f.AsString();
      if (path.is_relative()) path = std::filesystem::path(base_dir) / path;
      if (!std::filesystem::is_regular_file(path)) f.Fail("no such .reg file: " + path.string());
      r.reg_files.push_back(path.string());
    }
  }
  if (auto values = n.Get("values")) {
    for (const JsonNode& v : values->Elements()) {
      v.OnlyKeys({"key", "name", "dword", "string", "multi"});
      RegValueSpec value;
      value.key = v.Need("key").AsString();
      std::string hive = text::UCase(value.key.substr(0, value.key.find('\\')));
      if (hive != "HKCU" && hive != "HKLM" && hive != "HKEY_CURRENT_USER" &&
          hive != "HKEY_LOCAL_MACHINE") {
        v.Need("key").Fail("expected a key under HKCU\\ or HKLM\\");
      }
      if (static_cast<size_t>(std::count(value.key.begin(), value.key.end(), '\\')) >
          sim::kMaxKeyDepth) {
        v.Need("key").Fail("a key more than " + std::to_string(sim::kMaxKeyDepth) + " levels deep");
      }
      value.name = v.String("name");
      int kinds = v.Has("dword") + v.Has("string") + v.Has("multi");
      if (kinds != 1) v.Fail("a value needs exactly one of \"dword\", \"string\", \"multi\"");
      if (auto d = v.Get("dword")) {
        value.type = RegType::kDword;
        if (d->Value().is_boolean()) {
          value.dword = d->AsBool() ? 1 : 0;
        } else {
          value.dword = static_cast<uint32_t>(d->AsInt(0, 0xFFFFFFFFLL));
        }
      } else if (auto s = v.Get("string")) {
        value.type = RegType::kString;
        value.text = s->AsString();
      } else {
        value.type = RegType::kMultiString;
        value.texts = v.Need("multi").AsStrings();
      }
      r.values.push_back(std::move(value));
    }
  }
  return r;
}

}  // namespace zintra::simtool
