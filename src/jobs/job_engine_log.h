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
  // Whether a plain line written now would be kept (the add-in's log keeps them only
  // at the level that keeps everything). What only such a line would show is then not
  // read from Outlook: each read is a call into the host that nobody would see.
  virtual bool KeepsDebugLines() { return true; }
};

}  // namespace zintra
