#include "hosts/errorlog/sqlite_error_log.h"

#include <sqlite3.h>

#include <algorithm>
#include <string>
#include <system_error>
#include <utility>

#include "src/core/z_error.h"

namespace zintra::hosts {
namespace {

constexpr int32_t kErrPathFileAccess = 75;
constexpr int32_t kErrCannotCreateObject = 429;

// auto_vacuum must be set before the first table exists to take effect.
// A log line is worth one append to the write-ahead log, not a sync of the disk: in WAL
// mode with NORMAL a commit is written through to the operating system (a crash of the
// process loses no row) and the disk is synced only when the WAL is copied back into the
// database (every quarter of the cap, see Open, and after each trim, so the file on disk
// keeps within the cap); a power loss may lose the last rows, never the file. A sync per
// line made a busy log (every line kept) a hundred times slower. The WAL is kept to 1 MB
// once copied back, and goes away when the log is closed. Small pages let a small cap
// hold a fair number of rows.
constexpr const char* kSchema =
    "PRAGMA page_size = 1024;"
    "PRAGMA auto_vacuum = FULL;"
    "PRAGMA journal_mode = WAL;"
    "PRAGMA synchronous = NORMAL;"
    "PRAGMA journal_size_limit = 1048576;"
    "CREATE TABLE IF NOT EXISTS ErrorLog ("
    " ID INTEGER PRIMARY KEY AUTOINCREMENT,"
    " LoggedAt TEXT NOT NULL DEFAULT (strftime('%Y-%m-%d %H:%M:%f', 'now', 'localtime')),"
    " Kind TEXT NOT NULL,"
    " AppID TEXT NOT NULL,"
    " Description TEXT NOT NULL,"
    " LastDllError TEXT NOT NULL,"
    " ErrorNumber INTEGER NOT NULL,"
    " Source TEXT NOT NULL,"
    " Module TEXT NOT NULL,"
    " Procedure TEXT NOT NULL,"
    " Line TEXT NOT NULL,"
    " Trail TEXT NOT NULL,"
    " AddinVersion TEXT NOT NULL,"
    " ControlsVersion TEXT NOT NULL,"
    " OutlookVersion TEXT NOT NULL,"
    " OutlookProductVersion TEXT NOT NULL,"
    " LibraryVersion TEXT NOT NULL,"
    " OtherVersions TEXT NOT NULL);";

constexpr const char* kSelect =
    "SELECT ID, LoggedAt, Kind, AppID, Description, LastDllError, ErrorNumber, Source, Module,"
    " Procedure, Line, Trail, AddinVersion, ControlsVersion, OutlookVersion,"
    " OutlookProductVersion, LibraryVersion, OtherVersions FROM ErrorLog ORDER BY ID";

// Owns one prepared statement.
class Statement {
 public:
  Statement(sqlite3* db, const char* sql) {
    if (sqlite3_prepare_v2(db, sql, -1, &stmt_, nullptr) != SQLITE_OK) stmt_ = nullptr;
  }
  ~Statement() { sqlite3_finalize(stmt_); }
  Statement(const Statement&) = delete;
  Statement& operator=(const Statement&) = delete;

  bool ok() const { return stmt_ != nullptr; }
  sqlite3_stmt* get() const { return stmt_; }
  void Bind(int index, const std::string& text) {
    sqlite3_bind_text(stmt_, index, text.data(), static_cast<int>(text.size()), SQLITE_TRANSIENT);
  }
  void Bind(int index, int64_t value) { sqlite3_bind_int64(stmt_, index, value); }
  std::string Text(int column) const {
    const unsigned char* text = sqlite3_column_text(stmt_, column);
    return text == nullptr ? std::string()
                           : std::string(reinterpret_cast<const char*>(text),
                                         static_cast<size_t>(sqlite3_column_bytes(stmt_, column)));
  }

