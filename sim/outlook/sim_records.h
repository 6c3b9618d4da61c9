// The simulated profile's stored data: stores, folders and messages, shared by the
// object-model facade (SimItem, SimFolder, ...) and the MAPI library facade
// (sim/mapi). Facade objects are thin views over these records, so both facades
// always agree. A store owns its folders, a folder its messages and subfolders;
// back-pointers are weak or raw pointers to records that outlive them (stores live as
// long as the Profile).
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "sim/outlook/named_prop_map.h"
#include "sim/outlook/property_bag.h"
#include "src/core/event.h"
#include "src/core/value.h"
#include "src/host/outlook_constants.h"

namespace zintra::sim {

struct FolderRecord;
struct MessageRecord;
class SortedIndex;

struct StoreRecord {
  int index = 0;             // position in the profile, part of every identifier
  std::string name;          // "Mailbox - Jane Doe", "Personal Folders", "Public Folders"
  std::vector<uint8_t> uid;  // 16 bytes
  bool is_public = false;
  bool is_default = false;
  NamedPropMap names;
  std::shared_ptr<FolderRecord> root;
  uint32_t next_number = 1;  // next entry number in this store
};

struct RecipientRecord {
  std::string name;
  std::string address;    // native address: SMTP or Exchange distinguished name
  std::string addr_type;  // "SMTP" or "EX"
  std::string smtp;       // the SMTP address (same as address for SMTP)
  int32_t type = kOlTo;   // OlMailRecipientType
  bool resolved = true;
};

struct AttachmentRecord {
  std::string display_name;
  std::string file_name;
  std::string path_name;
  int32_t type = kOlByValue;
  std::string data;
};

struct UserPropDef {
  std::string name;
  int32_t type;  // OlUserPropertyType
};

struct MessageRecord {
  ItemClass item_class = ItemClass::kMail;
  uint64_t serial = 0;                 // global creation order; ties in sorting
  uint32_t number = 0;                 // entry number in its store; 0 until first stored
  StoreRecord* store = nullptr;        // set when stored
  std::weak_ptr<FolderRecord> folder;  // where it lies, or (unsaved) where Save puts it
  bool stored = false;
  bool deleted = false;
  bool unreadable = false;  // shows as an error row in contents tables
  PropertyBag props;
  std::vector<UserPropDef> user_props;
  std::vector<RecipientRecord> recipients;
  std::vector<AttachmentRecord> attachments;
};

struct FolderRecord {
  std::string name;
  StoreRecord* store = nullptr;
  uint32_t number = 0;
  int32_t default_item_type = kOlMailItem;
  std::weak_ptr<FolderRecord> parent;  // empty for a store's top folder
  std::vector<std::shared_ptr<FolderRecord>> children;
  std::vector<std::shared_ptr<MessageRecord>> messages;  // in the order stored
  bool deleted = false;
  PropertyBag props;
  // The orders the store keeps this folder's messages in, one per property a collection
  // has sorted on; the profile keeps them in step before raising the events below.
  std::vector<std::shared_ptr<SortedIndex>> indexes;

  // Raised by the profile inside the operation that stores, rewrites or removes a
  // message of this folder; the Items collections forward them.
  Event<const std::shared_ptr<MessageRecord>&> added;
  Event<const std::shared_ptr<MessageRecord>&> changed;
  Event<const std::shared_ptr<MessageRecord>&> removed;
};

}  // namespace zintra::sim
