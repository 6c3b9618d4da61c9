// ErrorsJobLog: the job engine's log (JobEngineLog) written through the add-in's error
// handling. Borrows the ErrorHandling, which must outlive it. Never throws.
#pragma once

#include <string>

#include "src/errors/error_handling.h"
#include "src/jobs/job_engine_log.h"

namespace zintra {

class ErrorsJobLog : public JobEngineLog {
 public:
  explicit ErrorsJobLog(ErrorHandling& errors) : errors_(errors) {}
  void WriteLogMessage(const std::string& text, bool warning) override {
    errors_.WriteLogMessage(text, warning);
  }
  void LogWarning(const std::string& text) override { errors_.LogWarning(text); }
  void LogCachedError(const CachedError& rec) override { errors_.LogCachedError(rec); }
  bool KeepsDebugLines() override { return errors_.KeepsDebugLines(); }

 private:
  ErrorHandling& errors_;
};

}  // namespace zintra
