// SqliteErrorLog: the error-log component over an SQLite database file. Entries go to
// the table ErrorLog, one row per message or error record, oldest first by ID. After
// every write the oldest rows are deleted until the file fits the size cap (the newest
// entry is always kept). The database is created with auto_vacuum=FULL so that freed
// pages leave the file at once.
//
// Paths arrive in the platform's form ("C:\Logs\ZINTRAERRORS.MDB"). Off Windows a
// backslash is a folder separator and a drive-letter path is placed under `root`
// (C:\Logs -> <root>/C/Logs), so tests keep every file inside a temporary folder; such a
// file is written without flushes to the disk.
// Failures throw ZError 75 (path/file access) naming the file and SQLite's message.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "src/host/error_log_store.h"

struct sqlite3;

namespace zintra::hosts {

// One row of the table, as support reads it.
struct ErrorLogRow {
  int64_t id = 0;
  std::string logged_at;  // local time, "YYYY-MM-DD HH:MM:SS.SSS"
  std::string kind;       // "Error", "Warning" or "Message"
  std::string app_id;
  std::string description;  // the message text for messages and warnings
  std::string last_dll_error;
  int32_t error_number = 0;
  std::string source;
  std::string module;
  std::string procedure;
  std::string line;
  std::string trail;
  ErrorLogVersions versions;
};

class SqliteErrorLog : public ErrorLogStore {
 public:
  explicit SqliteErrorLog(std::filesystem::path root = {});
  ~SqliteErrorLog() override;
  SqliteErrorLog(const SqliteErrorLog&) = delete;
  SqliteErrorLog& operator=(const SqliteErrorLog&) = delete;

  void Open(const std::string& path, int32_t max_size_kb, bool create) override;
  void LogError(const std::string& app_id, const std::string& description,
                const std::string& last_dll_error, int32_t number, const std::string& source,
                const std::string& module, const std::string& procedure, const std::string& line,
                const std::string& trail, const ErrorLogVersions& versions) override;
  void LogMessage(const std::string& app_id, const std::string& text, bool warning,
                  const ErrorLogVersions& versions) override;
  void Relocate(const std::string& new_path) override;
  std::string Path() const override { return path_; }

  // Every row, oldest first.
  std::vector<ErrorLogRow> Rows() const;
  // The database file on this machine's file system ("" before Open).
  std::filesystem::path NativePath() const { return native_path_; }
  // Bytes the database occupies (page count times page size).
  int64_t DatabaseBytes() const;
  // Maps a platform path to this machine's file system as described above.
  std::filesystem::path ToNative(const std::string& path) const;

  // Reads the rows of a closed or open log file without keeping it open.
  static std::vector<ErrorLogRow> ReadRows(const std::filesystem::path& file);

 private:
  void OpenNative(const std::filesystem::path& file, bool create);
  void Close();
  void Insert(const ErrorLogRow& row);
  void InsertRow(const ErrorLogRow& row);
  bool EnforceCap();  // true when rows were dropped
  void Exec(const char* sql);
  [[noreturn]] void Fail(const std::string& what) const;
  int64_t QueryInt(const char* sql) const;

  std::filesystem::path root_;
  std::string path_;
  std::filesystem::path native_path_;
  int64_t max_bytes_ = 0;
  sqlite3* db_ = nullptr;
};

// Creates SqliteErrorLog components; can be told that the component is not installed.
class SqliteErrorLogFactory : public ErrorLogFactory {
 public:
  explicit SqliteErrorLogFactory(std::filesystem::path root = {}) : root_(std::move(root)) {}

  std::shared_ptr<ErrorLogStore> CreateErrorLog() override;

  // While unavailable, CreateErrorLog throws ZError 429 (cannot create object).
  void SetAvailable(bool available) { available_ = available; }
  // The components created so far, newest last.
  const std::vector<std::shared_ptr<SqliteErrorLog>>& Created() const { return created_; }

 private:
  std::filesystem::path root_;
  bool available_ = true;
  std::vector<std::shared_ptr<SqliteErrorLog>> created_;
};

}  // namespace zintra::hosts
