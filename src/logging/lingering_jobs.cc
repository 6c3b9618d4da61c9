#include "src/logging/lingering_jobs.h"

#include <string>

#include "src/errors/error_handling.h"
#include "src/jobs/i_job.h"

namespace zintra {

void LingeringJobs::Watch(const char* what, const std::shared_ptr<IJob>& job) {
  // Dropping the finished before the list grows keeps it as long as the jobs alive at
  // once (at most twice that), at a constant cost per watch.
  if (watched_.size() == watched_.capacity()) {
    std::erase_if(watched_, [](const Entry& e) { return e.job.expired(); });
  }
  watched_.push_back({what, job});
}

void LingeringJobs::CheckLingeringRefs() {
  for (const Entry& e : watched_) {
    if (std::shared_ptr<IJob> job = e.job.lock()) {
      log_.LogWarning(std::string(e.what) + job->JobDescription());
    }
  }
}

}  // namespace zintra
