// JobDelayedTrigger: waits DelayMs without blocking Outlook by re-queueing itself
// at the end of the queue on every activation, then raises Trigger. While it waits
// it keeps the queue's timer running. Aborting it raises Aborted. After either
// event the job releases the add-in and does nothing more; a listener wanting
// another delay makes a new job or calls Restart on one still waiting.
//
// Elapsed time comes from the seconds-since-midnight clock. When the clock has
// passed midnight the elapsed time is taken as 1,440,000 - start + now, a value far
// beyond any delay, so the trigger fires at the first activation after midnight.
//
// Create with std::make_shared (it queues itself). Borrows the clock and pump; the
// add-in is held weakly. Errors in an activation are logged through the queue.
#pragma once

#include <memory>
#include <string>

#include "src/core/event.h"
#include "src/host/clock.h"
#include "src/host/message_pump.h"
#include "src/jobs/i_job.h"
#include "src/jobs/job_addin.h"

namespace zintra {

// Deliberately not the 86,400 seconds of a day: see above.
inline constexpr double kDelayedTriggerMidnightWrap = 1440000;

class JobDelayedTrigger : public IJob, public std::enable_shared_from_this<JobDelayedTrigger> {
 public:
  JobDelayedTrigger(Clock& clock, MessagePump& pump) : clock_(clock), pump_(pump) {}

  // Starts the wait now and queues the job (not top priority).
  void Initialize(const std::shared_ptr<JobAddin>& AddinApp, float DelayMs);
  // Starts the wait again from now with a new delay; the job stays queued.
  void Restart(float DelayMs);

  void Activate() override;
  void Abort() override;
  std::string JobDescription() override { return "JobDelayedTrigger"; }

  Event<> Trigger;
  Event<> Aborted;

 private:
  void QueueSelf();

  Clock& clock_;
  MessagePump& pump_;
  std::weak_ptr<JobAddin> addin_;
  float start_time_ = 0;  // seconds since midnight
  float delay_ = 0;       // seconds
};

}  // namespace zintra
