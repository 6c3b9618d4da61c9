// A settings store over the simulated host, filled from .reg text as an administrator
// would write it.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "sim/files/memory_file_system.h"
#include "sim/platform/sim_platform.h"
#include "sim/registry/memory_registry.h"
#include "sim/registry/reg_file.h"
#include "src/settings/reg_settings.h"

namespace zintra {

class SettingsTest : public ::testing::Test {
 protected:
  static constexpr char kUser[] = "HKEY_CURRENT_USER\\Software\\Brellow\\Zintra";
  static constexpr char kMachine[] = "HKEY_LOCAL_MACHINE\\Software\\Brellow\\Zintra";

  void Import(const std::string& body) {
    sim::RegFile::Import(registry_, "Windows Registry Editor Version 5.00\r\n\r\n" + body,
                         "fixture.reg");
  }
  RegSettings Make() {
    RegSettings settings(registry_, files_, platform_);
    settings.SetWarningSink([this](const std::string& text) { warnings_.push_back(text); });
    return settings;
  }
  RegSettings ReadAll(bool outlook9 = false, bool outlook12 = false) {
    RegSettings settings = Make();
    settings.Read(false, outlook9, outlook12);
    return settings;
  }
  std::optional<sim::RegistryValue> UserValue(const std::string& path, const std::string& name) {
    return registry_.GetValue(kHKeyCurrentUser, "Software\\Brellow\\Zintra" + path, name);
  }
  bool WarnedAbout(const std::string& fragment) const {
    for (const std::string& w : warnings_) {
      if (w.find(fragment) != std::string::npos) return true;
    }
    return false;
  }

  sim::MemoryRegistry registry_;
  sim::MemoryFileSystem files_;
  sim::SimPlatform platform_;
  std::vector<std::string> warnings_;
};

}  // namespace zintra
