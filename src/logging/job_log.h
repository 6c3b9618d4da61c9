// JobLog: the copy job that files a logged copy of an item in the log folder (journal
// or e-mail folder) of a folder set. See CopyJob for the whole contract.
#pragma once

#include <memory>

#include "src/logging/copy_job.h"

namespace zintra {

class JobLog : public CopyJob {
 public:
  explicit JobLog(std::weak_ptr<LoggingAddin> app) : CopyJob(std::move(app), CopyKind::kLogged) {}

 protected:
  const char* ClassName() const override { return "JobLog"; }
  const char* DescriptionPrefix() const override { return "Create logged copy of '"; }
};

}  // namespace zintra
