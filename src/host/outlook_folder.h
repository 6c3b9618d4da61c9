// Folder (Outlook's MAPIFolder), its subfolders (Folders) and its contents (Items).
//
// Folder::Parent is the parent folder, or, for the top folder of a store, the
// Namespace (not a folder): callers walk up with std::dynamic_pointer_cast<Folder>.
// A folder deleted meanwhile throws kMapiObjectDeleted from every member.
//
// Items: every call of Folder::Items returns a new collection with its own sort order,
// walk position (GetFirst/GetNext), Find position and event subscribers, as Outlook
// does. The collection is live: an item stored in the folder while it is being walked
// takes its place in the sort order, so an item inserted before the walk position
// makes the next GetNext return the item already returned (one step back), and a
// removed one makes it skip one. ItemAdd, ItemChange and ItemRemove are raised
// synchronously inside the Save, Copy, Move or Delete that causes them, on every
// Items collection of the folder that is alive.
//
// Find filters: one or more comparisons "[Property] op value" joined by "and" / "or"
// (and binds tighter; parentheses group), op one of = <> < > <= >=, value a text in
// double or single quotes, a number, True/False, or a date text "m/d/yyyy h:nn AM".
// Text compares without regard to letter case. A malformed filter or an unknown
// property throws kMapiInvalidParameter (Outlook's "Cannot parse condition").
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "src/core/event.h"
#include "src/host/automation_object.h"
#include "src/host/mapi_object.h"

namespace zintra {

class Item;
class Folders;
class Items;

class Folder : public AutomationObject {
 public:
  virtual std::string Name() const = 0;
  virtual void SetName(const std::string& name) = 0;
  virtual std::string EntryID() const = 0;      // hexadecimal
  virtual std::string StoreID() const = 0;      // hexadecimal
  virtual int32_t DefaultItemType() const = 0;  // OlItemType
  virtual std::shared_ptr<AutomationObject> Parent() = 0;
  virtual std::shared_ptr<zintra::Folders> Folders() = 0;
  virtual std::shared_ptr<zintra::Items> Items() = 0;
  virtual std::shared_ptr<MapiObject> MAPIOBJECT() = 0;
  // Deletes the folder with its contents and subfolders.
  virtual void Delete() = 0;
};

class Folders : public AutomationObject {
 public:
  virtual int32_t Count() const = 0;
  virtual std::shared_ptr<Folder> Item(int32_t index) = 0;
  // By name, without regard to letter case; a missing name throws kMapiNotFound.
  virtual std::shared_ptr<Folder> Item(const std::string& name) = 0;
  // type: OlDefaultFolders number of the kind of folder (6 mail, 9 calendar, 10
  // contacts, 11 journal, 12 notes, 13 tasks); a name in use throws kMapiCallFailed.
  virtual std::shared_ptr<Folder> Add(const std::string& name, int32_t type = 6) = 0;
};

class Items : public AutomationObject {
 public:
  virtual int32_t Count() const = 0;
  virtual std::shared_ptr<zintra::Item> Item(int32_t index) = 0;
  // property: "[Name]" or "Name" of a date or text property ("Created",
  // "CreationTime", "Received", "ReceivedTime", "Subject", ...).
  virtual void Sort(const std::string& property, bool descending) = 0;
  // nullptr at the end.
  virtual std::shared_ptr<zintra::Item> GetFirst() = 0;
  virtual std::shared_ptr<zintra::Item> GetNext() = 0;
  virtual std::shared_ptr<zintra::Item> GetLast() = 0;
  virtual std::shared_ptr<zintra::Item> GetPrevious() = 0;
  virtual std::shared_ptr<zintra::Item> Find(const std::string& filter) = 0;
  virtual std::shared_ptr<zintra::Item> FindNext() = 0;
  // A new, unsaved item of the kind (OlItemType) whose Save stores it in this folder.
  virtual std::shared_ptr<zintra::Item> Add(int32_t item_type) = 0;
  virtual void Remove(int32_t index) = 0;

  Event<std::shared_ptr<zintra::Item>> ItemAdd;
  Event<std::shared_ptr<zintra::Item>> ItemChange;
  Event<> ItemRemove;
};

}  // namespace zintra
