// JobQueue: the add-in's one cooperative scheduler. Jobs (IJob) wait in an ordered
// list and run one activation at a time on the user-interface thread: in
// asynchronous mode from frmTimer's ticks, a slice at a time; in synchronous mode
// inside the Queue call that found nothing running. The queue also owns the
// "finishing tasks" list (frmTaskList), its tray icon (frmSysTray, made when the
// list is minimised) and a wait list that keeps jobs alive while they wait for an
// outside event.
//
// Ownership: create with std::make_shared (runs keep the queue alive, and the
// lingering-reference registration needs a shared owner). The add-in is held weakly
// and dropped by Kill; after that every run and tick stops without touching a job.
// The ports in JobQueueHost are borrowed and must outlive the queue.
//
// Errors: a job's Activate/Abort errors are logged, never propagated. Misuse
// throws ZError 5 ("JobQueue already initialized", "Cannot pause Queue while
// flushing"); an unknown task or wait-list key throws the collection's ZError 5.
// Re-entrancy (a job queueing, flushing, pausing or pumping messages from inside
// its activation) is handled by state: the active job is saved and restored around
// each activation, and a run starts only when no job is active.
#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <vector>

#include "src/core/event.h"
#include "src/core/key_generator.h"
#include "src/core/keyed_collection.h"
#include "src/host/clock.h"
#include "src/host/form_factory.h"
#include "src/host/message_pump.h"
#include "src/host/shell.h"
#include "src/host/timer.h"
#include "src/host/window.h"
#include "src/jobs/frm_timer.h"
#include "src/jobs/i_check_linger.h"
#include "src/jobs/i_job.h"
#include "src/jobs/job_addin.h"
#include "src/jobs/job_engine_log.h"
#include "src/resources/string_table.h"
#include "src/ui/frm_sys_tray.h"
#include "src/ui/frm_task_list.h"
#include "src/ui/task_list_entry.h"

namespace zintra {

class RegSettings;

inline constexpr int32_t kStrShowMonitor = 1211;  // "Show Zintra Monitor"
inline constexpr int32_t kStrHideMonitor = 1212;  // "Hide Zintra Monitor"
inline constexpr char kMonitorMenuKey[] = "ShowHideMonitor";

struct JobQueueHost {
  Clock& clock;
  TimerFactory& timers;
  MessagePump& pump;
  FormFactory& forms;
  WindowManager& windows;
  Shell& shell;
  const StringTable& strings;
  JobEngineLog& log;
};

class JobQueue : public ICheckLinger, public std::enable_shared_from_this<JobQueue> {
 public:
  explicit JobQueue(JobQueueHost host);
  ~JobQueue() override;
  JobQueue(const JobQueue&) = delete;
  JobQueue& operator=(const JobQueue&) = delete;

  // Once per queue: keeps the add-in, copies its settings, registers for the
  // lingering-reference check, creates the timer form and the (hidden) task list.
  void Initialize(const std::shared_ptr<JobAddin>& AddinApp);
  // Shut-down: drops the add-in, the queued and active jobs and the task entries,
  // disables the queue and unloads the forms. Queued jobs are released, not aborted.
  // Never throws.
  void Kill();
  // The add-in's Kill broadcast: nothing, the add-in calls Kill itself, last.
  void Addin_Kill() {}
  // Settings changes take effect at the next start of Outlook.
  void Addin_RegSettingsChanged(const RegSettings& /*OldSettings*/) {}

  // Set by the add-in when Outlook quits during an activation: the run stops after
  // the job returns and calls the add-in's Shutdown.
  bool ShutdownZintraOnJobComplete = false;

  bool QueueEnabled() const { return queue_enabled_; }
  bool AsyncMode() const { return async_mode_; }
  std::shared_ptr<IJob> ActiveJob() const { return active_job_; }
  // Jobs waiting in the queue, the active one not counted.
  int32_t QueuedJobsCount() const { return static_cast<int32_t>(queue_.size()); }
  bool OnlySupportTasks() const { return non_support_tasks_.Count() == 0; }

