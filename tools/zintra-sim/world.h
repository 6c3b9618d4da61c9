// World: the simulated world of one run. It owns the Outlook process (SimOutlook over
// the scenario's profile and registry, with the toolbar library and Word installed),
// the loader that built the profile, and the error handling and strings the add-in is
// made with. Build writes the registry (scenario values, folder sets, monitored
// folders, the log level) and registers the add-in with Outlook's loader; the timeline
// then drives the process.
//
// Members are destroyed in reverse order: the add-in (inside SimOutlook) goes before
// the error handling and the profile. Errors in the scenario found while building (a
// folder set naming a folder that does not exist, a .reg file that does not parse)
// throw InputError.
#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "sim/addin_host/sim_outlook.h"
#include "sim/subclass/sim_subclasser.h"
#include "src/errors/error_handling.h"
#include "src/resources/string_table.h"
#include "tools/zintra-sim/decision_recorder.h"
#include "tools/zintra-sim/profile_loader.h"
#include "tools/zintra-sim/runner.h"
#include "tools/zintra-sim/scenario.h"

namespace zintra {
class ZintraAddinApp;
class ToolbarsAddin;
}  // namespace zintra

namespace zintra::simtool {

// Writes the values and .reg files of `desc` (relative paths already resolved).
void ApplyRegistry(sim::MemoryRegistry& registry, const RegistrySpec& desc);

class World {
 public:
  World(const Scenario& s, const RunOptions& o, const std::filesystem::path& log_root);
  ~World();
  World(const World&) = delete;
  World& operator=(const World&) = delete;

  void Build();

  sim::Profile& profile() { return profile_; }
  ProfileLoader& loader() { return loader_; }
  sim::SimOutlook& outlook() { return outlook_; }
  size_t loaded_items() const { return loaded_items_; }
  // What the add-in decided about items and folders, in order.
  const std::vector<Decision>& Decisions() const { return decisions_.Decisions(); }
  const Scenario& scenario() const { return scenario_; }

  // The loaded add-in, and the add-in as its toolbar sees it; nullptr when not loaded
  // (the toolbar also when the add-in runs without it).
  std::shared_ptr<ZintraAddinApp> Addin();
  std::shared_ptr<ToolbarsAddin> Toolbars();

  // The settings step: the values are written and, with the add-in loaded, its
  // settings are replaced as the options page replaces them (re-read, then handed to
  // the add-in, which saves them, re-registers, moves its error log and tells its parts).
  // `multi_user` is the page's choice to register the add-in for every user;
  // `reset_messages` its choice to show every optional message again.
  void ReplaceSettings(const RegistrySpec& values, std::optional<bool> multi_user,
                       bool reset_messages = false);

  // "M text", "W text", "E description", in the order written.
  std::vector<std::string> LogLines() const;

  // The letter template Word opens for the letter button.
  static constexpr char kTemplatesFolder[] = "C:\\Templates";

 private:
  std::shared_ptr<sim::FolderRecord> Folder(const std::string& path, int line, const char* field);
  void WriteIds(const std::string& list, int index, const std::string& path, int line,
                const char* field);
  void WriteFolderSettings();

  const Scenario& scenario_;
  const RunOptions& options_;
  // Before the process: the add-in records into it until the process ends.
  DecisionRecorder decisions_;
  // The process first: it owns the profile (driven by its clock) and its class
  // registry carries the library; the add-in inside it is ended by the destructor
  // before anything below goes.
  sim::SimOutlook outlook_;
  sim::Profile& profile_;
  ProfileLoader loader_;
  StringTable strings_;
  size_t loaded_items_ = 0;
  // Where the add-in keeps its settings: the machine's hive once it is installed for
  // every user (its loader key in HKEY_LOCAL_MACHINE), else the user's.
  HKey settings_hive_ = kHKeyCurrentUser;
  ErrorHandling errors_;
  // Windows' subclassing service, for the add-in's hooked item windows.
  std::shared_ptr<sim::SimSubclasser> subclasser_ = std::make_shared<sim::SimSubclasser>();
  Connection window_messages_;
};

}  // namespace zintra::simtool
