// Monitoring: the single manager of folder monitoring. From the settings it decides
// which folders are watched (MonitoringMethod 0: the default Calendar, Inbox, Journal,
// Sent Items and Tasks; 2: every folder of the personal store but Drafts, Outbox,
// Notes and Deleted Items; 3: the folders listed in the settings; any other value:
// none, items are caught through the inspectors), keeps one MonitoredFolder per
// folder, and is the only place that starts folder scans: the Inbox scan at start-up
// (not on the user's first run), the search of all folders the options page asks for,
// the rescan of one folder (at most one is kept per running scan), and the delayed
// scans that replace immediate processing while ProcessingDelay (ms) is 1 or more.
// Delayed scans share one JobDelayedTrigger: every new item restarts the full delay,
// so one scan follows a burst of items.
//
// SettingForFolder (the item kinds logged from a folder found by methods 0 and 2):
// the default Deleted Items and Notes folders log nothing; the default Inbox and Sent
// Items log every kind; a task folder (DefaultItemType 3) logs tasks and the four
// task-request kinds; any other folder logs the kind of its DefaultItemType. Meeting
// items (type 128) are never logged from a monitored folder.
//
// Ownership: create with std::make_shared, then Initialize; the add-in (its part)
// holds it, the lingering-reference registration holds it until the check. The add-in
// is held weakly and dropped by Kill. No member throws: each routine logs its error
// record with module "Monitoring".
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "src/core/event.h"
#include "src/core/keyed_collection.h"
#include "src/jobs/i_check_linger.h"
#include "src/settings/folder_setting.h"

namespace zintra {

class ErrorHandling;
class Folder;
class JobDelayedTrigger;
class MonitoredFolder;
class MonitoringAddin;
class RegSettings;

inline constexpr int32_t kDialogCannotMonitor = 2;
inline constexpr int32_t kStrCannotMonitor = 2650;
inline constexpr int32_t kStrProductCaption = 2;
// Item type bit that monitored folders never log (meeting items).
inline constexpr int32_t kNeverMonitoredItemType = 128;

class Monitoring : public ICheckLinger, public std::enable_shared_from_this<Monitoring> {
 public:
  Monitoring() = default;
  ~Monitoring() override;
  Monitoring(const Monitoring&) = delete;
  Monitoring& operator=(const Monitoring&) = delete;

  void Initialize(const std::shared_ptr<MonitoringAddin>& app);
  // Drops the add-in reference (the monitors end through the Kill broadcast).
  void Kill();
  void ScanInbox();
  void ScanDelayed();
  void ScanAll(bool StopWhenFound);
  bool Scanning() const { return FoldersScanning.Count() > 0; }
  void QueueDelayedScan(const std::shared_ptr<Folder>& folder);
  void ScanFolder(const std::shared_ptr<Folder>& folder, bool StopWhenFound);
  std::shared_ptr<MonitoredFolder> GetMonitorFor(const std::shared_ptr<Folder>& folder);

  const KeyedCollection<std::shared_ptr<MonitoredFolder>>& Monitors() const { return monitors_; }
  int32_t ProcessingDelay() const { return ProcessingDelay_; }

  void Addin_Kill() {}
  // Rebuilds the monitors from the settings now in force (old_settings unused: every
  // monitor is rebuilt). Called by Initialize with nullptr.
  void Addin_RegSettingsChanged(const RegSettings* old_settings);
  void JobDelayedTrigger_Trigger() { ScanDelayed(); }
  void CheckLingeringRefs() override;
  // From a monitor whose scan ended.
  void ScanFinished(const std::string& key);
  // Shut-down: the delayed scans are dropped (the queue is about to be flushed).
  void StopMonitoring();

  // --- State, for tests.
  int32_t ScanningCount() const { return FoldersScanning.Count(); }
  int32_t DelayedCount() const { return DelayedFoldersToScan.Count(); }
  int32_t RescanCount() const { return FoldersToRescan.Count(); }
  bool DelayPending() const { return delay_trigger_ != nullptr; }
  std::shared_ptr<MonitoringAddin> App() const { return app_.lock(); }

 private:
  friend class MonitoredFolder;

  bool AddMonitor(int32_t index, const std::shared_ptr<Folder>& folder);
  int32_t MonitorDefaultFolders();
  int32_t MonitorPersonalFolders(const std::shared_ptr<Folder>& parentFolder);
  FolderSetting SettingForFolder(const std::shared_ptr<Folder>& folder);
  bool Same(const std::shared_ptr<Folder>& a, const std::shared_ptr<Folder>& b);
  std::shared_ptr<Folder> DefaultFolder(int32_t folder_type);
  void StartScan(const std::shared_ptr<MonitoredFolder>& monitor, bool StopWhenFound);
  void DropTrigger();
  void LogLine(const std::string& text);
  void LogErrorLine(const std::string& text, const char* proc);
  void LogCurrentException(const char* proc);

  std::weak_ptr<MonitoringAddin> app_;
  KeyedCollection<std::shared_ptr<MonitoredFolder>> monitors_;
  int32_t ProcessingDelay_ = 0;
  KeyedCollection<std::shared_ptr<MonitoredFolder>> FoldersScanning;
  KeyedCollection<std::shared_ptr<Folder>> DelayedFoldersToScan;
  KeyedCollection<std::string> FoldersToRescan;
  std::shared_ptr<JobDelayedTrigger> delay_trigger_;
  Connection trigger_connection_;
  Connection trigger_aborted_;
  // Borrowed at Initialize; outlives the add-in reference, for the lingering check.
  ErrorHandling* errors_ = nullptr;
};

}  // namespace zintra
