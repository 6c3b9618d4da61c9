#include "src/errors/error_handling.h"

#include <exception>
#include <vector>

#include "src/core/text.h"
#include "src/errors/cached_error.h"
#include "src/host/msg_box.h"
#include "src/host/platform.h"
#include "src/host/registry.h"
#include "src/resources/string_table.h"
#include "src/settings/reg_settings.h"

namespace zintra {
namespace {

constexpr int32_t kStringProductName = 2;
constexpr char kLineBreak[] = "\r\n";
constexpr char kOutlookInstallRootKey[] = "Software\\Microsoft\\Office\\9.0\\Outlook\\InstallRoot";

constexpr int32_t kLevelNothing = 0;
constexpr int32_t kLevelErrorsAndWarnings = 2;
constexpr int32_t kLevelEverything = 3;

std::string WithoutTrailingBackslash(std::string path) {
  if (!path.empty() && path.back() == '\\') path.pop_back();
  return path;
}

// A REG_SZ value of HKEY_LOCAL_MACHINE, "" when absent or unreadable.
std::string ReadMachineString(Registry& registry, const std::string& key_name,
                              const std::string& value_name) {
  UniqueKey key;
  if (OpenKey(registry, kHKeyLocalMachine, key_name, kKeyQueryValue, &key) != kRegSuccess)
    return {};
  std::string result;
  uint32_t type = 0;
  uint32_t size = 0;
  if (registry.QueryValue(key.get(), value_name, &type, nullptr, &size) == kRegSuccess &&
      (type == kRegSz || type == kRegExpandSz) && size > 0) {
    std::vector<uint8_t> data(size);
    if (registry.QueryValue(key.get(), value_name, &type, data.data(), &size) == kRegSuccess) {
      result.assign(data.begin(), data.begin() + size);
      while (!result.empty() && result.back() == '\0') result.pop_back();
    }
  }
  return result;
}

std::string FormatVersion(const FileVersionInfo& v) {
  return std::to_string(v.major) + "." + std::to_string(v.minor) + "." + std::to_string(v.build) +
         "." + std::to_string(v.revision);
}

}  // namespace

ErrorHandling::ErrorHandling(ErrorHandlingHost host) : host_(host) {}

ErrorHandling::~ErrorHandling() = default;

void ErrorHandling::SetOutlookVersions(const std::string& version,
                                       const std::string& product_version) {
  outlook_version_ = version;
  outlook_product_version_ = product_version;
}

void ErrorHandling::SetAddinVersion(const std::string& version) { addin_version_ = version; }

void ErrorHandling::SetRunJobsAsync(bool run_jobs_async) { run_jobs_async_ = run_jobs_async; }

void ErrorHandling::SetAddinFolder(const std::string& folder) {
  addin_folder_ = WithoutTrailingBackslash(folder);
  file_versions_.clear();
}

std::string ErrorHandling::LogFileFor(const std::string& log_path) const {
  std::string folder;
  if (text::Trim(log_path).empty()) {
    folder = WithoutTrailingBackslash(host_.platform.TempPath());
  } else {
    folder = WithoutTrailingBackslash(log_path);
  }
  return folder + "\\" + kErrorLogFileName;
}

std::string ErrorHandling::LogFilePath() const { return store_ ? store_->Path() : std::string(); }

bool ErrorHandling::EnsureOpen() {
  if (open_attempted_) return store_ != nullptr;
  open_attempted_ = true;
  try {
    store_ = host_.log_factory.CreateErrorLog();
  } catch (...) {
    store_.reset();
  }
  if (!store_) return false;
  try {
    RegSettings settings(host_.registry, host_.file_system, host_.platform);
    try {
      settings.Read(/*JustCritical=*/true, /*IsOutlook9=*/false, /*IsOutlook12OrHigher=*/false);
    } catch (const ZError&) {
      // Only an oversized cap leaves Read; the fields read before it stand and the cap
      // keeps its default.
    }
    log_level_ = settings.LogLevel;
    max_size_kb_ = settings.LogMaxSizeKB;
    store_->Open(LogFileFor(settings.LogPath), max_size_kb_, true);
  } catch (...) {
    store_.reset();
  }
  return store_ != nullptr;
}

std::string ErrorHandling::FileVersionIn(const std::string& file) {
  auto it = file_versions_.find(file);
  if (it != file_versions_.end()) return it->second;
  std::string version;
  if (!addin_folder_.empty()) {
    if (auto v = host_.platform.FileVersion(addin_folder_ + "\\" + file))
      version = FormatVersion(*v);
  }
  file_versions_.emplace(file, version);
  return version;
}

std::string ErrorHandling::OutlookFileVersion() {
  constexpr char kKey[] = "|OUTLOOK.EXE";
  auto it = file_versions_.find(kKey);
  if (it != file_versions_.end()) return it->second;
  std::string version;
  std::string root = ReadMachineString(host_.registry, kOutlookInstallRootKey, "Path");
  if (!root.empty()) {
    if (auto v = host_.platform.FileVersion(WithoutTrailingBackslash(root) + "\\OUTLOOK.EXE")) {
      version = FormatVersion(*v);
    }
  }
  file_versions_.emplace(kKey, version);
  return version;
}

ErrorLogVersions ErrorHandling::Versions() {
  ErrorLogVersions v;
  v.addin = addin_version_.empty() ? FileVersionIn("ZintraAddin.dll") : addin_version_;
  v.controls = FileVersionIn("ZintraControls.ocx") + " (ZINTRACONTROLS.OCX)";
  v.outlook = (outlook_version_.empty() ? OutlookFileVersion() : outlook_version_) + " (OUTLOOK)";
  v.outlook_product = outlook_product_version_ + " (OLPROD)";
  v.library = FileVersionIn("TovuRedemption.dll") + " (TOVUREDEMPTION.DLL)";
  v.others = std::string(kLineBreak) + FileVersionIn("ZintraKeepAlive.exe") +
             " (ZINTRAKEEPALIVE.EXE)" + kLineBreak + FileVersionIn("Quillbar.dll") +
             " (QUILLBAR.DLL)";
  if (run_jobs_async_) {
    v.others += std::string(kLineBreak) + "AsyncMode=" + (*run_jobs_async_ ? "True" : "False");
  }
  return v;
}

void ErrorHandling::WriteLogMessage(const std::string& text, bool warning) {
  if (!EnsureOpen()) return;
  bool keep = log_level_ >= kLevelEverything || (warning && log_level_ >= kLevelErrorsAndWarnings);
  if (!keep) return;
  try {
    store_->LogMessage(kErrorLogAppId, text, warning, Versions());
  } catch (...) {
    ++failed_writes_;
  }
}

void ErrorHandling::LogWarning(const std::string& text) { WriteLogMessage(text, true); }

static_assert(kLevelEverything == 3, "debug lines are kept at the level that keeps everything");

void ErrorHandling::LogCachedError(const CachedError& rec) {
  if (rec.Number() == 0) return;
  if (!EnsureOpen()) return;
  if (log_level_ <= kLevelNothing) return;
  // A record that no handler extended has no outermost step.
  bool has_trail = rec.PropogationCount() > 0;
  try {
    store_->LogError(kErrorLogAppId, rec.Description(), std::to_string(rec.LastDLLError()),
                     rec.Number(), rec.OrgSource(), has_trail ? rec.OutermostModule() : "?",
                     has_trail ? rec.OutermostMethod() : "?",
                     std::to_string(has_trail ? rec.OutermostLine() : 0), rec.PropogationString(),
                     Versions());
  } catch (...) {
    ++failed_writes_;
  }
}

void ErrorHandling::DisplayCachedError(const CachedError& rec) {
  if (rec.Number() == 0) return;
  host_.msg_box.Show(rec.toString(true), kMsgBoxCritical, host_.strings.Load(kStringProductName));
}

void ErrorHandling::Addin_RegSettingsChanged(const RegSettings& /*old_settings*/,
                                             const RegSettings& new_settings) {
  if (!store_) {
    // Not open yet: the first write reads the new settings itself.
    return;
  }
  log_level_ = new_settings.LogLevel;
  // Compared with the file in use rather than the old settings: the log may have been
  // opened after the old settings were read.
  std::string new_file = LogFileFor(new_settings.LogPath);
  if (!text::EqualsNoCase(store_->Path(), new_file)) {
    try {
      store_->Relocate(new_file);
    } catch (const ZError& e) {
      LogWarning("Could not move the error log to '" + new_file + "': " + e.Description());
    } catch (...) {
      ++failed_writes_;
    }
  }
  if (new_settings.LogMaxSizeKB != max_size_kb_) {
    max_size_kb_ = new_settings.LogMaxSizeKB;
    try {
      store_->Open(store_->Path(), max_size_kb_, true);
    } catch (...) {
      store_.reset();
    }
  }
}

// Defined here so that code keeping records without logging them needs no settings.
void CachedError::Log(ErrorHandling& errors) const { errors.LogCachedError(*this); }
void CachedError::Display(ErrorHandling& errors) const { errors.DisplayCachedError(*this); }

}  // namespace zintra
