#include "tools/zintra-sim/outlook_store_reader.h"

#include <libpff.h>

#include <map>
#include <memory>
#include <optional>

#include "src/core/text.h"
#include "tools/zintra-sim/input_error.h"
#include "tools/zintra-sim/mapi_property_ids.h"
#include "tools/zintra-sim/msg_reader.h"

namespace zintra::simtool {

namespace {

// MAPI property identifiers read (libpff finds named ones, such as the contact's
// addresses 0x8083/0x8093/0x80A3, through the file's name-to-id map).
using namespace mapi_ids;  // NOLINT(google-build-using-namespace): the tags read

constexpr uint32_t kStoreEmailLids[] = {0x8083, 0x8093, 0x80A3};
constexpr uint8_t kAnyType = LIBPFF_ENTRY_VALUE_FLAG_MATCH_ANY_VALUE_TYPE;

struct ItemFree {
  void operator()(libpff_item_t* item) const { libpff_item_free(&item, nullptr); }
};
using Item = std::unique_ptr<libpff_item_t, ItemFree>;
struct SetFree {
  void operator()(libpff_record_set_t* set) const { libpff_record_set_free(&set, nullptr); }
};
struct EntryFree {
  void operator()(libpff_record_entry_t* e) const { libpff_record_entry_free(&e, nullptr); }
};
using Entry = std::unique_ptr<libpff_record_entry_t, EntryFree>;
struct MultiFree {
  void operator()(libpff_multi_value_t* m) const { libpff_multi_value_free(&m, nullptr); }
};

// Reads through libpff, turning its errors into InputError naming the file.
class Reader {
 public:
  explicit Reader(std::string file) : file_(std::move(file)) {}

  // `result` of a libpff call: 1 done, 0 not there, -1 failed (`error` says why).
  // `error` is read after the call has set it.
  bool Check(int result, libpff_error_t** error, const char* what) const {
    if (result == 1) return true;
    if (result == 0) return false;
    std::string why;
    if (*error != nullptr) {
      char buffer[1024] = {};
      libpff_error_backtrace_sprint(*error, buffer, sizeof buffer);
      libpff_error_free(error);
      why = buffer;  // the innermost cause first: "function: what went wrong."
      why = why.substr(0, why.find('\n'));
      size_t colon = why.find(": ");
      if (colon != std::string::npos) why = why.substr(colon + 2);
      while (!why.empty() && (why.back() == '.' || why.back() == ' ')) why.pop_back();
    }
    throw InputError(file_, 0, "",
                     std::string("a damaged or unreadable Outlook data file (") + what +
                         (why.empty() ? "" : ": " + why) + ")");
  }

  Entry Find(libpff_item_t* item, int set_index, uint32_t type,
             const std::string& name = "") const {
    libpff_error_t* error = nullptr;
    libpff_record_set_t* raw_set = nullptr;
    int sets = 0;
    Check(libpff_item_get_number_of_record_sets(item, &sets, &error), &error, "record sets");
    if (set_index >= sets) return nullptr;
    Check(libpff_item_get_record_set_by_index(item, set_index, &raw_set, &error), &error,
          "record set");
    std::unique_ptr<libpff_record_set_t, SetFree> set(raw_set);
    libpff_record_entry_t* entry = nullptr;
    int found = name.empty() ? libpff_record_set_get_entry_by_type(set.get(), type, 0, &entry,
                                                                   kAnyType, &error)
                             : libpff_record_set_get_entry_by_utf8_name(
                                   set.get(), reinterpret_cast<const uint8_t*>(name.data()),
                                   name.size(), 0, &entry, kAnyType, &error);
    if (found != 1) {
      if (error != nullptr) libpff_error_free(&error);  // absent or of another kind
      return nullptr;
    }
    return Entry(entry);
  }

