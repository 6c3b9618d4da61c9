#include "src/contacts/tracked_contact_folder.h"

#include <utility>

#include "src/contacts/contacts_addin.h"
#include "src/contacts/tracked_contacts.h"
#include "src/core/date.h"
#include "src/core/text.h"
#include "src/core/z_error.h"
#include "src/errors/cached_error.h"
#include "src/host/mapi_object.h"
#include "src/host/mapi_table.h"
#include "src/host/mapi_utils.h"
#include "src/host/outlook_application.h"
#include "src/jobs/job_engine_log.h"
#include "src/jobs/job_queue.h"
#include "src/settings/reg_settings.h"

namespace zintra {

namespace {

constexpr char kTrackedContactFolderModule[] = "TrackedContactFolder";

// The filter's text literal: a double quote inside is written twice.
std::string Quoted(const std::string& address) {
  return "\"" + text::Replace(address, "\"", "\"\"") + "\"";
}

bool Carries(const Item& contact, const std::string& address) {
  return text::EqualsNoCase(contact.Email1Address(), address) ||
         text::EqualsNoCase(contact.Email2Address(), address) ||
         text::EqualsNoCase(contact.Email3Address(), address);
}

}  // namespace

TrackedContactFolder::TrackedContactFolder(std::weak_ptr<ContactsAddin> app,
                                           std::weak_ptr<TrackedContacts> owner, std::string key)
    : app_(std::move(app)), owner_(std::move(owner)), key_(std::move(key)) {}

TrackedContactFolder::~TrackedContactFolder() = default;

void TrackedContactFolder::Initialize(const FoldersetConfig& config) {
  if (config.Contact.Blank())
    throw ZError(kErrInvalidCall, "EntryID or StoreID parameter is blank");
  auto app = app_.lock();
  if (!app) throw ZError(kErrObjectNotSet, "The add-in is gone");
  entry_id_ = config.Contact.EntryID;
  store_id_ = config.Contact.StoreID;
  name_ = entry_id_;  // until the name has been read once
  folder_ = app->Session()->GetFolderFromID(entry_id_, store_id_);
  Name();
  OpenSet(config);
  if (app->Settings().CacheContactFolders && StartCaching()) RefreshCache();
}

void TrackedContactFolder::OpenSet(const FoldersetConfig& config) {
  journal_folder_ = OpenSetFolder(config.Journal, "journal");
  email_folder_ = OpenSetFolder(config.Email, "e-mail");
  shared_calendar_ = OpenSetFolder(config.SharedCalendar, "shared calendar");
  shared_journal_ = OpenSetFolder(config.SharedJournal, "shared journal");
  shared_task_list_ = OpenSetFolder(config.SharedTaskList, "shared task list");
  flags_ = config.Flags;
}

std::shared_ptr<Folder> TrackedContactFolder::OpenSetFolder(const FolderIds& ids,
                                                            const char* what) {
  if (ids.Blank()) return nullptr;
  auto app = app_.lock();
  if (!app) return nullptr;
  try {
    return app->Session()->GetFolderFromID(ids.EntryID, ids.StoreID);
  } catch (const ZError& e) {
    LogError(
        ZError(e.Number(), "Could not open the " + std::string(what) +
                               " folder of the folder set of '" + name_ + "': " + e.Description()),
        "OpenSet");
    return nullptr;
  }
}

void TrackedContactFolder::Kill() {
  killed_ = true;
  RemoveTask();
  UnhookItemEvents();
  cache_.reset();
  filling_.reset();
  table_.reset();
  cached_ = false;
  folder_.reset();
  journal_folder_.reset();
  email_folder_.reset();
  shared_calendar_.reset();
  shared_journal_.reset();
  shared_task_list_.reset();
}

int32_t TrackedContactFolder::CacheLeftToFill() const {
  if (!Filling()) return 0;
  return row_count_ > rows_filled_ ? row_count_ - rows_filled_ : 0;
}

const std::string* TrackedContactFolder::CacheLookup(std::string_view address) const {
  return cache_ && cached_ ? cache_->Find(address) : nullptr;
}

std::vector<std::shared_ptr<Item>> TrackedContactFolder::GetContactItems(
    const std::string& address) {
  std::vector<std::shared_ptr<Item>> result;
  if (killed_ || !folder_ || address.empty()) return result;
  if (!(cache_ && cached_)) {
    for (auto& contact : FindContactItems(address)) {
      if (ShouldTrack(contact)) result.push_back(std::move(contact));
    }
    return result;
  }
  const std::string* id = cache_->Find(address);
  if (!id) return result;
  const std::string entry_id = *id;
  auto app = app_.lock();
  if (!app) return result;
  try {
    auto contact = app->Session()->GetItemFromID(entry_id, store_id_);
    if (contact && Carries(*contact, address)) {
      if (ShouldTrack(contact)) result.push_back(std::move(contact));
      return result;
    }
  } catch (const ZError& e) {
    if (e.Number() != kMapiNotFound && e.Number() != kMapiObjectDeleted) {
      LogError(e, "GetContactItems");
      return result;
    }
  }
  // The contact was deleted or no longer carries the address: the folder decides,
  // and the cache learns its answer.
  cache_->Remove(address);
  LogLine("Cache for folder '" + name_ + "' held a stale entry for '" + address +
          "'; searching the folder.");
  auto found = FindContactItems(address);
  if (!found.empty()) {
    try {
      cache_->AddAddress(address, found.front()->EntryID());
    } catch (const ZError& e) {
      LogError(e, "GetContactItems");
    }
  }
  for (auto& contact : found) {
    if (ShouldTrack(contact)) {
      result.push_back(std::move(contact));
      break;  // the cache answers with one contact per address
    }
  }
  return result;
}

std::vector<std::shared_ptr<Item>> TrackedContactFolder::FindContactItems(
    const std::string& address) {
  std::vector<std::shared_ptr<Item>> found;
  if (killed_ || !folder_ || address.empty()) return found;
  const std::string q = Quoted(address);
  const std::string filter = "[Email1Address] = " + q + " or " + "[Email2Address] = " + q + " or " +
                             "[Email3Address] = " + q;
  try {
    auto items = folder_->Items();
    for (auto item = items->Find(filter); item; item = items->FindNext()) {
      if (item->Class() == ItemClass::kContact) found.push_back(std::move(item));
    }
  } catch (const ZError& e) {
    LogError(e, "FindContactItems");
  }
  return found;
}

bool TrackedContactFolder::ShouldTrack(const std::shared_ptr<Item>& contact) {
  auto owner = owner_.lock();
  return owner ? owner->ShouldTrack(contact) : true;
}

void TrackedContactFolder::UpdateSettingsFromReg() {
  if (killed_) return;
  auto app = app_.lock();
  if (!app) return;
  const RegSettings& settings = app->Settings();
  if (auto index = FindFoldersetIndex(settings, entry_id_, store_id_)) {
    OpenSet(FoldersetConfig::FromSettings(settings, *index));
  }
  if (settings.CacheContactFolders && !cache_) {
    if (StartCaching()) RefreshCache();
  } else if (!settings.CacheContactFolders && cache_) {
    RemoveTask();
    DropCache();
    LogLine("Cache for folder '" + Name() + "' switched to uncached mode.");
  }
  if (cached_ && settings.KeepCacheSynched && !item_events_) {
    HookItemEvents();
  } else if (!settings.KeepCacheSynched && item_events_) {
    UnhookItemEvents();
  }
}

std::string TrackedContactFolder::JobDescription() { return "Fill cache for '" + Name() + "'"; }

std::string TrackedContactFolder::Name() {
  if (!folder_) return name_;
  try {
    name_ = folder_->Name();
  } catch (const ZError& e) {
    LogError(ZError(e.Number(), "Error " + std::to_string(e.Number()) + " (" + e.Description() +
                                    ") while accessing Name property of folder '" + name_ +
                                    "' (EntryID " + entry_id_ + ")"),
             "Name");
  }
  return name_;
}

void TrackedContactFolder::HookItemEvents() {
  UnhookItemEvents();
  if (!folder_) return;
  try {
    item_events_ = folder_->Items();
  } catch (const ZError& e) {
    LogError(e, "HookItemEvents");
    return;
  }
  std::weak_ptr<TrackedContactFolder> weak = weak_from_this();
  item_connections_.push_back(item_events_->ItemAdd.Connect([weak](std::shared_ptr<Item> item) {
    if (auto self = weak.lock()) self->Items_EventsOnly_ItemAdd(item);
  }));
  item_connections_.push_back(item_events_->ItemChange.Connect([weak](std::shared_ptr<Item> item) {
    if (auto self = weak.lock()) self->Items_EventsOnly_ItemChange(item);
  }));
  item_connections_.push_back(item_events_->ItemRemove.Connect([weak] {
    if (auto self = weak.lock()) self->Items_EventsOnly_ItemRemove();
  }));
}

void TrackedContactFolder::UnhookItemEvents() {
  item_connections_.clear();
  item_events_.reset();
}

bool TrackedContactFolder::IsStale() {
  if (!cache_ || !item_events_) return false;
  auto app = app_.lock();
  if (!app) return false;
  const int64_t items = item_events_->Count();
  return cache_->Count() > items * kStaleAddressesPerItem &&
         DateDiff("n", last_fill_time_, app->Now()) > kStaleMinutes;
}

void TrackedContactFolder::Items_EventsOnly_ItemAdd(const std::shared_ptr<Item>& item) {
  if (killed_ || !cache_) return;
  try {
    if (IsStale()) {
      RefreshCache();
    } else {
      AddItemToCache(item);
    }
  } catch (const ZError& e) {
    LogError(e, "Items_EventsOnly_ItemAdd");
  }
}

void TrackedContactFolder::Items_EventsOnly_ItemChange(const std::shared_ptr<Item>& item) {
  if (killed_ || !cache_) return;
  try {
    if (IsStale()) {
      RefreshCache();
    } else {
      AddItemToCache(item);
    }
  } catch (const ZError& e) {
    LogError(e, "Items_EventsOnly_ItemChange");
  }
}

void TrackedContactFolder::Items_EventsOnly_ItemRemove() {
  if (killed_ || !cache_) return;
  try {
    if (IsStale()) RefreshCache();
  } catch (const ZError& e) {
    LogError(e, "Items_EventsOnly_ItemRemove");
  }
}

void TrackedContactFolder::AddItemToCache(const std::shared_ptr<Item>& item) {
  if (!item || item->Class() != ItemClass::kContact) return;
  const std::string id = item->EntryID();
  if (id.empty()) return;
  const std::string a1 = item->Email1Address(), a2 = item->Email2Address(),
                    a3 = item->Email3Address();
  cache_->Add(id, a1, a2, a3);
  if (filling_) filling_->Add(id, a1, a2, a3);
}

void TrackedContactFolder::LogLine(const std::string& text) {
  if (auto app = app_.lock()) app->Log().WriteLogMessage(text, false);
}

void TrackedContactFolder::LogError(const ZError& error, const char* proc) {
  if (auto app = app_.lock())
    app->Log().LogCachedError(CachedError(error, kTrackedContactFolderModule, proc));
}

}  // namespace zintra
