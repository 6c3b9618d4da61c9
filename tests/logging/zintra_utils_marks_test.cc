#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "sim/outlook/call_counter.h"
#include "src/host/mapi_utils.h"
#include "tests/logging/zintra_utils_fixture.h"
#include "tests/support/error_of.h"

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
  MOCK_METHOD(std::shared_ptr<UserProperty>, Find, (std::string_view), (override));
  MOCK_METHOD(std::shared_ptr<UserProperty>, Add, (std::string_view, int32_t, bool), (override));
  MOCK_METHOD(void, Remove, (int32_t), (override));
};

using UtilsMarksTest = ZintraUtilsTest;

TEST_F(UtilsMarksTest, BothFacadesSeeTheSameMarksWhichTravelWithCopyAndMove) {
  auto mail = NewItem(ItemClass::kMail);
  EXPECT_TRUE(utils_.GetUserProperty(mail->UserProperties(), kPropZintraTag).IsEmpty());
  EXPECT_EQ(mail->UserProperties()->Count(), 0);  // reading never creates
  utils_.SetUserProperty(mail->UserProperties(), kPropZintraLogged, kOlYesNo, Value(true), true);
  utils_.SaveItem(mail);
  auto message = rdo_->GetMessageFromID(mail->EntryID(), {});
  EXPECT_TRUE(utils_.GetRDOUserProperty(message->UserProperties(), kPropZintraLogged).ToBool());
  utils_.SetRDOUserProperty(message->UserProperties(), "zintra tag", kOlText, Value("Processing"),
                            false);
  message->Save();

  auto archive = profile_.AddFolder(build_.PersonalFolders(), "Archive", kOlMailItem);
  auto moved = app_->Session()->GetItemFromID(mail->EntryID())->Copy()->Move(FolderOf(archive));
  EXPECT_EQ(utils_.GetUserProperty(moved->UserProperties(), kPropZintraTag).ToString(),
            "Processing");
  EXPECT_TRUE(utils_.GetUserProperty(moved->UserProperties(), kPropZintraLogged).ToBool());
}

TEST_F(UtilsMarksTest, NamedPropertiesLiveInTheirSetAndAreMappedIntoTheTargetStore) {
  auto mail = NewItem(ItemClass::kMail);
  const double audited = MakeDate(2026, 3, 9, 8, 30, 0);
  utils_.SetNamedProp(mail->MAPIOBJECT(), Value(kPropZintraLastAudited), Value::Date(audited),
                      kPtSystime, false);
  utils_.SetNamedProp(mail->MAPIOBJECT(), Value(kPropLoggedEntryIds),
                      Value(Value::StringArray{"00AA", "00BB"}), kPtMvString8, true);
  // A number written as PT_STRING8 is stored as its decimal text.
  utils_.SetNamedProp(mail->MAPIOBJECT(), Value("Zintra Count"), Value(int32_t{42}), kPtString8,
                      true);
  // The same name in another set is another property; an unknown name reads Empty.
  EXPECT_TRUE(utils_
                  .GetNamedProp(mail->MAPIOBJECT(), Value(kPropZintraLastAudited), kPtSystime,
                                kPsetidCommon)
                  .IsEmpty());

  auto archive = profile_.AddFolder(build_.PersonalFolders(), "Archive", kOlMailItem);
  auto moved = mail->Copy()->Move(FolderOf(archive));
  auto get = [&](const char* name, uint16_t type) {
    return utils_.GetNamedProp(moved->MAPIOBJECT(), Value(name), type);
  };
  EXPECT_EQ(get(kPropZintraLastAudited, kPtSystime).ToDate(), audited);
  EXPECT_EQ(get(kPropLoggedEntryIds, kPtMvString8).ToStringArray(),
            (Value::StringArray{"00AA", "00BB"}));
  EXPECT_EQ(get("Zintra Count", kPtString8).Type(), ValueType::kString);
  EXPECT_EQ(get("Zintra Count", kPtString8).ToString(), "42");
  EXPECT_TRUE(get("Zintra Never Written", kPtString8).IsEmpty());
}

