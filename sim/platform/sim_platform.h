// SimPlatform: the machine facts a test sets. Defaults: temporary folder
// "C:\Users\user\AppData\Local\Temp\", Windows 10.0.19045, English user interface, and
// no file with a version resource until SetFileVersion names one.
#pragma once

#include <map>
#include <optional>
#include <string>

#include "src/host/platform.h"

namespace zintra::sim {

class SimPlatform : public Platform {
 public:
  std::string TempPath() override { return temp_path_; }
  OsVersionInfo OperatingSystemVersion() override { return os_version_; }
  uint16_t UserInterfaceLanguage() override { return language_; }
  std::optional<FileVersionInfo> FileVersion(const std::string& path) override;

  void SetTempPath(std::string path) { temp_path_ = std::move(path); }
  void SetOsVersion(OsVersionInfo version) { os_version_ = std::move(version); }
  // Windows XP SP3: before Vista.
  void SetWindowsXp() { os_version_ = OsVersionInfo{5, 1, 2600, 2, "Service Pack 3"}; }
  void SetUserInterfaceLanguage(uint16_t language) { language_ = language; }
  void SetFileVersion(const std::string& path, FileVersionInfo version);
  void RemoveFileVersion(const std::string& path);

 private:
  std::string temp_path_ = "C:\\Users\\user\\AppData\\Local\\Temp\\";
  OsVersionInfo os_version_{10, 0, 19045, 2, ""};
  uint16_t language_ = 0x0409;
  std::map<std::string, FileVersionInfo> versions_;  // by lower-case path
};

}  // namespace zintra::sim
