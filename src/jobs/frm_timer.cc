#include "src/jobs/frm_timer.h"

#include <utility>

#include "src/jobs/job_queue.h"

namespace zintra {

frmTimer::frmTimer(Clock& clock, std::unique_ptr<Timer> timer)
    : clock_(clock), timer_(std::move(timer)) {
  timer_->SetEnabled(false);
  tick_ = timer_->Tick.Connect([this] { Timer1_Timer(); });
}

void frmTimer::Activate() {
  if (pActive) return;
  pActive = true;
  timer_->SetEnabled(true);
}

void frmTimer::Deactivate() {
  pActive = false;
  timer_->SetEnabled(false);
}

void frmTimer::Timer1_Timer() {
  // The queue may unload this form (Kill) while it works.
  std::shared_ptr<frmTimer> keep = weak_from_this().lock();
  const float start = clock_.SecondsSinceMidnight();
  timer_->SetEnabled(false);
  for (;;) {
    if (job_queue_ != nullptr) job_queue_->TimerWork();
    if (!pActive) break;
    // Both tests include equality: the second ends the slice when the reading has not
    // moved since the start (or went back past midnight).
    if (start + TimeChunkInSeconds <= clock_.SecondsSinceMidnight()) break;
    if (clock_.SecondsSinceMidnight() <= start) break;
  }
  if (pActive) timer_->SetEnabled(true);
}

}  // namespace zintra
