// frmTimer: the hidden form whose timer drives the job queue in asynchronous mode.
// Each tick switches the timer off, runs queue work one activation at a time until
// TimeChunkInSeconds has passed on the seconds-since-midnight clock (or the clock
// reads no later than at the start: nothing measurable passed, or midnight went
// by), and switches the timer back on if the form is still active.
//
// Owns its timer; borrows the clock. The queue is a plain back-pointer set by the
// queue and cleared by JobQueue::Kill; destroying the form from inside a tick is
// safe when the form is held by shared_ptr.
#pragma once

#include <memory>

#include "src/core/event.h"
#include "src/host/clock.h"
#include "src/host/timer.h"

namespace zintra {

class JobQueue;

class frmTimer : public std::enable_shared_from_this<frmTimer> {
 public:
  frmTimer(Clock& clock, std::unique_ptr<Timer> timer);
  frmTimer(const frmTimer&) = delete;
  frmTimer& operator=(const frmTimer&) = delete;

  // Switches the timer on unless the form is already active.
  void Activate();
  // Always: clears the active flag and switches the timer off.
  void Deactivate();
  bool Active() const { return pActive; }

  JobQueue* GetJobQueue() const { return job_queue_; }
  void SetJobQueue(JobQueue* queue) { job_queue_ = queue; }
  float TimeChunkInSeconds = 0;

  Timer& Timer1() { return *timer_; }
  // The timer's event; public so a host or test can drive a tick directly.
  void Timer1_Timer();

 private:
  Clock& clock_;
  std::unique_ptr<Timer> timer_;
  JobQueue* job_queue_ = nullptr;
  bool pActive = false;
  Connection tick_;
};

}  // namespace zintra
