#include "tools/zintra-sim/outlook_store_reader.h"

#include <libpff.h>

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
  item.subject = r.Text(m, kSubject);
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
  if (item.full_name.empty()) item.full_name = r.Text(c, kSubject);
  if (item.full_name.empty()) item.full_name = item.company;
  if (item.full_name.empty() && !item.emails.empty()) item.full_name = item.emails.front();
  if (item.full_name.empty()) return std::nullopt;
  item.subject = item.full_name;
  return item;
}

struct StoreWalk {
  StoreReadResult result;
  int folders = 0;
  int others = 0;
  int unnamed = 0;
};

void ReadFolder(const Reader& r, libpff_item_t* folder, StoreWalk& w, int depth) {
  if (depth > 64) return;  // a store's folders are not nested deeper; a damaged one may loop
  ++w.folders;
  libpff_error_t* error = nullptr;
  int messages = 0;
  r.Check(libpff_folder_get_number_of_sub_messages(folder, &messages, &error), &error, "folder");
  for (int i = 0; i < messages; ++i) {
    libpff_item_t* raw = nullptr;
    r.Check(libpff_folder_get_sub_message(folder, i, &raw, &error), &error, "item");
    Item m(raw);
    uint8_t type = 0;
    r.Check(libpff_item_get_type(m.get(), &type, &error), &error, "item");
    switch (type) {
      case LIBPFF_ITEM_TYPE_EMAIL:
      case LIBPFF_ITEM_TYPE_EMAIL_SMIME:
      case LIBPFF_ITEM_TYPE_POSTING_NOTE: {
        std::string cls = text::LCase(r.Text(m.get(), kMessageClass));
        w.result.mails.push_back(ReadMail(
            r, m.get(), text::StartsWith(cls, "report.") ? ItemClass::kReport : ItemClass::kMail));
        break;
      }
      case LIBPFF_ITEM_TYPE_MEETING:
        w.result.mails.push_back(ReadMail(r, m.get(), ItemClass::kMeeting));
        break;
      case LIBPFF_ITEM_TYPE_CONTACT:
        if (auto c = ReadContact(r, m.get())) {
          w.result.contacts.push_back(std::move(*c));
        } else {
          ++w.unnamed;
        }
        break;
      default:
        ++w.others;
    }
  }
  int subfolders = 0;
  r.Check(libpff_folder_get_number_of_sub_folders(folder, &subfolders, &error), &error, "folder");
  for (int i = 0; i < subfolders; ++i) {
    libpff_item_t* raw = nullptr;
    r.Check(libpff_folder_get_sub_folder(folder, i, &raw, &error), &error, "folder");
    Item sub(raw);
    ReadFolder(r, sub.get(), w, depth + 1);
  }
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

  libpff_item_t* raw_store = nullptr;
  if (r.Check(libpff_file_get_message_store(pff.get(), &raw_store, &error), &error,
              "message store")) {
    Item store(raw_store);
    if (r.Long(store.get(), kPasswordChecksum).value_or(0) != 0) {
      throw InputError(file, 0, "",
                       "the Outlook data file is password-protected: remove its password in "
                       "Outlook (Data File Settings, Change Password), then import it");
    }
  }
  libpff_item_t* raw_root = nullptr;
  if (!r.Check(libpff_file_get_root_folder(pff.get(), &raw_root, &error), &error, "folders")) {
    throw InputError(file, 0, "", "a damaged or unreadable Outlook data file (no folders)");
  }
  Item root(raw_root);
  StoreWalk w;
  ReadFolder(r, root.get(), w, 0);
  w.result.notes.push_back(std::to_string(w.folders) + " folders read");
  if (w.others > 0) {
    w.result.notes.push_back(std::to_string(w.others) +
                             " items of other kinds (calendar, tasks, notes, ...) not imported");
  }
  if (w.unnamed > 0) {
    w.result.notes.push_back(std::to_string(w.unnamed) +
                             " contacts without a name or address left out");
  }
  return w.result;
}

}  // namespace zintra::simtool
