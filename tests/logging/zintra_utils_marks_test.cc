#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "sim/outlook/sim_keys.h"
#include "src/host/mapi_object.h"
#include "tests/logging/zintra_utils_fixture.h"

namespace zintra {
namespace {

using testing::_;
using testing::Return;
using testing_support::ZintraUtilsTest;

class MockUserProperties : public UserProperties {
 public:
  std::string TypeName() const override { return "UserProperties"; }
  MOCK_METHOD(int32_t, Count, (), (const, override));
  MOCK_METHOD(std::shared_ptr<UserProperty>, Item, (int32_t), (override));
  MOCK_METHOD(std::shared_ptr<UserProperty>, Find, (const std::string&), (override));
  MOCK_METHOD(std::shared_ptr<UserProperty>, Add, (const std::string&, int32_t, bool), (override));
  MOCK_METHOD(void, Remove, (int32_t), (override));
};

using MarksTest = ZintraUtilsTest;

TEST_F(MarksTest, UserPropertiesReadBackAndReadingNeverCreates) {
  auto mail = NewItem(ItemClass::kMail, inbox_);
  auto props = mail->UserProperties();
  EXPECT_TRUE(utils_.GetUserProperty(props, kPropZintraLogged).IsEmpty());
  EXPECT_EQ(props->Count(), 0);

  utils_.SetUserProperty(props, kPropZintraTag, kOlText, Value("Processing"), true);
  utils_.SetUserProperty(props, kPropZintraLogged, kOlYesNo, Value(true), false);
  // An existing property is found (names compared without case) and overwritten.
  utils_.SetUserProperty(props, "zintra tag", kOlText, Value(""), false);
  EXPECT_EQ(props->Count(), 2);
  EXPECT_EQ(utils_.GetUserProperty(props, kPropZintraTag).ToString(), "");
  EXPECT_TRUE(utils_.GetUserProperty(props, kPropZintraLogged).ToBool());
}

TEST_F(MarksTest, MarksTravelWithCopyAndMove) {
  auto mail = NewItem(ItemClass::kMail, inbox_);
  utils_.SetUserProperty(mail->UserProperties(), kPropZintraShared, kOlYesNo, Value(true), false);
  utils_.SaveItem(mail);

  auto copy = mail->Copy();
  auto moved = copy->Move(FolderOf(journal_));
  EXPECT_NE(moved->EntryID(), mail->EntryID());
  EXPECT_TRUE(utils_.GetUserProperty(moved->UserProperties(), kPropZintraShared).ToBool());
  auto again = app_->Session()->GetItemFromID(moved->EntryID());
  EXPECT_TRUE(utils_.GetUserProperty(again->UserProperties(), kPropZintraShared).ToBool());
}

TEST_F(MarksTest, PropertyThatCannotBeAddedRaises91WithItsName) {
  for (bool rdo : {false, true}) {
    auto props = std::make_shared<MockUserProperties>();
    EXPECT_CALL(*props, Find("Zintra Tag")).WillOnce(Return(nullptr));
    EXPECT_CALL(*props, Add("Zintra Tag", kOlText, _)).WillOnce(Return(nullptr));
    try {
      if (rdo) {
        utils_.SetRDOUserProperty(props, kPropZintraTag, kOlText, Value("x"), false);
      } else {
        utils_.SetUserProperty(props, kPropZintraTag, kOlText, Value("x"), false);
      }
      FAIL() << "expected error 91";
    } catch (const ZError& e) {
      EXPECT_EQ(e.Number(), kErrObjectNotSet);
      EXPECT_EQ(e.Description(), "Failed to add property: Zintra Tag");
      EXPECT_NE(
          e.Source().find(rdo ? "ZintraUtils.SetRDOUserProperty" : "ZintraUtils.SetUserProperty"),
          std::string::npos);
    }
  }
}

struct FolderFieldsCase {
  bool edit_folder_fields, always_use_folder_fields, asked, passed;
};

class FolderFieldsTest : public MarksTest, public testing::WithParamInterface<FolderFieldsCase> {};

TEST_P(FolderFieldsTest, SettingsDecideWhetherTheFolderGetsTheField) {
  settings_.EditFolderFields = GetParam().edit_folder_fields;
  settings_.AlwaysUseFolderFields = GetParam().always_use_folder_fields;
  auto props = std::make_shared<MockUserProperties>();
  EXPECT_CALL(*props, Find(_)).WillOnce(Return(nullptr));
  EXPECT_CALL(*props, Add(kPropZintraLogged, kOlYesNo, GetParam().passed))
      .WillOnce(Return(nullptr));
  EXPECT_THROW(
      utils_.SetUserProperty(props, kPropZintraLogged, kOlYesNo, Value(true), GetParam().asked),
      ZError);
}

INSTANTIATE_TEST_SUITE_P(Flags, FolderFieldsTest,
                         testing::Values(FolderFieldsCase{true, false, true, false},  // defaults
                                         FolderFieldsCase{true, true, true, true},
                                         FolderFieldsCase{true, true, false, false},
                                         FolderFieldsCase{false, true, true, false}));

TEST_F(MarksTest, StoreFailureIsRaisedWithTheStep) {
  auto mail = NewItem(ItemClass::kMail, inbox_);
  profile_.Faults().FailAlways("UserProperties.Find", kMapiCallFailed, "Store broken");
  try {
    utils_.GetUserProperty(mail->UserProperties(), kPropZintraTag);
    FAIL() << "expected the store's error";
  } catch (const ZError& e) {
    EXPECT_EQ(e.Number(), kMapiCallFailed);
    EXPECT_NE(e.Source().find("-->ZintraUtils.GetUserProperty"), std::string::npos);
  }
  EXPECT_TRUE(Lines("Error").empty());  // the caller decides whether to log
}

TEST_F(MarksTest, UnconnectedCollectionIsObjectNotSet) {
  EXPECT_THROW(
      {
        try {
          utils_.GetUserProperty(nullptr, kPropZintraTag);
        } catch (const ZError& e) {
          EXPECT_EQ(e.Number(), kErrObjectNotSet);
          throw;
        }
      },
      ZError);
}

}  // namespace
}  // namespace zintra
