// MonitoredFolder: watches one Outlook folder for the monitoring manager. New items
// of a logged kind become processing jobs (or, with a processing delay, a delayed scan
// of the folder); changed items become change-audit jobs, except in the default Inbox,
// Sent Items and Deleted Items. As a job it scans the folder: sorted newest first by
// creation, one item per activation, each handed to a processing job, until the end
// of the folder or, when asked to stop at already-logged items, the first logged item
// (or, with QuickscanOverlapHours n >= 1, the first logged item more than n hour
// boundaries older than the first logged item met). An item added during a scan that
// is newer than the scan position shifts the live sorted collection back by one; the
// scan skips one GetNext result per such item (the bump count).
//
// Ownership: create with std::make_shared and Initialize; the manager's Monitors
// collection holds the monitor until Kill (also run by the add-in's Kill broadcast),
// the queue holds it while a scan step is queued. The manager and the add-in are held
// weakly. Errors never leave the object: every routine logs its error record with
// module "MonitoredFolder" and goes on (a failed Initialize returns false and leaves
// no monitor behind). Outlook's thread only.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "src/core/date.h"
#include "src/core/event.h"
#include "src/host/decision_log.h"
#include "src/jobs/i_job.h"
#include "src/settings/folder_setting.h"

namespace zintra {

class Folder;
class Item;
class Items;
class Monitoring;
class MonitoringAddin;

// String ids: the field name the scan sorts by ("Created"), the scan's description
// prefix and its task-list icon.
inline constexpr int32_t kStrCreatedField = 56;
inline constexpr int32_t kStrScanningFolder = 2652;
inline constexpr int32_t kScanTaskIcon = 2653;

// Whether the item is of a kind the folder setting logs (FolderSetting's class test
// over the item's class).
bool ItemIsLoggedType(const FolderSetting& setting, const Item& item);

class MonitoredFolder : public IJob, public std::enable_shared_from_this<MonitoredFolder> {
 public:
  explicit MonitoredFolder(std::weak_ptr<MonitoringAddin> app);
  ~MonitoredFolder() override;
  MonitoredFolder(const MonitoredFolder&) = delete;
  MonitoredFolder& operator=(const MonitoredFolder&) = delete;

  // Binds to `folder`, or (when nullptr) to the folder named by the setting's EntryID
  // and StoreID, and joins the manager's Monitors. False on any failure.
  bool Initialize(const std::shared_ptr<Folder>& folder,
                  const std::shared_ptr<Monitoring>& monitoring, const FolderSetting& setting);
  // Leaves the manager's Monitors, removes a running scan's task entry, drops every
  // reference. Idempotent.
  void Kill();
  void Addin_Kill() { Kill(); }

  // Starts a scan unless one is running.
  void Scan(bool StopWhenFound);
  const std::string& key() const { return key_; }

  void Activate() override;  // IJob_Activate: one scan step
  void Abort() override;     // IJob_Abort: end of scan
  std::string JobDescription() override { return description_; }

  void Items_ItemAdd(const std::shared_ptr<Item>& item);
  void Items_ItemChange(const std::shared_ptr<Item>& item);
  void Items_ItemRemove();

  // --- State, for the manager and tests.
  const std::shared_ptr<zintra::Folder>& Folder() const { return folder_; }
  // The folder's name, or "" when it cannot be read.
  std::string FolderName() const;
  bool Scanning() const { return scanning_; }
  bool IsIncomingFolder() const { return IsIncomingFolder_; }
  bool IsOutgoingFolder() const { return IsOutgoingFolder_; }
  bool IgnoreChanges() const { return ignore_changes_; }
  const FolderSetting& Setting() const { return folder_setting_; }
  int32_t ScannedCount() const { return scanned_count_; }
  int32_t BumpCount() const { return bump_count_; }
  const std::string& TaskId() const { return task_id_; }
  bool Killed() const { return killed_; }

 private:
  void StartProcessing(const std::shared_ptr<Item>& item, const char* caller);
  bool IsDefaultFolder(int32_t folder_type);
  void QueueSelf();
  // Fetches the next candidate of a scan step after the first.
  std::shared_ptr<Item> NextCandidate();
  // True when a candidate lies at or before the scan's position: an item shifted back
  // under the position by an insertion the bump count does not cover.
  bool AlreadyPassed(Item& candidate) const;
  void NoteHandled(Item& candidate);
  // Decisions stated to the host's decision log (monitored_folder_decisions.cc): about
  // the folder, or about `item` (a new item handed to no job, the item a scan stopped
  // at). Never throw.
  void Decide(DecisionKind kind, const std::string& reason,
              const std::shared_ptr<Item>& item = nullptr);
  void LogLine(const std::string& text);
  void LogErrorLine(const std::string& text, const char* proc);
  void LogCurrentException(const char* proc);

  std::weak_ptr<MonitoringAddin> app_;
  std::weak_ptr<Monitoring> monitoring_;
  std::shared_ptr<zintra::Folder> folder_;
  std::shared_ptr<Items> items_;
  Connection item_add_;
  Connection item_change_;
  Connection item_remove_;
  Connection addin_kill_;

  std::string key_;
  std::string task_id_;
  std::string description_;
  FolderSetting folder_setting_;
  bool IsIncomingFolder_ = false;
  bool IsOutgoingFolder_ = false;
  bool ignore_changes_ = false;
  bool scanning_ = false;
  bool StopWhenFound_ = false;
  bool killed_ = false;
  int32_t scanned_count_ = 0;
  int32_t bump_count_ = 0;
  double current_creation_time_ = kUnsetDate;
  double first_processed_time_ = kUnsetDate;
  // Removals from the folder since the last step: each may have moved the position one
  // item further than the next GetNext expects.
  int32_t removed_since_step_ = 0;
  // Set when the folder changed since the last step, so the next candidate is checked
  // against the position.
  bool changed_since_step_ = false;
  // Entry IDs of the candidates handled at currentCreationTime.
  std::vector<std::string> handled_at_time_;
};

}  // namespace zintra
