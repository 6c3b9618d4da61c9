// Platform: facts about the machine and the running user that the system asks the
// operating system for: the temporary-files folder (GetTempPathA), the version of
// Windows (GetVersionExA), the user-interface language (GetUserDefaultUILanguage) and the
// version resource of a file (GetFileVersionInfoA). Called only on the user-interface
// thread; no member throws.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace zintra {

struct OsVersionInfo {
  uint32_t major = 0;  // 5 for Windows 2000/XP, 6 for Vista and later, 10 ...
  uint32_t minor = 0;
  uint32_t build = 0;
  uint32_t platform_id = 2;  // 2: Windows NT family, 1: Windows 9x
  std::string service_pack;  // "Service Pack 3", or ""

  bool IsVistaOrLater() const { return platform_id == 2 && major >= 6; }
};

// The fixed file version of a version resource: major.minor.build.revision.
struct FileVersionInfo {
  uint16_t major = 0;
  uint16_t minor = 0;
  uint16_t build = 0;
  uint16_t revision = 0;
};

class Platform {
 public:
  virtual ~Platform() = default;

  // The temporary-files folder, with its trailing backslash ("C:\Users\x\AppData\Local\Temp\").
  virtual std::string TempPath() = 0;
  virtual OsVersionInfo OperatingSystemVersion() = 0;
  // The language id of the user interface (0x0409 English, 0x040C French, 0x0C0C
  // Canadian French).
  virtual uint16_t UserInterfaceLanguage() = 0;
  // The version of the file at `path`; nullopt when the file is missing or has no
  // version resource.
  virtual std::optional<FileVersionInfo> FileVersion(const std::string& path) = 0;
};

}  // namespace zintra
