#include "src/jobs/job_delayed_trigger.h"

#include "src/errors/cached_error.h"
#include "src/jobs/job_queue.h"

namespace zintra {

void JobDelayedTrigger::Initialize(const std::shared_ptr<JobAddin>& AddinApp, float DelayMs) {
  addin_ = AddinApp;
  start_time_ = clock_.SecondsSinceMidnight();
  delay_ = DelayMs / 1000.0f;
  QueueSelf();
}

void JobDelayedTrigger::Restart(float DelayMs) {
  start_time_ = clock_.SecondsSinceMidnight();
  delay_ = DelayMs / 1000.0f;
}

void JobDelayedTrigger::QueueSelf() {
  std::shared_ptr<JobAddin> addin = addin_.lock();
  if (!addin) return;
  if (std::shared_ptr<JobQueue> queue = addin->GetJobQueue())
    queue->Queue(shared_from_this(), false);
}

void JobDelayedTrigger::Activate() {
  std::shared_ptr<JobAddin> addin = addin_.lock();
  if (!addin) return;  // triggered, aborted or the add-in is gone
  try {
    const double now = clock_.SecondsSinceMidnight();
    const double elapsed =
        now >= start_time_ ? now - start_time_ : kDelayedTriggerMidnightWrap - start_time_ + now;
    if (elapsed < delay_) {
      if (!addin->Outlook12OrHigher()) pump_.DoEvents();
      QueueSelf();
      return;
    }
    Trigger.Raise();
    addin_.reset();
  } catch (...) {
    CachedError rec;
    rec.SetToCurrentException("JobDelayedTrigger", "IJob_Activate");
    if (std::shared_ptr<JobQueue> queue = addin->GetJobQueue()) queue->Log().LogCachedError(rec);
  }
}

void JobDelayedTrigger::Abort() {
  try {
    Aborted.Raise();
  } catch (...) {
    // An abort goes through whatever a listener does.
  }
  addin_.reset();
}

}  // namespace zintra
