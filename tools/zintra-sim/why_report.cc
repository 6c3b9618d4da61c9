#include "tools/zintra-sim/why_report.h"

#include <algorithm>
#include <memory>
#include <ostream>
#include <unordered_map>

#include "sim/outlook/message_props.h"
#include "src/core/text.h"
#include "src/host/mapi_object.h"
#include "src/toolbars/word_letter_handler.h"
#include "tools/zintra-sim/item_view.h"
#include "tools/zintra-sim/profile_facts.h"

namespace zintra::simtool {

namespace {

using sim::MessageProps;

std::string Join(const std::vector<std::string>& parts) {
  std::string out;
  for (const std::string& p : parts) out += (out.empty() ? "" : ", ") + p;
  return out;
}

bool Tracked(ItemClass c) { return c != ItemClass::kContact && c != ItemClass::kDistList; }

std::string Quoted(const std::string& line, size_t from) {
  size_t a = line.find('\'', from);
  size_t b = a == std::string::npos ? a : line.find('\'', a + 1);
  return b == std::string::npos ? "" : line.substr(a + 1, b - a - 1);
}

// How `contact` matched `item`: its own link, or the contact's address the item was
// from or to ("*@domain" for any address at the domain); "" when neither shows.
std::string HowMatched(const sim::MessageRecord& contact, const sim::MessageRecord& item,
                       const ProfileFacts& facts) {
  for (const sim::MessageRecord* linked : facts.Linked(item)) {
    if (linked == &contact) return "link";
  }
  std::vector<std::string> addresses = facts.Addresses(item);
  for (const std::string& mine : ProfileFacts::ContactAddresses(contact)) {
    for (const std::string& a : addresses) {
      if (a == mine) return a;
      if (mine.rfind("*@", 0) == 0 && a.size() > mine.size() - 1 &&
          a.compare(a.size() - (mine.size() - 1), std::string::npos, mine.substr(1)) == 0) {
        return mine;
      }
    }
  }
  return "";
}

// A letter the add-in filed: the journal entry carries the letter's saved copy.
bool IsFiledLetter(const sim::MessageRecord& m) {
  if (m.item_class != ItemClass::kJournal) return false;
  for (const sim::AttachmentRecord& a : m.attachments) {
    if (a.display_name == kLetterTempFileName || a.file_name == kLetterTempFileName) return true;
  }
  return false;
}

std::string ContactName(const sim::MessageRecord& contact) {
  std::string name = MessageProps::Text(contact, kPrDisplayName);
  return name.empty() ? SubjectOf(contact) : name;
}

bool Private(const sim::MessageRecord& contact) {
  Value v = MessageProps::Get(contact, kPrSensitivity);
  return !v.IsEmpty() && v.ToLong() == kOlPrivate;
}

// The tracked contacts of one contact folder by address ("*@domain" for blanket ones);
// private contacts are not tracked.
using ContactIndex = std::unordered_map<std::string, std::vector<const sim::MessageRecord*>>;

ContactIndex IndexContacts(const sim::FolderRecord& folder) {
  ContactIndex index;
  for (const auto& c : folder.messages) {
    if (c->deleted || c->item_class != ItemClass::kContact || Private(*c)) continue;
    for (const std::string& a : ProfileFacts::ContactAddresses(*c)) index[a].push_back(c.get());
  }
  return index;
}

// Log folders (journal, e-mail and shared folders of a folder set) and the contacts of
// each set they serve.
struct SetFolders {
  std::vector<std::unique_ptr<ContactIndex>> indexes;
  std::unordered_map<const sim::FolderRecord*, std::vector<const ContactIndex*>> by_log_folder;
};

SetFolders LogFolders(const std::vector<FoldersetSpec>& sets, const ProfileLoader& loader) {
  SetFolders out;
  for (const FoldersetSpec& set : sets) {
    auto contacts = loader.FindFolder(set.contacts);
    if (!contacts) continue;
    out.indexes.push_back(std::make_unique<ContactIndex>(IndexContacts(*contacts)));
    for (const std::string* path :
         {&set.journal, &set.email, &set.shared_journal, &set.shared_calendar, &set.shared_tasks}) {
      if (auto f = path->empty() ? nullptr : loader.FindFolder(*path)) {
        out.by_log_folder[f.get()].push_back(out.indexes.back().get());
      }
    }
  }
  return out;
}

// The contacts the item was logged to: those its copies or the item itself are linked
// to, and the contacts of the set whose folder holds a copy that the item was from or
// to (by address or blanket domain; private contacts are not tracked), each once.
std::vector<std::string> LoggedContacts(const sim::MessageRecord& m, const ProfileFacts& facts,
                                        const SetFolders& sets) {
  std::vector<const sim::MessageRecord*> contacts;
  auto take = [&](const sim::MessageRecord* c) {
    if (c->item_class == ItemClass::kContact &&
        std::find(contacts.begin(), contacts.end(), c) == contacts.end()) {
      contacts.push_back(c);
    }
  };
  auto add = [&](const sim::MessageRecord& holder) {
    for (const sim::MessageRecord* c : facts.Linked(holder)) take(c);
  };
  std::vector<std::string> addresses;
  for (const std::string& a : facts.Addresses(m)) {
    addresses.push_back(a);
    size_t at = a.find('@');
    if (at != std::string::npos) addresses.push_back("*" + a.substr(at));
  }
  for (bool shared : {false, true}) {
    for (const sim::MessageRecord* copy : facts.Copies(m, shared)) {
      add(*copy);
      auto folder = copy->folder.lock();
      auto set = folder ? sets.by_log_folder.find(folder.get()) : sets.by_log_folder.end();
      if (set == sets.by_log_folder.end()) continue;
      for (const ContactIndex* index : set->second) {
        for (const std::string& a : addresses) {
          auto found = index->find(a);
          if (found == index->end()) continue;
          for (const sim::MessageRecord* c : found->second) take(c);
        }
      }
    }
  }
  add(m);
  std::vector<std::string> out;
  for (const sim::MessageRecord* c : contacts) {
    std::string how = HowMatched(*c, m, facts);
    out.push_back(ContactName(*c) + (how.empty() ? "" : " (" + how + ")"));
  }
  return out;
}

void Walk(const sim::FolderRecord& folder, const ProfileLoader& loader, const ProfileFacts& facts,
          const SetFolders& sets, const ScreeningReasons& reasons, std::vector<WhyRow>& rows) {
  std::string path = ProfileLoader::PathOf(folder);
  for (const auto& m : folder.messages) {
    if (m->deleted || !Tracked(m->item_class)) continue;
    ItemMarks marks = ReadMarks(*m);
    WhyRow row;
    row.folder = path;
    row.subject = SubjectOf(*m);
    row.id = loader.IdOf(*m);
    CopyOf copy = facts.CopyInfo(*m);
    for (bool shared : {false, true}) {
      for (const sim::MessageRecord* c : facts.Copies(*m, shared)) {
        row.copies.push_back(ProfileFacts::FolderOf(*c));
      }
    }
    row.logged_copies = marks.logged_copies;
    row.shared_copies = marks.shared_copies;
    if (copy.original) {
      row.outcome = "copy";
      row.contacts = marks.links;
      row.reason = std::string(copy.shared ? "shared" : "logged") + " copy of '" +
                   SubjectOf(*copy.original) + "' in " + ProfileFacts::FolderOf(*copy.original);
    } else if (marks.logged && text::EqualsNoCase(*marks.logged, "True")) {
      row.outcome = "logged";
      row.contacts = LoggedContacts(*m, facts, sets);
    } else if (marks.logged) {
      row.outcome = "screened";
      row.reason = reasons.For(row.subject, folder.name);
      if (row.reason.empty()) {
        std::vector<std::string> addresses = facts.Addresses(*m);
        row.reason = "no tracked contact" + (addresses.empty() ? std::string(" among its links")
                                                               : " for " + Join(addresses));
      }
    } else if (IsFiledLetter(*m)) {
      row.outcome = "letter";
      row.contacts = marks.links;
      row.reason = std::string("a Word letter filed by the add-in, attached as '") +
                   kLetterTempFileName + "'";
    } else if (marks.tag && !marks.tag->empty()) {
      row.outcome = "in progress";
      row.reason = "Zintra Tag is '" + *marks.tag + "'";
    } else {
      std::string reason = reasons.For(row.subject, folder.name);
      row.outcome = reason.empty() ? "not reached" : "skipped";
      row.reason = reason.empty() ? "no mark: not in a monitored folder, or not scanned" : reason;
    }
    rows.push_back(std::move(row));
  }
  for (const auto& child : folder.children) {
    if (!child->deleted) Walk(*child, loader, facts, sets, reasons, rows);
  }
}

std::string Cell(std::string s, size_t width) {
  // Cut on a character boundary (UTF-8 continuation bytes are 10xxxxxx).
  if (s.size() >= width) {
    size_t cut = width - 2;
    while (cut > 0 && (static_cast<unsigned char>(s[cut]) & 0xC0) == 0x80) --cut;
    s = s.substr(0, cut) + "~";
  }
  size_t shown = 0;
  for (unsigned char c : s) shown += (c & 0xC0) != 0x80;
  return s + std::string(width > shown ? width - shown : 0, ' ');
}

}  // namespace

ScreeningReasons::ScreeningReasons(const std::vector<std::string>& log_lines) {
  // "Screening new MailItem 'S' in 'Inbox' [...]" names the item the reasons that
  // follow it are about; an item screened more than once keeps its last reason.
  const std::string screening = "Screening new ";
  std::string subject, folder;
  for (const std::string& line : log_lines) {
    size_t at = line.find(screening);
    if (at != std::string::npos) {
      subject = Quoted(line, at);
      size_t in = line.find("' in '", at);
      folder = in == std::string::npos ? "" : Quoted(line, in + 5);
      continue;
    }
    if (subject.empty() || line.find("Item '" + subject + "' ") == std::string::npos) continue;
    size_t because = line.find(" because ");
    if (because == std::string::npos) continue;
    by_folder_[folder + '\n' + subject] = line.substr(because + 9);
    by_subject_[subject] = line.substr(because + 9);
  }
}

std::string ScreeningReasons::For(const std::string& subject, const std::string& folder) const {
  const auto& map = folder.empty() ? by_subject_ : by_folder_;
  auto it = map.find(folder.empty() ? subject : folder + '\n' + subject);
  return it == map.end() ? "" : it->second;
}

std::string ScreeningReason(const std::string& subject, const std::string& folder,
                            const std::vector<std::string>& log_lines) {
  return ScreeningReasons(log_lines).For(subject, folder);
}

std::vector<WhyRow> BuildWhyReport(const sim::Profile& profile, const ProfileLoader& loader,
                                   const std::vector<FoldersetSpec>& foldersets,
                                   const std::vector<std::string>& log_lines) {
  ProfileFacts facts(profile);
  SetFolders sets = LogFolders(foldersets, loader);
  ScreeningReasons reasons(log_lines);
  std::vector<WhyRow> rows;
  for (const auto& store : profile.Stores()) Walk(*store->root, loader, facts, sets, reasons, rows);
  return rows;
}

void PrintWhyTable(const std::vector<WhyRow>& rows, std::ostream& out) {
  out << Cell("OUTCOME", 12) << Cell("FOLDER", 28) << Cell("ITEM", 34) << "WHY\n";
  for (const WhyRow& r : rows) {
    std::string why;
    if (r.outcome == "logged") {
      why = "contacts: " + (r.contacts.empty() ? std::string("-") : Join(r.contacts)) +
            "; copies: " + std::to_string(r.logged_copies) + " logged, " +
            std::to_string(r.shared_copies) + " shared" +
            (r.copies.empty() ? "" : " in " + Join(r.copies));
    } else if (r.outcome == "copy") {
      why = r.reason + (r.contacts.empty() ? "" : "; linked to " + Join(r.contacts));
    } else {
      why = r.reason;
    }
    std::string folder = r.folder;
    size_t slash = folder.find('/');
    if (slash != std::string::npos) folder = folder.substr(slash + 1);
    out << Cell(r.outcome, 12) << Cell(folder, 28)
        << Cell(r.subject.empty() ? "(no subject)" : r.subject, 34) << why << "\n";
  }
}

nlohmann::ordered_json WhyJson(const std::vector<WhyRow>& rows) {
  nlohmann::ordered_json a = nlohmann::ordered_json::array();
  for (const WhyRow& r : rows) {
    nlohmann::ordered_json j;
    j["folder"] = r.folder;
    j["subject"] = r.subject;
    if (!r.id.empty()) j["id"] = r.id;
    j["outcome"] = r.outcome;
    j["contacts"] = r.contacts;
    j["logged_copies"] = r.logged_copies;
    j["shared_copies"] = r.shared_copies;
    if (!r.copies.empty()) j["copies"] = r.copies;
    if (!r.reason.empty()) j["reason"] = r.reason;
    a.push_back(j);
  }
  return a;
}

}  // namespace zintra::simtool
