// The MAPI library's session (library kind 16) and the folders and messages it opens
// (kinds 2 and 17 are folders). The session shares Outlook's logon once its
// MAPIOBJECT is set to Namespace::MAPIOBJECT; before that every call but
// SetMAPIOBJECT throws kMapiNotInitialized. An unknown identifier throws kMapiNotFound.
//
// RdoMessage is the same stored message that Outlook shows: a property, user property
// or named property written through either is read through the other. Save raises
// the folder's ItemAdd (new) or ItemChange (stored) in Outlook, inside the call;
// Delete is a hard delete that bypasses Deleted Items (ItemRemove).
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "src/core/value.h"
#include "src/host/automation_object.h"
#include "src/host/mapi_address.h"
#include "src/host/mapi_object.h"
#include "src/host/outlook_item_parts.h"

namespace zintra {

class RdoFolder;

class RdoMessage : public AutomationObject {
 public:
  virtual std::string EntryID() const = 0;
  virtual std::string StoreID() const = 0;
  virtual std::string MessageClass() const = 0;
  virtual std::string Subject() const = 0;
  virtual void SetSubject(const std::string& subject) = 0;
  virtual std::string Body() const = 0;
  virtual void SetBody(const std::string& body) = 0;
  virtual std::shared_ptr<RdoFolder> Parent() = 0;
  virtual Value Fields(int32_t prop_tag) = 0;  // Empty when absent
  virtual void SetFields(int32_t prop_tag, const Value& value) = 0;
  virtual std::shared_ptr<zintra::UserProperties> UserProperties() = 0;
  virtual std::shared_ptr<zintra::Recipients> Recipients() = 0;
  virtual std::shared_ptr<zintra::Attachments> Attachments() = 0;
  virtual std::shared_ptr<AddressEntry> Sender() = 0;  // nullptr when none
  virtual void Save() = 0;
  virtual void Delete() = 0;
  // folder: an Outlook Folder or an RdoFolder; anything else throws
  // kMapiInvalidParameter. The copy is stored at once (ItemAdd in that folder).
  virtual std::shared_ptr<RdoMessage> CopyTo(const std::shared_ptr<AutomationObject>& folder) = 0;
  virtual std::shared_ptr<RdoMessage> Move(const std::shared_ptr<AutomationObject>& folder) = 0;
  virtual std::shared_ptr<MapiObject> MAPIOBJECT() = 0;
};

class RdoFolder : public AutomationObject {
 public:
  // Wraps an Outlook folder's MAPI object (kind 2 is created empty and set this way).
  virtual void SetMAPIOBJECT(const std::shared_ptr<MapiObject>& folder) = 0;
  virtual std::shared_ptr<MapiObject> MAPIOBJECT() = 0;
  virtual std::string Name() const = 0;
  virtual std::string EntryID() const = 0;
  virtual std::string StoreID() const = 0;
  virtual int32_t DefaultItemType() const = 0;
  virtual std::shared_ptr<RdoFolder> Parent() = 0;  // nullptr above the top folder
  virtual int32_t ItemCount() = 0;
  virtual Value Fields(int32_t prop_tag) = 0;
  // A new, unsaved message in this folder.
  virtual std::shared_ptr<RdoMessage> AddItem(const std::string& message_class) = 0;
};

class RdoSession : public AutomationObject {
 public:
  virtual void SetMAPIOBJECT(const std::shared_ptr<MapiObject>& session) = 0;
  virtual std::shared_ptr<MapiObject> MAPIOBJECT() = 0;
  virtual bool LoggedOn() const = 0;
  virtual std::shared_ptr<AddressEntry> CurrentUser() = 0;
  virtual std::shared_ptr<RdoMessage> GetMessageFromID(const std::string& entry_id,
                                                       const std::string& store_id = {}) = 0;
  virtual std::shared_ptr<RdoFolder> GetFolderFromID(const std::string& entry_id,
                                                     const std::string& store_id = {}) = 0;
  virtual std::shared_ptr<RdoFolder> GetDefaultFolder(int32_t folder_type) = 0;
  virtual std::shared_ptr<zintra::AddressLists> AddressLists() = 0;
};

}  // namespace zintra
