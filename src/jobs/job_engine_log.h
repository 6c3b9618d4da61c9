// JobEngineLog: where the job engine writes its log lines and error records (the
// add-in's error handling, modErrorHandling). It outlives the queue's add-in
// reference, because the lingering-reference check logs after JobQueue::Kill.
// No member throws.
#pragma once

#include <string>

namespace zintra {

class CachedError;

class JobEngineLog {
 public:
  virtual ~JobEngineLog() = default;
  virtual void WriteLogMessage(const std::string& text, bool warning) = 0;
  virtual void LogWarning(const std::string& text) = 0;
  virtual void LogCachedError(const CachedError& rec) = 0;
};

}  // namespace zintra
