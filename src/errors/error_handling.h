// ErrorHandling: the add-in's writer of log messages and error records
// (modErrorHandling). One instance, created first by the composition root and handed
// to every subsystem by reference; it holds references to its ports, which must
// outlive it.
//
// The log is opened on the first write: a fresh settings object is read with
// JustCritical, the database "ZINTRAERRORS.MDB" is opened in the log folder with the
// configured size cap. What is kept depends on the level read then (3 everything,
// 2 errors and warnings, 1 errors only, 0 nothing). A component that cannot be created
// or opened is forgotten: later writes do nothing. No member throws.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "src/host/error_log_store.h"

namespace zintra {

class CachedError;
class FileSystem;
class MsgBox;
class Platform;
class RegSettings;
class Registry;
class StringTable;

inline constexpr char kErrorLogAppId[] = "Zintra3";
inline constexpr char kErrorLogFileName[] = "ZINTRAERRORS.MDB";

// The ports the error handling works through.
struct ErrorHandlingHost {
  ErrorLogFactory& log_factory;
  MsgBox& msg_box;
  Registry& registry;
  FileSystem& file_system;
  Platform& platform;
  const StringTable& strings;
};

class ErrorHandling {
 public:
  explicit ErrorHandling(ErrorHandlingHost host);
  ~ErrorHandling();
  ErrorHandling(const ErrorHandling&) = delete;
  ErrorHandling& operator=(const ErrorHandling&) = delete;

  void WriteLogMessage(const std::string& text, bool warning);
  void LogWarning(const std::string& text);
  // Whether WriteLogMessage would keep a line that is not a warning (opens the log).
  // Asked before every debug line, so once the log is open it costs two reads.
  bool KeepsDebugLines() {
    return (open_attempted_ ? store_ != nullptr : EnsureOpen()) &&
           log_level_ >= kLevelKeepingDebugLines;
  }
  // Nothing for a record whose Number is 0.
  void LogCachedError(const CachedError& rec);
  // A critical message box with rec.toString(true) under the product name; nothing
  // for a record whose Number is 0.
  void DisplayCachedError(const CachedError& rec);

  // Version registration, handed over at start-up.
  void SetOutlookVersions(const std::string& version, const std::string& product_version);
  void SetAddinVersion(const std::string& version);
  void SetRunJobsAsync(bool run_jobs_async);
  // The folder holding the add-in's files, whose versions the entries carry.
  void SetAddinFolder(const std::string& folder);

  // Settings replaced: a changed log folder moves the database file there; a changed
  // level or cap applies to later writes.
  void Addin_RegSettingsChanged(const RegSettings& old_settings, const RegSettings& new_settings);

  // The add-in's debug mode (forms come to the front when shown).
  bool DebugMode() const { return debug_mode_; }
  void SetDebugMode(bool on) { debug_mode_ = on; }

  // The database file in use, "" while the log is not open.
  std::string LogFilePath() const;
  // The level in force once the log is open (-1 before).
  int32_t LogLevel() const { return log_level_; }
  // The full file name for a LogPath setting (blank: the default data folder).
  std::string LogFileFor(const std::string& log_path) const;
  // The version columns as the next entry would carry them.
  ErrorLogVersions Versions();
  // Writes the component refused (it stays in use; nothing else reports them).
  int32_t FailedWrites() const { return failed_writes_; }

 private:
  // Opens the log on first use; false when there is no usable component.
  bool EnsureOpen();
  std::string FileVersionIn(const std::string& file);
  std::string OutlookFileVersion();

  ErrorHandlingHost host_;
  std::shared_ptr<ErrorLogStore> store_;
  bool open_attempted_ = false;
  static constexpr int32_t kLevelKeepingDebugLines = 3;  // everything
  int32_t log_level_ = -1;
  int32_t max_size_kb_ = 0;
  int32_t failed_writes_ = 0;
  bool debug_mode_ = false;
  std::string outlook_version_;
  std::string outlook_product_version_;
  std::string addin_version_;
  std::string addin_folder_;
  std::optional<bool> run_jobs_async_;
  std::map<std::string, std::string> file_versions_;  // by file name, read once
};

}  // namespace zintra
