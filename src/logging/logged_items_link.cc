#include "src/logging/logged_items_link.h"

#include <algorithm>
#include <tuple>
#include <utility>

#include "src/core/z_error.h"
#include "src/host/mapi_object.h"
#include "src/host/outlook_folder.h"
#include "src/host/outlook_item.h"
#include "src/logging/zintra_utils.h"

namespace zintra {

namespace {
constexpr int kStoreListTries = 3;
}  // namespace

void LoggedItemsLink::Initialize(const std::shared_ptr<Item>& item, std::string_view entry_ids_name,
                                 std::string_view store_ids_name) {
  if (!item)
    throw ZError(kErrObjectNotSet, "Object variable not set", "LoggedItemsLink.Initialize");
  object_ = item->MAPIOBJECT();
  item_store_id_.clear();
  entry_ids_name_ = entry_ids_name;
  store_ids_name_ = store_ids_name;
}

void LoggedItemsLink::Initialize(const std::shared_ptr<MapiObject>& object,
                                 const std::string& store_id, std::string_view entry_ids_name,
                                 std::string_view store_ids_name) {
  if (!object)
    throw ZError(kErrObjectNotSet, "Object variable not set", "LoggedItemsLink.Initialize");
  object_ = object;
  item_store_id_ = store_id;
  entry_ids_name_ = entry_ids_name;
  store_ids_name_ = store_ids_name;
}

void LoggedItemsLink::InitializeLogged(const std::shared_ptr<Item>& item) {
  Initialize(item, kPropLoggedEntryIds, kPropLoggedStoreIds);
}

void LoggedItemsLink::InitializeShared(const std::shared_ptr<Item>& item) {
  Initialize(item, kPropSharedCopyEntryIds, kPropSharedCopyStoreIds);
}

Value LoggedItemsLink::Read(std::string_view name) {
  if (!object_) throw ZError(kErrObjectNotSet, "Object variable not set", "LoggedItemsLink");
  return utils_.GetNamedTextProp(item_store_id_, object_, name, kPtMvString8);
}

Value LoggedItemsLink::LinkedEntryIDs() { return Read(entry_ids_name_); }
Value LoggedItemsLink::LinkedStoreIDs() { return Read(store_ids_name_); }

bool LoggedItemsLink::HasLinks() { return !LinkedEntryIDs().IsEmpty(); }

bool LoggedItemsLink::Validate() {
  const Value entries = LinkedEntryIDs();
  const Value stores = LinkedStoreIDs();
  if (entries.IsEmpty() || stores.IsEmpty()) return false;
  if (entries.Type() != ValueType::kStringArray || stores.Type() != ValueType::kStringArray) {
    return false;
  }
  return entries.ToStringArray().size() == stores.ToStringArray().size();
}

template <typename CopyIds>
void LoggedItemsLink::Append(CopyIds&& copy_ids) {
  Value::StringArray entries, stores;
  const Value old_entries = LinkedEntryIDs();
  if (!old_entries.IsEmpty()) {
    const Value old_stores = LinkedStoreIDs();
    if (old_entries.Type() == ValueType::kStringArray) entries = old_entries.ToStringArray();
    if (old_stores.Type() == ValueType::kStringArray) stores = old_stores.ToStringArray();
    // Both lists grow to the same new upper bound, so that the new pair lines up even
    // when an earlier write left the store-ID list short.
    const size_t size = std::max(entries.size(), stores.size()) + 1;
    entries.resize(size);
    stores.resize(size);
  } else {
    entries.resize(1);
    stores.resize(1);
  }
  std::tie(entries.back(), stores.back()) = copy_ids();
  utils_.SetNamedTextProp(item_store_id_, object_, entry_ids_name_, Value(std::move(entries)),
                          kPtMvString8, false);
  const Value stores_value(std::move(stores));
  // The entry-ID list may already be on the item: the store-ID list is written until it
  // is too, so that the two stay in step (each failure is logged by SetNamedProp). The
  // last try only sets the property; the item's next save stores it.
  for (int attempt = 1;; ++attempt) {
    try {
      utils_.SetNamedTextProp(item_store_id_, object_, store_ids_name_, stores_value, kPtMvString8,
                              attempt < kStoreListTries);
      return;
    } catch (const ZError&) {
      if (attempt == kStoreListTries) throw;
    }
  }
}

void LoggedItemsLink::LinkToItem(const std::shared_ptr<Item>& copy) {
  if (!copy)
    throw ZError(kErrObjectNotSet, "Object variable not set", "LoggedItemsLink.LinkToItem");
  LinkToItem(copy, copy->Parent());
}

void LoggedItemsLink::LinkToItem(const std::shared_ptr<Item>& copy,
                                 const std::shared_ptr<Folder>& folder) {
  if (!copy)
    throw ZError(kErrObjectNotSet, "Object variable not set", "LoggedItemsLink.LinkToItem");
  Append([&] {
    std::string entry_id = copy->EntryID();
    return std::pair(std::move(entry_id), folder ? folder->StoreID() : std::string());
  });
}

void LoggedItemsLink::LinkToItem(std::string entry_id, std::string store_id) {
  Append([&] { return std::pair(std::move(entry_id), std::move(store_id)); });
}

std::vector<std::pair<std::string, std::string>> LoggedItemsLink::Links() {
  std::vector<std::pair<std::string, std::string>> links;
  if (!Validate()) return links;
  const Value::StringArray entries = LinkedEntryIDs().ToStringArray();
  const Value::StringArray stores = LinkedStoreIDs().ToStringArray();
  for (size_t i = 0; i < entries.size(); ++i) links.emplace_back(entries[i], stores[i]);
  return links;
}

}  // namespace zintra
