// FolderSetting: which Outlook item kinds are logged when they arrive in one monitored
// folder. The kinds are bits of a 32-bit mask, bit values 2 to 65536 (1 is never used),
// in the order of kItemClassNames; the display name of bit b is string id
// 134 + log2(b). The monitoring manager fills EntryID/StoreID to identify the folder.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace zintra {

// The Outlook item classes, in bit order: element k has bit value 2^(k+1).
inline constexpr std::array<std::string_view, 16> kItemClassNames = {"AppointmentItem",
                                                                     "ContactItem",
                                                                     "DistListItem",
                                                                     "DocumentItem",
                                                                     "JournalItem",
                                                                     "MailItem",
                                                                     "MeetingItem",
                                                                     "NoteItem",
                                                                     "PostItem",
                                                                     "RemoteItem",
                                                                     "ReportItem",
                                                                     "TaskItem",
                                                                     "TaskRequestAcceptItem",
                                                                     "TaskRequestDeclineItem",
                                                                     "TaskRequestItem",
                                                                     "TaskRequestUpdateItem"};

inline constexpr int32_t kAllItemTypes = 131070;  // bits 2 .. 65536

class FolderSetting {
 public:
  std::string EntryID;
  std::string StoreID;
  int32_t ItemTypes = 0;  // the mask

  // SetItemSetting for each bit 2^1 .. 2^16 in increasing order.
  void SetAllItemsLogged(bool LogIt);
  // True when every bit of ItemType is set in the mask.
  bool GetItemSetting(int32_t ItemType) const;
  // Toggles the bits of ItemType (XOR) when GetItemSetting differs from LogIt; callers
  // pass single bits.
  void SetItemSetting(int32_t ItemType, bool LogIt);
  FolderSetting Clone() const { return *this; }

  // 2^(rsIndex - 134), rounded to a 32-bit integer: string id 140 is bit 64.
  static int32_t RS_to_ItemType(int16_t rsIndex);
  // log2(ItemType) + 134, rounded: bit 64 is string id 140.
  static int32_t ItemType_to_RS(int32_t ItemType);
  // Bit of an Outlook OlItemType (0 mail .. 7 distribution list); 0 for others. Post
  // items (6) map to the remote-item bit 1024, as they always have.
  static int32_t OutlookItemType_to_ItemType(int32_t OLItemType);

  // True when no bit 2^1 .. 2^16 is set.
  bool NoItemsLogged() const;
  // Whether an item is of a logged kind. `is_of_class` answers whether the item is of
  // the named class (kItemClassNames); the classes are tried in table order and the
  // first match decides. An item of none of the classes is not logged.
  bool ItemIsLoggedType(const std::function<bool(std::string_view)>& is_of_class) const;
};

}  // namespace zintra
