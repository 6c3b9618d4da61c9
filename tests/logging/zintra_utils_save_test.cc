#include <gtest/gtest.h>

#include <functional>

#include "tests/logging/zintra_utils_fixture.h"
#include "tests/support/error_of.h"

namespace zintra {
namespace {

using testing_support::ZintraUtilsTest;
using UtilsSaveBracketTest = ZintraUtilsTest;

TEST_F(UtilsSaveBracketTest, FlagIsNotNested) {
  utils_.PostSaveItem();  // harmless without PreSaveItem
  EXPECT_FALSE(utils_.SquelchItemSend());
  utils_.PreSaveItem();
  std::optional<ZError> e = Raised([&] { utils_.PreSaveItem(); });
  ASSERT_TRUE(e) << "a nested PreSaveItem must raise";
  EXPECT_EQ(e->Number(), kErrInvalidCall);
  EXPECT_EQ(e->Description(), "Called PreSaveItem again before PostSaveItem was called.");
  EXPECT_TRUE(utils_.SquelchItemSend());
  utils_.PostSaveItem();
  EXPECT_FALSE(utils_.SquelchItemSend());
}

TEST_F(UtilsSaveBracketTest, TheAddinsOwnSavesAndDeletesAreSquelched) {
  auto mail = NewItem(ItemClass::kMail);
  auto working_copy = NewItem(ItemClass::kMail);
  const std::string working_copy_id = working_copy->EntryID();
  WatchInbox();
  utils_.SaveItem(mail);
  utils_.SetNamedProp(mail->MAPIOBJECT(), Value(kPropZintraLastAudited), Value::Date(1.5),
                      kPtSystime, true);
  utils_.PermDeleteItem(working_copy);  // a save, then a hard delete
  EXPECT_EQ(own_, 4);
  EXPECT_EQ(foreign_, 0);
  EXPECT_TRUE(build_.Default(kOlFolderDeletedItems)->messages.empty());
  EXPECT_THROW(app_->Session()->GetItemFromID(working_copy_id), ZError);

  mail->SetSubject("Edited by the user");
  mail->Save();
  EXPECT_EQ(foreign_, 1);
}

TEST_F(UtilsSaveBracketTest, FailuresAreRaisedWithTheStepAndNeverLeaveTheFlagSet) {
  auto mail = NewItem(ItemClass::kMail);
  auto& faults = profile_.Faults();
  faults.FailOnCall("Item.Save", 1, kMapiNoAccess, "Access denied");
  faults.FailOnCall("MapiUtils.HrSetOneProp", 1, kMapiNoAccess, "Read-only store");
  faults.FailOnCall("RdoMessage.Delete", 1, kMapiNoAccess, "No delete right");
  const std::pair<const char*, std::function<void()>> calls[] = {
      {"SaveItem", [&] { utils_.SaveItem(mail); }},
      {"SetNamedProp",
       [&] {
         utils_.SetNamedProp(mail->MAPIOBJECT(), Value(kPropZintraLastAudited), Value::Date(1.5),
                             kPtSystime, true);
       }},
      {"PermDeleteItem", [&] { utils_.PermDeleteItem(mail); }}};
  for (const auto& [proc, call] : calls) {
    try {
      call();
      ADD_FAILURE() << proc << " must fail";
    } catch (const ZError& e) {
      EXPECT_EQ(e.Number(), kMapiNoAccess) << proc;
      EXPECT_NE(e.Source().find(std::string("ZintraUtils.") + proc), std::string::npos);
    }
    EXPECT_FALSE(utils_.SquelchItemSend()) << proc;
  }
  // Saving and named writes log their failure themselves; the delete leaves it to its caller.
  EXPECT_EQ(Lines("Error"), (std::vector<std::string>{"Access denied", "Read-only store"}));
  EXPECT_NO_THROW(app_->Session()->GetItemFromID(mail->EntryID()));
}

}  // namespace
}  // namespace zintra
