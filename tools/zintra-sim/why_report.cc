#include "tools/zintra-sim/why_report.h"

#include <algorithm>
#include <ostream>

#include "src/core/text.h"
#include "tools/zintra-sim/item_view.h"

namespace zintra::simtool {

namespace {

// What the add-in's log says about the last processing of an item with this subject:
// the contacts found (by address or by link), the addresses searched, the copies made.
struct Trace {
  std::vector<std::string> contacts, searched, copies;
};

std::string Quoted(const std::string& line, size_t from) {
  size_t a = line.find('\'', from);
  size_t b = a == std::string::npos ? a : line.find('\'', a + 1);
  return b == std::string::npos ? "" : line.substr(a + 1, b - a - 1);
}

Trace ProcessingTrace(const std::string& subject, const std::vector<std::string>& lines) {
  Trace t;
  std::string begin = "Begin processing for item '" + subject + "'";
  std::string end = "Removing task Process email: " + subject;
  size_t start = lines.size();
  for (size_t i = lines.size(); i-- > 0;) {
    if (lines[i].find(begin) != std::string::npos) {
      start = i;
      break;
    }
  }
  for (size_t i = start; i < lines.size(); ++i) {
    const std::string& l = lines[i];
    if (i > start && l.find(end) != std::string::npos) break;
    size_t at;
    if ((at = l.find("Adding result: '")) != std::string::npos) {
      size_t for_at = l.find("' for ", at);
      t.contacts.push_back(Quoted(l, at) +
                           (for_at == std::string::npos ? "" : " (" + l.substr(for_at + 6) + ")"));
    } else if ((at = l.find("FoundLinkedContact: '")) != std::string::npos &&
               l.find("Adding result") == std::string::npos) {
      std::string name = Quoted(l, at);
      bool known = false;
      for (const std::string& c : t.contacts) known = known || c.rfind(name + " (", 0) == 0;
      if (!known) t.contacts.push_back(name + " (link)");
    } else if ((at = l.find("email to search: ")) != std::string::npos) {
      std::string address = l.substr(at + 17);
      if (std::find(t.searched.begin(), t.searched.end(), address) == t.searched.end()) {
        t.searched.push_back(address);
      }
    } else if ((at = l.find("copy of '")) != std::string::npos &&
               l.find("Queueing") != std::string::npos) {
      size_t folder = l.find("in folder '", at);
      if (folder != std::string::npos) t.copies.push_back(Quoted(l, folder + 9));
    }
  }
  return t;
}

std::string JoinList(const std::vector<std::string>& parts) {
  std::string out;
  for (const std::string& p : parts) out += (out.empty() ? "" : ", ") + p;
  return out;
}

bool Tracked(ItemClass c) { return c != ItemClass::kContact && c != ItemClass::kDistList; }

void Walk(const sim::FolderRecord& folder, const ProfileLoader& loader,
          const std::vector<std::string>& log_lines, std::vector<WhyRow>& rows) {
  std::string path = ProfileLoader::PathOf(folder);
  for (const auto& m : folder.messages) {
    if (m->deleted || !Tracked(m->item_class)) continue;
    ItemMarks marks = ReadMarks(*m);
    WhyRow row;
    row.folder = path;
    row.subject = SubjectOf(*m);
    row.id = loader.IdOf(*m);
    row.contacts = marks.links;
    row.logged_copies = marks.logged_copies;
    row.shared_copies = marks.shared_copies;
    if (!loader.Made(*m)) {
      row.outcome = "copy";
    } else if (marks.logged && text::EqualsNoCase(*marks.logged, "True")) {
      row.outcome = "logged";
      Trace trace = ProcessingTrace(row.subject, log_lines);
      if (row.contacts.empty()) row.contacts = trace.contacts;
      if (!trace.copies.empty()) row.reason = "copies in " + JoinList(trace.copies);
    } else if (marks.logged) {
      row.outcome = "screened";
      row.reason = ScreeningReason(row.subject, log_lines);
      if (row.reason.empty()) {
        Trace trace = ProcessingTrace(row.subject, log_lines);
        row.reason =
            "no tracked contact" + (trace.searched.empty() ? std::string(" among its links")
                                                           : " for " + JoinList(trace.searched));
      }
    } else if (marks.tag && !marks.tag->empty()) {
      row.outcome = "in progress";
      row.reason = "Zintra Tag is '" + *marks.tag + "'";
    } else {
      std::string reason = ScreeningReason(row.subject, log_lines);
      row.outcome = reason.empty() ? "not reached" : "skipped";
      row.reason = reason.empty() ? "no mark: not in a monitored folder, or not scanned" : reason;
    }
    rows.push_back(std::move(row));
  }
  for (const auto& child : folder.children) {
    if (!child->deleted) Walk(*child, loader, log_lines, rows);
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

std::string Join(const std::vector<std::string>& parts) {
  std::string out;
  for (const std::string& p : parts) out += (out.empty() ? "" : ", ") + p;
  return out;
}

}  // namespace

std::string ScreeningReason(const std::string& subject, const std::vector<std::string>& log_lines) {
  std::string needle = "Item '" + subject + "' ";
  for (auto it = log_lines.rbegin(); it != log_lines.rend(); ++it) {
    if (it->find(needle) == std::string::npos) continue;
    size_t because = it->find(" because ");
    if (because != std::string::npos) return it->substr(because + 9);
  }
  return "";
}

std::vector<WhyRow> BuildWhyReport(const sim::Profile& profile, const ProfileLoader& loader,
                                   const std::vector<std::string>& log_lines) {
  std::vector<WhyRow> rows;
  for (const auto& store : profile.Stores()) Walk(*store->root, loader, log_lines, rows);
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
            (r.reason.empty() ? "" : " (" + r.reason + ")");
    } else if (r.outcome == "copy") {
      why = "made by the add-in" + (r.contacts.empty() ? "" : "; linked to " + Join(r.contacts));
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
    if (!r.reason.empty()) j["reason"] = r.reason;
    a.push_back(j);
  }
  return a;
}

}  // namespace zintra::simtool