  std::string Text(libpff_item_t* item, uint32_t type, int set_index = 0) const {
    Entry e = Find(item, set_index, type);
    if (!e) return "";
    libpff_error_t* error = nullptr;
    size_t size = 0;
    if (libpff_record_entry_get_data_as_utf8_string_size(e.get(), &size, &error) != 1 ||
        size == 0) {
      if (error != nullptr) libpff_error_free(&error);
      return "";
    }
    std::string out(size, '\0');
    if (libpff_record_entry_get_data_as_utf8_string(e.get(), reinterpret_cast<uint8_t*>(out.data()),
                                                    size, &error) != 1) {
      if (error != nullptr) libpff_error_free(&error);
      return "";
    }
    while (!out.empty() && out.back() == '\0') out.pop_back();
    return out;
  }

  std::optional<uint32_t> Long(libpff_item_t* item, uint32_t type, int set_index = 0) const {
    Entry e = Find(item, set_index, type);
    uint32_t value = 0;
    libpff_error_t* error = nullptr;
    if (!e || libpff_record_entry_get_data_as_32bit_integer(e.get(), &value, &error) != 1) {
      if (error != nullptr) libpff_error_free(&error);
      return std::nullopt;
    }
    return value;
  }

  std::optional<double> Time(libpff_item_t* item, uint32_t type) const {
    Entry e = Find(item, 0, type);
    uint64_t value = 0;
    libpff_error_t* error = nullptr;
    if (!e || libpff_record_entry_get_data_as_filetime(e.get(), &value, &error) != 1 ||
        value == 0) {
      if (error != nullptr) libpff_error_free(&error);
      return std::nullopt;
    }
    return FiletimeToSerial(value);
  }

  // The node an entry identifier names: its last four bytes (0 when absent).
  uint32_t EntryNode(libpff_item_t* item, uint32_t type) const {
    Entry e = Find(item, 0, type);
    size_t size = 0;
    libpff_error_t* error = nullptr;
    if (!e || libpff_record_entry_get_data_size(e.get(), &size, &error) != 1 || size < 24) {
      if (error != nullptr) libpff_error_free(&error);
      return 0;
    }
    std::string data(size, '\0');
    if (libpff_record_entry_get_data(e.get(), reinterpret_cast<uint8_t*>(data.data()), size,
                                     &error) != 1) {
      if (error != nullptr) libpff_error_free(&error);
      return 0;
    }
    uint32_t node = 0;
    for (int i = 0; i < 4; ++i)
      node |= static_cast<uint32_t>(static_cast<uint8_t>(data[20 + i])) << (8 * i);
    return node;
  }

  uint32_t Identifier(libpff_item_t* item) const {
    uint32_t id = 0;
    libpff_error_t* error = nullptr;
    Check(libpff_item_get_identifier(item, &id, &error), &error, "folder");
    return id;
  }

  // Outlook's categories: the multi-valued named property "Keywords".
  std::string Categories(libpff_item_t* item) const {
    Entry e = Find(item, 0, 0, "Keywords");
    if (!e) return "";
    libpff_error_t* error = nullptr;
    libpff_multi_value_t* raw = nullptr;
    if (libpff_record_entry_get_multi_value(e.get(), &raw, &error) != 1) {
      if (error != nullptr) libpff_error_free(&error);
      return "";
    }
    std::unique_ptr<libpff_multi_value_t, MultiFree> values(raw);
    int count = 0;
    libpff_multi_value_get_number_of_values(values.get(), &count, nullptr);
    std::string joined;
    for (int i = 0; i < count; ++i) {
      size_t size = 0;
      if (libpff_multi_value_get_value_utf8_string_size(values.get(), i, &size, nullptr) != 1 ||
          size == 0) {
        continue;
      }
      std::string v(size, '\0');
      if (libpff_multi_value_get_value_utf8_string(
              values.get(), i, reinterpret_cast<uint8_t*>(v.data()), size, nullptr) != 1) {
        continue;
      }
      while (!v.empty() && v.back() == '\0') v.pop_back();
      if (!v.empty()) joined += (joined.empty() ? "" : ", ") + v;
    }
    return joined;
  }

