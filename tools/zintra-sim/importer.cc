#include "tools/zintra-sim/importer.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <set>
#include <string_view>

#include "src/core/text.h"
#include "tools/zintra-sim/imported_folders.h"
#include "tools/zintra-sim/input_error.h"
#include "tools/zintra-sim/mime_reader.h"
#include "tools/zintra-sim/msg_reader.h"
#include "tools/zintra-sim/outlook_store_reader.h"
#include "tools/zintra-sim/scenario_reader.h"
#include "tools/zintra-sim/vcard_reader.h"

namespace zintra::simtool {

namespace fs = std::filesystem;

namespace {

enum class FileKind { kVCard, kMbox, kEml, kMsg, kOutlookStore, kUnknown };

constexpr std::string_view kOleMagic("\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1", 8);

// By content first (a compound file or an Outlook data file whatever its name), then by
// extension, then by content again for files without a known extension (mail clients
// keep mbox folders without one).
FileKind KindOf(const fs::path& path, const std::string& bytes) {
  if (bytes.compare(0, kOleMagic.size(), kOleMagic) == 0) return FileKind::kMsg;
  if (bytes.compare(0, 4, "!BDN") == 0) return FileKind::kOutlookStore;
  std::string ext = text::LCase(path.extension().string());
  if (ext == ".vcf" || ext == ".vcard") return FileKind::kVCard;
  if (ext == ".mbox" || ext == ".mbx") return FileKind::kMbox;
  if (ext == ".msg") return FileKind::kMsg;
  if (ext == ".pst" || ext == ".ost") return FileKind::kOutlookStore;
  size_t head = bytes.compare(0, 3, "\xEF\xBB\xBF") == 0 ? 3 : 0;
  size_t start = bytes.find_first_not_of("\r\n", head);
  if (start == std::string::npos) start = bytes.size();
  if (bytes.compare(start, 5, "From ") == 0) return FileKind::kMbox;
  if (ext == ".eml" || ext == ".txt" || ext == ".msg822") return FileKind::kEml;
  if (text::StartsWith(text::UCase(bytes.substr(start, 11)), "BEGIN:VCARD")) {
    return FileKind::kVCard;
  }
  // A mail's first line is a header: a name of printable characters, a colon.
  std::string first = bytes.substr(start, bytes.find('\n', start) - start);
  size_t colon = first.find(':');
  bool header = colon != std::string::npos && colon > 0 &&
                std::all_of(first.begin(), first.begin() + static_cast<long>(colon),
                            [](char c) { return c > 32 && c < 127; });
  return header ? FileKind::kEml : FileKind::kUnknown;
}

struct Source {
  fs::path path;
  bool named = false;  // named on the command line, not found in a folder
};

std::vector<Source> Expand(const std::vector<std::string>& paths) {
  std::vector<Source> files;
  for (const std::string& p : paths) {
    std::error_code ec;
    if (fs::is_directory(p, ec)) {
      std::vector<fs::path> found;
      for (const auto& entry : fs::recursive_directory_iterator(p, ec)) {
        if (entry.is_regular_file()) found.push_back(entry.path());
      }
      std::sort(found.begin(), found.end());
      for (fs::path& f : found) files.push_back({std::move(f), false});
    } else if (fs::is_regular_file(p, ec)) {
      files.push_back({p, true});
    } else {
      throw InputError(p, 0, "", "no such file or folder");
    }
  }
  return files;
}

std::string PersonKey(const PersonSpec& p) { return text::LCase(PersonText(p)); }

// Exchange people whose SMTP address the items give, once each: the directory resolves
// their Exchange addresses. Those given only by an Exchange address stay as they are.
std::vector<PersonSpec> Directory(const std::vector<const ItemSpec*>& mails, const PersonSpec& me) {
  std::vector<PersonSpec> people;
  std::set<std::string> seen{text::LCase(me.exchange)};
  auto add = [&](const PersonSpec& p) {
    if (p.exchange.empty() || p.smtp.empty()) return;
    if (!seen.insert(text::LCase(p.exchange)).second) return;
    people.push_back(p);
  };
  for (const ItemSpec* m : mails) {
    if (m->from) add(*m->from);
    for (const auto* list : {&m->to, &m->cc, &m->bcc}) {
      for (const PersonSpec& p : *list) add(p);
    }
  }
  return people;
}

template <typename Folders, typename Fn>
void ForEachItem(Folders& folders, const Fn& fn) {
  for (auto& f : folders) {
    for (auto& item : f.items) fn(item);
    ForEachItem(f.folders, fn);
  }
}

// Outlook starts (the add-in scans the Inbox), the user sends each of their own mails
// in date order, so the add-in sees it filed in Sent Items as Outlook files it, the
// add-in is given time to finish, and Outlook quits.
std::vector<StepSpec> DryRunTimeline(std::vector<ItemSpec> sent_mails) {
  std::vector<StepSpec> steps(1);
  steps[0].kind = StepKind::kStart;
  for (ItemSpec& m : sent_mails) {
    StepSpec send;
    send.kind = StepKind::kSend;
    send.item = std::move(m);
    steps.push_back(std::move(send));
  }
  StepSpec wait, quit;
  wait.kind = StepKind::kWait;
  wait.seconds = kDryRunWaitSeconds;
  quit.kind = StepKind::kQuit;
  steps.push_back(wait);
  steps.push_back(quit);
  return steps;
}

}  // namespace

ImportResult Import(const std::vector<std::string>& paths, const std::optional<PersonSpec>& user) {
  if (paths.empty()) throw InputError("", 0, "", "name at least one .vcf, .eml or .mbox file");
  ImportResult result;
  std::vector<ItemSpec> contacts, mails;
  std::vector<FolderSpec> store_folders;  // the data files' folders, merged
  int skipped = 0;
  int stored_items = 0;
  for (const Source& source : Expand(paths)) {
    std::string file = source.path.string();
    try {
      std::string bytes = ReadWholeFile(file);
      std::vector<std::string> notes;
      switch (KindOf(source.path, bytes)) {
        case FileKind::kVCard:
          for (ItemSpec& c : ReadVCards(bytes, file, &notes)) {
            if (c.emails.size() > 3) {
              notes.push_back(c.full_name + " has " + std::to_string(c.emails.size()) +
                              " addresses; a contact keeps the first three");
            }
            contacts.push_back(std::move(c));
          }
          break;
        case FileKind::kMbox:
        case FileKind::kEml: {
          bool mbox = KindOf(source.path, bytes) == FileKind::kMbox;
          MailReadResult r = mbox ? ReadMbox(bytes, file) : ReadEml(bytes, file);
          skipped += r.skipped_addresses;
          notes.insert(notes.end(), r.notes.begin(), r.notes.end());
          for (ItemSpec& m : r.items) mails.push_back(std::move(m));
          break;
        }
        case FileKind::kMsg: {
          ItemSpec item = ReadMsg(bytes, file);
          (item.item_class == ItemClass::kContact ? contacts : mails).push_back(std::move(item));
          break;
        }
        case FileKind::kOutlookStore: {
          StoreReadResult r = ReadOutlookStore(file);
          notes.insert(notes.end(), r.notes.begin(), r.notes.end());
          stored_items += r.mails + r.contacts;
          MergeFolders(store_folders, std::move(r.folders));
          break;
        }
        case FileKind::kUnknown:
          throw InputError(file, 0, "",
                           "not a vCard (.vcf), mail (.eml), mbox or Outlook (.msg, .pst, .ost) "
                           "file");
      }
      for (const std::string& note : notes) result.notes.push_back(file + ": " + note);
    } catch (const InputError& e) {
      if (source.named) throw;
      result.not_imported.push_back(e.what());
    }
  }
  // A folder of which nothing could be read is bad input, not an empty mailbox.
  if (contacts.empty() && mails.empty() && stored_items == 0 && !result.not_imported.empty()) {
    std::string why;
    for (const std::string& f : result.not_imported) why += "\n  " + f;
    throw InputError(paths.front(), 0, "", "nothing could be imported:" + why);
  }
  if (skipped > 0) {
    result.notes.push_back(std::to_string(skipped) +
                           " recipient entries without an address (empty groups) left out");
  }

  // Every mail, loose or filed in a data file's folders.
  std::vector<const ItemSpec*> all_mails;
  for (const ItemSpec& m : mails) all_mails.push_back(&m);
  ForEachItem(store_folders, [&](const ItemSpec& i) {
    if (i.item_class != ItemClass::kContact) all_mails.push_back(&i);
  });
  PersonSpec me;
  if (user) {
    me = *user;
  } else {
    std::map<std::string, std::pair<int, PersonSpec>> seen;
    for (const ItemSpec* m : all_mails) {
      for (const auto* list : {&m->to, &m->cc}) {
        for (const PersonSpec& p : *list) {
          auto& slot = seen[PersonKey(p)];
          ++slot.first;
          slot.second = p;
        }
      }
    }
    auto best = std::max_element(seen.begin(), seen.end(), [](const auto& a, const auto& b) {
      return a.second.first < b.second.first;
    });
    me = best == seen.end() ? PersonSpec{"Zintra User", "user@example.com", ""}
                            : best->second.second;
    result.notes.push_back("the mailbox user is taken to be " + me.name + " <" + PersonText(me) +
                           "> (use --user to say otherwise)");
  }

  std::vector<PersonSpec> directory = Directory(all_mails, me);
  // Loose files go to the Inbox and Contacts; a data file's folders keep their places.
  std::vector<FolderSpec> folders;
  folders.push_back(FolderSpec{"Inbox", kOlMailItem, {}, std::move(mails)});
  folders.push_back(FolderSpec{"Sent Items", kOlMailItem, {}, {}});
  folders.push_back(FolderSpec{"Contacts", kOlContactItem, {}, std::move(contacts)});
  MergeFolders(folders, std::move(store_folders));
  std::vector<ItemSpec> sent_mails;
  std::vector<std::string> other_contacts;
  SettleFolders(folders, me, sent_mails, other_contacts);
  std::stable_sort(sent_mails.begin(), sent_mails.end(),
                   [](const ItemSpec& a, const ItemSpec& b) { return a.time < b.time; });
  ForEachItem(folders, [&](const ItemSpec& i) {
    ++(i.item_class == ItemClass::kContact ? result.contacts : result.received);
  });
  result.sent = static_cast<int>(sent_mails.size());
  if (!other_contacts.empty()) {
    std::string list;
    for (const std::string& f : other_contacts) list += (list.empty() ? "" : ", ") + f;
    result.notes.push_back("contacts in " + list +
                           " are not tracked: the scenario's folder set tracks Contacts (add one "
                           "for each folder to track)");
  }

  Scenario& s = result.scenario;
  s.name = "imported mailbox";
  s.description = "Imported from " + std::to_string(paths.size()) +
                  " path(s): " + std::to_string(result.contacts) + " contacts, " +
                  std::to_string(result.received) + " received and " + std::to_string(result.sent) +
                  " sent mails.";
  s.profile.user = me;
  s.profile.directory = std::move(directory);
  StoreSpec mailbox;
  mailbox.kind = StoreKind::kMailbox;
  mailbox.folders = std::move(folders);
  s.profile.stores.push_back(std::move(mailbox));
  // The imported contacts are tracked, their mail logged in the mailbox's Journal.
  FoldersetSpec set;
  set.contacts = "Contacts";
  set.journal = "Journal";
  s.foldersets.push_back(set);
  s.timeline = DryRunTimeline(std::move(sent_mails));
  // The report of a run does not depend on the log: it keeps errors only, as a
  // production mailbox would, unless `run --log-level` asks for more.
  s.log_level = 1;
  return result;
}

}  // namespace zintra::simtool
