// Scenario: what `zintra-sim run` plays, as read from a scenario file (see
// docs/scenarios.md) or made by `import` and `demo`. Plain data: the profile to build,
// the registry to start from, Outlook's version, the timeline of what happens and the
// expectations checked at the end. Times are date serials; kUnsetDate means "not given".
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "src/core/date.h"
#include "src/host/outlook_constants.h"

namespace zintra::simtool {

// A person as a sender or recipient: an SMTP address, or an Exchange distinguished name
// ("/O=CONTOSO/OU=.../CN=JDOE") with the SMTP address the directory knows it by.
struct PersonSpec {
  std::string name;
  std::string smtp;
  std::string exchange;
  bool operator==(const PersonSpec&) const = default;
};

struct AttachmentSpec {
  std::string name;
  std::string content_type;
  int64_t size = 0;   // bytes of the decoded content
  bool link = false;  // attached by reference (a link to the file), not by value
  bool operator==(const AttachmentSpec&) const = default;
};

// The marks an item of the profile starts with (item field "marks"):
//   {"Zintra Last Audited": time, "logged_copies": [ids], "shared_copies": [ids],
//    "store_ids": false (the entry-ID lists without their store-ID lists),
//    "journal_type": text, "owner": text, "ownership": "new" | "delegated" | "assigned"}
struct PresetMarks {
  std::optional<double> last_audited;
  std::vector<std::string> logged_copies, shared_copies;  // item ids, in list order
  bool store_ids = true;
  std::optional<std::string> journal_type, owner;
  std::optional<int32_t> ownership;
};

// One Outlook item. Fields that the kind lacks are left empty.
struct ItemSpec {
  std::string id;  // the scenario's own name for it (timeline, expectations); may be ""
  ItemClass item_class = ItemClass::kMail;
  // False: no "class" was given, so the item takes the kind of the folder it lands in.
  bool class_given = false;
  std::string message_class;  // "" for the kind's default ("IPM.Note")
  std::string subject;
  std::string body;
  std::optional<PersonSpec> from;  // mail, post, meeting: the sender
  std::vector<PersonSpec> to, cc, bcc;
  int32_t sensitivity = kOlNormal;
  double time = kUnsetDate;  // received, or sent for outgoing mail
  std::string categories;    // "Customers, Suppliers"
  // Contacts.
  std::string full_name;
  std::vector<std::string> emails;  // Email1..3Address (more are kept in the body)
  std::string company;
  // Links to other items of the scenario, by id.
  std::vector<std::string> links;
  std::vector<AttachmentSpec> attachments;
  // User properties set as a user or another program would ("Zintra Logged": false).
  std::map<std::string, std::string> properties;
  std::optional<PresetMarks> marks;  // the add-in's marks and kind fields it starts with
  int source_line = 0;               // where it was declared (0 when made in code)
};

struct FolderSpec {
  std::string name;
  int32_t item_type = kOlMailItem;  // OlItemType of the folder's items
  std::vector<FolderSpec> folders;
  std::vector<ItemSpec> items;
};

enum class StoreKind { kMailbox, kPersonal, kPublic };

// A mailbox has the default folders (Inbox, Sent Items, Contacts, Journal, ...) made for
// it; folders of the same name given here are those folders.
struct StoreSpec {
  std::string name;  // "" for a mailbox: "Mailbox - <user>"
  StoreKind kind = StoreKind::kMailbox;
  std::vector<FolderSpec> folders;
};

struct ProfileSpec {
  PersonSpec user;
  std::vector<PersonSpec> directory;  // the organisation's people besides the user
  std::vector<StoreSpec> stores;      // the first mailbox is the default store
};

enum class RegType { kDword, kString, kMultiString };

struct RegValueSpec {
  std::string key;  // "HKCU\Software\Brellow\Zintra\Logging"
  std::string name;
  RegType type = RegType::kDword;
  uint32_t dword = 0;
  std::string text;
  std::vector<std::string> texts;
};

struct RegistrySpec {
  std::vector<std::string> reg_files;  // paths as given (relative to the scenario file)
  std::vector<RegValueSpec> values;
};

// A contact folder set, by folder paths; written to the registry as the settings
// hold it (entry and store identifiers) once the profile exists.
struct FoldersetSpec {
  std::string contacts, email, journal;
  std::string shared_calendar, shared_journal, shared_tasks;
  int32_t flags = 0;
  int source_line = 0;
};

// A folder monitored by list (the settings' monitored-folder list).
struct MonitorSpec {
  std::string folder;
  int32_t flags = 0;
  int source_line = 0;
};

enum class ExpectKind {
  kFolder,
  kItem,
  kLog,
  kCount,
  kRegistry,
  kMessage,
  kMessages,
  kErrorRecord,
  kErrorLog,
  kLogOrder,
  kFile,  // a file on the simulated disk after the run (host.fields: path, content, contains)
};

// What the user was shown (kMessage, kMessages) or what the error log holds
// (kErrorRecord); see host_expectations.h.
struct HostExpectSpec {
  // kMessage: the fields a showing must have: "text" (contained), "kind" (box,
  // optional, form), "title", "buttons", "icon", "answer", "ticked". kErrorRecord: the
  // columns a row must have ("number", "source", "description", "trail", ...).
  std::map<std::string, std::string> fields;
  std::vector<std::string> texts;  // kMessages: every showing's text, in order; kLogOrder:
                                   // texts of log lines that follow one another
  std::vector<int32_t> dialogs;    // kMessages: each showing's dialog number (0: any showing)
};

// One check made after the timeline. Matching an item: every given field must equal.
struct ExpectSpec {
  ExpectKind kind = ExpectKind::kFolder;
  int source_line = 0;
  std::string folder;  // path "Mailbox - Jane Doe/Journal" or default name "Journal"
  std::string target;  // item id
  std::map<std::string, std::string> match;  // field/mark -> expected text ("" = absent)
  std::optional<int> count;                  // how many must match (folder: default >=1)
  std::string log_text;                      // kLog: a substring of a log line
  bool present = true;
  std::string what;  // kCount: "logged" | "screened" | "log_lines" | "errors"
  // kRegistry: a value after the run ("HKLM\\...", name); `value` "" means absent.
  std::string reg_key, reg_name, reg_value;
  HostExpectSpec host;
};

enum class StepKind {
  kStart,           // windows: explorer | inspector | none; addin
  kDeliver,         // item: arrives in the Inbox (or folder)
  kSend,            // item: sent from the user, lands in Sent Items
  kAdd,             // item: saved into a folder by the user
  kChange,          // target + changes
  kDelete,          // target
  kWait,            // duration (virtual time passes, the queue runs)
  kSettings,        // registry: values written, then the add-in told its settings changed
  kClick,           // button, selection, the answers to what the button shows
  kOpenInspector,   // target
  kCloseInspector,  // target
  kLoadAddin,
  kUnloadAddin,
  kQuit,
  kFail,           // fault: a member of the simulated host fails from here on
  kHeal,           // every fault set so far is lifted
  kRemoveFolder,   // folder: the folder vanishes (deleted by another client)
  kAnswer,         // answers: how the user answers the next message boxes
  kCheck,          // expect: expectations checked at this point of the timeline
  kWindowMessage,  // target, message, wparam: the item's window gets a window message
};

// A member of the simulated host that fails: "Item.Save", "Folder.*", "MapiTable.GetRows"
// (Outlook and the MAPI library), "Registry.QueryValue" (the registry), "Files.ReadAll"
// (the disk). `mode`: every call ("always"), only the n-th ("call") or every call after
// the first n ("after"), counted from the step that sets it.
struct FaultSpec {
  std::string member;
  std::string mode = "always";
  int64_t n = 0;
  int32_t error = 0;
  std::string text;    // "" for the error's standard description
  std::string target;  // an item id: that item only
  std::string folder;  // a folder path: that folder only (or the vanishing folder)
};

// The user's answers to the next message boxes, in order: "ok", "cancel", "yes", "no",
// "abort", "retry", "ignore" for plain boxes; "ok", "tick" (tick "Do not show this
// message again", then OK), "untick" and "close" (the window's close box) for optional
// messages.
struct AnswerSpec {
  std::vector<int32_t> message_box;
  std::vector<std::string> optional;
};

struct StepSpec {
  StepKind kind = StepKind::kWait;
  int source_line = 0;
  std::string pointer;  // JSON pointer of the step in its file ("/timeline/3"), for errors
  std::string windows = "explorer";
  bool addin = true;
  std::string folder;  // folder path for deliver/add ("" = the kind's default)
  std::optional<ItemSpec> item;
  std::string target;                          // an item id
  bool hard = false;                           // kDelete: removed for good (Shift+Delete)
  std::map<std::string, std::string> changes;  // field or user property -> new text
  double seconds = 0;                          // kWait: how long
  double until = 0;  // kWait: until this moment instead (a serial; 0: not given)
  RegistrySpec registry;
  // kSettings: the options page's "for all users" choice, when the step makes it.
  std::optional<bool> multi_user;
  // kSettings: the page's choice to show every optional message again (the user's "Do not
  // show this message again" flags are cleared).
  bool reset_messages = false;
  // kClick: the button ("phone-call", "email", "file-link", "note", "appointment",
  // "letter"), the items selected, and the window clicked in ("explorer": one on the
  // first selected item's folder; "inspector": the item window of the one selected item).
  std::string button;
  std::vector<std::string> selection;
  std::string in = "explorer";
  // The user's answers: the question before linking many items (unset: OK), the fields
  // typed into the item window the button opens and how it is left ("save", "send",
  // "discard", "" for the button's usual end), the items picked in Outlook's link
  // dialog, and the text typed into a letter ("" with "discard": not filed).
  std::optional<bool> confirm;
  std::map<std::string, std::string> fill;
  std::string then;
  std::vector<std::string> link_items;
  std::string letter;
  FaultSpec fault;                  // kFail, kRemoveFolder
  AnswerSpec answers;               // kAnswer
  int32_t message = 0, wparam = 0;  // kWindowMessage
  std::vector<ExpectSpec> checks;   // kCheck
  // Played while a job is in an activation and pumps messages ("during": "job"), the
  // job's description starting with `during_job` ("" any job).
  bool during = false;
  std::string during_job;
};

// A file or folder on the simulated disk before Outlook starts ("C:\\Policies\\Zintra.txt").
struct FileSpec {
  std::string path;
  bool folder = false;  // a folder (with its parents), no file
  std::string text;     // the file's content, as bytes
  bool read_only = false;
  bool unopenable = false;  // exists but cannot be opened (locked by another program)
  int source_line = 0;
};

// When a scenario that gives no "start" begins: 5 January 2026 09:00.
inline constexpr double kDefaultStartTime = 46027.375;

struct Scenario {
  std::string name;
  std::string description;
  std::string source;    // file it came from ("" when made in code)
  std::string base_dir;  // relative paths resolve here
  std::string outlook_version = "11.0.0.8312";
  double start_time = 0;   // 0: 5 January 2026 09:00
  int32_t log_level = 3;   // the add-in's LogLevel unless the registry sets one
  bool first_run = false;  // the user's first run of the add-in (no start-up scan)
  ProfileSpec profile;
  RegistrySpec registry;
  std::vector<FoldersetSpec> foldersets;
  std::vector<MonitorSpec> monitored_folders;
  std::vector<FileSpec> files;
  std::vector<StepSpec> timeline;  // empty: start, let the scan run, quit
  std::vector<ExpectSpec> expect;
};

// Names used in files.
const char* ItemClassName(ItemClass c);  // "mail", "contact", ...
std::optional<ItemClass> ItemClassFromName(const std::string& name);
const char* SensitivityName(int32_t s);  // "normal", "personal", "private", "confidential"
std::optional<int32_t> SensitivityFromName(const std::string& name);
// The OlItemType of the folders that hold the kind (mail folders for mail, ...).
int32_t FolderTypeFor(ItemClass c);
// The kind an item saved in a folder of that OlItemType is when none is named.
ItemClass ItemClassForFolderType(int32_t item_type);
const char* FolderTypeName(int32_t item_type);  // "mail", "contact", ...
std::optional<int32_t> FolderTypeFromName(const std::string& name);
const char* StepName(StepKind k);
// The toolbar button's tag for its name in files ("phone-call" -> "Zintra_PhoneCall");
// nullptr for a name that is no button.
const char* ButtonTag(const std::string& name);
std::optional<StepKind> StepFromName(const std::string& name);
// "2026-01-05T09:30:00" (seconds optional, "Z" or no zone) -> serial.
std::optional<double> ParseIsoTime(const std::string& text);
std::string FormatIsoTime(double serial);
// "Ann Lee <ann@fabrikam.com>", "ann@fabrikam.com" or "Ann Lee </O=FABRIKAM/.../CN=ALEE>"
// (an Exchange address); nullopt when there is no address.
std::optional<PersonSpec> ParsePersonText(const std::string& text);
std::string PersonText(const PersonSpec& person);  // the address shown: SMTP, else Exchange
// "90s", "10m", "2h", "1d", or a number of seconds.
std::optional<double> ParseDuration(const std::string& text);

}  // namespace zintra::simtool