  bool Paused() const { return paused_; }
  void SetPaused(bool value);

  // Adds a job: at the front when TopPriority (and the queue is not empty), else at
  // the end. Ignored while disabled; aborted at once (with a warning) while aborting.
  void Queue(const std::shared_ptr<IJob>& Job, bool TopPriority);
  // Runs the queue to its end now (aborting every job when Abort is set).
  void Flush(bool Abort);
  // Aborts every job, then disables the queue for good.
  void Abandon();

  // The task list. Keys are fresh strings; an unknown key throws ZError 5.
  std::string TaskListAdd(std::string Description, int32_t RSIconIdx, float TotalWorkUnits,
                          bool IsSupport);
  void TaskListProgress(const std::string& key, float UnitsDone);
  void TaskListRemove(const std::string& key);
  bool TaskListVisible() const;
  void SetTaskListVisible(bool value);

  // The wait list: keeps a job alive under a fresh key until released.
  std::string WaitListAdd(const std::shared_ptr<IJob>& Job);
  void WaitListRelease(const std::string& Key);
  int32_t WaitListCount() const { return pWaitingOnEvent.Count(); }

  // Form events.
  void frmTaskList_Abort();
  void frmTaskList_Minimize();
  void frmSysTray_MenuClick(int32_t index, const std::string& key);
  void frmSysTray_SysTrayMouseDown(int32_t button);

  // Lingering-reference check, run after Kill: warns about waiting jobs and
  // non-support tasks still present.
  void CheckLingeringRefs() override;

  // The forms, for hosts and tests (nullptr when not loaded).
  frmTimer* TimerForm() const { return timer_form_.get(); }
  frmTaskList* TaskListForm() const { return task_list_form_.get(); }
  frmSysTray* SysTrayForm() const { return sys_tray_form_.get(); }
  JobEngineLog& Log() { return host_.log; }

 private:
  friend class frmTimer;

  // One tick of queue work, from frmTimer.
  void TimerWork();
  // The run: activates (or aborts) jobs from the front until a stop condition.
  void pDoJob(bool abort_all);
  bool AddinGone();
  void AbortAll();
  void ActivateTimer();
  void DeactivateTimer();
  // After a task-list change: let Outlook repaint where it would not otherwise.
  void AfterTaskChange();
  std::string FreshKey(const KeyedCollection<std::shared_ptr<TaskListEntry>>* tasks,
                       const KeyedCollection<std::shared_ptr<IJob>>* waiting);
  void LoadSysTray();
  void UnloadSysTray();
  void UpdateTrayMenu();

  JobQueueHost host_;
  std::weak_ptr<JobAddin> addin_;
  bool initialized_ = false;
  std::deque<std::shared_ptr<IJob>> queue_;
  std::deque<int32_t> priority_marks_;
  std::shared_ptr<IJob> active_job_;
  bool queue_enabled_ = false;
  bool async_mode_ = false;
  bool paused_ = false;
  bool flushing_ = false;
  bool aborting_ = false;
  bool task_list_shown_ = false;
  bool minimized_ = false;  // the user sent the list to the tray
  std::shared_ptr<frmTimer> timer_form_;
  std::unique_ptr<frmTaskList> task_list_form_;
  std::unique_ptr<frmSysTray> sys_tray_form_;
  KeyedCollection<std::shared_ptr<TaskListEntry>> tasks_;
  KeyedCollection<std::shared_ptr<TaskListEntry>> non_support_tasks_;
  KeyedCollection<std::shared_ptr<IJob>> pWaitingOnEvent;
  KeyGenerator own_keys_;  // used when the add-in is gone
  std::vector<Connection> task_list_events_;
  std::vector<Connection> tray_events_;
};

}  // namespace zintra
