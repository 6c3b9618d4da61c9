// RegSettings: the add-in's one configuration object, one public field per stored value.
// Values live under "Software\Brellow\Zintra" in the per-user or the machine hive, or,
// when an administrator names an enterprise settings file in the policy key, in that
// file (all but the registry-only logging values). Read fills the fields; Save writes
// every field back, deleting values that equal their defaults.
//
// Ports are borrowed: the registry, file system and platform must outlive this object
// and every copy of it. Copies are independent (the add-in keeps the old settings to
// compare after a change). Registry and file failures never escape: a missing, denied
// or malformed value takes its default and is reported to the warning sink. The only
// error that leaves Read is ZError kErrOverflow (6) for a 16-bit field stored above
// 32767 (LogMaxSizeKB, GetRowChunkSize). Used only on the user-interface thread.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "src/core/keyed_collection.h"
#include "src/host/file_system.h"
#include "src/host/platform.h"
#include "src/host/registry.h"
#include "src/settings/settings_file.h"

namespace zintra {

using StringList = KeyedCollection<std::string>;  // 1-based, as Read builds it
using LongList = KeyedCollection<int32_t>;

// Compares two entry identifiers, as the library's CompareEntryIDs does; may throw.
using EntryIdComparer = std::function<bool(const std::string&, const std::string&)>;

// Receives a line describing a problem that was handled by taking a default.
using SettingsWarningSink = std::function<void(const std::string& text)>;

inline constexpr char kProductKey[] = "Software\\Brellow\\Zintra";
inline constexpr char kPolicyKey[] = "Software\\Policies\\Brellow\\Zintra";
inline constexpr char kAddinLoaderKey[] =
    "SOFTWARE\\Microsoft\\Office\\Outlook\\Addins\\ZintraAddin.Connect";
inline constexpr char kSettingsFileHeader[] = "; Zintra3.0.x Settings File";

// Locations for HasWriteAccess, WriteAddinLoader and the private readers and writers.
inline constexpr int32_t kLocationDefault = 0;
inline constexpr int32_t kLocationUser = 1;
inline constexpr int32_t kLocationMachine = 2;

// The most elements a list count may claim; a larger count is treated as malformed.
inline constexpr int32_t kMaxListCount = 10000;

class RegSettings {
 public:
  // Determines MultiUser (whether the add-in is registered in HKEY_LOCAL_MACHINE);
  // reads nothing else.
  RegSettings(Registry& registry, FileSystem& file_system, Platform& platform);

  RegSettings(const RegSettings&) = default;
  RegSettings& operator=(const RegSettings&) = default;

  // Problems handled by taking a default are reported here (none when unset).
  void SetWarningSink(SettingsWarningSink sink) { warning_sink_ = std::move(sink); }

  // --- Fields, in declaration order ---
  bool UsingEnterpriseSettings = false;
  bool MultiUser = false;
  std::string LogPath;
  int32_t LogLevel = 0;
  bool LogReporting = false;
  int16_t LogMaxSizeKB = 2048;
  bool SearchEmailAddresses = true;
  bool OnlySearchIfNoLinks = false;
  bool RunJobsAsync = true;
  int32_t QueuedWorkTimeInterval = 10;
  int32_t QueuedWorkTimechunk = 10;
  bool ShowZintra2Buttons = false;
  bool ShowZintra2ButtonsOnInspectors = false;
  bool NeverLoadToolbars = false;
  bool CacheContactFolders = true;
  bool KeepCacheSynched = true;
  bool StopFillingCachesOnExit = false;
  bool UniqueEmailAddresses = true;
  int16_t GetRowChunkSize = 100;
  int32_t FoldersetCount = 0;
  StringList ContactFolderEntryIDs;
  StringList ContactFolderStoreIDs;
  StringList EmailFolderEntryIDs;
  StringList EmailFolderStoreIDs;
  StringList JournalFolderEntryIDs;
  StringList JournalFolderStoreIDs;
  StringList SharedCalendarEntryIDs;
  StringList SharedCalendarStoreIDs;
  StringList SharedJournalEntryIDs;
  StringList SharedJournalStoreIDs;
  StringList SharedTaskListEntryIDs;
  StringList SharedTaskListStoreIDs;
  LongList FoldersetFlags;
  int32_t MonitorMethod = 0;
  int32_t MonitorFoldersCount = 0;
  StringList MonitorFolderEntryIDs;
  StringList MonitorFolderStoreIDs;
  LongList MonitorFolderFlags;
  bool AuditTrail = false;
  bool KeepSharedCopiesUpToDate = true;
  bool KeepLoggedCopiesUpToDate = false;
  int32_t MinAuditInterval = 20;
  bool ScanInbox = true;
  bool IgnoreItemsFromInternal = true;
  std::string TrackedContactCategories;
  bool IgnorePrivateContacts = true;
  bool EnableBlanketDomain = true;
  bool StripAttachments = false;
  bool EditFolderFields = true;
  bool UseRedemptionCopy = true;
  bool MakeWorkingCopy = false;
  bool DontUseEnterpriseSettings = false;
  bool AlwaysUseFolderFields = false;
  bool InboxIsOutgoingToo = false;
  int32_t QuickscanOverlapHours = 0;
  int32_t ProcessingDelay = 2000;  // milliseconds

