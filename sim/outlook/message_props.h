// MessageProps: typed access to a message's properties as both facades store them.
// Named properties are resolved through the message's store (an unsaved message:
// its home folder's store). Where Outlook keeps an item field:
//   Email1..3Address   PSETID_Address 0x8083 / 0x8093 / 0x80A3 (text)
//   Categories         PS_PUBLIC_STRINGS "Keywords" (multi-valued text)
//   Companies          PSETID_Common 0x8539 (text)
//   Owner, Ownership   PSETID_Task 0x811F (text), 0x8129 (long)
//   journal Type       PSETID_Log 0x8700 (text)
//   links              PSETID_Common 0x8585 (store and entry ids) and 0x8586 (names)
//   user properties    PS_PUBLIC_STRINGS, by name, typed by their OlUserPropertyType
#pragma once

#include <cstdint>
#include <string>

#include "sim/outlook/named_prop_map.h"
#include "sim/outlook/sim_records.h"
#include "src/core/value.h"

namespace zintra::sim {

namespace named {
NamedPropKey Email(int index);  // 1..3
NamedPropKey Keywords();
NamedPropKey Companies();
NamedPropKey TaskOwner();
NamedPropKey TaskOwnership();
NamedPropKey JournalType();
NamedPropKey LinkIds();
NamedPropKey LinkNames();
NamedPropKey UserProperty(const std::string& name);
}  // namespace named

// The MAPI type a user property of the OlUserPropertyType is stored with.
uint16_t UserPropertyPropType(int32_t ol_type);

class MessageProps {
 public:
  // Stored and computed properties (PR_ENTRYID, PR_STORE_ENTRYID); Empty when absent.
  static Value Get(const MessageRecord& m, int32_t tag);
  static std::string Text(const MessageRecord& m, int32_t tag);
  static double Date(const MessageRecord& m, int32_t tag);  // kUnsetDate when absent
  static void Set(MessageRecord& m, int32_t tag, const Value& value);

  // The tag of a named property (type included); 0 when unknown and not created.
  static int32_t NamedTag(const MessageRecord& m, const NamedPropKey& key, uint16_t type,
                          bool create);
  static Value GetNamed(const MessageRecord& m, const NamedPropKey& key, uint16_t type);
  static std::string NamedText(const MessageRecord& m, const NamedPropKey& key);
  static void SetNamed(MessageRecord& m, const NamedPropKey& key, uint16_t type,
                       const Value& value);

  // Item fields.
  static std::string Categories(const MessageRecord& m);  // joined with ", "
  static void SetCategories(MessageRecord& m, const std::string& categories);
};

// Stored and computed properties of a folder (PR_ENTRYID, PR_DISPLAY_NAME,
// PR_CONTENT_COUNT, PR_STORE_ENTRYID and the stored PR_SEARCH_KEY).
Value FolderProperty(const FolderRecord& folder, int32_t tag);

}  // namespace zintra::sim
