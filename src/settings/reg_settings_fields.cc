// RegSettings: Read, Save and the enterprise settings file.
#include "src/core/z_error.h"
#include "src/settings/reg_settings.h"

namespace zintra {

namespace {

void RemoveTrailingBackslash(std::string* path) {
  if (!path->empty() && path->back() == '\\') path->pop_back();
}

// Clears the batching flag however Save leaves.
class BatchScope {
 public:
  explicit BatchScope(bool* flag) : flag_(flag) { *flag_ = true; }
  ~BatchScope() { *flag_ = false; }
  BatchScope(const BatchScope&) = delete;
  BatchScope& operator=(const BatchScope&) = delete;

 private:
  bool* flag_;
};

}  // namespace

void RegSettings::Read(bool JustCritical, bool IsOutlook9, bool IsOutlook12OrHigher) {
  std::string default_log_path =
      platform_->OperatingSystemVersion().IsVistaOrLater() ? platform_->TempPath() : "C:";
  RemoveTrailingBackslash(&default_log_path);
  LogPath = ReadString("Logging\\LogPath", default_log_path, 0, true);
  RemoveTrailingBackslash(&LogPath);
  LogLevel = ReadLong("Logging\\LogLevel", 0, 0, true);
  LogReporting = ReadBool("Logging\\ErrorReporting", false, 0, true);
  LogMaxSizeKB = ReadInteger("Logging\\MaxLogSizeKB", 2048, 0, true);
  if (JustCritical) return;

  DontUseEnterpriseSettings = ReadBool("DontUseEnterpriseSettings", false, 0, true);
  local_override_ = DontUseEnterpriseSettings && AllowLocalOverride();
  UsingEnterpriseSettings = !local_override_ && !EnterpriseSettingsPath().empty();
  settings_file_.Clear();
  file_unreadable_ = false;
  if (UsingEnterpriseSettings) LoadSettingsFile();

  RunJobsAsync = ReadBool("RunJobsAsync", true, 0, false);
  QueuedWorkTimeInterval = ReadLong("QueuedWorkTimeInterval", 10, 0, false);
  QueuedWorkTimechunk = ReadLong("QueuedWorkTimechunk", 10, 0, false);
  ShowZintra2Buttons = ReadBool("ShowZintra2Buttons", false, 0, false);
  ShowZintra2ButtonsOnInspectors = ReadBool("ShowZintra2ButtonsOnInspectors", false, 0, false);
  NeverLoadToolbars = ReadBool("NeverLoadToolbars", false, 0, false);
  CacheContactFolders = ReadBool("Foldersets\\CacheContactFolders", true, 0, false);
  KeepCacheSynched = ReadBool("Foldersets\\KeepCacheSynched", true, 0, false);
  StopFillingCachesOnExit = ReadBool("Foldersets\\StopFillingCachesOnExit", false, 0, false);
  UniqueEmailAddresses = ReadBool("Foldersets\\UniqueEmailAddresses", true, 0, false);
  GetRowChunkSize = ReadInteger("Foldersets\\GetRowChunkSize", 100, 0, false);
  FoldersetCount = ReadCount("Foldersets\\Count", 0);
  const int32_t sets = FoldersetCount;
  ContactFolderEntryIDs = ReadStringList("Foldersets\\Contact\\EntryID", sets, 0);
  ContactFolderStoreIDs = ReadStringList("Foldersets\\Contact\\StoreID", sets, 0);
  EmailFolderEntryIDs = ReadStringList("Foldersets\\Email\\EntryID", sets, 0);
  EmailFolderStoreIDs = ReadStringList("Foldersets\\Email\\StoreID", sets, 0);
  JournalFolderEntryIDs = ReadStringList("Foldersets\\Journal\\EntryID", sets, 0);
  JournalFolderStoreIDs = ReadStringList("Foldersets\\Journal\\StoreID", sets, 0);
  SharedCalendarEntryIDs = ReadStringList("Foldersets\\SharedCalendar\\EntryID", sets, 0);
  SharedCalendarStoreIDs = ReadStringList("Foldersets\\SharedCalendar\\StoreID", sets, 0);
  SharedJournalEntryIDs = ReadStringList("Foldersets\\SharedJournal\\EntryID", sets, 0);
  SharedJournalStoreIDs = ReadStringList("Foldersets\\SharedJournal\\StoreID", sets, 0);
  SharedTaskListEntryIDs = ReadStringList("Foldersets\\SharedTaskList\\EntryID", sets, 0);
  SharedTaskListStoreIDs = ReadStringList("Foldersets\\SharedTaskList\\StoreID", sets, 0);
  FoldersetFlags = ReadLongList("Foldersets\\Flags", sets, 0);
  MonitorMethod = ReadLong("Monitoring\\MonitoringMethod", 0, 0, false);
  MonitorFoldersCount = ReadCount("Monitoring\\Folders\\FolderCount", 0);
  const int32_t folders = MonitorFoldersCount;
  MonitorFolderEntryIDs = ReadStringList("Monitoring\\Folders\\EntryID", folders, 0);
  MonitorFolderStoreIDs = ReadStringList("Monitoring\\Folders\\StoreID", folders, 0);
  MonitorFolderFlags = ReadLongList("Monitoring\\Folders\\Flags", folders, 0);
  AuditTrail = ReadBool("AuditTrail", false, 0, false);
  KeepSharedCopiesUpToDate = ReadBool("KeepSharedCopiesUpToDate", true, 0, false);
  KeepLoggedCopiesUpToDate = ReadBool("KeepLoggedCopiesUpToDate", false, 0, false);
  MinAuditInterval = ReadLong("MinAuditInterval", 20, 0, false);
  ScanInbox = ReadBool("ScanInbox", true, 0, false);
  IgnoreItemsFromInternal = ReadBool("IgnoreItemsFromInternal", true, 0, false);
  TrackedContactCategories = ReadString("TrackedContactCategories", "", 0, false);
  IgnorePrivateContacts = ReadBool("IgnorePrivateContacts", true, 0, false);
  EnableBlanketDomain = ReadBool("EnableBlanketDomain", true, 0, false);
  StripAttachments = ReadBool("StripAttachments", false, 0, false);
  SearchEmailAddresses = ReadBool("SearchEmailAddresses", true, 0, false);
  OnlySearchIfNoLinks = ReadBool("OnlySearchIfNoLinks", false, 0, false);
  UseRedemptionCopy = ReadBool("UseRedemptionCopy", true, 0, false);
  EditFolderFields = ReadBool("EditFolderFields", true, 0, false);
  MakeWorkingCopy = ReadBool("MakeWorkingCopy", false, 0, false);
  AlwaysUseFolderFields = ReadBool("AlwaysUseFolderFields", false, 0, false);
  InboxIsOutgoingToo = ReadBool("InboxIsOutgoingToo", false, 0, false);
  QuickscanOverlapHours = ReadLong("QuickscanOverlapHours", 0, 0, false);
  ProcessingDelay = ReadLong("ProcessingDelay", 2000, 0, false);
  // The delay only matters on the Outlook versions between 2000 and 2007.
  if (IsOutlook9 || IsOutlook12OrHigher) ProcessingDelay = 0;
}

void RegSettings::Save() {
  {
    BatchScope batch(&batching_);
    std::string default_log_path =
        platform_->OperatingSystemVersion().IsVistaOrLater() ? platform_->TempPath() : "C:";
    RemoveTrailingBackslash(&default_log_path);
    WriteString("Logging\\LogPath", LogPath, default_log_path, 0, true);
    WriteLong("Logging\\LogLevel", LogLevel, 0, 0, true);
    WriteBool("Logging\\ErrorReporting", LogReporting, false, 0, true);
    WriteLong("Logging\\MaxLogSizeKB", LogMaxSizeKB, 2048, 0, true);
    WriteBool("DontUseEnterpriseSettings", DontUseEnterpriseSettings, false, 0, true);
    WriteBool("RunJobsAsync", RunJobsAsync, true, 0, false);
    WriteLong("QueuedWorkTimeInterval", QueuedWorkTimeInterval, 10, 0, false);
    WriteLong("QueuedWorkTimechunk", QueuedWorkTimechunk, 10, 0, false);
    WriteBool("ShowZintra2Buttons", ShowZintra2Buttons, false, 0, false);
    WriteBool("ShowZintra2ButtonsOnInspectors", ShowZintra2ButtonsOnInspectors, false, 0, false);
    WriteBool("NeverLoadToolbars", NeverLoadToolbars, false, 0, false);
    WriteBool("Foldersets\\CacheContactFolders", CacheContactFolders, true, 0, false);
    WriteBool("Foldersets\\KeepCacheSynched", KeepCacheSynched, true, 0, false);
    WriteBool("Foldersets\\StopFillingCachesOnExit", StopFillingCachesOnExit, false, 0, false);
    WriteBool("Foldersets\\UniqueEmailAddresses", UniqueEmailAddresses, true, 0, false);
    WriteLong("Foldersets\\GetRowChunkSize", GetRowChunkSize, 100, 0, false);
    WriteLong("Foldersets\\Count", FoldersetCount, 0, 0, false);
    const int32_t sets = FoldersetCount;
    WriteStringList("Foldersets\\Contact\\EntryID", ContactFolderEntryIDs, sets, 0);
    WriteStringList("Foldersets\\Contact\\StoreID", ContactFolderStoreIDs, sets, 0);
    WriteStringList("Foldersets\\Email\\EntryID", EmailFolderEntryIDs, sets, 0);
    WriteStringList("Foldersets\\Email\\StoreID", EmailFolderStoreIDs, sets, 0);
    WriteStringList("Foldersets\\Journal\\EntryID", JournalFolderEntryIDs, sets, 0);
    WriteStringList("Foldersets\\Journal\\StoreID", JournalFolderStoreIDs, sets, 0);
    WriteStringList("Foldersets\\SharedCalendar\\EntryID", SharedCalendarEntryIDs, sets, 0);
    WriteStringList("Foldersets\\SharedCalendar\\StoreID", SharedCalendarStoreIDs, sets, 0);
    WriteStringList("Foldersets\\SharedJournal\\EntryID", SharedJournalEntryIDs, sets, 0);
    WriteStringList("Foldersets\\SharedJournal\\StoreID", SharedJournalStoreIDs, sets, 0);
    WriteStringList("Foldersets\\SharedTaskList\\EntryID", SharedTaskListEntryIDs, sets, 0);
    WriteStringList("Foldersets\\SharedTaskList\\StoreID", SharedTaskListStoreIDs, sets, 0);
    WriteLongList("Foldersets\\Flags", FoldersetFlags, sets, 0);
    WriteLong("Monitoring\\MonitoringMethod", MonitorMethod, 0, 0, false);
    WriteLong("Monitoring\\Folders\\FolderCount", MonitorFoldersCount, 0, 0, false);
    const int32_t folders = MonitorFoldersCount;
    WriteStringList("Monitoring\\Folders\\EntryID", MonitorFolderEntryIDs, folders, 0);
    WriteStringList("Monitoring\\Folders\\StoreID", MonitorFolderStoreIDs, folders, 0);
    WriteLongList("Monitoring\\Folders\\Flags", MonitorFolderFlags, folders, 0);
    WriteBool("AuditTrail", AuditTrail, false, 0, false);
    WriteBool("KeepSharedCopiesUpToDate", KeepSharedCopiesUpToDate, true, 0, false);
    WriteBool("KeepLoggedCopiesUpToDate", KeepLoggedCopiesUpToDate, false, 0, false);
    WriteLong("MinAuditInterval", MinAuditInterval, 20, 0, false);
    WriteBool("ScanInbox", ScanInbox, true, 0, false);
    WriteBool("IgnoreItemsFromInternal", IgnoreItemsFromInternal, true, 0, false);
    WriteBool("SearchEmailAddresses", SearchEmailAddresses, true, 0, false);
    WriteBool("OnlySearchIfNoLinks", OnlySearchIfNoLinks, false, 0, false);
    WriteBool("UseRedemptionCopy", UseRedemptionCopy, true, 0, false);
    WriteBool("EditFolderFields", EditFolderFields, true, 0, false);
    WriteBool("MakeWorkingCopy", MakeWorkingCopy, false, 0, false);
    WriteString("TrackedContactCategories", TrackedContactCategories, std::string(), 0, false);
    WriteBool("IgnorePrivateContacts", IgnorePrivateContacts, true, 0, false);
    WriteBool("EnableBlanketDomain", EnableBlanketDomain, true, 0, false);
    WriteBool("StripAttachments", StripAttachments, false, 0, false);
    WriteBool("AlwaysUseFolderFields", AlwaysUseFolderFields, false, 0, false);
    WriteBool("InboxIsOutgoingToo", InboxIsOutgoingToo, false, 0, false);
    WriteLong("QuickscanOverlapHours", QuickscanOverlapHours, 0, 0, false);
    WriteLong("ProcessingDelay", ProcessingDelay, 2000, 0, false);
  }
  // Unconditional: in registry mode with an enterprise path configured this rewrites that
  // file with the header alone, when the user may write it.
  SaveSettingsFile();
}

// --- The enterprise settings file ---

void RegSettings::LoadSettingsFile() {
  if (batching_ && settings_file_.loaded()) return;
  settings_file_.Clear();
  file_unreadable_ = false;
  const std::string path = EnterpriseSettingsPath();
  std::string contents;
  if (!path.empty()) {
    try {
      contents = file_system_->ReadAll(path);
    } catch (const ZError& e) {
      const bool missing = e.Number() == kErrFileNotFound || e.Number() == kErrPathNotFound;
      file_unreadable_ = !missing;
      Warn("Cannot read the settings file '" + path + "' (" + e.Description() +
           "); its values take their defaults");
    }
  }
  settings_file_.Load(contents);
}

void RegSettings::SaveSettingsFile() {
  const std::string path = EnterpriseSettingsPath();
  if (path.empty()) return;
  if (file_unreadable_) {
    Warn("The settings file '" + path + "' could not be read, so it is not overwritten");
    return;
  }
  try {
    file_system_->WriteAll(path, settings_file_.Contents());
  } catch (const ZError& e) {
    if (UsingEnterpriseSettings) {
      Warn("Cannot write the settings file '" + path + "' (" + e.Description() +
           "); the settings are not saved");
    }
  }
}

std::optional<std::string> RegSettings::FileGetValue(const std::string& full_name) {
  if (!settings_file_.loaded()) LoadSettingsFile();
  std::string text;
  switch (settings_file_.Get(full_name, &text)) {
    case SettingsFile::Lookup::kFound:
      return text;
    case SettingsFile::Lookup::kUnterminated:
      Warn("Settings file '" + EnterpriseSettingsPath() + "': the entry '" + full_name +
           "' has no closing tag; the default is used");
      return std::nullopt;
    case SettingsFile::Lookup::kMissing:
      break;
  }
  return std::nullopt;
}

void RegSettings::FileSetValue(const std::string& full_name, const std::string& text) {
  LoadSettingsFile();
  if (text.find('>') != std::string::npos) {
    Warn("Settings file '" + EnterpriseSettingsPath() + "': the value of '" + full_name +
         "' holds '>', which moves the line ends of the saved file");
  }
  settings_file_.Set(full_name, text);
  if (!batching_) SaveSettingsFile();
}

void RegSettings::FileDeleteValue(const std::string& full_name) {
  LoadSettingsFile();
  settings_file_.Delete(full_name);
  if (!batching_) SaveSettingsFile();
}

bool RegSettings::FileHasWriteAccess() const {
  try {
    file_system_->Append(EnterpriseSettingsPath(), "");
    return true;
  } catch (...) {
    return false;
  }
}

}  // namespace zintra
