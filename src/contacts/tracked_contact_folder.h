// TrackedContactFolder: one tracked contact folder with the folders of its folder
// set, answering which of its contacts carry an e-mail address.
//
// Two modes. Uncached: every question is an Items.Find on the folder. Cached: an
// AddressCache filled in the background from the library's contents table, one chunk
// of Foldersets\GetRowChunkSize rows per activation of this object as a job of the
// add-in's queue, and then kept in step with the folder's item events while
// Foldersets\KeepCacheSynched is set. A refill (the cache has gone stale) builds a
// fresh index while the old one keeps answering, and replaces it when complete.
//
// Ownership: created and held by TrackedContacts (the owner, held weakly) with
// std::make_shared; the queue holds it while a fill chunk is queued. Kill drops the
// folders, the caches, the table and the item events; a killed folder answers no
// contacts and its queued chunk does nothing.
//
// Errors: Initialize throws (blank identifiers: ZError 5 "EntryID or StoreID
// parameter is blank"; a folder that cannot be opened: the platform's error). The
// fill never throws: a folder that stops answering is reported as a lost connection
// (logged, string 1100 in an optional message, the folder killed and removed from its
// owner). GetContactItems logs its errors and returns what it found.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "src/contacts/address_cache.h"
#include "src/contacts/folderset_config.h"
#include "src/core/event.h"
#include "src/jobs/i_job.h"

namespace zintra {

class ContactsAddin;
class Folder;
class Item;
class Items;
class MapiTable;
class TrackedContacts;
class ZError;

// Optional-message number of the lost-connection message (string 1100).
inline constexpr int32_t kDialogFolderConnectionLost = 1;
inline constexpr int32_t kStrFolderConnectionLost = 1100;
// Task-list icon of a cache fill.
inline constexpr int32_t kFillTaskIcon = 127;
// The contact property set and the ids of the three e-mail address properties.
inline constexpr char kContactPropSet[] = "{00062004-0000-0000-C000-000000000046}";
inline constexpr int32_t kEmail1AddressId = 0x8083;
inline constexpr int32_t kEmail2AddressId = 0x8093;
inline constexpr int32_t kEmail3AddressId = 0x80A3;
// A stale cache holds more than this many addresses per item of the folder ...
inline constexpr int32_t kStaleAddressesPerItem = 9;
// ... and was filled more than this many minutes ago.
inline constexpr int64_t kStaleMinutes = 10;

class TrackedContactFolder : public IJob,
                             public std::enable_shared_from_this<TrackedContactFolder> {
 public:
  TrackedContactFolder(std::weak_ptr<ContactsAddin> app, std::weak_ptr<TrackedContacts> owner,
                       std::string key);
  ~TrackedContactFolder() override;
  TrackedContactFolder(const TrackedContactFolder&) = delete;
  TrackedContactFolder& operator=(const TrackedContactFolder&) = delete;

  // Opens the contact folder and the set's other folders (one that cannot be opened
  // is logged and left empty) and, with Foldersets\CacheContactFolders set, starts
  // the first fill. Throws as the class comment says.
  void Initialize(const FoldersetConfig& config);
  void Kill();

  // Identity and the folder set.
  const std::string& EntryID() const { return entry_id_; }
  const std::string& StoreID() const { return store_id_; }
  const std::string& key() const { return key_; }
  std::shared_ptr<Folder> ContactFolder() const { return folder_; }
  std::shared_ptr<Folder> JournalFolder() const { return journal_folder_; }
  std::shared_ptr<Folder> EmailFolder() const { return email_folder_; }
  std::shared_ptr<Folder> SharedCalendar() const { return shared_calendar_; }
  std::shared_ptr<Folder> SharedJournal() const { return shared_journal_; }
  std::shared_ptr<Folder> SharedTaskList() const { return shared_task_list_; }
  int32_t FLAGS() const { return flags_; }
  bool Flag_LogRoutedItems() const { return (flags_ & 1) == 1; }
  bool Flag_LeavePersonalCopy() const { return (flags_ & 2) == 2; }

  // Uncached mode is always ready; with a cache, ready once a fill has completed.
  bool Ready() const { return !cache_ || cached_; }
  bool Killed() const { return killed_; }
  bool Cached() const { return cached_; }
  bool HasCache() const { return cache_.has_value(); }
  bool Filling() const { return !task_id_.empty(); }
  int32_t CacheCount() const { return cache_ ? cache_->Count() : 0; }
  int32_t CacheLeftToFill() const;
  // The entry identifier the cache holds for the address (nullptr when none or
  // uncached). No store call.
  const std::string* CacheLookup(std::string_view address) const;
  size_t CacheMemoryUsage() const { return cache_ ? cache_->MemoryUsage() : 0; }

  // The contacts of this folder that carry the address and pass the owner's
  // ShouldTrack. A cached identifier whose contact no longer opens is dropped and
  // the folder searched instead.
  std::vector<std::shared_ptr<Item>> GetContactItems(const std::string& address);
  // The uncached search: Items.Find with the three-address filter, then FindNext.
  std::vector<std::shared_ptr<Item>> FindContactItems(const std::string& address);

  void RefreshCache();
  // Re-reads the set's folders and flags, and takes up changed cache switches
  // (caching on or off, keeping in step on or off).
  void UpdateSettingsFromReg();

  // The fill job.
  void Activate() override;
  void Abort() override;
  std::string JobDescription() override;

  // The folder's name; a failed read is logged and the last name known returned.
  std::string Name();

  // Handlers of the folder's item events while the cache is kept in step.
  void Items_EventsOnly_ItemAdd(const std::shared_ptr<Item>& item);
  void Items_EventsOnly_ItemChange(const std::shared_ptr<Item>& item);
  void Items_EventsOnly_ItemRemove();

 private:
  void OpenSet(const FoldersetConfig& config);
  std::shared_ptr<Folder> OpenSetFolder(const FolderIds& ids, const char* what);
  // Makes the cache and the contents table; false (logged) when the table cannot be had.
  bool StartCaching();
  void DropCache();
  void HookItemEvents();
  void UnhookItemEvents();
  bool IsStale();
  void AddItemToCache(const std::shared_ptr<Item>& item);
  void FinishFill();
  void ReportConnectionFailure(const ZError& error, const char* proc);
  void RemoveTask();
  bool ShouldTrack(const std::shared_ptr<Item>& contact);
  void LogError(const ZError& error, const char* proc);
  void LogLine(const std::string& text);

  std::weak_ptr<ContactsAddin> app_;
  std::weak_ptr<TrackedContacts> owner_;
  std::string key_;
  std::string entry_id_, store_id_;
  std::string name_;  // last name read
  std::shared_ptr<Folder> folder_;
  std::shared_ptr<Folder> journal_folder_, email_folder_, shared_calendar_, shared_journal_,
      shared_task_list_;
  int32_t flags_ = 0;

  std::optional<AddressCache> cache_;    // the index that answers
  std::optional<AddressCache> filling_;  // the index being built by a refill
  std::shared_ptr<MapiTable> table_;
  int32_t rows_filled_ = 0;
  int32_t row_count_ = 0;
  std::string task_id_;
  bool cached_ = false;
  double last_fill_time_ = 0;
  std::shared_ptr<Items> item_events_;
  std::vector<Connection> item_connections_;
  bool killed_ = false;
};

}  // namespace zintra
