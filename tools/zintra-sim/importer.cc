#include "tools/zintra-sim/importer.h"

#include <algorithm>
#include <filesystem>
#include <map>

#include "src/core/text.h"
#include "tools/zintra-sim/input_error.h"
#include "tools/zintra-sim/mime_reader.h"
#include "tools/zintra-sim/scenario_reader.h"
#include "tools/zintra-sim/vcard_reader.h"

namespace zintra::simtool {

namespace fs = std::filesystem;

namespace {

enum class FileKind { kVCard, kMbox, kEml, kOther };

FileKind KindOf(const fs::path& path) {
  std::string ext = text::LCase(path.extension().string());
  if (ext == ".vcf" || ext == ".vcard") return FileKind::kVCard;
  if (ext == ".mbox" || ext == ".mbx") return FileKind::kMbox;
  if (ext == ".eml" || ext == ".txt" || ext == ".msg822") return FileKind::kEml;
  return FileKind::kOther;
}

std::vector<fs::path> Expand(const std::vector<std::string>& paths) {
  std::vector<fs::path> files;
  for (const std::string& p : paths) {
    std::error_code ec;
    if (fs::is_directory(p, ec)) {
      std::vector<fs::path> found;
      for (const auto& entry : fs::recursive_directory_iterator(p, ec)) {
        if (entry.is_regular_file() && KindOf(entry.path()) != FileKind::kOther) {
          found.push_back(entry.path());
        }
      }
      std::sort(found.begin(), found.end());
      files.insert(files.end(), found.begin(), found.end());
    } else if (fs::is_regular_file(p, ec)) {
      files.emplace_back(p);
    } else {
      throw InputError(p, 0, "", "no such file or folder");
    }
  }
  return files;
}

std::string Key(const PersonSpec& p) { return text::LCase(PersonText(p)); }

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
  int skipped = 0;
  for (const fs::path& file : Expand(paths)) {
    std::string bytes = ReadWholeFile(file.string());
    FileKind kind = KindOf(file);
    if (kind == FileKind::kVCard || (kind == FileKind::kOther && bytes.find("BEGIN:VCARD") == 0)) {
      for (ItemSpec& c : ReadVCards(bytes, file.string())) {
        if (c.emails.size() > 3) {
          result.notes.push_back(file.string() + ": " + c.full_name + " has " +
                                 std::to_string(c.emails.size()) +
                                 " addresses; a contact keeps the first three");
        }
        contacts.push_back(std::move(c));
      }
    } else {
      size_t head = bytes.compare(0, 3, "\xEF\xBB\xBF") == 0 ? 3 : 0;
      bool mbox = kind == FileKind::kMbox || bytes.compare(head, 5, "From ") == 0;
      MailReadResult r = mbox ? ReadMbox(bytes, file.string()) : ReadEml(bytes, file.string());
      skipped += r.skipped_addresses;
      for (ItemSpec& m : r.items) mails.push_back(std::move(m));
    }
  }
  if (skipped > 0) {
    result.notes.push_back(std::to_string(skipped) +
                           " recipient entries without an address (groups, local names) left out");
  }

  PersonSpec me;
  if (user) {
    me = *user;
  } else {
    std::map<std::string, std::pair<int, PersonSpec>> seen;
    for (const ItemSpec& m : mails) {
      for (const auto* list : {&m.to, &m.cc}) {
        for (const PersonSpec& p : *list) {
          auto& slot = seen[Key(p)];
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

  FolderSpec inbox{"Inbox", kOlMailItem, {}, {}};
  FolderSpec sent{"Sent Items", kOlMailItem, {}, {}};
  FolderSpec contact_folder{"Contacts", kOlContactItem, {}, {}};
  std::stable_sort(mails.begin(), mails.end(),
                   [](const ItemSpec& a, const ItemSpec& b) { return a.time < b.time; });
  std::vector<ItemSpec> sent_mails;
  for (ItemSpec& m : mails) {
    m.source_line = 0;
    bool mine = m.from && Key(*m.from) == Key(me);
    (mine ? sent_mails : inbox.items).push_back(std::move(m));
  }
  for (ItemSpec& c : contacts) {
    c.source_line = 0;
    contact_folder.items.push_back(std::move(c));
  }
  result.contacts = static_cast<int>(contact_folder.items.size());
  result.received = static_cast<int>(inbox.items.size());
  result.sent = static_cast<int>(sent_mails.size());

  Scenario& s = result.scenario;
  s.name = "imported mailbox";
  s.description = "Imported from " + std::to_string(paths.size()) +
                  " path(s): " + std::to_string(result.contacts) + " contacts, " +
                  std::to_string(result.received) + " received and " + std::to_string(result.sent) +
                  " sent mails.";
  s.profile.user = me;
  StoreSpec mailbox;
  mailbox.kind = StoreKind::kMailbox;
  mailbox.folders = {std::move(inbox), std::move(sent), std::move(contact_folder)};
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
