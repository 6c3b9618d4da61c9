// Address entries of the MAPI library (and of Outlook's recipients): a sender, a
// recipient's entry, the current user. Type is "SMTP" or "EX"; for "EX" Address is the
// Exchange distinguished name ("/O=ORG/OU=SITE/CN=RECIPIENTS/CN=NAME") and the SMTP
// address is the field kPrSmtpAddress. Fields of a property the entry lacks returns
// Empty; a failing directory call throws the platform's error number.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "src/core/value.h"
#include "src/host/automation_object.h"

namespace zintra {

class AddressEntry : public AutomationObject {
 public:
  virtual std::string Name() const = 0;
  virtual std::string Address() const = 0;
  virtual std::string Type() const = 0;
  virtual std::string ID() const = 0;  // hexadecimal entry identifier
  virtual Value Fields(int32_t prop_tag) = 0;
};

class AddressList : public AutomationObject {
 public:
  virtual std::string Name() const = 0;
  virtual int32_t Count() const = 0;
  virtual std::shared_ptr<AddressEntry> Item(int32_t index) = 0;
};

// Library kind 1: the address lists of the session (the global list first).
class AddressLists : public AutomationObject {
 public:
  virtual int32_t Count() const = 0;
  virtual std::shared_ptr<AddressList> Item(int32_t index) = 0;
};

}  // namespace zintra
