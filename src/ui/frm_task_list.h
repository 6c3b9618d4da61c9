// frmTaskList: the "finishing tasks" form. It lists the entries the job queue hands
// it, each with its own progress, and an overall progress bar computed from running
// totals of work units: a finished (removed) task counts as fully done until the
// list is empty again, so the bar never runs backwards while work drains away.
// Its buttons raise Abort and Minimize; the job queue decides what they do.
//
// Owns its view; borrows the window manager and string table, which must outlive it.
// Entry operations with an unknown key do nothing.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>

#include "src/core/event.h"
#include "src/host/task_list_view.h"
#include "src/host/window.h"
#include "src/resources/string_table.h"
#include "src/ui/task_list_entry.h"

namespace zintra {

inline constexpr int32_t kStrTaskListCaption = 1000;  // "Zintra is finishing tasks"
inline constexpr int32_t kStrAbortAll = 1001;         // "Abort All"

class frmTaskList {
 public:
  // Form load: sets the captions.
  frmTaskList(std::unique_ptr<TaskListView> view, WindowManager& windows,
              const StringTable& strings);
  frmTaskList(const frmTaskList&) = delete;
  frmTaskList& operator=(const frmTaskList&) = delete;

  bool Visible() const { return view_->Visible(); }
  void SetVisible(bool visible) { view_->SetVisible(visible); }
  // Places the form above all other windows (HWND_TOPMOST).
  void KeepOnTop();

  void AddEntry(std::shared_ptr<TaskListEntry> entry);
  void SetUnitsDone(const std::string& key, float units_done);
  void RemoveEntry(const std::string& key);
  int32_t EntryCount() const { return static_cast<int32_t>(entries_.size()); }

  float TotalUnits() const { return total_units_; }
  float DoneUnits() const { return done_units_; }
  // The overall bar's value: done / total x the bar's maximum, 0 when the total is 0.
  int32_t ProgressValue() const;

  // The buttons, as the view reports them.
  void cmdAbort_Click() { Abort.Raise(); }
  void cmdMinimize_Click() { Minimize.Raise(); }

  TaskListView& view() { return *view_; }

  Event<> Abort;
  Event<> Minimize;

 private:
  using Entries = std::map<std::string, std::shared_ptr<TaskListEntry>>;

  static float Clamp(float done, float total);
  void SetUnitsDone(Entries::iterator it, float units_done);
  void RefreshProgress();

  std::unique_ptr<TaskListView> view_;
  WindowManager& windows_;
  Entries entries_;
  float total_units_ = 0;
  float done_units_ = 0;
  Connection abort_click_;
  Connection minimize_click_;
};

}  // namespace zintra