 private:
  sqlite3_stmt* stmt_ = nullptr;
};

std::vector<ErrorLogRow> SelectRows(sqlite3* db) {
  std::vector<ErrorLogRow> rows;
  Statement st(db, kSelect);
  if (!st.ok()) return rows;
  while (sqlite3_step(st.get()) == SQLITE_ROW) {
    ErrorLogRow row;
    row.id = sqlite3_column_int64(st.get(), 0);
    row.logged_at = st.Text(1);
    row.kind = st.Text(2);
    row.app_id = st.Text(3);
    row.description = st.Text(4);
    row.last_dll_error = st.Text(5);
    row.error_number = sqlite3_column_int(st.get(), 6);
    row.source = st.Text(7);
    row.module = st.Text(8);
    row.procedure = st.Text(9);
    row.line = st.Text(10);
    row.trail = st.Text(11);
    row.versions.addin = st.Text(12);
    row.versions.controls = st.Text(13);
    row.versions.outlook = st.Text(14);
    row.versions.outlook_product = st.Text(15);
    row.versions.library = st.Text(16);
    row.versions.others = st.Text(17);
    rows.push_back(std::move(row));
  }
  return rows;
}

}  // namespace

SqliteErrorLog::SqliteErrorLog(std::filesystem::path root) : root_(std::move(root)) {}

SqliteErrorLog::~SqliteErrorLog() { Close(); }

std::filesystem::path SqliteErrorLog::ToNative(const std::string& path) const {
#ifdef _WIN32
  return std::filesystem::path(path);
#else
  std::string p = path;
  for (char& c : p) {
    if (c == '\\') c = '/';
  }
  bool drive = p.size() >= 2 && p[1] == ':' &&
               ((p[0] >= 'A' && p[0] <= 'Z') || (p[0] >= 'a' && p[0] <= 'z'));
  if (drive) {
    std::string rest = p.substr(2);
    while (!rest.empty() && rest.front() == '/') rest.erase(0, 1);
    std::filesystem::path base = root_.empty() ? std::filesystem::current_path() : root_;
    return base / std::string(1, p[0]) / rest;
  }
  return std::filesystem::path(p);
#endif
}

void SqliteErrorLog::Fail(const std::string& what) const {
  std::string detail = db_ != nullptr ? sqlite3_errmsg(db_) : "no database";
  throw ZError(kErrPathFileAccess, what + " '" + path_ + "': " + detail, "ZintraErrorLog");
}

void SqliteErrorLog::Exec(const char* sql) {
  char* message = nullptr;
  if (sqlite3_exec(db_, sql, nullptr, nullptr, &message) != SQLITE_OK) {
    std::string text = message != nullptr ? message : "";
    sqlite3_free(message);
    throw ZError(kErrPathFileAccess, "Error log '" + path_ + "': " + text, "ZintraErrorLog");
  }
}

int64_t SqliteErrorLog::QueryInt(const char* sql) const {
  Statement st(db_, sql);
  if (!st.ok() || sqlite3_step(st.get()) != SQLITE_ROW) Fail("Cannot read");
  return sqlite3_column_int64(st.get(), 0);
}

void SqliteErrorLog::Close() {
  if (db_ == nullptr) return;
  // Back to a single file: the WAL is copied in and removed here rather than left to the
  // last close, which keeps it (and its index) beside the log when a read-only reader
  // closed last or the platform could not delete it at once.
  sqlite3_exec(db_, "PRAGMA journal_mode = DELETE;", nullptr, nullptr, nullptr);
  sqlite3_close_v2(db_);
  db_ = nullptr;
}

void SqliteErrorLog::OpenNative(const std::filesystem::path& file, bool create) {
  Close();
  if (create && file.has_parent_path()) {
    std::error_code ec;
    std::filesystem::create_directories(file.parent_path(), ec);
  }
  int flags = SQLITE_OPEN_READWRITE | (create ? SQLITE_OPEN_CREATE : 0);
  if (sqlite3_open_v2(file.string().c_str(), &db_, flags, nullptr) != SQLITE_OK) {
    std::string detail = db_ != nullptr ? sqlite3_errmsg(db_) : "out of memory";
    Close();
    throw ZError(kErrPathFileAccess, "Cannot open error log '" + path_ + "': " + detail,
                 "ZintraErrorLog");
  }
  sqlite3_busy_timeout(db_, 2000);
  try {
    Exec(kSchema);
    // A store under a root is on a simulated disk (the tests, zintra-sim), where nothing
    // has to outlive a crash: without a flush per entry, thousands of errors logged in
    // one run take milliseconds instead of a minute.
    if (!root_.empty()) Exec("PRAGMA synchronous = OFF;");
  } catch (...) {
    Close();
    throw;
  }
  native_path_ = file;
}

void SqliteErrorLog::Open(const std::string& path, int32_t max_size_kb, bool create) {
  path_ = path;
  max_bytes_ = max_size_kb > 0 ? int64_t{max_size_kb} * 1024 : 0;
  try {
    OpenNative(ToNative(path), create);
  } catch (...) {
    path_.clear();
    native_path_.clear();
    throw;
  }
  // The WAL is copied back into the file at about a quarter of the cap.
  int64_t pages = max_bytes_ > 0 ? max_bytes_ / 4 / QueryInt("PRAGMA page_size") : 4096;
  pages = std::clamp<int64_t>(pages, 16, 4096);
  Exec(("PRAGMA wal_autocheckpoint = " + std::to_string(pages) + ";").c_str());
  if (EnforceCap()) Exec("PRAGMA wal_checkpoint(TRUNCATE);");
}

int64_t SqliteErrorLog::DatabaseBytes() const {
  if (db_ == nullptr) return 0;
  return QueryInt("PRAGMA page_count") * QueryInt("PRAGMA page_size");
}

void SqliteErrorLog::Insert(const ErrorLogRow& row) {
  if (db_ == nullptr) {
    throw ZError(kErrObjectNotSet, "The error log is not open", "ZintraErrorLog");
  }
  InsertRow(row);
  // Freed pages leave the file when a delete commits, so each trim is its own.
  if (EnforceCap()) Exec("PRAGMA wal_checkpoint(TRUNCATE);");
}

void SqliteErrorLog::InsertRow(const ErrorLogRow& row) {
  Statement st(db_,
               "INSERT INTO ErrorLog (Kind, AppID, Description, LastDllError, ErrorNumber, Source,"
               " Module, Procedure, Line, Trail, AddinVersion, ControlsVersion, OutlookVersion,"
               " OutlookProductVersion, LibraryVersion, OtherVersions)"
               " VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9, ?10, ?11, ?12, ?13, ?14, ?15, ?16)");
  if (!st.ok()) Fail("Cannot write to error log");
  st.Bind(1, row.kind);
  st.Bind(2, row.app_id);
  st.Bind(3, row.description);
  st.Bind(4, row.last_dll_error);
  st.Bind(5, int64_t{row.error_number});
  st.Bind(6, row.source);
  st.Bind(7, row.module);
  st.Bind(8, row.procedure);
  st.Bind(9, row.line);
  st.Bind(10, row.trail);
  st.Bind(11, row.versions.addin);
  st.Bind(12, row.versions.controls);
  st.Bind(13, row.versions.outlook);
  st.Bind(14, row.versions.outlook_product);
  st.Bind(15, row.versions.library);
  st.Bind(16, row.versions.others);
  if (sqlite3_step(st.get()) != SQLITE_DONE) Fail("Cannot write to error log");
}

bool SqliteErrorLog::EnforceCap() {
  if (max_bytes_ <= 0 || db_ == nullptr || DatabaseBytes() <= max_bytes_) return false;
  // A log over its cap is cut to seven eighths of it, so that trims (and the sync that
  // follows each) come once in many rows, not with every row. Each pass drops about the
  // share of rows by which the file is too large (at least one), since rows are of
  // similar size; the newest row always stays.
  const int64_t target = max_bytes_ - max_bytes_ / 8;
  bool trimmed = false;
  while (DatabaseBytes() > target) {
    int64_t rows = QueryInt("SELECT COUNT(*) FROM ErrorLog");
    if (rows <= 1) break;
    int64_t bytes = DatabaseBytes();
    int64_t excess = bytes - target;
    int64_t drop = rows * excess / bytes + 1;
    if (drop > rows - 1) drop = rows - 1;
    Statement st(db_,
                 "DELETE FROM ErrorLog WHERE ID IN (SELECT ID FROM ErrorLog ORDER BY ID LIMIT ?1)");
    if (!st.ok()) Fail("Cannot trim error log");
    st.Bind(1, drop);
    if (sqlite3_step(st.get()) != SQLITE_DONE) Fail("Cannot trim error log");
    trimmed = true;
  }
  return trimmed;
}

void SqliteErrorLog::LogError(const std::string& app_id, const std::string& description,
                              const std::string& last_dll_error, int32_t number,
                              const std::string& source, const std::string& module,
                              const std::string& procedure, const std::string& line,
                              const std::string& trail, const ErrorLogVersions& versions) {
  ErrorLogRow row;
  row.kind = "Error";
  row.app_id = app_id;
  row.description = description;
  row.last_dll_error = last_dll_error;
  row.error_number = number;
  row.source = source;
  row.module = module;
  row.procedure = procedure;
  row.line = line;
  row.trail = trail;
  row.versions = versions;
  Insert(row);
}

void SqliteErrorLog::LogMessage(const std::string& app_id, const std::string& text, bool warning,
                                const ErrorLogVersions& versions) {
  ErrorLogRow row;
  row.kind = warning ? "Warning" : "Message";
  row.app_id = app_id;
  row.description = text;
  row.versions = versions;
  Insert(row);
}

void SqliteErrorLog::Relocate(const std::string& new_path) {
  if (db_ == nullptr) {
    throw ZError(kErrObjectNotSet, "The error log is not open", "ZintraErrorLog");
  }
  std::filesystem::path target = ToNative(new_path);
  std::filesystem::path old_file = native_path_;
  std::string old_path = path_;
  if (target == old_file) return;
  Close();
  std::error_code ec;
  if (target.has_parent_path()) std::filesystem::create_directories(target.parent_path(), ec);
  ec.clear();
  std::filesystem::copy_file(old_file, target, std::filesystem::copy_options::overwrite_existing,
                             ec);
  if (ec) {
    // Keep writing to the old file; the caller learns why the move failed.
    OpenNative(old_file, true);
    throw ZError(kErrPathFileAccess,
                 "Cannot copy error log '" + old_path + "' to '" + new_path + "': " + ec.message(),
                 "ZintraErrorLog");
  }
  std::filesystem::remove(old_file, ec);
  // Closing copied the WAL back and removed it; a journal an older version kept beside
  // the file must not stay behind either.
  for (const char* suffix : {"-journal", "-wal", "-shm"}) {
    std::filesystem::path beside = old_file;
    beside += suffix;
    std::filesystem::remove(beside, ec);
  }
  path_ = new_path;
  OpenNative(target, true);
}

std::vector<ErrorLogRow> SqliteErrorLog::Rows() const {
  return db_ == nullptr ? std::vector<ErrorLogRow>() : SelectRows(db_);
}

std::vector<ErrorLogRow> SqliteErrorLog::ReadRows(const std::filesystem::path& file) {
  sqlite3* db = nullptr;
  std::vector<ErrorLogRow> rows;
  if (sqlite3_open_v2(file.string().c_str(), &db, SQLITE_OPEN_READONLY, nullptr) == SQLITE_OK) {
    rows = SelectRows(db);
  }
  sqlite3_close_v2(db);
  return rows;
}

std::shared_ptr<ErrorLogStore> SqliteErrorLogFactory::CreateErrorLog() {
  if (!available_) {
    throw ZError(kErrCannotCreateObject, "ActiveX component can't create object", "ZintraErrorLog");
  }
  auto log = std::make_shared<SqliteErrorLog>(root_);
  created_.push_back(log);
  return log;
}

}  // namespace zintra::hosts
