#include "tools/zintra-sim/timeline_check.h"

#include <algorithm>
#include <map>
#include <set>

#include "src/core/text.h"
#include "tools/zintra-sim/input_error.h"

namespace zintra::simtool {

namespace {

void Ids(const FolderSpec& f, std::set<std::string>& ids) {
  for (const ItemSpec& item : f.items) ids.insert(item.id);
  for (const FolderSpec& sub : f.folders) Ids(sub, ids);
}

bool NeedsRunningOutlook(StepKind k) {
  return k == StepKind::kClick || k == StepKind::kOpenInspector || k == StepKind::kLoadAddin;
}

class Checker {
 public:
  explicit Checker(const Scenario& s) : s_(s) {
    for (const StoreSpec& store : s.profile.stores) {
      for (const FolderSpec& f : store.folders) Ids(f, present_);
    }
    for (const StepSpec& step : s.timeline) {
      if (step.item && !step.item->id.empty()) later_.insert(step.item->id);
    }
  }

  void Check() {
    if (s_.timeline.size() > kMaxTimelineSteps) {
      throw InputError(s_.source, 0, "/timeline",
                       "a timeline holds at most " + std::to_string(kMaxTimelineSteps) +
                           " steps, found " + std::to_string(s_.timeline.size()));
    }
    const double start = s_.start_time != 0 ? s_.start_time : kDefaultStartTime;
    double now = start;
    for (const StepSpec& step : s_.timeline) {
      Outlook(step);
      Items(step);
      Folders(step);
      if (step.kind == StepKind::kWait) {
        now = step.until != 0 ? std::max(now, step.until) : now + step.seconds / 86400.0;
        if (now - start > kMaxTimelineDays) {
          Fail(step, step.until != 0 ? "" : "/for",
               "the timeline would run past " + std::to_string(static_cast<int>(kMaxTimelineDays)) +
                   " days of virtual time from its start");
        }
      }
    }
  }

 private:
  [[noreturn]] void Fail(const StepSpec& step, const std::string& field,
                         const std::string& problem) const {
    throw InputError(s_.source, step.source_line, step.pointer + field, problem);
  }

  void Outlook(const StepSpec& step) {
    if (step.kind == StepKind::kStart) {
      if (started_at_ > 0) {
        Fail(step, "/do",
             "Outlook is already running (started at line " + std::to_string(started_at_) +
                 "); a simulated Outlook starts once");
      }
      started_at_ = std::max(step.source_line, 1);
    } else if (NeedsRunningOutlook(step.kind) && started_at_ == 0) {
      Fail(step, "/do",
           std::string("\"") + StepName(step.kind) +
               "\" needs Outlook running: no \"start\" step comes before it");
    }
  }

  // An id must name an item that is in the profile when the step plays.
  void Known(const StepSpec& step, const std::string& id, const std::string& field) {
    if (id.empty() || present_.count(id)) return;
    auto gone = deleted_at_.find(id);
    if (gone != deleted_at_.end()) {
      Fail(step, field,
           "the item \"" + Excerpt(id) + "\" is no longer in the profile: it was deleted at line " +
               std::to_string(gone->second));
    }
    if (later_.count(id)) {
      Fail(step, field,
           "the item \"" + Excerpt(id) + "\" is not in the profile yet: a later step brings it");
    }
  }

  void Items(const StepSpec& step) {
    Known(step, step.target, "/target");
    for (size_t i = 0; i < step.selection.size(); ++i) {
      Known(step, step.selection[i], "/selection/" + std::to_string(i));
    }
    for (size_t i = 0; i < step.link_items.size(); ++i) {
      Known(step, step.link_items[i], "/link_items/" + std::to_string(i));
    }
    if (step.item) {
      for (size_t i = 0; i < step.item->links.size(); ++i) {
        Known(step, step.item->links[i], "/item/links/" + std::to_string(i));
      }
      if (!step.item->id.empty()) present_.insert(step.item->id);
    }
    if (step.kind == StepKind::kDelete) {
      present_.erase(step.target);
      deleted_at_[step.target] = step.source_line;
    }
  }

  // A folder named after the step that removed it (or a folder above it). Paths are
  // compared as written, without regard to case; whether a path names a folder at all is
  // known once the profile is built.
  void Folders(const StepSpec& step) {
    const bool host = step.kind == StepKind::kFail || step.kind == StepKind::kRemoveFolder;
    std::string folder = host ? step.fault.folder : step.folder;
    const char* field = "/folder";
    if (folder.empty() && (step.kind == StepKind::kDeliver || step.kind == StepKind::kSend)) {
      // Mail arrives in the Inbox and is sent to Sent Items unless a folder is named.
      folder = step.kind == StepKind::kDeliver ? "Inbox" : "Sent Items";
      field = "/do";
    }
    if (folder.empty()) return;
    const std::string path = text::LCase(folder);
    for (const auto& [removed, line] : removed_at_) {
      if (path == removed || text::StartsWith(path, removed + "/")) {
        Fail(step, field,
             "the folder \"" + Excerpt(folder) +
                 "\" is no longer in the profile: it was removed at line " + std::to_string(line));
      }
    }
    if (step.kind == StepKind::kRemoveFolder) removed_at_[path] = step.source_line;
  }

  const Scenario& s_;
  std::map<std::string, int> removed_at_;  // lower-case path -> line of its remove-folder
  std::set<std::string> present_;          // ids of items in the profile at this step
  std::set<std::string> later_;            // ids of items that timeline steps bring
  std::map<std::string, int> deleted_at_;
  int started_at_ = 0;
};

}  // namespace

void CheckTimeline(const Scenario& s) { Checker(s).Check(); }

}  // namespace zintra::simtool