// Remembered tags are the store's own: a store whose mapping gave the same tag to
// another name keeps that property, and a name unknown at first is asked for again.
TEST_F(UtilsMarksTest, NamedTagsAreRememberedPerStoreOnly) {
  sim::CallCounter counter;
  profile_.Faults().SetCounter(&counter);
  auto archive = profile_.AddFolder(build_.PersonalFolders(), "Archive", kOlMailItem);
  auto mail = NewItem(ItemClass::kMail);
  auto filed = NewItem(ItemClass::kMail, archive);
  const std::string inbox_store = FolderOf(inbox_)->StoreID();
  const std::string archive_store = FolderOf(archive)->StoreID();
  ASSERT_NE(inbox_store, archive_store);
  utils_.SetNamedProp(filed->MAPIOBJECT(), Value("Zintra Other"), Value("kept"), kPtString8, true);
  const double audited = MakeDate(2026, 3, 9, 8, 30, 0);
  auto stamp = [&](const std::string& store, const std::shared_ptr<Item>& item, double when) {
    utils_.SetNamedProp(store, item->MAPIOBJECT(), Value(kPropZintraLastAudited), Value::Date(when),
                        kPtSystime, true);
  };
  stamp(inbox_store, mail, audited);
  // The two stores gave one tag to two names: a tag taken across stores would show.
  ASSERT_EQ(mapi_utils_->GetIDsFromNames(mail->MAPIOBJECT(), kZintraPropSetGuid,
                                         Value(kPropZintraLastAudited), false),
            mapi_utils_->GetIDsFromNames(filed->MAPIOBJECT(), kZintraPropSetGuid,
                                         Value("Zintra Other"), false));
  counter.Reset();
  stamp(inbox_store, NewItem(ItemClass::kMail), audited);
  EXPECT_EQ(counter.CallsOf("MapiUtils.GetIDsFromNames"), 0);
  stamp(archive_store, filed, audited + 1);
  EXPECT_EQ(counter.CallsOf("MapiUtils.GetIDsFromNames"), 1);
  EXPECT_EQ(
      utils_.GetNamedProp(filed->MAPIOBJECT(), Value(kPropZintraLastAudited), kPtSystime).ToDate(),
      audited + 1);
  EXPECT_EQ(utils_.GetNamedProp(filed->MAPIOBJECT(), Value("Zintra Other"), kPtString8).ToString(),
            "kept");

  auto read_later = [&] {
    return utils_.GetNamedProp(inbox_store, mail->MAPIOBJECT(), Value("Zintra Later"), kPtLong);
  };
  EXPECT_TRUE(read_later().IsEmpty());
  utils_.SetNamedProp(mail->MAPIOBJECT(), Value("Zintra Later"), Value(int32_t{7}), kPtLong, true);
  EXPECT_EQ(read_later().ToLong(), 7);
  profile_.Faults().SetCounter(nullptr);
}

TEST_F(UtilsMarksTest, PropertyThatCannotBeAddedRaises91WithItsName) {
  for (bool rdo : {false, true}) {
    auto props = std::make_shared<MockUserProperties>();
    EXPECT_CALL(*props, Find("Zintra Tag")).WillOnce(Return(nullptr));
    EXPECT_CALL(*props, Add("Zintra Tag", kOlText, _)).WillOnce(Return(nullptr));
    try {
      rdo ? utils_.SetRDOUserProperty(props, kPropZintraTag, kOlText, Value("x"), false)
          : utils_.SetUserProperty(props, kPropZintraTag, kOlText, Value("x"), false);
      ADD_FAILURE() << "expected error 91";
    } catch (const ZError& e) {
      EXPECT_EQ(e.Number(), kErrObjectNotSet);
      EXPECT_EQ(e.Description(), "Failed to add property: Zintra Tag");
      EXPECT_NE(e.Source().find(rdo ? "-->ZintraUtils.SetRDOUserProperty"
                                    : "-->ZintraUtils.SetUserProperty"),
                std::string::npos);
    }
  }
}

struct FolderFieldsCase {
  bool edit, always, asked, passed;
};
class UtilsFolderFieldsTest : public UtilsMarksTest,
                              public testing::WithParamInterface<FolderFieldsCase> {};

