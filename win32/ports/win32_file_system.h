// Win32FileSystem: the FileSystem port over kernel32's ANSI file calls. The platform's
// errors become the run time's file errors: a missing file 53, a missing folder 76, a
// file another program holds locked 70, a read-only file or a folder where a file was
// expected (and every other refusal) 75; each description names the path and the
// system's reason. Files are opened shared for reading, as the run time did.
#pragma once

#include <string>

#include "src/host/file_system.h"

namespace zintra::win32 {

class Win32FileSystem : public FileSystem {
 public:
  std::string ReadAll(const std::string& path) override;
  void WriteAll(const std::string& path, const std::string& contents) override;
  void Append(const std::string& path, const std::string& contents) override;
  bool FileExists(const std::string& path) override;
  bool FolderExists(const std::string& path) override;
  void Remove(const std::string& path) override;
  void MakeFolder(const std::string& path) override;
};

// The run time's file error number for a platform error code.
int32_t FileErrorNumber(unsigned long win32_error);

}  // namespace zintra::win32
