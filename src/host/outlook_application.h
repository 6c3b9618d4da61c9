// Outlook's Application and Namespace: the entry into the object model that the
// add-in is given at connection. Called and raising events on Outlook's thread.
// GetDefaultFolder of a number the profile has no folder for, and GetItemFromID /
// GetFolderFromID of an unknown identifier, throw kMapiNotFound.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "src/core/event.h"
#include "src/host/automation_object.h"
#include "src/host/mapi_object.h"
#include "src/host/outlook_folder.h"
#include "src/host/outlook_item.h"
#include "src/host/outlook_window.h"

namespace zintra {

// The pages of Outlook's Options dialog (or a folder's properties) being opened.
class PropertyPages : public AutomationObject {
 public:
  virtual int32_t Count() const = 0;
  virtual std::shared_ptr<AutomationObject> Item(int32_t index) = 0;
  virtual void Add(const std::shared_ptr<AutomationObject>& page, const std::string& title) = 0;
};

class Namespace : public AutomationObject {
 public:
  // OlDefaultFolders: 3, 4, 5, 6, 9, 10, 11, 12, 13, 16.
  virtual std::shared_ptr<Folder> GetDefaultFolder(int32_t folder_type) = 0;
  // store_id "" searches every store.
  virtual std::shared_ptr<Item> GetItemFromID(const std::string& entry_id,
                                              const std::string& store_id = {}) = 0;
  virtual std::shared_ptr<Folder> GetFolderFromID(const std::string& entry_id,
                                                  const std::string& store_id = {}) = 0;
  // The top folders of the profile's stores.
  virtual std::shared_ptr<zintra::Folders> Folders() = 0;
  // The logged-on user as a resolved recipient.
  virtual std::shared_ptr<Recipient> CurrentUser() = 0;
  // The MAPI session (shared with the MAPI library's session by RdoSession).
  virtual std::shared_ptr<MapiObject> MAPIOBJECT() = 0;

  // A folder's properties dialog is opening.
  Event<std::shared_ptr<PropertyPages>, std::shared_ptr<Folder>> OptionsPagesAdd;
};

class Application : public AutomationObject {
 public:
  virtual std::shared_ptr<zintra::Explorers> Explorers() = 0;
  virtual std::shared_ptr<zintra::Inspectors> Inspectors() = 0;
  // "9.0.0.2416", "11.0.0.8312", ...
  virtual std::string Version() const = 0;
  virtual std::string ProductCode() const = 0;
  // GetNamespace("MAPI") / Session.
  virtual std::shared_ptr<Namespace> Session() = 0;
  virtual std::shared_ptr<Explorer> ActiveExplorer() = 0;
  virtual std::shared_ptr<Inspector> ActiveInspector() = 0;
  // A new, unsaved item of the kind (OlItemType) whose Save stores it in the default
  // folder of that kind.
  virtual std::shared_ptr<Item> CreateItem(int32_t item_type) = 0;

  Event<> Quit;
  // An item is being sent; a handler may set Cancel.
  Event<std::shared_ptr<Item>, bool&> ItemSend;
  Event<> NewMail;
  Event<std::shared_ptr<PropertyPages>> OptionsPagesAdd;
};

}  // namespace zintra
