#include "sim/platform/sim_platform.h"

#include "src/core/text.h"

namespace zintra::sim {

std::optional<FileVersionInfo> SimPlatform::FileVersion(const std::string& path) {
  auto it = versions_.find(text::LCase(path));
  if (it == versions_.end()) return std::nullopt;
  return it->second;
}

void SimPlatform::SetFileVersion(const std::string& path, FileVersionInfo version) {
  versions_[text::LCase(path)] = version;
}

void SimPlatform::RemoveFileVersion(const std::string& path) { versions_.erase(text::LCase(path)); }

}  // namespace zintra::sim
