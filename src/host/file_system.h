// FileSystem: whole-file access to the platform's files, as the run time's Open/Line
// Input/Print statements gave it. Paths are the platform's own ("C:\Temp\a.txt"); file
// contents are bytes (the system code page), passed through unchanged. A failing call
// throws ZError with the run time's file error number and a description naming the path:
// kErrFileNotFound (53), kErrPermissionDenied (70), kErrPathFileAccess (75) for a file
// that is locked or cannot be opened, kErrPathNotFound (76) for a missing folder.
// Called only on the user-interface thread.
#pragma once

#include <cstdint>
#include <string>

namespace zintra {

inline constexpr int32_t kErrFileNotFound = 53;
inline constexpr int32_t kErrPermissionDenied = 70;
inline constexpr int32_t kErrPathFileAccess = 75;
inline constexpr int32_t kErrPathNotFound = 76;

class FileSystem {
 public:
  virtual ~FileSystem() = default;

  // Open For Input, read to the end: the whole content.
  virtual std::string ReadAll(const std::string& path) = 0;
  // Open For Output: creates or truncates the file and writes `contents`.
  virtual void WriteAll(const std::string& path, const std::string& contents) = 0;
  // Open For Append: creates the file when missing and adds `contents` at its end
  // (an empty `contents` only proves the file can be opened for writing).
  virtual void Append(const std::string& path, const std::string& contents) = 0;
  // Whether a file (not a folder) exists at `path`; never throws.
  virtual bool FileExists(const std::string& path) = 0;
  // Whether a folder exists at `path`; never throws.
  virtual bool FolderExists(const std::string& path) = 0;
  // Kill: removes a file.
  virtual void Remove(const std::string& path) = 0;
  // MkDir: creates one folder (its parent must exist).
  virtual void MakeFolder(const std::string& path) = 0;
};

}  // namespace zintra
