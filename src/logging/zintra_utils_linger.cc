// ZintraUtils' lingering-reference registrations and the check run at tear-down.
#include <utility>
#include <vector>

#include "src/errors/cached_error.h"
#include "src/errors/error_handling.h"
#include "src/jobs/i_check_linger.h"
#include "src/logging/lingering_jobs.h"
#include "src/logging/zintra_utils.h"

namespace zintra {

void ZintraUtils::SetCheckLinger(std::shared_ptr<ICheckLinger> obj) {
  if (obj) check_linger_.push_back(std::move(obj));
}

void ZintraUtils::WatchLingeringJob(const char* what, const std::shared_ptr<IJob>& job) {
  if (!lingering_jobs_) {
    lingering_jobs_ = std::make_shared<LingeringJobs>(errors_);
    SetCheckLinger(lingering_jobs_);
  }
  lingering_jobs_->Watch(what, job);
}

void ZintraUtils::CheckLingering() {
  if (check_lingering_entered_) {
    errors_.LogWarning("CheckLingering entered more than once");
    return;
  }
  check_lingering_entered_ = true;
  // Entry 1 is taken off before its check runs, so it is removed whether it fails
  // or not, and an object registered by a check is checked in its turn.
  while (!check_linger_.empty()) {
    std::shared_ptr<ICheckLinger> entry = std::move(check_linger_.front());
    check_linger_.erase(check_linger_.begin());
    try {
      entry->CheckLingeringRefs();
    } catch (...) {
      CachedError rec;
      rec.SetToCurrentException("ZintraUtils", "CheckLingering");
      errors_.LogCachedError(rec);
      errors_.LogWarning("An ICheckLinger raised an error");
    }
  }
  check_linger_.shrink_to_fit();
}

}  // namespace zintra
