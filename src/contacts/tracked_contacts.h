// TrackedContacts: the set of tracked contact folders, one TrackedContactFolder per
// configured folder set, in the order of the settings. It rebuilds the set when the
// settings change (folders that stay configured keep their caches), answers which
// folder set a folder belongs to and whether sharing is configured, decides whether
// a contact is tracked at all (ShouldTrack), and starts e-mail searches
// (ContactSearch) over all tracked folders.
//
// Pending searches: a search started while some folder's first fill is still running
// searches the ready folders and waits in pSearches. Whenever a folder becomes ready
// (its fill completed, or it fell back to uncached mode) or leaves the set, and every
// remaining folder is ready, each pending search is resumed at once, inside that call:
// it searches only the folders it skipped, then completes.
//
// Ownership: the add-in creates one with std::make_shared and calls Initialize; it
// holds the add-in weakly. Kill (or Addin_Kill) kills every folder and every pending
// search (which then completes as aborted). Called on Outlook's thread only. No member
// throws except Search (error 5 without addresses).
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "src/core/keyed_collection.h"
#include "src/jobs/i_check_linger.h"

namespace zintra {

class ContactSearch;
class ContactsAddin;
class Folder;
class Item;
class RegSettings;
class TrackedContactFolder;

// Optional-message number and string of "cannot connect to contact folders".
inline constexpr int32_t kDialogContactFoldersUnreachable = 2;
inline constexpr int32_t kStrContactFoldersUnreachable = 1101;

class TrackedContacts : public ICheckLinger, public std::enable_shared_from_this<TrackedContacts> {
 public:
  TrackedContacts();
  ~TrackedContacts() override;
  TrackedContacts(const TrackedContacts&) = delete;
  TrackedContacts& operator=(const TrackedContacts&) = delete;

  // Keeps the add-in and builds the tracked folders from its settings.
  void Initialize(const std::shared_ptr<ContactsAddin>& app);
  void Kill();
  void Addin_Kill() { Kill(); }
  // Rebuilds the tracked folders from the settings now in force (the old settings are
  // not needed: configured sets are compared with the folders tracked).
  void Addin_RegSettingsChanged(const RegSettings& old_settings);

  const KeyedCollection<std::shared_ptr<TrackedContactFolder>>& Folders() const {
    return pTrackedFoldersets;
  }
  int32_t FolderCount() const { return pTrackedFoldersets.Count(); }
  int32_t ReadyFolderCount() const;
  int32_t PendingSearchCount() const { return pSearches.Count(); }

  // Starts a search for the addresses over all tracked folders. The search may have
  // completed before this returns (test Completed before waiting for SearchComplete).
  // nullptr `emails`: error 5 "No emails to search specified".
  std::shared_ptr<ContactSearch> Search(const std::vector<std::string>* emails);
  std::shared_ptr<ContactSearch> Search(const std::vector<std::string>& emails) {
    return Search(&emails);
  }

  // The tracked folder whose contact folder is `folder`, else nullptr.
  std::shared_ptr<TrackedContactFolder> FoldersetFor(const std::shared_ptr<Folder>& folder);
  bool IsTrackedFolder(const std::shared_ptr<Folder>& folder);
  bool JournalSharingActive() const;
  bool CalendarSharingActive() const;
  bool TaskSharingActive() const;

  // The contact filter: sensitivity, then the category list.
  bool ShouldTrack(const std::shared_ptr<Item>& contact);

  // ICheckLinger_CheckLingeringRefs.
  void CheckLingeringRefs() override;

  // From the tracked folders: a fill completed (or the folder fell back to uncached
  // mode); the folder died and was killed.
  void FolderReady(const std::string& key);
  void FolderDied(const std::string& key);
  // From a search that completed or was killed.
  void SearchFinished(const std::string& key);

 private:
  void Rebuild();
  bool SameFolder(const std::string& entry_id, const std::string& store_id,
                  const std::shared_ptr<Folder>& folder);
  void ResumePendingSearches();
  void LogLine(const std::string& text, bool warning = false);

  std::weak_ptr<ContactsAddin> app_;
  KeyedCollection<std::shared_ptr<TrackedContactFolder>> pTrackedFoldersets;
  KeyedCollection<std::shared_ptr<ContactSearch>> pSearches;
  bool rebuilding_ = false;
  bool resuming_ = false;
  uint64_t own_keys_ = 0;  // search keys while the add-in is gone
};

}  // namespace zintra
