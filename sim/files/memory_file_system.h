// MemoryFileSystem: files and folders in memory. Paths compare without regard to letter
// case, and "/" is taken for "\". Drive roots ("C:") and share roots ("\\server\share")
// always exist; any other folder exists once made. A file can be made read-only (opening
// it for writing or removing it fails with 75) or unopenable (every open fails with 70,
// as a file locked or denied to the user), and any port member can be told to fail.
// The fixture side (AddFile, Contents, ...) bypasses those rules and makes missing
// folders.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>

#include "src/host/file_system.h"

namespace zintra::sim {

class MemoryFileSystem : public FileSystem {
 public:
  // --- FileSystem ---
  std::string ReadAll(const std::string& path) override;
  void WriteAll(const std::string& path, const std::string& contents) override;
  void Append(const std::string& path, const std::string& contents) override;
  bool FileExists(const std::string& path) override;
  bool FolderExists(const std::string& path) override;
  void Remove(const std::string& path) override;
  void MakeFolder(const std::string& path) override;

  // --- Fixture side ---
  void AddFile(const std::string& path, const std::string& contents);
  void AddFolder(const std::string& path);  // with its parents
  std::optional<std::string> Contents(const std::string& path) const;
  void SetReadOnly(const std::string& path, bool read_only);
  void SetUnopenable(const std::string& path, bool unopenable);
  // Makes member `member` ("ReadAll", "WriteAll", ...) throw ZError `error` after `skip`
  // more successful calls, `times` times (-1: always).
  void FailCall(const std::string& member, int32_t error, int skip = 0, int times = 1);
  void ClearFaults() { faults_.clear(); }

 private:
  struct File {
    std::string path;  // as first written
    std::string contents;
    bool read_only = false;
    bool unopenable = false;
  };
  struct Fault {
    int32_t error;
    int skip;
    int times;
  };

  static std::string Key(const std::string& path);
  static std::string ParentKey(const std::string& key);
  bool FolderKeyExists(const std::string& key) const;
  File& Existing(const std::string& path);
  // The file to write, created when missing; checks folder and access rules.
  File& Writable(const std::string& path);
  void CheckFault(const std::string& member, const std::string& path);

  std::map<std::string, File> files_;
  std::set<std::string> folders_;
  std::map<std::string, Fault> faults_;
};

}  // namespace zintra::sim
