// Item: one Outlook item of any kind (mail, contact, task, note, ...), as the object
// model shows it. Class() tells the kind; a member the kind lacks throws ZError 438
// (kErrNoSuchMember), exactly as a late-bound call would. A read of an item deleted
// meanwhile, or any failing store call, throws the platform's error number
// (kMapiObjectDeleted, kMapiNotFound, ...).
//
// Ownership: the caller holds the item; the folder keeps the stored message. Events
// are raised on Outlook's thread, synchronously inside the call that causes them.
//
// Members and the kinds that have them:
//   Subject, Body, Categories, MessageClass, Sensitivity, CreationTime,
//   LastModificationTime, EntryID, Parent, UserProperties, Links, Attachments,
//   Save, Delete, Copy, Move, Display, Close, MAPIOBJECT        all kinds
//   Recipients        mail, meeting, appointment, task and task requests, journal,
//                     sharing, report
//   SentOn, ReceivedTime          mail, meeting, post, report, remote, sharing,
//                                 task requests
//   FullName, Email1..3Address    contact
//   Companies         all kinds but note, distribution list
//   Owner, Ownership  task
//   Type (journal type)  journal
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "src/core/event.h"
#include "src/host/automation_object.h"
#include "src/host/mapi_object.h"
#include "src/host/outlook_constants.h"
#include "src/host/outlook_item_parts.h"

namespace zintra {

class Folder;
class Inspector;

class Item : public AutomationObject {
 public:
  virtual ItemClass Class() const = 0;

  virtual std::string Subject() const = 0;
  virtual void SetSubject(const std::string& subject) = 0;
  virtual std::string Body() const = 0;
  virtual void SetBody(const std::string& body) = 0;
  virtual std::string Categories() const = 0;  // comma-separated
  virtual void SetCategories(const std::string& categories) = 0;
  virtual std::string Companies() const = 0;
  virtual void SetCompanies(const std::string& companies) = 0;
  virtual std::string MessageClass() const = 0;
  virtual void SetMessageClass(const std::string& message_class) = 0;
  virtual int32_t Sensitivity() const = 0;  // OlSensitivity
  virtual void SetSensitivity(int32_t sensitivity) = 0;

  // Date serials; kUnsetDate when the store holds none (an item never sent has no
  // SentOn).
  virtual double CreationTime() const = 0;
  virtual double LastModificationTime() const = 0;
  virtual double SentOn() const = 0;
  virtual double ReceivedTime() const = 0;

  // Hexadecimal entry identifier; "" until the item is first saved.
  virtual std::string EntryID() const = 0;
  // The folder holding the item; nullptr for an item that has none.
  virtual std::shared_ptr<zintra::Folder> Parent() = 0;

  // Contacts.
  virtual std::string FullName() const = 0;
  virtual void SetFullName(const std::string& full_name) = 0;
  virtual std::string Email1Address() const = 0;
  virtual void SetEmail1Address(const std::string& address) = 0;
  virtual std::string Email2Address() const = 0;
  virtual void SetEmail2Address(const std::string& address) = 0;
  virtual std::string Email3Address() const = 0;
  virtual void SetEmail3Address(const std::string& address) = 0;

  // Tasks.
  virtual std::string Owner() const = 0;
  virtual void SetOwner(const std::string& owner) = 0;
  virtual int32_t Ownership() const = 0;  // OlTaskOwnership

  // Journal entries: the entry type ("Phone Call", "Note", "Letter", "E-mail", ...).
  virtual std::string Type() const = 0;
  virtual void SetType(const std::string& type) = 0;

  virtual std::shared_ptr<zintra::UserProperties> UserProperties() = 0;
  virtual std::shared_ptr<zintra::Links> Links() = 0;
  virtual std::shared_ptr<zintra::Recipients> Recipients() = 0;
  virtual std::shared_ptr<zintra::Attachments> Attachments() = 0;

  // Stores the item. A new item is added to its folder (ItemAdd there); a stored one
  // is rewritten (ItemChange). Both events are raised before Save returns.
  virtual void Save() = 0;
  // Moves the item to Deleted Items (ItemRemove here, ItemAdd there); an item already
  // in Deleted Items is destroyed.
  virtual void Delete() = 0;
  // A stored duplicate in the same folder (ItemAdd there), with every property, user
  // property, link, recipient and attachment.
  virtual std::shared_ptr<Item> Copy() = 0;
  // Moves the stored item to `folder` (ItemRemove here, ItemAdd there) and returns it
  // as it lies there, with its new entry identifier.
  virtual std::shared_ptr<Item> Move(const std::shared_ptr<zintra::Folder>& folder) = 0;
  // Opens an inspector on the item.
  virtual void Display(bool modal = false) = 0;
  // Closes the item's inspector; save_mode: 0 save, 1 discard, 2 prompt.
  virtual void Close(int32_t save_mode) = 0;
  // The inspector showing the item (opening one when none is open).
  virtual std::shared_ptr<Inspector> GetInspector() = 0;

  virtual std::shared_ptr<MapiObject> MAPIOBJECT() = 0;

  // The item's window is closing; a handler may set Cancel.
  Event<bool&> CloseEvent;  // the Close event (Close is the method)
};

}  // namespace zintra
