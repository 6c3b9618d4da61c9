// Safe items of the MAPI library (kinds 5, 6, 8-14): a wrapper around an Outlook item
// that reads what Outlook guards (sender, recipients' addresses, body) without its
// security prompts. SetItem takes the Outlook item (any kind); members before SetItem
// throw kErrObjectNotSet. Sender of an item without a sender gives nullptr; a kind the
// member makes no sense for (Sender of a contact) throws 438.
//
// SafeInspector (kind 15) wraps an Outlook inspector.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "src/core/value.h"
#include "src/host/automation_object.h"
#include "src/host/mapi_address.h"
#include "src/host/mapi_session.h"
#include "src/host/outlook_item.h"
#include "src/host/outlook_window.h"

namespace zintra {

class SafeItem : public AutomationObject {
 public:
  virtual void SetItem(const std::shared_ptr<zintra::Item>& item) = 0;
  virtual std::shared_ptr<zintra::Item> Item() = 0;
  virtual std::shared_ptr<AddressEntry> Sender() = 0;
  virtual std::shared_ptr<zintra::Recipients> Recipients() = 0;
  virtual std::string Body() = 0;
  virtual Value Fields(int32_t prop_tag) = 0;  // Empty when absent
  virtual void SetFields(int32_t prop_tag, const Value& value) = 0;
  // A stored copy of the message in `folder` (an Outlook Folder or an RdoFolder).
  virtual std::shared_ptr<RdoMessage> CopyTo(const std::shared_ptr<AutomationObject>& folder) = 0;
};

class SafeInspector : public AutomationObject {
 public:
  virtual void SetItem(const std::shared_ptr<Inspector>& inspector) = 0;
  virtual std::shared_ptr<Inspector> Item() = 0;
  virtual int32_t Hwnd() = 0;
};

}  // namespace zintra
