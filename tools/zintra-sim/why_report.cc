#include "tools/zintra-sim/why_report.h"

#include <algorithm>
#include <memory>
#include <ostream>
#include <unordered_map>

#include "src/toolbars/word_letter_handler.h"
#include "tools/zintra-sim/item_view.h"

namespace zintra::simtool {

namespace {

std::string JoinWithCommas(const std::vector<std::string>& parts) {
  std::string out;
  for (const std::string& p : parts) out += (out.empty() ? "" : ", ") + p;
  return out;
}

void AddOnce(std::vector<std::string>& list, const std::string& s) {
  if (std::find(list.begin(), list.end(), s) == list.end()) list.push_back(s);
}

bool Tracked(ItemClass c) { return c != ItemClass::kContact && c != ItemClass::kDistList; }

// A letter the add-in filed: the journal entry carries the letter's saved copy.
bool IsFiledLetter(const sim::MessageRecord& m) {
  if (m.item_class != ItemClass::kJournal) return false;
  for (const sim::AttachmentRecord& a : m.attachments) {
    if (a.display_name == kLetterTempFileName || a.file_name == kLetterTempFileName) return true;
  }
  return false;
}

// One processing job's decisions about an item, from its queuing to its end.
struct Job {
  std::vector<const Decision*> decisions;
  const Decision* end = nullptr;  // kFinished or kEnded; nullptr: it never ended
};

// The decisions about one item, in order, cut into its screenings and jobs.
struct ItemStory {
  const Decision* marked = nullptr;   // the last kMarkedNotLogged
  const Decision* skipped = nullptr;  // the last kSkipped
  const Decision* not_processed = nullptr;
  std::vector<Job> jobs;
};

// How the monitors dealt with one folder.
struct FolderStory {
  bool monitored = false;
  int scans = 0;
  const Decision* scan_end = nullptr;  // how the last scan ended; nullptr while it runs
};

struct Copy {
  const Decision* made = nullptr;
  const Job* job = nullptr;
};

class Decisions {
 public:
  explicit Decisions(const std::vector<Decision>& all) {
    for (const Decision& d : all) {
      switch (d.kind) {
        case DecisionKind::kFolderMonitored:
          folders_[d.folder_id].monitored = true;
          break;
        case DecisionKind::kScanStarted:
          ++folders_[d.folder_id].scans;
          folders_[d.folder_id].scan_end = nullptr;
          break;
        case DecisionKind::kScanEnded:
          folders_[d.folder_id].scan_end = &d;
          break;
        default:
          Add(d);
      }
    }
    for (auto& [id, story] : items_) {
      for (const Job& job : story.jobs) {
        for (const Decision* d : job.decisions) {
          if (d->kind == DecisionKind::kCopyMade) copies_[d->copy_id] = {d, &job};
        }
      }
    }
  }

  const ItemStory* Item(const std::string& entry_id) const {
    auto it = items_.find(entry_id);
    return it == items_.end() ? nullptr : &it->second;
  }
  const FolderStory* Folder(const std::string& folder_id) const {
    auto it = folders_.find(folder_id);
    return it == folders_.end() ? nullptr : &it->second;
  }
  const Copy* CopyMade(const std::string& entry_id) const {
    auto it = copies_.find(entry_id);
    return it == copies_.end() ? nullptr : &it->second;
  }
  const Job* LastJob(const ItemStory& story, bool ended) const {
    for (auto it = story.jobs.rbegin(); it != story.jobs.rend(); ++it) {
      if ((it->end != nullptr) == ended) return &*it;
    }
    return nullptr;
  }
  bool AnyMonitored() const {
    for (const auto& [id, f] : folders_) {
      if (f.monitored) return true;
    }
    return false;
  }

