#include "src/settings/folder_setting.h"

#include <cmath>

#include "src/core/z_error.h"

namespace zintra {

namespace {

int32_t RoundToLong(double value) {
  double rounded = std::nearbyint(value);  // banker's rounding in the default mode
  if (!(rounded >= -2147483648.0 && rounded <= 2147483647.0)) throw ZError(kErrOverflow);
  return static_cast<int32_t>(rounded);
}

}  // namespace

void FolderSetting::SetAllItemsLogged(bool LogIt) {
  for (int bit = 1; bit <= 16; ++bit) SetItemSetting(int32_t{1} << bit, LogIt);
}

bool FolderSetting::GetItemSetting(int32_t ItemType) const {
  return (ItemTypes | ItemType) == ItemTypes;
}

void FolderSetting::SetItemSetting(int32_t ItemType, bool LogIt) {
  if (GetItemSetting(ItemType) != LogIt) ItemTypes ^= ItemType;
}

int32_t FolderSetting::RS_to_ItemType(int16_t rsIndex) {
  return RoundToLong(std::pow(2.0, static_cast<double>(rsIndex) - 134.0));
}

int32_t FolderSetting::ItemType_to_RS(int32_t ItemType) {
  // The logarithm of zero or a negative number is an invalid procedure call.
  if (ItemType <= 0) throw ZError(kErrInvalidCall);
  return RoundToLong(std::log(static_cast<double>(ItemType)) / std::log(2.0) + 135 - 1);
}

int32_t FolderSetting::OutlookItemType_to_ItemType(int32_t OLItemType) {
  switch (OLItemType) {
    case 0:
      return 64;
    case 1:
      return 2;
    case 2:
      return 4;
    case 3:
      return 4096;
    case 4:
      return 32;
    case 5:
      return 256;
    case 6:
      return 1024;
    case 7:
      return 8;
    default:
      return 0;
  }
}

bool FolderSetting::NoItemsLogged() const {
  for (int bit = 1; bit <= 16; ++bit) {
    if (GetItemSetting(int32_t{1} << bit)) return false;
  }
  return true;
}

bool FolderSetting::ItemIsLoggedType(
    const std::function<bool(std::string_view)>& is_of_class) const {
  for (size_t k = 0; k < kItemClassNames.size(); ++k) {
    if (is_of_class(kItemClassNames[k])) return GetItemSetting(int32_t{1} << (k + 1));
  }
  return false;
}

}  // namespace zintra
