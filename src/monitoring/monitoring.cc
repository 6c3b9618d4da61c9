#include "src/monitoring/monitoring.h"

#include <vector>

#include "src/core/z_error.h"
#include "src/errors/cached_error.h"
#include "src/errors/error_handling.h"
#include "src/host/mapi_utils.h"
#include "src/host/outlook_application.h"
#include "src/host/outlook_constants.h"
#include "src/host/outlook_folder.h"
#include "src/jobs/job_delayed_trigger.h"
#include "src/jobs/job_engine_log.h"
#include "src/monitoring/monitored_folder.h"
#include "src/monitoring/monitoring_addin.h"
#include "src/outlook/folder_helpers.h"
#include "src/resources/string_table.h"
#include "src/settings/reg_settings.h"

namespace zintra {

namespace {

constexpr char kMonitoringModule[] = "Monitoring";
constexpr int32_t kErrMonitoring = static_cast<int32_t>(0x80040302u);

// The default folders method 0 watches, in the order they are set up.
constexpr int32_t kDefaultMonitoredFolders[] = {kOlFolderCalendar, kOlFolderInbox, kOlFolderJournal,
                                                kOlFolderSentMail, kOlFolderTasks};
// The default folders the personal-folders walk leaves out (with their subfolders).
constexpr int32_t kExcludedPersonalFolders[] = {kOlFolderDrafts, kOlFolderOutbox, kOlFolderNotes,
                                                kOlFolderDeletedItems};
// Task folders log tasks and the four task-request kinds.
constexpr int32_t kTaskFolderItemTypes[] = {4096, 8192, 16384, 32768, 65536};

}  // namespace

Monitoring::~Monitoring() = default;

void Monitoring::Initialize(const std::shared_ptr<MonitoringAddin>& app) {
  try {
    app_ = app;
    if (!app) throw ZError(kErrObjectNotSet, "No add-in", kMonitoringModule);
    errors_ = &app->Errors();
    app->SetCheckLinger(shared_from_this());
    monitors_ = {};
    FoldersScanning = {};
    DelayedFoldersToScan = {};
    FoldersToRescan = {};
    ProcessingDelay_ = app->Settings().ProcessingDelay;
    Addin_RegSettingsChanged(nullptr);
    if (app->Settings().ScanInbox && !app->Settings().UserFirstRun()) ScanInbox();
  } catch (...) {
    LogCurrentException("Initialize");
  }
}

void Monitoring::Kill() {
  DropTrigger();
  app_.reset();
}

void Monitoring::Addin_RegSettingsChanged(const RegSettings* /*old_settings*/) {
  std::shared_ptr<MonitoringAddin> app = app_.lock();
  if (!app) return;
  try {
    while (monitors_.Count() > 0) {
      std::shared_ptr<MonitoredFolder> first = monitors_.Item(1);
      first->Kill();
      // A monitor that failed to leave is taken out here, or the loop would not end.
      if (monitors_.Count() > 0 && monitors_.Item(1) == first) monitors_.Remove(1);
    }
    FoldersScanning = {};
    FoldersToRescan = {};

    int32_t failures = 0;
    const RegSettings& settings = app->Settings();
    switch (settings.MonitorMethod) {
      case 0:
        failures = MonitorDefaultFolders();
        break;
      case 2:
        failures = MonitorPersonalFolders(nullptr);
        break;
      case 3: {
        const int32_t count = settings.MonitorFoldersCount;
        for (int32_t i = 1; i <= count; ++i) {
          if (!AddMonitor(i, nullptr)) ++failures;
        }
        break;
      }
      default:
        break;  // window monitoring: the inspectors catch the items
    }
    if (failures > 0) {
      app->OptionalMsgBox(kDialogCannotMonitor, app->Strings().Load(kStrCannotMonitor),
                          app->Strings().Load(kStrProductCaption));
    }
  } catch (...) {
    LogCurrentException("Addin_RegSettingsChanged");
  }
}

bool Monitoring::AddMonitor(int32_t index, const std::shared_ptr<Folder>& folder) {
  std::shared_ptr<MonitoringAddin> app = app_.lock();
  if (!app) return false;
  try {
    auto monitor = std::make_shared<MonitoredFolder>(app);
    if (folder) return monitor->Initialize(folder, shared_from_this(), SettingForFolder(folder));
    const RegSettings& settings = app->Settings();
    FolderSetting setting;
    // A list shorter than its count leaves the entry empty: the folder cannot be opened.
    if (index <= settings.MonitorFolderEntryIDs.Count()) {
      setting.EntryID = settings.MonitorFolderEntryIDs.Item(index);
    }
    if (index <= settings.MonitorFolderStoreIDs.Count()) {
      setting.StoreID = settings.MonitorFolderStoreIDs.Item(index);
    }
    if (index <= settings.MonitorFolderFlags.Count()) {
      setting.ItemTypes = settings.MonitorFolderFlags.Item(index);
    }
    setting.SetItemSetting(kNeverMonitoredItemType, false);
    return monitor->Initialize(nullptr, shared_from_this(), setting);
  } catch (...) {
    LogCurrentException("AddMonitor");
    return false;
  }
}

int32_t Monitoring::MonitorDefaultFolders() {
  int32_t failures = 0;
  for (int32_t type : kDefaultMonitoredFolders) {
    std::shared_ptr<Folder> folder;
    try {
      folder = DefaultFolder(type);
    } catch (...) {
      LogCurrentException("MonitorDefaultFolders");
    }
    if (!folder || !AddMonitor(0, folder)) ++failures;
  }
  return failures;
}

int32_t Monitoring::MonitorPersonalFolders(const std::shared_ptr<Folder>& parentFolder) {
  std::shared_ptr<MonitoringAddin> app = app_.lock();
  if (!app) return 0;
  int32_t failures = 0;
  try {
    std::shared_ptr<Folder> parent = parentFolder;
    if (!parent) {
      parent = PersonalStoreRoot(*app->Session());
      if (!parent)
        throw ZError(kErrObjectNotSet, "The personal store has no root folder", kMonitoringModule);
    }
    std::shared_ptr<Folders> children = parent->Folders();
    const int32_t count = children ? children->Count() : 0;
    for (int32_t i = 1; i <= count; ++i) {
      std::shared_ptr<Folder> child = children->Item(i);
      bool excluded = false;
      for (int32_t type : kExcludedPersonalFolders) {
        std::shared_ptr<Folder> other;
        try {
          other = DefaultFolder(type);
        } catch (const ZError&) {
          continue;  // the store has no such folder
        }
        if (Same(child, other)) {
          excluded = true;
          break;
        }
      }
      if (excluded) continue;
      if (!AddMonitor(0, child)) ++failures;
      failures += MonitorPersonalFolders(child);
    }
  } catch (...) {
    LogCurrentException("MonitorPersonalFolders");
    ++failures;
  }
  return failures;
}

FolderSetting Monitoring::SettingForFolder(const std::shared_ptr<Folder>& folder) {
  FolderSetting setting;
  setting.EntryID = folder->EntryID();
  setting.StoreID = folder->StoreID();
  auto is_default = [this, &folder](int32_t type) {
    try {
      return Same(folder, DefaultFolder(type));
    } catch (const ZError&) {
      return false;
    }
  };
  if (is_default(kOlFolderDeletedItems) || is_default(kOlFolderNotes)) {
    setting.ItemTypes = 0;
  } else if (is_default(kOlFolderSentMail)) {
    // Whatever the user sends is logged. The Inbox takes its own kind only, like any
    // other folder: reports are not logged, and requests are logged where they land
    // (the Calendar and Tasks folders are monitored too).
    setting.SetAllItemsLogged(true);
  } else if (folder->DefaultItemType() == kOlTaskItem) {
    for (int32_t type : kTaskFolderItemTypes) setting.SetItemSetting(type, true);
  } else {
    const int32_t type = FolderSetting::OutlookItemType_to_ItemType(folder->DefaultItemType());
    if (type != 0) setting.SetItemSetting(type, true);
  }
  setting.SetItemSetting(kNeverMonitoredItemType, false);
  return setting;
}

bool Monitoring::Same(const std::shared_ptr<Folder>& a, const std::shared_ptr<Folder>& b) {
  if (!a || !b) return false;
  std::shared_ptr<MonitoringAddin> app = app_.lock();
  std::shared_ptr<MapiUtils> utils = app ? app->LibraryUtils() : nullptr;
  if (!utils) return a->EntryID() == b->EntryID() && a->StoreID() == b->StoreID();
  return FoldersSame(a, b, *utils, app->Errors());
}

std::shared_ptr<Folder> Monitoring::DefaultFolder(int32_t folder_type) {
  std::shared_ptr<MonitoringAddin> app = app_.lock();
  if (!app) throw ZError(kErrObjectNotSet, "The add-in is gone", kMonitoringModule);
  return app->Session()->GetDefaultFolder(folder_type);
}

std::shared_ptr<MonitoredFolder> Monitoring::GetMonitorFor(const std::shared_ptr<Folder>& folder) {
  try {
    for (const std::shared_ptr<MonitoredFolder>& monitor : monitors_.Values()) {
      if (Same(monitor->Folder(), folder)) return monitor;
    }
  } catch (...) {
    LogCurrentException("GetMonitorFor");
  }
  return nullptr;
}

void Monitoring::StartScan(const std::shared_ptr<MonitoredFolder>& monitor, bool StopWhenFound) {
  if (!FoldersScanning.Contains(monitor->key())) FoldersScanning.Add(monitor, monitor->key());
  monitor->Scan(StopWhenFound);
}

void Monitoring::ScanInbox() {
  try {
    LogLine("Scanning Inbox");
    std::shared_ptr<MonitoredFolder> monitor = GetMonitorFor(DefaultFolder(kOlFolderInbox));
    if (!monitor) return;
    if (!monitor->Scanning() && !FoldersScanning.Contains(monitor->key())) StartScan(monitor, true);
  } catch (...) {
    LogCurrentException("ScanInbox");
  }
}

void Monitoring::ScanAll(bool StopWhenFound) {
  if (Scanning()) return;
  try {
    // The queued folders are covered by this search, so their timer goes; they stay
    // queued, and the next new item's trigger scans them again.
    DropTrigger();
    for (const std::shared_ptr<MonitoredFolder>& monitor : monitors_.Values()) {
      if (!monitor->Scanning() && !FoldersScanning.Contains(monitor->key())) {
        StartScan(monitor, StopWhenFound);
      }
    }
  } catch (...) {
    LogCurrentException("ScanAll");
  }
}

void Monitoring::ScanFolder(const std::shared_ptr<Folder>& folder, bool StopWhenFound) {
  try {
    std::shared_ptr<MonitoredFolder> monitor = GetMonitorFor(folder);
    if (monitor && (monitor->Scanning() || FoldersScanning.Contains(monitor->key()))) {
      LogLine("Instructing monitor for folder '" + folder->Name() +
              "' to rescan once scanning is complete");
      if (!FoldersToRescan.Contains(monitor->key())) {
        FoldersToRescan.Add(monitor->key(), monitor->key());
      }
    } else if (monitor) {
      StartScan(monitor, StopWhenFound);
    } else {
      LogErrorLine("Monitoring.ScanFolder was asked to scan a folder that is not monitored",
                   "ScanFolder");
    }
  } catch (...) {
    LogCurrentException("ScanFolder");
  }
}

void Monitoring::ScanFinished(const std::string& key) {
  try {
    if (FoldersScanning.Contains(key)) FoldersScanning.Remove(key);
    if (!FoldersToRescan.Contains(key) || FoldersToRescan.Item(key).empty()) return;
    FoldersToRescan.Remove(key);
    if (!monitors_.Contains(key)) return;  // killed meanwhile
    std::shared_ptr<MonitoredFolder> monitor = monitors_.Item(key);
    LogLine("Initiating rescan on folder '" + monitor->FolderName() + "'");
    ScanFolder(monitor->Folder(), true);
  } catch (...) {
    LogCurrentException("ScanFinished");
  }
}

void Monitoring::QueueDelayedScan(const std::shared_ptr<Folder>& folder) {
  std::shared_ptr<MonitoringAddin> app = app_.lock();
  if (!app || !folder) return;
  try {
    bool queued = false;
    for (const std::shared_ptr<Folder>& waiting : DelayedFoldersToScan.Values()) {
      if (Same(waiting, folder)) {
        queued = true;
        break;
      }
    }
    if (!queued) {
      const std::string name = folder->Name();
      if (!GetMonitorFor(folder)) {
        LogErrorLine("Folder '" + name + "' is not monitored, but was found in list of " +
                         "folders queued for delayed item processing.",
                     "QueueDelayedScan");
        return;
      }
      LogLine("Queueing folder '" + name + "' for delayed item processing");
      DelayedFoldersToScan.Add(folder);
    }
    if (!delay_trigger_) {
      auto trigger = std::make_shared<JobDelayedTrigger>(app->TimeSource(), app->Pump());
      delay_trigger_ = trigger;
      std::weak_ptr<Monitoring> weak = weak_from_this();
      trigger_connection_ = trigger->Trigger.Connect([weak] {
        if (auto self = weak.lock()) self->JobDelayedTrigger_Trigger();
      });
      trigger_aborted_ = trigger->Aborted.Connect([weak, raw = trigger.get()] {
        // The queue aborted the wait (shut-down): forget it.
        auto self = weak.lock();
        if (self && self->delay_trigger_.get() == raw) {
          self->trigger_connection_.Disconnect();
          self->trigger_aborted_.Disconnect();
          self->delay_trigger_.reset();
        }
      });
      trigger->Initialize(app->JobHost(), static_cast<float>(ProcessingDelay_));
    } else {
      delay_trigger_->Restart(static_cast<float>(ProcessingDelay_));
    }
  } catch (...) {
    LogCurrentException("QueueDelayedScan");
  }
}

void Monitoring::DropTrigger() {
  std::shared_ptr<JobDelayedTrigger> trigger = std::move(delay_trigger_);
  delay_trigger_.reset();
  trigger_connection_.Disconnect();
  trigger_aborted_.Disconnect();
  if (trigger) trigger->Abort();
}

void Monitoring::ScanDelayed() {
  try {
    DropTrigger();
    LogLine("Initiating scanning on folders that were delayed for processing");
    while (DelayedFoldersToScan.Count() > 0) {
      std::shared_ptr<Folder> folder = DelayedFoldersToScan.Item(1);
      DelayedFoldersToScan.Remove(1);
      ScanFolder(folder, true);
    }
  } catch (...) {
    LogCurrentException("ScanDelayed");
  }
}

void Monitoring::StopMonitoring() {
  DropTrigger();
  DelayedFoldersToScan = {};
}

void Monitoring::CheckLingeringRefs() {
  auto name_of = [](const std::function<std::string()>& read) {
    try {
      return read();
    } catch (...) {
      CachedError rec;
      rec.SetToCurrentException(kMonitoringModule, "CheckLingeringRefs");
      return "getting name: {Error " + std::to_string(rec.Number()) + " " + rec.Description() + "}";
    }
  };
  auto monitor_name = [](const std::shared_ptr<MonitoredFolder>& monitor) {
    if (!monitor->Folder())
      throw ZError(kErrObjectNotSet, "Object variable not set", kMonitoringModule);
    return monitor->Folder()->Name();
  };
  while (monitors_.Count() > 0) {
    std::shared_ptr<MonitoredFolder> monitor = monitors_.Item(1);
    monitors_.Remove(1);
    LogErrorLine("MonitoredFolder object for '" + name_of([&] { return monitor_name(monitor); }) +
                     "' still exists in CheckLinger",
                 "ICheckLinger_CheckLingeringRefs");
  }
  while (FoldersScanning.Count() > 0) {
    std::shared_ptr<MonitoredFolder> monitor = FoldersScanning.Item(1);
    FoldersScanning.Remove(1);
    LogErrorLine("MonitoredFolder object for '" + name_of([&] { return monitor_name(monitor); }) +
                     "' still exists in FoldersScanning in CheckLinger",
                 "ICheckLinger_CheckLingeringRefs");
  }
  while (DelayedFoldersToScan.Count() > 0) {
    std::shared_ptr<Folder> folder = DelayedFoldersToScan.Item(1);
    DelayedFoldersToScan.Remove(1);
    LogErrorLine("MonitoredFolder object for '" + name_of([&] { return folder->Name(); }) +
                     "' still exists in DelayedFoldersToScan queue in CheckLinger",
                 "ICheckLinger_CheckLingeringRefs");
  }
}

void Monitoring::LogLine(const std::string& text) {
  if (errors_) errors_->WriteLogMessage(text, false);
}

void Monitoring::LogErrorLine(const std::string& text, const char* proc) {
  if (errors_) {
    errors_->LogCachedError(
        CachedError(ZError(kErrMonitoring, text, kMonitoringModule), kMonitoringModule, proc));
  }
}

void Monitoring::LogCurrentException(const char* proc) {
  CachedError rec;
  rec.SetToCurrentException(kMonitoringModule, proc);
  if (errors_) errors_->LogCachedError(rec);
}

}  // namespace zintra
