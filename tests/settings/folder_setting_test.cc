#include "src/settings/folder_setting.h"

#include <gtest/gtest.h>

namespace zintra {
namespace {

TEST(FolderSettingTest, SettingAllAndNoneCoversBitsTwoTo65536) {
  FolderSetting setting;
  setting.SetAllItemsLogged(true);
  EXPECT_EQ(setting.ItemTypes, 131070);
  EXPECT_FALSE(setting.NoItemsLogged());
  setting.SetAllItemsLogged(false);
  EXPECT_EQ(setting.ItemTypes, 0);
  setting.ItemTypes = 1;  // the unused bit does not count as a logged kind
  EXPECT_TRUE(setting.NoItemsLogged());
}

TEST(FolderSettingTest, SetItemSettingOnlyTogglesWhenTheAnswerDiffers) {
  FolderSetting setting;
  setting.SetItemSetting(64, true);
  setting.SetItemSetting(64, true);
  EXPECT_EQ(setting.ItemTypes, 64);
  EXPECT_TRUE(setting.GetItemSetting(64));
  // A mixed multi-bit request is "not set", so asking for True flips every bit of it.
  setting.SetItemSetting(64 | 2, true);
  EXPECT_EQ(setting.ItemTypes, 2);
  EXPECT_FALSE(setting.GetItemSetting(64 | 2));
  setting.SetItemSetting(2, false);
  EXPECT_TRUE(setting.NoItemsLogged());
}

TEST(FolderSettingTest, StringIdsAndBitsConvertBothWays) {
  for (int16_t id = 135; id <= 150; ++id) {
    int32_t bit = FolderSetting::RS_to_ItemType(id);
    EXPECT_EQ(bit, int32_t{1} << (id - 134));
    EXPECT_EQ(FolderSetting::ItemType_to_RS(bit), id);
  }
  EXPECT_EQ(FolderSetting::RS_to_ItemType(140), 64);
  EXPECT_EQ(FolderSetting::ItemType_to_RS(64), 140);
}

class OutlookItemTypeTest : public ::testing::TestWithParam<std::pair<int32_t, int32_t>> {};

TEST_P(OutlookItemTypeTest, MapsToItsBit) {
  EXPECT_EQ(FolderSetting::OutlookItemType_to_ItemType(GetParam().first), GetParam().second);
}

INSTANTIATE_TEST_SUITE_P(AllKinds, OutlookItemTypeTest,
                         ::testing::Values(std::pair{0, 64}, std::pair{1, 2}, std::pair{2, 4},
                                           std::pair{3, 4096}, std::pair{4, 32}, std::pair{5, 256},
                                           std::pair{6, 1024}, std::pair{7, 8}, std::pair{8, 0},
                                           std::pair{-1, 0}));

TEST(FolderSettingTest, TheFirstMatchingClassDecidesWhetherAnItemIsLogged) {
  FolderSetting setting;
  setting.SetItemSetting(64, true);  // MailItem
  auto of = [](std::string_view cls) {
    return [cls](std::string_view asked) { return asked == cls; };
  };
  EXPECT_TRUE(setting.ItemIsLoggedType(of("MailItem")));
  EXPECT_FALSE(setting.ItemIsLoggedType(of("MeetingItem")));
  EXPECT_FALSE(setting.ItemIsLoggedType(of("SharingItem")));
  // An object answering to two classes is judged by the earlier one in the table.
  EXPECT_FALSE(setting.ItemIsLoggedType(
      [](std::string_view asked) { return asked == "ContactItem" || asked == "MailItem"; }));
}

TEST(FolderSettingTest, CloneCopiesAllThreeFields) {
  FolderSetting setting{"E1", "S1", 4096};
  FolderSetting copy = setting.Clone();
  copy.SetItemSetting(2, true);
  EXPECT_EQ(copy.EntryID, "E1");
  EXPECT_EQ(copy.StoreID, "S1");
  EXPECT_EQ(copy.ItemTypes, 4098);
  EXPECT_EQ(setting.ItemTypes, 4096);
}

}  // namespace
}  // namespace zintra
