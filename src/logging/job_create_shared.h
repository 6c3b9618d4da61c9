// JobCreateShared: the copy job that files a copy of an appointment, journal entry or
// task in the shared calendar, journal or task list of a folder set. See CopyJob for
// the whole contract.
#pragma once

#include <memory>

#include "src/logging/copy_job.h"

namespace zintra {

class JobCreateShared : public CopyJob {
 public:
  explicit JobCreateShared(std::weak_ptr<LoggingAddin> app)
      : CopyJob(std::move(app), CopyKind::kShared) {}

 protected:
  const char* ClassName() const override { return "JobCreateShared"; }
  const char* DescriptionPrefix() const override { return "Create Shared Folder copy of '"; }
};

}  // namespace zintra
