// JobLog: the copy job that files a logged copy of an item in the log folder (journal
// or e-mail folder) of a folder set. See CopyJob for the whole contract.
//
// The class lives in zintra::item_logging because zintra::JobLog already names the
// job engine's log interface (src/jobs/job_log.h); log lines and descriptions use the
// plain name "JobLog".
#pragma once

#include <memory>

#include "src/logging/copy_job.h"

namespace zintra::item_logging {

class JobLog : public CopyJob {
 public:
  explicit JobLog(std::weak_ptr<LoggingAddin> app) : CopyJob(std::move(app), CopyKind::kLogged) {}

 protected:
  const char* ClassName() const override { return "JobLog"; }
  const char* DescriptionPrefix() const override { return "Create logged copy of '"; }
};

}  // namespace zintra::item_logging
