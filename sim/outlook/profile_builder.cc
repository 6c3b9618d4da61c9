#include "sim/outlook/profile_builder.h"

#include "sim/outlook/message_props.h"
#include "sim/outlook/sim_item.h"
#include "src/core/date.h"
#include "src/core/text.h"
#include "src/core/z_error.h"
#include "src/host/mapi_object.h"

namespace zintra::sim {

namespace {

constexpr int32_t kPrSenderSmtpAddress = 0x5D01001E;

RecipientRecord RecipientFor(const Person& p, int32_t type) {
  RecipientRecord r;
  r.name = p.name;
  r.smtp = p.smtp;
  r.address = p.IsExchange() ? p.ex_dn : p.smtp;
  r.addr_type = p.IsExchange() ? "EX" : "SMTP";
  r.type = type;
  return r;
}

}  // namespace

Person ProfileBuilder::Smtp(const std::string& name, const std::string& address) {
  return Person{name, address, ""};
}

Person ProfileBuilder::Exchange(const std::string& name, const std::string& alias,
                                const std::string& org) {
  return Person{name, text::LCase(alias + "@" + org + ".com"),
                "/O=" + text::UCase(org) +
                    "/OU=FIRST ADMINISTRATIVE GROUP/CN=RECIPIENTS/CN=" + text::UCase(alias)};
}

std::shared_ptr<FolderRecord> ProfileBuilder::Mailbox(const Person& user) {
  profile_.SetCurrentUser(user);
  StoreRecord& store = profile_.AddStore("Mailbox - " + user.name, false, true);
  mailbox_ = &store;
  const struct {
    int32_t number;
    const char* name;
    int32_t item_type;
  } kDefaults[] = {{kOlFolderDeletedItems, "Deleted Items", kOlMailItem},
                   {kOlFolderOutbox, "Outbox", kOlMailItem},
                   {kOlFolderSentMail, "Sent Items", kOlMailItem},
                   {kOlFolderInbox, "Inbox", kOlMailItem},
                   {kOlFolderCalendar, "Calendar", kOlAppointmentItem},
                   {kOlFolderContacts, "Contacts", kOlContactItem},
                   {kOlFolderJournal, "Journal", kOlJournalItem},
                   {kOlFolderNotes, "Notes", kOlNoteItem},
                   {kOlFolderTasks, "Tasks", kOlTaskItem},
                   {kOlFolderDrafts, "Drafts", kOlMailItem}};
  for (const auto& d : kDefaults) {
    profile_.SetDefaultFolder(d.number, profile_.AddFolder(store.root, d.name, d.item_type));
  }
  return store.root;
}

std::shared_ptr<FolderRecord> ProfileBuilder::PersonalFolders(const std::string& name) {
  return profile_.AddStore(name, false, false).root;
}

std::shared_ptr<FolderRecord> ProfileBuilder::PublicFolders() {
  StoreRecord& store = profile_.AddStore("Public Folders", true, false);
  return profile_.AddFolder(store.root, "All Public Folders", kOlMailItem);
}

std::shared_ptr<FolderRecord> ProfileBuilder::Default(int32_t folder_type) const {
  auto folder = profile_.DefaultFolder(folder_type);
  if (!folder)
    throw ZError(kMapiNotFound, "The profile has no default folder " + std::to_string(folder_type));
  return folder;
}

std::shared_ptr<FolderRecord> ProfileBuilder::Folder(const std::string& name, int32_t item_type,
                                                     std::shared_ptr<FolderRecord> parent) {
  if (!parent) {
    if (mailbox_ == nullptr) throw ZError(kMapiNotFound, "Make the mailbox first");
    parent = mailbox_->root;
  }
  return profile_.AddFolder(parent, name, item_type);
}

std::shared_ptr<MessageRecord> ProfileBuilder::Contact(const std::shared_ptr<FolderRecord>& folder,
                                                       const ContactSpec& desc) {
  auto m = profile_.NewMessage(ItemClass::kContact, folder);
  m->props.Set(kPrDisplayName, Value(desc.full_name));
  m->props.Set(kPrSubject, Value(desc.full_name));
  for (size_t i = 0; i < desc.emails.size() && i < 3; ++i) {
    MessageProps::SetNamed(*m, named::Email(static_cast<int>(i) + 1), kPtString8,
                           Value(desc.emails[i]));
  }
  if (!desc.categories.empty()) MessageProps::SetCategories(*m, desc.categories);
  if (desc.sensitivity != kOlNormal) m->props.Set(kPrSensitivity, Value(desc.sensitivity));
  if (!desc.company.empty()) {
    MessageProps::SetNamed(*m, named::Companies(), kPtString8, Value(desc.company));
  }
  profile_.SaveMessage(m);
  return m;
}

void ProfileBuilder::Contacts(const std::shared_ptr<FolderRecord>& folder, int n) {
  folder->messages.reserve(folder->messages.size() + static_cast<size_t>(n));
  for (int i = 1; i <= n; ++i) {
    ContactSpec desc;
    desc.full_name = "Contact " + std::to_string(i);
    int addresses = 1 + i % 3;
    for (int a = 1; a <= addresses; ++a) {
      desc.emails.push_back("contact" + std::to_string(i) + (a > 1 ? "." + std::to_string(a) : "") +
                            "@company" + std::to_string(i % 97) + ".com");
    }
    if (i % 5 == 0) desc.categories = "Customers";
    if (i % 10 == 0) desc.sensitivity = kOlPrivate;
    Contact(folder, desc);
  }
}

std::shared_ptr<MessageRecord> ProfileBuilder::NewMail(const std::shared_ptr<FolderRecord>& folder,
                                                       const MailSpec& desc) {
  auto m = profile_.NewMessage(ItemClass::kMail, folder);
  m->props.Set(kPrSubject, Value(desc.subject));
  if (!desc.body.empty()) m->props.Set(kPrBody, Value(desc.body));
  if (!desc.message_class.empty()) m->props.Set(kPrMessageClass, Value(desc.message_class));
  if (desc.sensitivity != kOlNormal) m->props.Set(kPrSensitivity, Value(desc.sensitivity));
  return m;
}

std::shared_ptr<MessageRecord> ProfileBuilder::MailFrom(const Person& sender, const MailSpec& desc,
                                                        std::shared_ptr<FolderRecord> folder) {
  if (!folder) folder = Default(kOlFolderInbox);
  if (profile_.FindPerson(sender.smtp) == nullptr) profile_.AddPerson(sender);
  auto m = NewMail(folder, desc);
  double when = desc.time != 0 ? desc.time : profile_.Now();
  m->props.Set(kPrSenderName, Value(sender.name));
  m->props.Set(kPrSenderAddrType, Value(sender.IsExchange() ? "EX" : "SMTP"));
  m->props.Set(kPrSenderEmailAddress, Value(sender.IsExchange() ? sender.ex_dn : sender.smtp));
  m->props.Set(kPrSenderSmtpAddress, Value(sender.smtp));
  m->props.Set(kPrClientSubmitTime, Value::Date(DateAdd("n", -1, when)));
  m->props.Set(kPrMessageDeliveryTime, Value::Date(when));
  m->props.Set(kPrCreationTime, Value::Date(when));
  m->recipients.push_back(RecipientFor(profile_.CurrentUser(), kOlTo));
  profile_.SaveMessage(m);
  return m;
}

std::shared_ptr<MessageRecord> ProfileBuilder::MailTo(const std::vector<Person>& to,
                                                      const MailSpec& desc,
                                                      std::shared_ptr<FolderRecord> folder) {
  if (!folder) folder = Default(kOlFolderSentMail);
  auto m = NewMail(folder, desc);
  const Person& me = profile_.CurrentUser();
  double when = desc.time != 0 ? desc.time : profile_.Now();
  m->props.Set(kPrSenderName, Value(me.name));
  m->props.Set(kPrSenderAddrType, Value(me.IsExchange() ? "EX" : "SMTP"));
  m->props.Set(kPrSenderEmailAddress, Value(me.IsExchange() ? me.ex_dn : me.smtp));
  m->props.Set(kPrSenderSmtpAddress, Value(me.smtp));
  m->props.Set(kPrClientSubmitTime, Value::Date(when));
  m->props.Set(kPrMessageDeliveryTime, Value::Date(when));
  m->props.Set(kPrCreationTime, Value::Date(when));
  for (const Person& p : to) {
    if (profile_.FindPerson(p.smtp) == nullptr) profile_.AddPerson(p);
    m->recipients.push_back(RecipientFor(p, kOlTo));
  }
  profile_.SaveMessage(m);
  return m;
}

void ProfileBuilder::Mails(const std::shared_ptr<FolderRecord>& folder, int n) {
  folder->messages.reserve(folder->messages.size() + static_cast<size_t>(n));
  double start = MakeDate(2025, 1, 1, 8, 0, 0);
  for (int i = 1; i <= n; ++i) {
    Person sender =
        Smtp("Sender " + std::to_string(i % 500),
             "sender" + std::to_string(i % 500) + "@company" + std::to_string(i % 97) + ".com");
    MailSpec desc;
    desc.subject = "Message " + std::to_string(i);
    desc.time = DateAdd("n", i, start);
    MailFrom(sender, desc, folder);
  }
}

std::shared_ptr<MessageRecord> ProfileBuilder::Item(const std::shared_ptr<FolderRecord>& folder,
                                                    ItemClass item_class,
                                                    const std::string& subject) {
  auto m = profile_.NewMessage(item_class, folder);
  if (item_class == ItemClass::kContact) {
    m->props.Set(kPrDisplayName, Value(subject));
  }
  m->props.Set(item_class == ItemClass::kNote ? kPrBody : kPrSubject, Value(subject));
  profile_.SaveMessage(m);
  return m;
}

void ProfileBuilder::Link(const std::shared_ptr<MessageRecord>& item,
                          const std::shared_ptr<MessageRecord>& contact) {
  MakeItem(&profile_, item)->Links()->Add(MakeItem(&profile_, contact));
  profile_.SaveMessage(item);
}

}  // namespace zintra::sim