TEST_P(UtilsFolderFieldsTest, SettingsDecideWhetherTheFolderGetsTheField) {
  settings_.EditFolderFields = GetParam().edit;
  settings_.AlwaysUseFolderFields = GetParam().always;
  auto props = std::make_shared<MockUserProperties>();
  EXPECT_CALL(*props, Find(_)).WillOnce(Return(nullptr));
  EXPECT_CALL(*props, Add(_, kOlYesNo, GetParam().passed)).WillOnce(Return(nullptr));
  EXPECT_THROW(
      utils_.SetUserProperty(props, kPropZintraLogged, kOlYesNo, Value(true), GetParam().asked),
      ZError);
}

INSTANTIATE_TEST_SUITE_P(Flags, UtilsFolderFieldsTest,
                         testing::Values(FolderFieldsCase{true, false, true, false},  // defaults
                                         FolderFieldsCase{true, true, true, true},
                                         FolderFieldsCase{true, true, false, false},
                                         FolderFieldsCase{false, true, true, false}));

TEST_F(UtilsMarksTest, StoreFailurePropagatesWithTheStep) {
  auto mail = NewItem(ItemClass::kMail);
  profile_.Faults().FailOnCall("UserProperties.Find", 1, kMapiCallFailed, "Store broken");
  std::optional<ZError> e =
      Raised([&] { utils_.GetUserProperty(mail->UserProperties(), kPropZintraTag); });
  ASSERT_TRUE(e) << "expected the store's error";
  EXPECT_EQ(e->Number(), kMapiCallFailed);
  EXPECT_NE(e->Source().find("-->ZintraUtils.GetUserProperty"), std::string::npos);
  EXPECT_TRUE(Lines("Error").empty());  // reads leave logging to the caller
}

TEST_F(UtilsMarksTest, ItemKindsGroupIntoOutlookItemTypes) {
  const std::pair<ItemClass, int32_t> cases[] = {{ItemClass::kMail, 0},
                                                 {ItemClass::kReport, 0},
                                                 {ItemClass::kSharing, 0},
                                                 {ItemClass::kAppointment, 1},
                                                 {ItemClass::kMeeting, 1},
                                                 {ItemClass::kContact, 2},
                                                 {ItemClass::kTask, 3},
                                                 {ItemClass::kTaskRequest, 3},
                                                 {ItemClass::kTaskRequestUpdate, 3},
                                                 {ItemClass::kTaskRequestAccept, 3},
                                                 {ItemClass::kTaskRequestDecline, 3},
                                                 {ItemClass::kJournal, 4},
                                                 {ItemClass::kDocument, 4},
                                                 {ItemClass::kNote, 5},
                                                 {ItemClass::kPost, 6},
                                                 {ItemClass::kRemote, 6},
                                                 {ItemClass::kDistList, 7}};
  for (const auto& [kind, type] : cases) {
    EXPECT_EQ(utils_.OLItemType(NewItem(kind)), type) << ItemClassTypeName(kind);
  }
}

struct HostCase {
  const char* version;
  bool v9, v10, v12_or_higher;
};
class UtilsHostVersionTest : public UtilsMarksTest, public testing::WithParamInterface<HostCase> {};

TEST_P(UtilsHostVersionTest, MajorNumberBeforeTheFirstPoint) {
  profile_.SetVersion(GetParam().version);
  EXPECT_EQ(utils_.Outlook9(), GetParam().v9);
  EXPECT_EQ(utils_.Outlook10(), GetParam().v10);
  EXPECT_EQ(utils_.Outlook12OrHigher(), GetParam().v12_or_higher);
  utils_.Kill();  // no host: no version
  EXPECT_FALSE(utils_.Outlook9() || utils_.Outlook10() || utils_.Outlook12OrHigher());
}

INSTANTIATE_TEST_SUITE_P(Hosts, UtilsHostVersionTest,
                         testing::Values(HostCase{"9.0.0.2416", true, false, false},
                                         HostCase{"10.0.0.2627", false, true, false},
                                         HostCase{"11.0.0.8312", false, false, false},
                                         HostCase{"12.0.0.4518", false, false, true},
                                         HostCase{"16", false, false, true},
                                         HostCase{"x9.0", false, false, false}));

}  // namespace
}  // namespace zintra
