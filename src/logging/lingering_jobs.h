// LingeringJobs: the jobs that logging jobs start (logged and shared copies, audits),
// held weakly so that the tear-down's lingering-reference check can name any still
// alive once their owners were killed. One watch serves the whole session and is
// registered once: entries whose job is gone are dropped whenever the list would grow,
// so a session that logs thousands of items keeps only the jobs still running.
#pragma once

#include <memory>
#include <vector>

#include "src/jobs/i_check_linger.h"

namespace zintra {

class ErrorHandling;
class IJob;

class LingeringJobs : public ICheckLinger {
 public:
  explicit LingeringJobs(ErrorHandling& log) : log_(log) {}

  // `what` opens the warning for this job if it lingers, e.g. "Lingering JobLog after
  // JobProcess killed: "; the job's description follows it. `what` must outlive the watch.
  void Watch(const char* what, const std::shared_ptr<IJob>& job);
  // Jobs watched, those already gone but not yet dropped included.
  size_t Watched() const { return watched_.size(); }

  void CheckLingeringRefs() override;

 private:
  struct Entry {
    const char* what;
    std::weak_ptr<IJob> job;
  };

  ErrorHandling& log_;
  std::vector<Entry> watched_;
};

}  // namespace zintra
