#include "src/contacts/tracked_contacts.h"

#include <utility>

#include "src/contacts/contact_search.h"
#include "src/contacts/contacts_addin.h"
#include "src/contacts/folderset_config.h"
#include "src/contacts/tracked_contact_folder.h"
#include "src/core/text.h"
#include "src/core/z_error.h"
#include "src/errors/cached_error.h"
#include "src/host/mapi_utils.h"
#include "src/host/outlook_folder.h"
#include "src/host/outlook_item.h"
#include "src/jobs/job_engine_log.h"
#include "src/resources/string_table.h"
#include "src/settings/reg_settings.h"

namespace zintra {

namespace {

constexpr char kTrackedContactsModule[] = "TrackedContacts";

// The categories of a comma-separated list, trimmed and in upper case; blank ones
// (stray commas) are left out.
std::vector<std::string> CategoriesOf(const std::string& list) {
  std::vector<std::string> out;
  for (const auto& part : text::Split(list, ",")) {
    std::string category = text::UCase(text::Trim(part));
    if (!category.empty()) out.push_back(std::move(category));
  }
  return out;
}

}  // namespace

TrackedContacts::TrackedContacts() = default;
TrackedContacts::~TrackedContacts() = default;

void TrackedContacts::Initialize(const std::shared_ptr<ContactsAddin>& app) {
  app_ = app;
  try {
    app->SetCheckLinger(shared_from_this());
  } catch (const ZError& e) {
    app->Log().LogCachedError(CachedError(e, kTrackedContactsModule, "Initialize"));
  }
  Rebuild();
}

void TrackedContacts::Addin_RegSettingsChanged(const RegSettings& /*old_settings*/) { Rebuild(); }

void TrackedContacts::Rebuild() {
  auto app = app_.lock();
  if (!app) return;
  rebuilding_ = true;
  const RegSettings& settings = app->Settings();
  // Folders no longer configured go; the others take up their set's changes.
  for (const auto& folder : pTrackedFoldersets.Values()) {
    if (!FindFoldersetIndex(settings, folder->EntryID(), folder->StoreID())) {
      folder->Kill();
      pTrackedFoldersets.Remove(folder->key());
    }
  }
  for (const auto& folder : pTrackedFoldersets.Values()) folder->UpdateSettingsFromReg();

  // New sets get a folder; the collection is then put in the order of the settings.
  KeyedCollection<std::shared_ptr<TrackedContactFolder>> ordered;
  int32_t failures = 0;
  for (int32_t i = 1; i <= settings.FoldersetCount; ++i) {
    const FoldersetConfig config = FoldersetConfig::FromSettings(settings, i);
    std::shared_ptr<TrackedContactFolder> existing;
    for (const auto& folder : pTrackedFoldersets.Values()) {
      if (text::EqualsNoCase(folder->EntryID(), config.Contact.EntryID) &&
          text::EqualsNoCase(folder->StoreID(), config.Contact.StoreID)) {
        existing = folder;
        break;
      }
    }
    if (existing) {
      if (!ordered.Contains(existing->key())) ordered.Add(existing, existing->key());
      continue;  // a set listed twice is tracked once
    }
    const std::string key = app->GenerateKey();
    auto folder = std::make_shared<TrackedContactFolder>(app_, weak_from_this(), key);
    try {
      folder->Initialize(config);
    } catch (const ZError& e) {
      CachedError rec(e, kTrackedContactsModule, "Addin_RegSettingsChanged");
      app->Log().LogCachedError(rec);
      folder->Kill();
      ++failures;
      continue;
    }
    // A folder whose first fill already failed has been reported and killed.
    if (folder->Killed()) continue;
    pTrackedFoldersets.Add(folder, key);
    ordered.Add(folder, key);
  }
  pTrackedFoldersets = std::move(ordered);
  rebuilding_ = false;

  if (failures > 0) {
    const StringTable& strings = app->Strings();
    app->OptionalMsgBox(kDialogContactFoldersUnreachable,
                        strings.Load(kStrContactFoldersUnreachable), strings.Load(kStrProductName));
  }
  ResumePendingSearches();
}

void TrackedContacts::Kill() {
  for (const auto& folder : pTrackedFoldersets.Values()) folder->Kill();
  pTrackedFoldersets.Clear();
  for (const auto& search : pSearches.Values()) search->Kill();
  pSearches.Clear();
}

int32_t TrackedContacts::ReadyFolderCount() const {
  int32_t ready = 0;
  for (const auto& folder : pTrackedFoldersets.Values()) {
    if (folder->Ready()) ++ready;
  }
  return ready;
}

std::shared_ptr<ContactSearch> TrackedContacts::Search(const std::vector<std::string>* emails) {
  if (!emails) throw ZError(kErrInvalidCall, "No emails to search specified");
  auto app = app_.lock();
  const std::string key = app ? app->GenerateKey() : std::string("S") + std::to_string(++own_keys_);
  auto search = std::make_shared<ContactSearch>(app_, weak_from_this(), key);
  // Most searches complete inside Start: only one that waits for a folder's first fill
  // is filed as pending.
  search->Start(*emails);
  if (!search->Completed()) {
    pSearches.Add(search, key);
    // Had the last folder become ready meanwhile, nothing else would resume it.
    ResumePendingSearches();
  }
  return search;
}

void TrackedContacts::SearchFinished(const std::string& key) { pSearches.RemoveIfPresent(key); }

void TrackedContacts::FolderReady(const std::string& /*key*/) { ResumePendingSearches(); }

void TrackedContacts::FolderDied(const std::string& key) {
  if (pTrackedFoldersets.Contains(key)) pTrackedFoldersets.Remove(key);
  ResumePendingSearches();
}

void TrackedContacts::ResumePendingSearches() {
  if (rebuilding_ || resuming_ || pSearches.Count() == 0) return;
  if (ReadyFolderCount() != FolderCount()) return;
  resuming_ = true;
  for (const auto& search : pSearches.Values()) search->Resume();
  resuming_ = false;
}

bool TrackedContacts::SameFolder(const std::string& entry_id, const std::string& store_id,
                                 const std::shared_ptr<Folder>& folder) {
  if (!folder) return false;
  try {
    if (!text::EqualsNoCase(folder->StoreID(), store_id)) return false;
    const std::string other = folder->EntryID();
    if (text::EqualsNoCase(other, entry_id)) return true;
    auto app = app_.lock();
    auto utils = app ? app->LibraryUtils() : nullptr;
    return utils && utils->CompareIDs(other, entry_id);
  } catch (const ZError&) {
    return false;  // a folder that cannot be read is no tracked folder
  }
}

std::shared_ptr<TrackedContactFolder> TrackedContacts::FoldersetFor(
    const std::shared_ptr<Folder>& folder) {
  for (const auto& tracked : pTrackedFoldersets.Values()) {
    if (!tracked->Killed() && SameFolder(tracked->EntryID(), tracked->StoreID(), folder)) {
      return tracked;
    }
  }
  return nullptr;
}

bool TrackedContacts::IsTrackedFolder(const std::shared_ptr<Folder>& folder) {
  return FoldersetFor(folder) != nullptr;
}

bool TrackedContacts::JournalSharingActive() const {
  for (const auto& f : pTrackedFoldersets.Values()) {
    if (f->SharedJournal()) return true;
  }
  return false;
}

bool TrackedContacts::CalendarSharingActive() const {
  for (const auto& f : pTrackedFoldersets.Values()) {
    if (f->SharedCalendar()) return true;
  }
  return false;
}

bool TrackedContacts::TaskSharingActive() const {
  for (const auto& f : pTrackedFoldersets.Values()) {
    if (f->SharedTaskList()) return true;
  }
  return false;
}

bool TrackedContacts::ShouldTrack(const std::shared_ptr<Item>& contact) {
  auto app = app_.lock();
  if (!app || !contact) return false;
  const RegSettings& settings = app->Settings();
  try {
    if (settings.IgnorePrivateContacts) {
      const int32_t sensitivity = contact->Sensitivity();
      if (sensitivity == 1 || sensitivity == 2 || sensitivity == 3) return false;
    }
    // A list of nothing but blanks and commas filters nothing, as an empty one (told
    // without parsing it: this is asked for every contact found).
    if (settings.TrackedContactCategories.find_first_not_of(" ,") == std::string::npos) {
      return true;
    }
    const std::vector<std::string> wanted = CategoriesOf(settings.TrackedContactCategories);
    if (wanted.empty()) return true;
    const std::string categories = contact->Categories();
    if (categories.empty()) return false;
    const std::vector<std::string> held = CategoriesOf(categories);
    for (const auto& w : wanted) {
      for (const auto& h : held) {
        if (w == h) return true;
      }
    }
    return false;
  } catch (const ZError& e) {
    app->Log().LogCachedError(CachedError(e, kTrackedContactsModule, "ShouldTrack"));
    return false;
  }
}

void TrackedContacts::CheckLingeringRefs() {
  auto app = app_.lock();
  if (!app) return;
  for (const auto& folder : pTrackedFoldersets.Values()) {
    app->Log().LogWarning("Lingering pTrackedFoldersets object for \"" + folder->Name() +
                          "\" exists in TrackedContacts CheckLinger");
  }
  if (pSearches.Count() > 0) {
    app->Log().LogWarning("Lingering pSearches objects exist in TrackedContacts CheckLinger");
  }
}

}  // namespace zintra
