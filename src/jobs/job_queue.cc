#include "src/jobs/job_queue.h"

#include <utility>

#include "src/core/date.h"
#include "src/core/type_name.h"
#include "src/core/z_error.h"
#include "src/errors/cached_error.h"

namespace zintra {

JobQueue::JobQueue(JobQueueHost host) : host_(host) {}

JobQueue::~JobQueue() {
  if (timer_form_) {
    timer_form_->Deactivate();
    timer_form_->SetJobQueue(nullptr);
  }
}

void JobQueue::Initialize(const std::shared_ptr<JobAddin>& AddinApp) {
  if (initialized_) throw ZError(kErrInvalidCall, "JobQueue already initialized");
  initialized_ = true;
  addin_ = AddinApp;
  queue_.clear();
  priority_marks_.clear();
  tasks_.Clear();
  non_support_tasks_.Clear();
  pWaitingOnEvent.Clear();
  queue_enabled_ = true;
  const JobQueueSettings settings = AddinApp->QueueSettings();
  async_mode_ = settings.RunJobsAsync;
  if (auto self = weak_from_this().lock()) AddinApp->SetCheckLinger(self);

  timer_form_ = std::make_shared<frmTimer>(host_.clock, host_.timers.CreateTimer());
  timer_form_->SetJobQueue(this);
  timer_form_->Timer1().SetInterval(settings.QueuedWorkTimeInterval);
  timer_form_->TimeChunkInSeconds = static_cast<float>(settings.QueuedWorkTimechunk) / 1000.0f;

  task_list_form_ =
      std::make_unique<frmTaskList>(host_.forms.CreateTaskListView(), host_.windows, host_.strings);
  task_list_events_.push_back(task_list_form_->Abort.Connect([this] { frmTaskList_Abort(); }));
  task_list_events_.push_back(
      task_list_form_->Minimize.Connect([this] { frmTaskList_Minimize(); }));
}

void JobQueue::Kill() {
  try {
    addin_.reset();
    queue_.clear();
    priority_marks_.clear();
    active_job_.reset();
    queue_enabled_ = false;
    tasks_.Clear();
    UnloadSysTray();
    if (timer_form_) {
      timer_form_->Deactivate();
      timer_form_->SetJobQueue(nullptr);
      timer_form_.reset();
    }
    task_list_events_.clear();
    task_list_form_.reset();
  } catch (...) {
    // Shut-down goes on whatever a form's window does.
  }
}

bool JobQueue::AddinGone() {
  std::shared_ptr<JobAddin> addin = addin_.lock();
  if (!addin) return true;
  try {
    addin->TouchOutlook();
  } catch (...) {
    // Only the reference decides; the touch just has to be harmless.
  }
  return false;
}

void JobQueue::ActivateTimer() {
  if (timer_form_) timer_form_->Activate();
}

void JobQueue::DeactivateTimer() {
  if (timer_form_) timer_form_->Deactivate();
}

void JobQueue::Queue(const std::shared_ptr<IJob>& Job, bool TopPriority) {
  if (!queue_enabled_ || !Job) return;
  if (aborting_) {
    host_.log.LogWarning("Job '" + Job->JobDescription() +
                         "' trying to re-queue while queue is aborting. " + "Telling it to Abort.");
    Job->Abort();
    return;
  }
  if (queue_.empty() || !TopPriority) {
    queue_.push_back(Job);
    priority_marks_.push_back(TopPriority ? 1 : 0);
  } else {
    queue_.push_front(Job);
    priority_marks_.push_front(1);
  }
  if (async_mode_) {
    if (!flushing_ && !paused_) ActivateTimer();
  } else if (!active_job_ && !paused_) {
    pDoJob(false);
  }
}

void JobQueue::pDoJob(bool abort_all) {
  // A job may make the add-in release the queue (shut-down); finish this run first.
  std::shared_ptr<JobQueue> keep = weak_from_this().lock();
  const double start = host_.clock.Now();
  bool complete = true;
  while (!queue_.empty()) {
    if (AddinGone()) return;
    if (aborting_) abort_all = true;

    std::shared_ptr<IJob> saved = active_job_;
    std::shared_ptr<IJob> job = queue_.front();
    active_job_ = job;
    queue_.pop_front();
    priority_marks_.pop_front();

    try {
      if (abort_all) {
        job->Abort();
      } else {
        job->Activate();
      }
    } catch (...) {
      CachedError rec;
      rec.SetToCurrentException("JobQueue", "pDoJob");
      host_.log.LogWarning(TypeName(*job) + " job's " + (abort_all ? "Abort()" : "Activate()") +
                           " raised error " + std::to_string(rec.Number()) +
                           " while executing.  The information is logged next.");
      host_.log.LogCachedError(rec);
    }

    active_job_ = std::move(saved);
    if (ShutdownZintraOnJobComplete) {
      complete = false;
      break;
    }
    if (async_mode_ && !flushing_) break;
    if (!queue_enabled_) break;
    if (aborting_) continue;
    if (DateDiff("s", start, host_.clock.Now()) > 1) {
      SetTaskListVisible(true);
      task_list_shown_ = true;
    }
  }

  if (!complete) {
    ShutdownZintraOnJobComplete = false;
    DeactivateTimer();
    if (std::shared_ptr<JobAddin> addin = addin_.lock()) addin->Shutdown();
  }
  if (task_list_shown_) SetTaskListVisible(false);
  aborting_ = false;
  flushing_ = false;
}

void JobQueue::TimerWork() {
  if (AddinGone()) return;
  if (queue_.empty() || paused_) DeactivateTimer();
  if (!paused_) pDoJob(false);
}

void JobQueue::SetPaused(bool value) {
  if (value && flushing_) throw ZError(kErrInvalidCall, "Cannot pause Queue while flushing");
  if (value == paused_) return;
  paused_ = value;
  if (paused_) {
    DeactivateTimer();
  } else if (!active_job_ && !async_mode_) {
    pDoJob(false);
  } else {
    ActivateTimer();
  }
}

void JobQueue::Flush(bool Abort) {
  if (!queue_enabled_ || flushing_) return;
  DeactivateTimer();
  flushing_ = true;
  if (Abort) aborting_ = true;
  // From inside a job, the run under way keeps going to the end: flushing lifts the
  // one-activation limit.
  if (!active_job_) pDoJob(Abort);
}

void JobQueue::AbortAll() {
  if (!queue_enabled_ || aborting_) return;
  if (flushing_) {
    aborting_ = true;
  } else {
    Flush(true);
  }
}

void JobQueue::Abandon() {
  if (!queue_enabled_) return;
  AbortAll();
  queue_enabled_ = false;
}

std::string JobQueue::WaitListAdd(const std::shared_ptr<IJob>& Job) {
  const std::string key = FreshKey(nullptr, &pWaitingOnEvent);
  pWaitingOnEvent.Add(Job, key);
  return key;
}

void JobQueue::WaitListRelease(const std::string& Key) { pWaitingOnEvent.Remove(Key); }

std::string JobQueue::FreshKey(const KeyedCollection<std::shared_ptr<TaskListEntry>>* tasks,
                               const KeyedCollection<std::shared_ptr<IJob>>* waiting) {
  // The add-in's keys are unique among live keys; should one clash anyway (or the
  // add-in be gone), the queue's own generator, which never repeats, takes over.
  auto taken = [&](const std::string& key) {
    return (tasks != nullptr && (tasks->Contains(key) || non_support_tasks_.Contains(key))) ||
           (waiting != nullptr && waiting->Contains(key));
  };
  if (std::shared_ptr<JobAddin> addin = addin_.lock()) {
    std::string key = addin->GenerateKey();
    if (!key.empty() && !taken(key)) return key;
  }
  for (;;) {
    std::string key = "JQ" + own_keys_.GenerateKey();
    if (!taken(key)) return key;
  }
}

void JobQueue::CheckLingeringRefs() {
  if (pWaitingOnEvent.Count() > 0) {
    std::string types;
    std::vector<std::string> seen;
    for (const auto& job : pWaitingOnEvent.Values()) {
      const std::string name = job ? TypeName(*job) : "Nothing";
      bool known = false;
      for (const auto& s : seen) known = known || s == name;
      if (known) continue;
      seen.push_back(name);
      types += (types.empty() ? "" : ", ") + name;
    }
    host_.log.LogWarning(
        "Lingering Job objects exist in JobQueue's pWaitingOnEvent collection after " +
        std::string("AddinApp fired Kill event.  They are of the following types: ") + types);
  }
  if (non_support_tasks_.Count() > 0) {
    host_.log.LogWarning("Non-support tasks failed to remove themselves in JobQueue CheckLinger");
  }
}

}  // namespace zintra
