// JobQueue: the task list, its tray icon and their form events.
#include <utility>

#include "src/core/z_error.h"
#include "src/jobs/job_queue.h"

namespace zintra {

std::string JobQueue::TaskListAdd(std::string Description, int32_t RSIconIdx, float TotalWorkUnits,
                                  bool IsSupport) {
  if (host_.log.KeepsDebugLines()) host_.log.WriteLogMessage("Adding task " + Description, false);
  auto entry = std::make_shared<TaskListEntry>();
  entry->Key = FreshKey(&tasks_, nullptr);
  entry->Description = std::move(Description);
  entry->RSIconIdx = RSIconIdx;
  entry->TotalWorkUnits = TotalWorkUnits;
  entry->IsSupport = IsSupport;
  tasks_.Add(entry, entry->Key);
  if (!IsSupport) non_support_tasks_.Add(entry, entry->Key);
  if (task_list_form_) task_list_form_->AddEntry(entry);
  AfterTaskChange();
  return entry->Key;
}

void JobQueue::TaskListProgress(const std::string& key, float UnitsDone) {
  std::shared_ptr<TaskListEntry> entry = tasks_.Item(key);
  if (task_list_form_) {
    task_list_form_->SetUnitsDone(key, UnitsDone);
  } else {
    entry->UnitsDone = UnitsDone;
  }
  AfterTaskChange();
}

void JobQueue::TaskListRemove(const std::string& key) {
  // After Kill only the non-support collection is left (for the lingering check).
  if (host_.log.KeepsDebugLines()) {
    const std::shared_ptr<TaskListEntry>* entry = tasks_.Lookup(key);
    if (!entry) entry = &non_support_tasks_.Item(key);
    host_.log.WriteLogMessage("Removing task " + (*entry)->Description, false);
  }
  const bool was_listed = tasks_.RemoveIfPresent(key);
  // A key in neither list is an error.
  if (!non_support_tasks_.RemoveIfPresent(key) && !was_listed) throw ZError(kErrInvalidCall);
  if (task_list_form_) task_list_form_->RemoveEntry(key);
  if (tasks_.Count() == 0) {
    // Nothing left to finish: the tray icon has nothing to stand for.
    minimized_ = false;
    UnloadSysTray();
  }
  AfterTaskChange();
}

void JobQueue::AfterTaskChange() {
  std::shared_ptr<JobAddin> addin = addin_.lock();
  if (!addin) return;
  // Outlook 2007 and later repaint on their own; older ones, and any version while
  // closing, repaint only if their messages are pumped during a synchronous flush.
  if (!addin->Outlook12OrHigher() || addin->Quitting()) host_.pump.DoEvents();
}

bool JobQueue::TaskListVisible() const { return task_list_form_ && task_list_form_->Visible(); }

void JobQueue::SetTaskListVisible(bool value) {
  if (!task_list_form_) return;
  if (value) {
    // Once the user sent the list to the tray, only the tray brings it back.
    if (!minimized_ && !task_list_form_->Visible()) {
      task_list_form_->SetVisible(true);
      task_list_form_->KeepOnTop();
    }
  } else {
    task_list_form_->SetVisible(false);
    task_list_shown_ = false;
  }
  UpdateTrayMenu();
}

void JobQueue::frmTaskList_Abort() { AbortAll(); }

void JobQueue::frmTaskList_Minimize() {
  if (!task_list_form_) return;
  minimized_ = true;
  task_list_form_->SetVisible(false);
  LoadSysTray();
  UpdateTrayMenu();
}

void JobQueue::frmSysTray_MenuClick(int32_t /*index*/, const std::string& key) {
  if (key != kMonitorMenuKey) return;
  if (TaskListVisible()) {
    minimized_ = true;
    SetTaskListVisible(false);
  } else {
    minimized_ = false;
    SetTaskListVisible(true);
  }
}

void JobQueue::frmSysTray_SysTrayMouseDown(int32_t button) {
  if (!sys_tray_form_) return;
  if (button == kVbRightButton) {
    UpdateTrayMenu();
    sys_tray_form_->ShowMenu();
  } else if (button == kVbLeftButton && !TaskListVisible()) {
    minimized_ = false;
    SetTaskListVisible(true);
  }
}

void JobQueue::LoadSysTray() {
  if (sys_tray_form_) return;
  std::unique_ptr<TrayView> view = host_.forms.CreateTrayView();
  const int32_t icon = view->IconHandle();
  sys_tray_form_ = std::make_unique<frmSysTray>(std::move(view), host_.shell,
                                                host_.strings.Load(kStrTaskListCaption), icon);
  sys_tray_form_->AddMenuItem(host_.strings.Load(kStrShowMonitor), kMonitorMenuKey, true);
  tray_events_.push_back(sys_tray_form_->MenuClick.Connect(
      [this](int32_t index, const std::string& key) { frmSysTray_MenuClick(index, key); }));
  tray_events_.push_back(sys_tray_form_->SysTrayMouseDown.Connect(
      [this](int32_t button) { frmSysTray_SysTrayMouseDown(button); }));
}

void JobQueue::UnloadSysTray() {
  tray_events_.clear();
  if (!sys_tray_form_) return;
  sys_tray_form_->Unload();
  sys_tray_form_.reset();
}

void JobQueue::UpdateTrayMenu() {
  if (!sys_tray_form_ || !sys_tray_form_->HasMenuItem(0)) return;
  // The one item toggles the list; its caption says what a click will do.
  const int32_t text = TaskListVisible() ? kStrHideMonitor : kStrShowMonitor;
  sys_tray_form_->SetMenuCaption(0, host_.strings.Load(text));
}

}  // namespace zintra
