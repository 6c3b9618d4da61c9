#include "tools/zintra-sim/profile_loader.h"

#include "tools/zintra-sim/item_marks.h"

#include "sim/outlook/message_props.h"
#include "src/core/text.h"
#include "src/host/mapi_object.h"

namespace zintra::simtool {

namespace {

constexpr int32_t kPrSenderSmtpAddress = 0x5D01001E;

sim::RecipientRecord Recipient(const sim::Person& p, int32_t type) {
  sim::RecipientRecord r;
  r.name = p.name;
  r.smtp = p.smtp;
  r.address = p.IsExchange() ? p.ex_dn : p.smtp;
  r.addr_type = p.IsExchange() ? "EX" : "SMTP";
  r.type = type;
  return r;
}

std::shared_ptr<sim::FolderRecord> Child(const sim::FolderRecord& parent, const std::string& name) {
  for (const auto& c : parent.children) {
    if (!c->deleted && text::EqualsNoCase(c->name, name)) return c;
  }
  return nullptr;
}

}  // namespace

sim::Person ProfileLoader::PersonOf(const PersonSpec& p) const {
  sim::Person person{p.name, p.smtp, p.exchange};
  if (person.smtp.empty() && !p.exchange.empty()) {
    // The directory knows an Exchange sender's SMTP address.
    if (const sim::Person* known = profile_.FindPerson(p.exchange)) person.smtp = known->smtp;
  }
  return person;
}

void ProfileLoader::Load(const ProfileSpec& desc, const std::string& outlook_version) {
  profile_.SetVersion(outlook_version);
  for (const PersonSpec& p : desc.directory) profile_.AddPerson(PersonOf(p));
  for (const StoreSpec& store : desc.stores) {
    std::shared_ptr<sim::FolderRecord> root;
    switch (store.kind) {
      case StoreKind::kMailbox:
        root = builder_.Mailbox(PersonOf(desc.user));
        if (!store.name.empty()) root->store->name = store.name;
        break;
      case StoreKind::kPersonal:
        root = builder_.PersonalFolders(store.name);
        break;
      case StoreKind::kPublic:
        root = builder_.PublicFolders();
        break;
    }
    for (const FolderSpec& f : store.folders)
      LoadFolder(f, root, store.kind == StoreKind::kMailbox);
  }
  for (const auto& [item, links] : links_) {
    for (const std::string& id : links) Link(item, id);
  }
  links_.clear();
  // Marks name other items, so they go on once every item exists.
  for (const auto& [item, marks] : marks_) ApplyPresetMarks(*item, marks, *this);
  marks_.clear();
}

void ProfileLoader::LoadFolder(const FolderSpec& desc,
                               const std::shared_ptr<sim::FolderRecord>& parent,
                               bool top_of_mailbox) {
  std::shared_ptr<sim::FolderRecord> folder = top_of_mailbox ? Child(*parent, desc.name) : nullptr;
  if (!folder) folder = profile_.AddFolder(parent, desc.name, desc.item_type);
  folder->messages.reserve(folder->messages.size() + desc.items.size());
  for (const ItemSpec& item : desc.items) AddItem(item, folder);
  for (const FolderSpec& sub : desc.folders) LoadFolder(sub, folder, false);
}

void ProfileLoader::Fill(sim::MessageRecord& m, const ItemSpec& desc) {
  using sim::MessageProps;
  namespace named = sim::named;
  if (!desc.message_class.empty()) m.props.Set(kPrMessageClass, Value(desc.message_class));
  if (desc.item_class == ItemClass::kContact) {
    std::string name = desc.full_name.empty() ? desc.subject : desc.full_name;
    m.props.Set(kPrDisplayName, Value(name));
    m.props.Set(kPrSubject, Value(name));
    for (size_t i = 0; i < desc.emails.size() && i < 3; ++i) {
      MessageProps::SetNamed(m, named::Email(static_cast<int>(i) + 1), kPtString8,
                             Value(desc.emails[i]));
    }
    if (!desc.company.empty()) {
      MessageProps::SetNamed(m, named::Companies(), kPtString8, Value(desc.company));
    }
  } else {
    m.props.Set(desc.item_class == ItemClass::kNote ? kPrBody : kPrSubject, Value(desc.subject));
  }
  if (!desc.body.empty() && desc.item_class != ItemClass::kNote) {
    m.props.Set(kPrBody, Value(desc.body));
  }
  if (!desc.categories.empty()) MessageProps::SetCategories(m, desc.categories);
  if (desc.sensitivity != kOlNormal) m.props.Set(kPrSensitivity, Value(desc.sensitivity));
  double when = desc.time != kUnsetDate ? desc.time : profile_.Now();
  if (desc.from) {
    sim::Person s = PersonOf(*desc.from);
    m.props.Set(kPrSenderName, Value(s.name));
    m.props.Set(kPrSenderAddrType, Value(s.IsExchange() ? "EX" : "SMTP"));
    m.props.Set(kPrSenderEmailAddress, Value(s.IsExchange() ? s.ex_dn : s.smtp));
    if (!s.smtp.empty()) m.props.Set(kPrSenderSmtpAddress, Value(s.smtp));
    m.props.Set(kPrClientSubmitTime, Value::Date(when));
    m.props.Set(kPrMessageDeliveryTime, Value::Date(when));
  }
  m.props.Set(kPrCreationTime, Value::Date(when));
  for (const auto& [list, type] :
       {std::pair{&desc.to, kOlTo}, std::pair{&desc.cc, kOlCC}, std::pair{&desc.bcc, kOlBCC}}) {
    for (const PersonSpec& p : *list) m.recipients.push_back(Recipient(PersonOf(p), type));
  }
  for (const AttachmentSpec& a : desc.attachments) {
    sim::AttachmentRecord r;
    r.display_name = a.name;
    r.file_name = a.name;
    r.type = a.link ? kOlByReference : kOlByValue;
    if (!a.link) r.data.assign(static_cast<size_t>(a.size), '\0');
    m.attachments.push_back(std::move(r));
  }
  for (const auto& [name, value] : desc.properties) {
    bool yes_no = text::EqualsNoCase(value, "true") || text::EqualsNoCase(value, "false");
    int32_t type = yes_no ? kOlYesNo : kOlText;
    m.user_props.push_back({name, type});
    MessageProps::SetNamed(m, named::UserProperty(name), sim::UserPropertyPropType(type),
                           yes_no ? Value(text::EqualsNoCase(value, "true")) : Value(value));
  }
}

std::shared_ptr<sim::MessageRecord> ProfileLoader::NewItem(
    const ItemSpec& desc, const std::shared_ptr<sim::FolderRecord>& home) {
  auto m = profile_.NewMessage(desc.item_class, home);
  made_.insert(m.get());
  Fill(*m, desc);
  if (!desc.id.empty()) Remember(desc.id, m);
  return m;
}

std::shared_ptr<sim::MessageRecord> ProfileLoader::AddItem(
    const ItemSpec& desc, const std::shared_ptr<sim::FolderRecord>& folder) {
  auto m = NewItem(desc, folder);
  profile_.SaveMessage(m);
  if (!desc.links.empty()) links_.emplace_back(m, desc.links);
  if (desc.marks) marks_.emplace_back(m, *desc.marks);
  return m;
}

void ProfileLoader::Link(const std::shared_ptr<sim::MessageRecord>& item, const std::string& id) {
  auto target = FindItem(id);
  if (target) builder_.Link(item, target);
}

std::shared_ptr<sim::FolderRecord> ProfileLoader::FindFolder(const std::string& path) const {
  std::vector<std::string> parts = text::Split(path, "/");
  if (parts.empty() || parts[0].empty()) return nullptr;
  std::shared_ptr<sim::FolderRecord> folder;
  size_t next = 1;
  for (const auto& store : profile_.Stores()) {
    if (text::EqualsNoCase(store->name, parts[0])) folder = store->root;
  }
  if (folder && folder->store->is_public && parts.size() > 1) {
    // "Public Folders/All Public Folders/..." or "Public Folders/..."
    auto all = Child(*folder, "All Public Folders");
    if (all && !text::EqualsNoCase(parts[1], "All Public Folders")) folder = all;
  }
  if (!folder) {
    sim::StoreRecord* store = profile_.DefaultStore();
    if (store == nullptr) return nullptr;
    folder = store->root;
    next = 0;
  }
  for (size_t i = next; i < parts.size() && folder; ++i) folder = Child(*folder, parts[i]);
  return folder;
}

std::shared_ptr<sim::MessageRecord> ProfileLoader::FindItem(const std::string& id) const {
  auto it = ids_.find(id);
  if (it == ids_.end()) return nullptr;
  auto record = it->second.lock();
  return record && !record->deleted ? record : nullptr;
}

void ProfileLoader::Remember(const std::string& id,
                             const std::shared_ptr<sim::MessageRecord>& record) {
  ids_[id] = record;
  names_[record.get()] = id;
}

std::string ProfileLoader::IdOf(const sim::MessageRecord& record) const {
  auto it = names_.find(&record);
  return it == names_.end() ? "" : it->second;
}

std::string ProfileLoader::PathOf(const sim::FolderRecord& folder) {
  std::string path = folder.name;
  for (auto p = folder.parent.lock(); p; p = p->parent.lock()) {
    path = (p->parent.expired() ? p->store->name : p->name) + "/" + path;
  }
  return path;
}

}  // namespace zintra::simtool
