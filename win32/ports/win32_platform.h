// Win32Platform: machine facts from the operating system. The version of Windows is the
// one the kernel reports (RtlGetVersion), not the compatibility value GetVersionEx gives a
// program without a manifest; file versions come from the file's version resource. No
// member throws: a failing call answers the empty or default value.
#pragma once

#include "src/host/platform.h"

namespace zintra::win32 {

class Win32Platform : public Platform {
 public:
  std::string TempPath() override;
  OsVersionInfo OperatingSystemVersion() override;
  uint16_t UserInterfaceLanguage() override;
  std::optional<FileVersionInfo> FileVersion(const std::string& path) override;
};

}  // namespace zintra::win32
