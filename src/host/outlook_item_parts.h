// The collections an Outlook item carries: user properties, links, recipients and
// attachments. They belong to their item: a change is stored with the item's next
// Save (user properties, links, recipients) as in Outlook. Index arguments are
// 1-based; an index out of range throws ZError 5 (kErrInvalidCall); a failing store
// call throws the platform's error number.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "src/core/value.h"
#include "src/host/automation_object.h"

namespace zintra {

class Item;
class AddressEntry;

class UserProperty : public AutomationObject {
 public:
  virtual std::string Name() const = 0;
  virtual int32_t Type() const = 0;  // OlUserPropertyType
  virtual Value GetValue() const = 0;
  // Converts to the property's type (text for olText, Boolean for olYesNo, ...);
  // an impossible conversion throws 13.
  virtual void SetValue(const Value& value) = 0;
};

class UserProperties : public AutomationObject {
 public:
  virtual int32_t Count() const = 0;
  virtual std::shared_ptr<UserProperty> Item(int32_t index) = 0;
  // Compares names without regard to letter case; nullptr when absent.
  virtual std::shared_ptr<UserProperty> Find(std::string_view name) = 0;
  // Adding a name present with another type throws; with the same type returns it.
  virtual std::shared_ptr<UserProperty> Add(std::string_view name, int32_t type,
                                            bool add_to_folder_fields) = 0;
  virtual void Remove(int32_t index) = 0;
};

// A link from an item to a contact (the item's "Contacts" field).
class Link : public AutomationObject {
 public:
  virtual std::string Name() const = 0;
  // The linked contact; an unresolved link (the contact is gone) throws the
  // platform's error (kMapiNotFound).
  virtual std::shared_ptr<zintra::Item> Item() = 0;
};

class Links : public AutomationObject {
 public:
  virtual int32_t Count() const = 0;
  virtual std::shared_ptr<zintra::Link> Item(int32_t index) = 0;
  // Links a saved item (a contact); an unsaved item throws kMapiInvalidParameter.
  virtual std::shared_ptr<zintra::Link> Add(const std::shared_ptr<zintra::Item>& item) = 0;
  virtual void Remove(int32_t index) = 0;
};

class Recipient : public AutomationObject {
 public:
  virtual std::string Name() const = 0;
  virtual std::string Address() const = 0;  // native: SMTP or Exchange distinguished name
  virtual int32_t Type() const = 0;         // OlMailRecipientType
  virtual void SetType(int32_t type) = 0;
  virtual bool Resolved() const = 0;
  virtual std::shared_ptr<zintra::AddressEntry> AddressEntry() = 0;
};

class Recipients : public AutomationObject {
 public:
  virtual int32_t Count() const = 0;
  virtual std::shared_ptr<Recipient> Item(int32_t index) = 0;
  // A name or an address; resolved against the profile's address book.
  virtual std::shared_ptr<Recipient> Add(const std::string& name) = 0;
  virtual void Remove(int32_t index) = 0;
};

class Attachment : public AutomationObject {
 public:
  virtual std::string DisplayName() const = 0;
  virtual std::string FileName() const = 0;
  virtual std::string PathName() const = 0;  // by-reference attachments
  virtual int32_t Type() const = 0;          // OlAttachmentType
  virtual int32_t Index() const = 0;
  virtual int32_t Size() const = 0;
  virtual void Delete() = 0;
};

class Attachments : public AutomationObject {
 public:
  virtual int32_t Count() const = 0;
  virtual std::shared_ptr<Attachment> Item(int32_t index) = 0;
  // source: a file path (read at Add; a missing file throws kMapiNotFound).
  virtual std::shared_ptr<Attachment> Add(const std::string& source, int32_t type,
                                          int32_t position = 0,
                                          const std::string& display_name = {}) = 0;
  virtual void Remove(int32_t index) = 0;
};

}  // namespace zintra
