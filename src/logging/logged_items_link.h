// LoggedItemsLink: the list of copies the system made of an item, kept on the item
// itself as two parallel multi-valued named properties (PT_MV_STRING8) of the
// private property set: element i of the entry-ID list and element i of the
// store-ID list name the same copy. One pair of names serves logged copies
// ("Zintra Logged Entry IDs" / "Zintra Logged Store IDs"), the other shared copies
// ("Zintra Shared Copy Entry IDs" / "Zintra Shared Copy Store IDs").
//
// Links are only appended, never removed; the same copy linked twice is listed twice.
//
// Ownership: holds the item's MAPI object until Kill; borrows the ZintraUtils, which
// must outlive it. Errors: reads and writes propagate the platform's ZError (the
// write is logged by ZintraUtils first). Outlook's thread only.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "src/core/value.h"

namespace zintra {

class Folder;
class Item;
class MapiObject;
class ZintraUtils;

class LoggedItemsLink {
 public:
  explicit LoggedItemsLink(ZintraUtils& utils) : utils_(utils) {}

  // Keeps the item's MAPIOBJECT and the two property names, which are not copied: they
  // must outlive the link (they are the system's name constants).
  void Initialize(const std::shared_ptr<Item>& item, std::string_view entry_ids_name,
                  std::string_view store_ids_name);
  // Shorthands for the two pairs of names.
  void InitializeLogged(const std::shared_ptr<Item>& item);
  void InitializeShared(const std::shared_ptr<Item>& item);
  // With the item's MAPIOBJECT already in hand and the StoreID of the item's store, so
  // that the names' tags are asked of that store once (ZintraUtils remembers them).
  void Initialize(const std::shared_ptr<MapiObject>& object, const std::string& store_id,
                  std::string_view entry_ids_name, std::string_view store_ids_name);

  // The lists as stored (a string array), or Empty when the item has none.
  Value LinkedEntryIDs();
  Value LinkedStoreIDs();
  bool HasLinks();
  // True when both lists are present and equally long (a pair of lists of different
  // lengths cannot be matched element for element).
  bool Validate();
  // Appends the copy's EntryID and its folder's StoreID and stores both lists in one
  // save, inside the save bracket.
  void LinkToItem(const std::shared_ptr<Item>& copy);
  // The same, with the copy's folder already in hand.
  void LinkToItem(const std::shared_ptr<Item>& copy, const std::shared_ptr<Folder>& folder);
  // The same, with the copy's EntryID and StoreID already known.
  void LinkToItem(std::string entry_id, std::string store_id);

  // The (entry ID, store ID) pairs of a valid link list; empty when not Validate().
  std::vector<std::pair<std::string, std::string>> Links();

  void Kill() { object_.reset(); }
  void Addin_Kill() { Kill(); }

 private:
  Value Read(std::string_view name);
  // Grows both lists by the copy's pair (EntryID, StoreID), which `copy_ids` reads once
  // the lists have been read, and writes them.
  template <typename CopyIds>
  void Append(CopyIds&& copy_ids);

  ZintraUtils& utils_;
  std::shared_ptr<MapiObject> object_;
  std::string item_store_id_;  // empty: the names' tags are asked for on every use
  std::string_view entry_ids_name_, store_ids_name_;
};

}  // namespace zintra
