// Marks and deletes through the MAPI library: named properties, the library's
// user-property facade, hard deletes.
#include <gtest/gtest.h>

#include "sim/outlook/sim_keys.h"
#include "src/host/mapi_object.h"
#include "src/host/mapi_session.h"
#include "tests/logging/zintra_utils_fixture.h"

namespace zintra {
namespace {

using testing_support::ZintraUtilsTest;

class LibraryTest : public ZintraUtilsTest {
 protected:
  std::shared_ptr<RdoMessage> Open(const std::shared_ptr<Item>& item) {
    return rdo_->GetMessageFromID(item->EntryID(), {});
  }
  // Counts Inbox ItemChange events that the add-in would not ignore.
  void Watch() {
    items_ = FolderOf(inbox_)->Items();
    on_change_ = items_->ItemChange.Connect(
        [this](const std::shared_ptr<Item>&) { (utils_.SquelchItemSend() ? own_ : foreign_)++; });
    on_remove_ =
        items_->ItemRemove.Connect([this] { removed_squelched_ += utils_.SquelchItemSend(); });
  }

  std::shared_ptr<Items> items_;
  Connection on_change_, on_remove_;
  int own_ = 0, foreign_ = 0, removed_squelched_ = 0;
};

TEST_F(LibraryTest, BothUserPropertyFacadesSeeTheSameMarks) {
  auto mail = NewItem(ItemClass::kMail, inbox_);
  utils_.SetUserProperty(mail->UserProperties(), kPropZintraLogged, kOlYesNo, Value(true), false);
  utils_.SaveItem(mail);
  auto message = Open(mail);
  EXPECT_TRUE(utils_.GetRDOUserProperty(message->UserProperties(), kPropZintraLogged).ToBool());

  utils_.SetRDOUserProperty(message->UserProperties(), kPropZintraTag, kOlText, Value("Processing"),
                            false);
  message->Save();
  auto reread = app_->Session()->GetItemFromID(mail->EntryID());
  EXPECT_EQ(utils_.GetUserProperty(reread->UserProperties(), kPropZintraTag).ToString(),
            "Processing");
  EXPECT_TRUE(utils_.GetRDOUserProperty(message->UserProperties(), kPropZintraShared).IsEmpty());
}

TEST_F(LibraryTest, NamedPropertiesRoundTripAndTravelToAnotherStore) {
  auto mail = NewItem(ItemClass::kMail, inbox_);
  const double audited = MakeDate(2026, 3, 9, 8, 30, 0);
  utils_.SetNamedProp(mail->MAPIOBJECT(), Value(kPropZintraLastAudited), Value::Date(audited),
                      kPtSystime, true);
  utils_.SetNamedProp(mail->MAPIOBJECT(), Value(kPropLoggedEntryIds),
                      Value(Value::StringArray{"00AA", "00BB"}), kPtMvString8, true);
  EXPECT_EQ(
      utils_.GetNamedProp(mail->MAPIOBJECT(), Value(kPropZintraLastAudited), kPtSystime).ToDate(),
      audited);

  auto archive = profile_.AddFolder(profile_.AddStore("Archive").root, "Old mail", kOlMailItem);
  auto moved = mail->Copy()->Move(FolderOf(archive));
  const Value ids =
      utils_.GetNamedProp(moved->MAPIOBJECT(), Value(kPropLoggedEntryIds), kPtMvString8);
  EXPECT_EQ(ids.ToStringArray(), (Value::StringArray{"00AA", "00BB"}));
  EXPECT_EQ(
      utils_.GetNamedProp(moved->MAPIOBJECT(), Value(kPropZintraLastAudited), kPtSystime).ToDate(),
      audited);
}

TEST_F(LibraryTest, UnknownNameReadsEmptyWithoutBeingMapped) {
  auto mail = NewItem(ItemClass::kMail, inbox_);
  const size_t mapped = store_->names.Size();
  EXPECT_TRUE(
      utils_.GetNamedProp(mail->MAPIOBJECT(), Value("Zintra Never Written"), kPtString8).IsEmpty());
  EXPECT_EQ(store_->names.Size(), mapped);
  // Other property sets and numeric ids go through the same path.
  utils_.SetNamedProp(mail->MAPIOBJECT(), Value(int32_t{0x8503}), Value(true), kPtBoolean, false,
                      kPsetidCommon);
  EXPECT_TRUE(
      utils_.GetNamedProp(mail->MAPIOBJECT(), Value(int32_t{0x8503}), kPtBoolean, kPsetidCommon)
          .ToBool());
  EXPECT_TRUE(
      utils_.GetNamedProp(mail->MAPIOBJECT(), Value(int32_t{0x8503}), kPtBoolean).IsEmpty());
}

TEST_F(LibraryTest, String8FromANumberStoresItsDecimalText) {
  auto mail = NewItem(ItemClass::kMail, inbox_);
  utils_.SetNamedProp(mail->MAPIOBJECT(), Value("Zintra Count"), Value(int32_t{42}), kPtString8,
                      false);
  utils_.SetNamedProp(mail->MAPIOBJECT(), Value("Zintra Ratio"), Value(2.5), kPtString8, false);
  const Value count = utils_.GetNamedProp(mail->MAPIOBJECT(), Value("Zintra Count"), kPtString8);
  EXPECT_EQ(count.Type(), ValueType::kString);
  EXPECT_EQ(count.ToString(), "42");
  EXPECT_EQ(utils_.GetNamedProp(mail->MAPIOBJECT(), Value("Zintra Ratio"), kPtString8).ToString(),
            "2.5");
}

TEST_F(LibraryTest, SavingANamedPropertyIsTheAddinsOwnChange) {
  auto mail = NewItem(ItemClass::kMail, inbox_);
  Watch();
  utils_.SetNamedProp(mail->MAPIOBJECT(), Value(kPropZintraLastAudited),
                      Value::Date(MakeDate(2026, 3, 9, 8, 30, 0)), kPtSystime, true);
  EXPECT_EQ(own_, 1);
  EXPECT_EQ(foreign_, 0);
  EXPECT_FALSE(utils_.SquelchItemSend());
}

TEST_F(LibraryTest, FailedNamedWriteIsLoggedRaisedAndClosesTheBracket) {
  auto mail = NewItem(ItemClass::kMail, inbox_);
  profile_.Faults().FailOnCall("MapiUtils.HrSetOneProp", 1, kMapiNoAccess, "Read-only store");
  try {
    utils_.SetNamedProp(mail->MAPIOBJECT(), Value(kPropZintraLastAudited), Value::Date(1.0),
                        kPtSystime, true);
    FAIL() << "the write must fail";
  } catch (const ZError& e) {
    EXPECT_EQ(e.Number(), kMapiNoAccess);
    EXPECT_NE(e.Source().find("ZintraUtils.SetNamedProp"), std::string::npos);
  }
  EXPECT_FALSE(utils_.SquelchItemSend());
  EXPECT_EQ(Lines("Error"), std::vector<std::string>{"Read-only store"});

  // A saving write inside an open bracket is refused before anything is written.
  utils_.PreSaveItem();
  EXPECT_THROW(
      utils_.SetNamedProp(mail->MAPIOBJECT(), Value("Zintra X"), Value("y"), kPtString8, true),
      ZError);
  EXPECT_TRUE(utils_.SquelchItemSend());
  utils_.PostSaveItem();
  EXPECT_TRUE(utils_.GetNamedProp(mail->MAPIOBJECT(), Value("Zintra X"), kPtString8).IsEmpty());
}

TEST_F(LibraryTest, PermDeleteBypassesDeletedItemsAndIsSquelched) {
  auto mail = NewItem(ItemClass::kMail, inbox_);
  const std::string entry_id = mail->EntryID();
  auto deleted_items = profile_.DefaultFolder(kOlFolderDeletedItems);
  Watch();
  mail->SetSubject("Working copy");
  utils_.PermDeleteItem(mail);
  EXPECT_EQ(own_, 1);  // the save before the delete
  EXPECT_EQ(foreign_, 0);
  EXPECT_EQ(removed_squelched_, 1);
  EXPECT_TRUE(deleted_items->messages.empty());
  EXPECT_THROW(app_->Session()->GetItemFromID(entry_id), ZError);
  EXPECT_FALSE(utils_.SquelchItemSend());
}

TEST_F(LibraryTest, PermDeleteFailuresLeaveTheFlagClear) {
  auto mail = NewItem(ItemClass::kMail, inbox_);
  profile_.Faults().FailOnCall("RdoMessage.Delete", 1, kMapiNoAccess, "No delete right");
  try {
    utils_.PermDeleteItem(mail);
    FAIL() << "the delete must fail";
  } catch (const ZError& e) {
    EXPECT_EQ(e.Number(), kMapiNoAccess);
    EXPECT_NE(e.Source().find("ZintraUtils.PermDeleteItem"), std::string::npos);
  }
  EXPECT_FALSE(utils_.SquelchItemSend());
  EXPECT_NO_THROW(app_->Session()->GetItemFromID(mail->EntryID()));

  utils_.SetLibrary(mapi_utils_, nullptr);
  EXPECT_THROW(utils_.PermDeleteItem(mail), ZError);
  EXPECT_FALSE(utils_.SquelchItemSend());
  utils_.SetLibrary(nullptr, nullptr);
  EXPECT_THROW(utils_.GetNamedProp(mail->MAPIOBJECT(), Value("Zintra X"), kPtString8), ZError);
}

}  // namespace
}  // namespace zintra
