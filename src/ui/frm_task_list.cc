#include "src/ui/frm_task_list.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace zintra {

frmTaskList::frmTaskList(std::unique_ptr<TaskListView> view, WindowManager& windows,
                         const StringTable& strings)
    : view_(std::move(view)), windows_(windows) {
  view_->SetCaption(strings.Load(kStrTaskListCaption));
  view_->SetAbortCaption(strings.Load(kStrAbortAll));
  abort_click_ = view_->AbortClick.Connect([this] { cmdAbort_Click(); });
  minimize_click_ = view_->MinimizeClick.Connect([this] { cmdMinimize_Click(); });
  RefreshProgress();
}

void frmTaskList::KeepOnTop() {
  windows_.SetWindowPos(view_->hWnd(), kHwndTopmost, 0, 0, 0, 0, kSwpKeepOnTopFlags);
}

float frmTaskList::Clamp(float done, float total) {
  if (!(done > 0)) return 0;  // also catches NaN
  return total > 0 ? std::min(done, total) : 0;
}

void frmTaskList::AddEntry(std::shared_ptr<TaskListEntry> entry) {
  if (!entry || entries_.count(entry->Key) != 0) return;
  entry->TotalWorkUnits = std::max(entry->TotalWorkUnits, 0.0f);
  entry->UnitsDone = Clamp(entry->UnitsDone, entry->TotalWorkUnits);
  total_units_ += entry->TotalWorkUnits;
  done_units_ += entry->UnitsDone;
  view_->AddRow(entry->Key, entry->Description, entry->RSIconIdx);
  const auto added = entries_.emplace(entry->Key, entry).first;
  SetUnitsDone(added, added->second->UnitsDone);
}

void frmTaskList::SetUnitsDone(const std::string& key, float units_done) {
  auto it = entries_.find(key);
  if (it != entries_.end()) SetUnitsDone(it, units_done);
}

void frmTaskList::SetUnitsDone(Entries::iterator it, float units_done) {
  const std::string& key = it->first;
  TaskListEntry& entry = *it->second;
  const float done = Clamp(units_done, entry.TotalWorkUnits);
  done_units_ += done - entry.UnitsDone;
  entry.UnitsDone = done;
  const int32_t percent =
      entry.TotalWorkUnits > 0
          ? static_cast<int32_t>(std::lround(done / entry.TotalWorkUnits * 100.0f))
          : 0;
  view_->SetRowProgress(key, percent);
  RefreshProgress();
}

void frmTaskList::RemoveEntry(const std::string& key) {
  auto it = entries_.find(key);
  if (it == entries_.end()) return;
  done_units_ += it->second->TotalWorkUnits - it->second->UnitsDone;
  entries_.erase(it);
  view_->RemoveRow(key);
  if (entries_.empty()) {
    total_units_ = 0;
    done_units_ = 0;
  }
  RefreshProgress();
}

int32_t frmTaskList::ProgressValue() const {
  if (!(total_units_ > 0)) return 0;
  const double ratio = std::clamp(static_cast<double>(done_units_) / total_units_, 0.0, 1.0);
  return static_cast<int32_t>(ratio * view_->ProgressMax());
}

void frmTaskList::RefreshProgress() { view_->SetProgress(ProgressValue()); }

}  // namespace zintra