 private:
  void Add(const Decision& d) {
    ItemStory& story = items_[d.entry_id];
    switch (d.kind) {
      case DecisionKind::kNotProcessed:
        story.not_processed = &d;
        return;
      case DecisionKind::kSkipped:
        story.skipped = &d;
        return;
      case DecisionKind::kMarkedNotLogged:
        story.marked = &d;
        return;
      case DecisionKind::kQueued:
        story.jobs.emplace_back();
        break;
      default:
        if (story.jobs.empty()) story.jobs.emplace_back();  // a job not seen queuing
        break;
    }
    Job& job = story.jobs.back();
    job.decisions.push_back(&d);
    if (d.kind == DecisionKind::kFinished || d.kind == DecisionKind::kEnded) job.end = &d;
  }

  std::unordered_map<std::string, ItemStory> items_;
  std::unordered_map<std::string, FolderStory> folders_;
  std::unordered_map<std::string, Copy> copies_;
};

// The contacts a job took, each with how it was found: "Ann Lee (link)", "Ann Lee
// (ann@fabrikam.com)", "Wingtip Toys (*@wingtiptoys.com)".
std::vector<std::string> JobContacts(const Job& job, bool with_how) {
  std::vector<std::string> ids, names;
  std::unordered_map<std::string, std::vector<std::string>> how;
  for (const Decision* d : job.decisions) {
    if (d->kind == DecisionKind::kLinkedContact) AddOnce(how[d->contact_id], "link");
    if (d->kind == DecisionKind::kAddressMatched) AddOnce(how[d->contact_id], d->address);
    if (d->kind == DecisionKind::kContactAccepted &&
        std::find(ids.begin(), ids.end(), d->contact_id) == ids.end()) {
      ids.push_back(d->contact_id);
      names.push_back(d->contact);
    }
  }
  std::vector<std::string> out;
  for (size_t i = 0; i < ids.size(); ++i) {
    const std::vector<std::string>& h = how[ids[i]];
    out.push_back(names[i] + (with_how && !h.empty() ? " (" + JoinWithCommas(h) + ")" : ""));
  }
  return out;
}

// Why a job that ended without a copy logged nothing.
std::string NothingFound(const Job& job) {
  std::vector<std::string> searched, refused;
  std::string no_search;
  for (const Decision* d : job.decisions) {
    if (d->kind == DecisionKind::kAddressSearched) AddOnce(searched, d->address);
    if (d->kind == DecisionKind::kNoAddressSearch) no_search = d->reason;
    if (d->kind == DecisionKind::kContactRefused) AddOnce(refused, d->contact + ": " + d->reason);
  }
  std::string why = !refused.empty()
                        ? "contacts found but not tracked (" + JoinWithCommas(refused) + ")"
                    : !searched.empty()  ? "no tracked contact for " + JoinWithCommas(searched)
                    : !no_search.empty() ? "no tracked contact among its links; addresses not "
                                           "searched: " +
                                               no_search
                                         : "no tracked contact among its links";
  return why;
}

// Why an item the add-in took no decision about was not reached.
std::string NotReached(const sim::FolderRecord& folder, const std::string& folder_id,
                       const Decisions& decisions) {
  const std::string name = "'" + folder.name + "'";
  const FolderStory* f = decisions.Folder(folder_id);
  if (!decisions.AnyMonitored()) return "the add-in monitored no folder";
  if (!f || !f->monitored) return "the folder " + name + " is not monitored";
  if (f->scans == 0) {
    return name +
           " is monitored for new items only and was not scanned, so items already in "
           "it are not looked at";
  }
  if (!f->scan_end) return "the scan of " + name + " had not reached it when Outlook quit";
  if (f->scan_end->kind == DecisionKind::kScanEnded && !f->scan_end->subject.empty()) {
    return "the scan of " + name + " stopped at '" + f->scan_end->subject +
           "', an item already processed, before reaching it";
  }
  if (f->scan_end->reason == "it reached the end of the folder") {
    return "the scan of " + name +
           " reached the end of the folder without meeting it, and no "
           "new-item event for it reached the add-in";
  }
  return "the scan of " + name + " ended before reaching it: " + f->scan_end->reason;
}

void ReportFolder(const sim::FolderRecord& folder, const sim::Profile& profile,
                  const ProfileLoader& loader, const Decisions& decisions,
                  std::vector<WhyRow>& rows) {
  std::string path = ProfileLoader::PathOf(folder);
  for (const auto& m : folder.messages) {
    if (m->deleted || !Tracked(m->item_class)) continue;
    WhyRow row;
    row.folder = path;
    row.subject = SubjectOf(*m);
    row.id = loader.IdOf(*m);
    const std::string entry_id = profile.EntryIdOf(*m);
    const ItemStory* story = decisions.Item(entry_id);
    const Copy* copy = decisions.CopyMade(entry_id);
    const Job* logged_job = nullptr;
    if (story) {
      for (const Job& job : story->jobs) {
        if (job.end && job.end->kind == DecisionKind::kFinished && job.end->logged) {
          logged_job = &job;
        }
      }
    }
    if (copy) {
      row.outcome = "copy";
      row.contacts = JobContacts(*copy->job, false);
      row.reason = std::string(copy->made->shared ? "shared" : "logged") + " copy of '" +
                   copy->made->subject + "' in " + copy->made->folder_name;
    } else if (logged_job) {
      row.outcome = "logged";
      row.contacts = JobContacts(*logged_job, true);
      for (const Decision* d : logged_job->decisions) {
        if (d->kind != DecisionKind::kCopyMade) continue;
        row.copies.push_back(d->copy_folder);
        ++(d->shared ? row.shared_copies : row.logged_copies);
      }
    } else if (const Job* job = story ? decisions.LastJob(*story, true) : nullptr;
               job && job->end->kind == DecisionKind::kFinished) {
      row.outcome = "screened";
      row.reason = NothingFound(*job);
    } else if (story && story->marked) {
      row.outcome = "screened";
      row.reason = story->marked->reason;
    } else if (job) {
      row.outcome = "not finished";
      row.reason = "its job ended early: " + job->end->reason;
    } else if (story && decisions.LastJob(*story, false)) {
      row.outcome = "in progress";
      row.reason = "Outlook quit before its job finished";
    } else if (story && story->skipped) {
      row.outcome = "skipped";
      row.reason = story->skipped->reason;
    } else if (story && story->not_processed) {
      row.outcome = "not reached";
      row.reason = story->not_processed->reason;
    } else if (IsFiledLetter(*m)) {
      row.outcome = "letter";
      row.contacts = ReadMarks(*m).links;
      row.reason = std::string("a Word letter filed by the add-in, attached as '") +
                   kLetterTempFileName + "'";
    } else {
      row.outcome = "not reached";
      row.reason = NotReached(folder, profile.EntryIdOf(folder), decisions);
    }
    rows.push_back(std::move(row));
  }
  for (const auto& child : folder.children) {
    if (!child->deleted) ReportFolder(*child, profile, loader, decisions, rows);
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

std::vector<WhyRow> BuildWhyReport(const sim::Profile& profile, const ProfileLoader& loader,
                                   const std::vector<Decision>& decisions) {
  Decisions told(decisions);
  std::vector<WhyRow> rows;
  for (const auto& store : profile.Stores())
    ReportFolder(*store->root, profile, loader, told, rows);
  return rows;
}

void PrintWhyTable(const std::vector<WhyRow>& rows, std::ostream& out) {
  out << Cell("OUTCOME", 12) << Cell("FOLDER", 28) << Cell("ITEM", 34) << "WHY\n";
  for (const WhyRow& r : rows) {
    std::string why;
    if (r.outcome == "logged") {
      why = "contacts: " + (r.contacts.empty() ? std::string("-") : JoinWithCommas(r.contacts)) +
            "; copies: " + std::to_string(r.logged_copies) + " logged, " +
            std::to_string(r.shared_copies) + " shared" +
            (r.copies.empty() ? "" : " in " + JoinWithCommas(r.copies));
    } else if (r.outcome == "copy") {
      why = r.reason + (r.contacts.empty() ? "" : "; linked to " + JoinWithCommas(r.contacts));
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