  // --- Members ---
  // "SuppressDialogs\<n>" in HKEY_CURRENT_USER, default False.
  bool DialogSuppressed(int32_t dialog) const;
  void DialogSuppressed(int32_t dialog, bool suppressed);
  // Deletes the SuppressDialogs subkey in HKEY_CURRENT_USER so every message shows again.
  void DialogSuppressReset();

  // Fills the fields. With JustCritical only the four logging values. Throws ZError
  // kErrOverflow for a 16-bit field stored above 32767.
  void Read(bool JustCritical, bool IsOutlook9, bool IsOutlook12OrHigher);
  // Writes every field back, then rewrites the settings file (see the class comment).
  void Save();
  // Whether Save could write at `location` (kLocationDefault/User/Machine). Never throws.
  bool HasWriteAccess(int32_t location) const;
  // The enterprise settings file named by the policy key ("" when none).
  std::string EnterpriseSettingsPath() const;
  // Whether a user may opt out of the enterprise file with DontUseEnterpriseSettings.
  bool AllowLocalOverride() const;
  // Puts CR LF after every second ">" so that each entry of a buffer ends its own line.
  static std::string InsertLinebreaks(const std::string& text);
  // "UserFirstRun" in HKEY_CURRENT_USER, default True.
  bool UserFirstRun() const;
  void UserFirstRun(bool first_run);
  // The 1-based index of the folder set whose contact folder is the given one, comparing
  // entry IDs (and store IDs) with `compare`; nullopt when none matches. Errors thrown
  // by `compare` count as "not equal".
  std::optional<int32_t> utilFindFoldersetIndex(const std::string& ContactFolderEntryID,
                                                const std::string& ContactFolderStoreID,
                                                const EntryIdComparer& compare) const;
  // Registers the add-in with Outlook's loader: HKEY_CURRENT_USER for kLocationUser,
  // else HKEY_LOCAL_MACHINE. Returns false (and warns) when the key cannot be written.
  bool WriteAddinLoader(int32_t location);

 private:
  HKey ResolveHive(int32_t location) const;
  void Warn(const std::string& text) const;
  // A per-user, registry-only Boolean (dialog suppression, first run).
  bool ReadUserFlag(const std::string& name, bool default_value) const;

  std::string ReadString(const std::string& name, const std::string& default_value,
                         int32_t location, bool registry_only);
  int32_t ReadLong(const std::string& name, int32_t default_value, int32_t location,
                   bool registry_only);
  bool ReadBool(const std::string& name, bool default_value, int32_t location, bool registry_only);
  int16_t ReadInteger(const std::string& name, int16_t default_value, int32_t location,
                      bool registry_only);
  void WriteString(const std::string& name, const std::string& value,
                   const std::optional<std::string>& default_value, int32_t location,
                   bool registry_only);
  void WriteLong(const std::string& name, int32_t value,
                 const std::optional<int32_t>& default_value, int32_t location, bool registry_only);
  void WriteBool(const std::string& name, bool value, const std::optional<bool>& default_value,
                 int32_t location, bool registry_only);
  StringList ReadStringList(const std::string& name, int32_t count, int32_t location);
  LongList ReadLongList(const std::string& name, int32_t count, int32_t location);
  void WriteStringList(const std::string& name, const StringList& list, int32_t count,
                       int32_t location);
  void WriteLongList(const std::string& name, const LongList& list, int32_t count,
                     int32_t location);

  // Raw text of a value (registry or file), nullopt when missing or unreadable.
  std::optional<std::string> ReadText(const std::string& name, int32_t location,
                                      bool registry_only);
  std::optional<uint32_t> ReadDword(const std::string& name, int32_t location, bool registry_only);
  // Deletes a value that equals its default; true when the write is thereby done.
  bool DeleteForDefault(const std::string& name, int32_t location, bool registry_only);
  void WriteText(const std::string& name, const std::string& text, int32_t location);
  void WriteDword(const std::string& name, uint32_t value, int32_t location);
  bool InFileMode(bool registry_only) const { return !registry_only && UsingEnterpriseSettings; }
  // A list count outside 0 .. kMaxListCount is malformed and reads as 0.
  int32_t ReadCount(const std::string& name, int32_t location);
  void LoadSettingsFile();
  void SaveSettingsFile();
  std::optional<std::string> FileGetValue(const std::string& full_name);
  void FileSetValue(const std::string& full_name, const std::string& text);
  void FileDeleteValue(const std::string& full_name);
  bool FileHasWriteAccess() const;

  Registry* registry_;
  FileSystem* file_system_;
  Platform* platform_;
  SettingsWarningSink warning_sink_;
  bool local_override_ = false;
  SettingsFile settings_file_;
  // The file exists but could not be read: saving over it would lose its values.
  bool file_unreadable_ = false;
  bool batching_ = false;
};

}  // namespace zintra