  const std::string& file() const { return file_; }

 private:
  std::string file_;
};

// A data file keeps a subject behind a control mark when it has a prefix ("RE: "): 0x01,
// then a character that gives the prefix's length. The subject shown goes without it.
std::string Subject(const Reader& r, libpff_item_t* m) {
  std::string subject = r.Text(m, kSubject);
  if (subject.size() >= 2 && subject[0] == '\x01') subject.erase(0, 2);
  return subject;
}

std::optional<PersonSpec> Sender(const Reader& r, libpff_item_t* m) {
  auto representing =
      MapiPerson(r.Text(m, kSentRepresentingName), r.Text(m, kSentRepresentingAddrType),
                 r.Text(m, kSentRepresentingEmail), r.Text(m, kSentRepresentingSmtp));
  if (representing) return representing;
  return MapiPerson(r.Text(m, kSenderName), r.Text(m, kSenderAddrType), r.Text(m, kSenderEmail),
                    r.Text(m, kSenderSmtp));
}

ItemSpec ReadMail(const Reader& r, libpff_item_t* m, ItemClass item_class) {
  ItemSpec item;
  item.item_class = item_class;
  item.message_class = r.Text(m, kMessageClass);
  if (text::EqualsNoCase(item.message_class, "IPM.Note")) item.message_class.clear();
  item.subject = Subject(r, m);
  item.body = r.Text(m, kBody);
  item.sensitivity = static_cast<int32_t>(r.Long(m, kSensitivity).value_or(kOlNormal));
  if (item.sensitivity < kOlNormal || item.sensitivity > kOlConfidential) {
    item.sensitivity = kOlNormal;
  }
  item.categories = r.Categories(m);
  item.from = Sender(r, m);
  item.time = r.Time(m, kClientSubmitTime).value_or(r.Time(m, kDeliveryTime).value_or(kUnsetDate));

  libpff_error_t* error = nullptr;
  libpff_item_t* raw = nullptr;
  if (r.Check(libpff_message_get_recipients(m, &raw, &error), &error, "recipients") && raw) {
    Item recipients(raw);
    int count = 0;
    r.Check(libpff_item_get_number_of_record_sets(recipients.get(), &count, &error), &error,
            "recipients");
    for (int i = 0; i < count; ++i) {
      libpff_item_t* rs = recipients.get();
      auto person = MapiPerson(r.Text(rs, kDisplayName, i), r.Text(rs, kAddrType, i),
                               r.Text(rs, kEmailAddress, i), r.Text(rs, kSmtpAddress, i));
      if (!person) continue;
      uint32_t type = r.Long(rs, kRecipientType, i).value_or(1) & 0x0F;
      (type == 2 ? item.cc : type == 3 ? item.bcc : item.to).push_back(*person);
    }
  }
  int attachments = 0;
  r.Check(libpff_message_get_number_of_attachments(m, &attachments, &error), &error, "attachments");
  for (int i = 0; i < attachments; ++i) {
    libpff_item_t* raw_attachment = nullptr;
    r.Check(libpff_message_get_attachment(m, i, &raw_attachment, &error), &error, "attachment");
    Item a(raw_attachment);
    AttachmentSpec attachment;
    attachment.name = r.Text(a.get(), kAttachLongFilename);
    if (attachment.name.empty()) attachment.name = r.Text(a.get(), kAttachFilename);
    if (attachment.name.empty()) attachment.name = r.Text(a.get(), kDisplayName);
    if (attachment.name.empty()) attachment.name = "attachment";
    attachment.content_type = text::LCase(r.Text(a.get(), kAttachMimeTag));
    int type = 0;
    r.Check(libpff_attachment_get_type(a.get(), &type, &error), &error, "attachment");
    if (attachment.content_type.empty()) {
      attachment.content_type =
          type == LIBPFF_ATTACHMENT_TYPE_ITEM ? "message/rfc822" : "application/octet-stream";
    }
    size64_t size = 0;
    if (type == LIBPFF_ATTACHMENT_TYPE_DATA &&
        r.Check(libpff_attachment_get_data_size(a.get(), &size, &error), &error, "attachment")) {
      attachment.size = static_cast<int64_t>(size);
    } else {
      attachment.size = r.Long(a.get(), kAttachSize).value_or(0);
    }
    item.attachments.push_back(std::move(attachment));
  }
  return item;
}

std::optional<ItemSpec> ReadContact(const Reader& r, libpff_item_t* c) {
  ItemSpec item;
  item.item_class = ItemClass::kContact;
  item.full_name = r.Text(c, kDisplayName);
  item.company = r.Text(c, kCompanyName);
  for (uint32_t lid : kStoreEmailLids) {
    std::string address = r.Text(c, lid);
    if (!address.empty()) item.emails.push_back(address);
  }
  item.categories = r.Categories(c);
  item.sensitivity = static_cast<int32_t>(r.Long(c, kSensitivity).value_or(kOlNormal));
  if (item.sensitivity < kOlNormal || item.sensitivity > kOlConfidential) {
    item.sensitivity = kOlNormal;
  }
  item.body = r.Text(c, kBody);
  if (item.full_name.empty()) item.full_name = Subject(r, c);
  if (item.full_name.empty()) item.full_name = item.company;
  if (item.full_name.empty() && !item.emails.empty()) item.full_name = item.emails.front();
  if (item.full_name.empty()) return std::nullopt;
  item.subject = item.full_name;
  return item;
}

// The kind of a folder's items, from its container class ("IPF.Contact", ...).
int32_t KindOfClass(const std::string& container_class, int32_t fallback) {
  std::string c = text::LCase(container_class);
  auto is = [&](const char* prefix) {
    return c == prefix || text::StartsWith(c, std::string(prefix) + ".");
  };
  if (is("ipf.note")) return kOlMailItem;
  if (is("ipf.contact")) return kOlContactItem;
  if (is("ipf.appointment")) return kOlAppointmentItem;
  if (is("ipf.task")) return kOlTaskItem;
  if (is("ipf.journal")) return kOlJournalItem;
  if (is("ipf.stickynote")) return kOlNoteItem;
  if (is("ipf.post")) return kOlPostItem;
  return fallback;
}

// A store default folder: the name a mailbox gives it and its kind.
struct DefaultFolder {
  const char* name;
  int32_t kind;
};

struct StoreWalk {
  StoreReadResult result;
  std::map<uint32_t, DefaultFolder> defaults;  // by node
  int folders = 0;
  int others = 0;
  int unnamed = 0;
  int renamed_slash = 0;
};

FolderSpec& FolderNamed(std::vector<FolderSpec>& folders, const std::string& name, int32_t kind) {
  for (FolderSpec& f : folders) {
    if (text::EqualsNoCase(f.name, name)) return f;
  }
  folders.push_back(FolderSpec{name, kind, {}, {}});
  return folders.back();
}

// Reads the items of `folder` into `into` (mail and contacts; others are counted), those
// of the top into the Inbox and Contacts of `top`.
void ReadItems(const Reader& r, libpff_item_t* folder, StoreWalk& w, FolderSpec* into,
               std::vector<FolderSpec>* top) {
  libpff_error_t* error = nullptr;
  int messages = 0;
  r.Check(libpff_folder_get_number_of_sub_messages(folder, &messages, &error), &error, "folder");
  for (int i = 0; i < messages; ++i) {
    libpff_item_t* raw = nullptr;
    r.Check(libpff_folder_get_sub_message(folder, i, &raw, &error), &error, "item");
    Item m(raw);
    uint8_t type = 0;
    r.Check(libpff_item_get_type(m.get(), &type, &error), &error, "item");
    std::optional<ItemSpec> item;
    switch (type) {
      case LIBPFF_ITEM_TYPE_EMAIL:
      case LIBPFF_ITEM_TYPE_EMAIL_SMIME:
      case LIBPFF_ITEM_TYPE_POSTING_NOTE: {
        std::string cls = text::LCase(r.Text(m.get(), kMessageClass));
        item = ReadMail(r, m.get(),
                        text::StartsWith(cls, "report.") ? ItemClass::kReport : ItemClass::kMail);
        break;
      }
      case LIBPFF_ITEM_TYPE_MEETING:
        item = ReadMail(r, m.get(), ItemClass::kMeeting);
        break;
      case LIBPFF_ITEM_TYPE_CONTACT:
        item = ReadContact(r, m.get());
        if (!item) ++w.unnamed;
        break;
      default:
        ++w.others;
    }
    if (!item) continue;
    bool contact = item->item_class == ItemClass::kContact;
    ++(contact ? w.result.contacts : w.result.mails);
    FolderSpec& target = into != nullptr ? *into
                         : contact       ? FolderNamed(*top, "Contacts", kOlContactItem)
                                         : FolderNamed(*top, "Inbox", kOlMailItem);
    target.items.push_back(std::move(*item));
  }
}

// Reads the subfolders of `folder` into `into`; `top`: they are the store's top folders.
void ReadFolders(const Reader& r, libpff_item_t* folder, StoreWalk& w,
                 std::vector<FolderSpec>& into, bool top, int depth) {
  if (depth > 64) return;  // a store's folders are not nested deeper; a damaged one may loop
  libpff_error_t* error = nullptr;
  int subfolders = 0;
  r.Check(libpff_folder_get_number_of_sub_folders(folder, &subfolders, &error), &error, "folder");
  for (int i = 0; i < subfolders; ++i) {
    libpff_item_t* raw = nullptr;
    r.Check(libpff_folder_get_sub_folder(folder, i, &raw, &error), &error, "folder");
    Item sub(raw);
    ++w.folders;
    std::string name = r.Text(sub.get(), kDisplayName);
    int32_t kind = KindOfClass(r.Text(sub.get(), kContainerClass), kOlMailItem);
    auto known = top ? w.defaults.find(r.Identifier(sub.get())) : w.defaults.end();
    if (known != w.defaults.end()) {
      name = known->second.name;
      kind = known->second.kind;
    }
    if (name.find('/') != std::string::npos) {
      ++w.renamed_slash;
      for (char& c : name) {
        if (c == '/') c = '-';
      }
    }
    if (name.empty()) name = "Folder " + std::to_string(r.Identifier(sub.get()));
    // Folders of one name in one parent are one folder (a mailbox's default folders too).
    FolderSpec* f = &FolderNamed(into, name, kind);
    ReadItems(r, sub.get(), w, f, nullptr);
    std::vector<FolderSpec> children = std::move(f->folders);
    ReadFolders(r, sub.get(), w, children, false, depth + 1);
    f = &FolderNamed(into, name, kind);  // `into` may have moved
    f->folders = std::move(children);
  }
}

// The top of the folders the user sees: the one the store names, else the root itself.
Item TopOf(const Reader& r, libpff_item_t* root, uint32_t top_node) {
  libpff_error_t* error = nullptr;
  int subfolders = 0;
  r.Check(libpff_folder_get_number_of_sub_folders(root, &subfolders, &error), &error, "folder");
  for (int i = 0; top_node != 0 && i < subfolders; ++i) {
    libpff_item_t* raw = nullptr;
    r.Check(libpff_folder_get_sub_folder(root, i, &raw, &error), &error, "folder");
    Item sub(raw);
    if (r.Identifier(sub.get()) == top_node) return sub;
  }
  return nullptr;
}

}  // namespace

StoreReadResult ReadOutlookStore(const std::string& file) {
  Reader r(file);
  libpff_error_t* error = nullptr;
  libpff_file_t* raw_file = nullptr;
  r.Check(libpff_file_initialize(&raw_file, &error), &error, "libpff");
  struct FileClose {
    void operator()(libpff_file_t* f) const {
      libpff_file_close(f, nullptr);
      libpff_file_free(&f, nullptr);
    }
  };
  std::unique_ptr<libpff_file_t, FileClose> pff(raw_file);
  r.Check(libpff_file_open(pff.get(), file.c_str(), LIBPFF_OPEN_READ, &error), &error, "open");

  StoreWalk w;
  uint32_t top_node = 0;
  libpff_item_t* raw_store = nullptr;
  if (r.Check(libpff_file_get_message_store(pff.get(), &raw_store, &error), &error,
              "message store")) {
    Item store(raw_store);
    if (r.Long(store.get(), kPasswordChecksum).value_or(0) != 0) {
      throw InputError(file, 0, "",
                       "the Outlook data file is password-protected: remove its password in "
                       "Outlook (Data File Settings, Change Password), then import it");
    }
    top_node = r.EntryNode(store.get(), kIpmSubtreeEntryId);
    w.defaults[r.EntryNode(store.get(), kIpmSentMailEntryId)] = {"Sent Items", kOlMailItem};
    w.defaults[r.EntryNode(store.get(), kIpmWastebasketEntryId)] = {"Deleted Items", kOlMailItem};
    w.defaults[r.EntryNode(store.get(), kIpmOutboxEntryId)] = {"Outbox", kOlMailItem};
  }
  libpff_item_t* raw_root = nullptr;
  if (!r.Check(libpff_file_get_root_folder(pff.get(), &raw_root, &error), &error, "folders")) {
    throw InputError(file, 0, "", "a damaged or unreadable Outlook data file (no folders)");
  }
  Item root(raw_root);
  Item top = TopOf(r, root.get(), top_node);
  libpff_item_t* visible = top ? top.get() : root.get();
  // The other default folders are named by the Inbox (and the store's root): the top
  // folder that names them is the Inbox.
  const std::pair<uint16_t, DefaultFolder> by_inbox[] = {
      {kIpmAppointmentEntryId, {"Calendar", kOlAppointmentItem}},
      {kIpmContactEntryId, {"Contacts", kOlContactItem}},
      {kIpmJournalEntryId, {"Journal", kOlJournalItem}},
      {kIpmNoteEntryId, {"Notes", kOlNoteItem}},
      {kIpmTaskEntryId, {"Tasks", kOlTaskItem}},
      {kIpmDraftsEntryId, {"Drafts", kOlMailItem}}};
  auto name_defaults = [&](libpff_item_t* holder) {
    bool any = false;
    for (const auto& [tag, folder] : by_inbox) {
      if (uint32_t node = r.EntryNode(holder, tag)) {
        w.defaults.emplace(node, folder);
        any = true;
      }
    }
    return any;
  };
  name_defaults(root.get());
  int top_folders = 0;
  r.Check(libpff_folder_get_number_of_sub_folders(visible, &top_folders, &error), &error, "folder");
  for (int i = 0; i < top_folders; ++i) {
    libpff_item_t* raw = nullptr;
    r.Check(libpff_folder_get_sub_folder(visible, i, &raw, &error), &error, "folder");
    Item sub(raw);
    if (name_defaults(sub.get()))
      w.defaults.emplace(r.Identifier(sub.get()), DefaultFolder{"Inbox", kOlMailItem});
  }
  w.defaults.erase(0);
  ReadItems(r, visible, w, nullptr, &w.result.folders);
  ReadFolders(r, visible, w, w.result.folders, true, 0);
  w.result.notes.push_back(std::to_string(w.folders) + " folders read");
  if (w.others > 0) {
    w.result.notes.push_back(std::to_string(w.others) +
                             " items of other kinds (calendar, tasks, notes, ...) not imported");
  }
  if (w.unnamed > 0) {
    w.result.notes.push_back(std::to_string(w.unnamed) +
                             " contacts without a name or address left out");
  }
  if (w.renamed_slash > 0) {
    w.result.notes.push_back(std::to_string(w.renamed_slash) +
                             " folder names with \"/\" given with \"-\" instead");
  }
  return w.result;
}

}  // namespace zintra::simtool
