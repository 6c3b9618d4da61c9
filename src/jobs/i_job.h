// IJob: one piece of slow work, cut into short activations run by the JobQueue.
//
// Contract: the queue takes a job off its list before activating it. A job with
// work left re-queues itself (JobQueue::Queue(self, true)) before Activate returns;
// one that does not is finished and the queue drops it. While the queue aborts,
// Abort is called instead of Activate and the job must not re-queue itself. An
// activation must be short: the time slice is only tested between activations.
// Both may throw; the queue logs the error and goes on. Jobs are held by
// shared_ptr; the queue keeps a queued or active job alive.
#pragma once

#include <string>

namespace zintra {

class IJob {
 public:
  virtual ~IJob() = default;
  virtual void Activate() = 0;
  virtual void Abort() = 0;
  // One line for log lines and the task list.
  virtual std::string JobDescription() = 0;
};

}  // namespace zintra
