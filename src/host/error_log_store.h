// ErrorLogStore: the external error-log component ("ZintraErrorLog"). It keeps the
// log in one database file and keeps that file within a size cap by dropping the
// oldest entries first. One instance per add-in, called on the user-interface thread.
//
// Every member may throw ZError when the platform fails (file not writable, database
// damaged); callers decide whether to absorb it. Writes before a successful Open
// throw ZError 91.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

namespace zintra {

// The version columns every entry carries, each already labelled with its file.
struct ErrorLogVersions {
  std::string addin;
  std::string controls;
  std::string outlook;
  std::string outlook_product;
  std::string library;
  std::string others;
};

class ErrorLogStore {
 public:
  virtual ~ErrorLogStore() = default;

  // Opens (with `create`, creates) the database at `path`, a full file name.
  // `max_size_kb` caps the file; 0 or less means no cap.
  virtual void Open(const std::string& path, int32_t max_size_kb, bool create) = 0;
  virtual void LogError(const std::string& app_id, const std::string& description,
                        const std::string& last_dll_error, int32_t number,
                        const std::string& source, const std::string& module,
                        const std::string& procedure, const std::string& line,
                        const std::string& trail, const ErrorLogVersions& versions) = 0;
  virtual void LogMessage(const std::string& app_id, const std::string& text, bool warning,
                          const ErrorLogVersions& versions) = 0;
  // Moves the open database to `new_path` (copied there under the new name, the old
  // file then deleted); later writes go to the new file. The old file is kept when
  // the copy fails.
  virtual void Relocate(const std::string& new_path) = 0;
  // The file currently open, "" before Open.
  virtual std::string Path() const = 0;
};

// Creates the component; throws ZError when it cannot be created (not installed).
class ErrorLogFactory {
 public:
  virtual ~ErrorLogFactory() = default;
  virtual std::shared_ptr<ErrorLogStore> CreateErrorLog() = 0;
};

}  // namespace zintra
