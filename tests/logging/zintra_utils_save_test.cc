#include <gtest/gtest.h>

#include "sim/outlook/sim_keys.h"
#include "src/host/mapi_object.h"
#include "tests/logging/zintra_utils_fixture.h"

namespace zintra {
namespace {

using testing_support::ZintraUtilsTest;

class SaveBracketTest : public ZintraUtilsTest {
 protected:
  // Watches the Inbox the way folder monitoring does: an event counts as the
  // add-in's own when SquelchItemSend says so.
  void Watch() {
    items_ = FolderOf(inbox_)->Items();
    on_change_ = items_->ItemChange.Connect([this](const std::shared_ptr<Item>& item) {
      (utils_.SquelchItemSend(item) ? own_ : foreign_)++;
    });
  }

  std::shared_ptr<Items> items_;
  Connection on_change_;
  int own_ = 0, foreign_ = 0;
};

TEST_F(SaveBracketTest, FlagIsNotNested) {
  utils_.PostSaveItem();  // harmless without PreSaveItem
  EXPECT_FALSE(utils_.SquelchItemSend());
  utils_.PreSaveItem();
  EXPECT_TRUE(utils_.SquelchItemSend());
  try {
    utils_.PreSaveItem();
    FAIL() << "a nested PreSaveItem must raise";
  } catch (const ZError& e) {
    EXPECT_EQ(e.Number(), kErrInvalidCall);
    EXPECT_EQ(e.Description(), "Called PreSaveItem again before PostSaveItem was called.");
  }
  EXPECT_TRUE(utils_.SquelchItemSend());
  utils_.PostSaveItem();
  EXPECT_FALSE(utils_.SquelchItemSend());
}

TEST_F(SaveBracketTest, OwnSavesAreSquelchedOthersAreNot) {
  auto mail = NewItem(ItemClass::kMail, inbox_);
  Watch();
  utils_.SetUserProperty(mail->UserProperties(), kPropZintraTag, kOlText, Value("Processing"),
                         true);
  utils_.SaveItem(mail);
  EXPECT_EQ(own_, 1);
  mail->SetSubject("Edited by the user");
  mail->Save();
  EXPECT_EQ(foreign_, 1);
  EXPECT_FALSE(utils_.SquelchItemSend());
}

TEST_F(SaveBracketTest, FailingSaveIsLoggedRaisedAndLeavesTheFlagClear) {
  auto mail = NewItem(ItemClass::kMail, inbox_);
  profile_.Faults().FailOnCall("Item.Save", 1, kMapiNoAccess, "Access denied",
                               sim::ObjectKeyOf(mail));
  try {
    utils_.SaveItem(mail);
    FAIL() << "a failed save must reach the caller";
  } catch (const ZError& e) {
    EXPECT_EQ(e.Number(), kMapiNoAccess);
    EXPECT_NE(e.Source().find("ZintraUtils.SaveItem"), std::string::npos);
  }
  EXPECT_FALSE(utils_.SquelchItemSend());
  ASSERT_EQ(Lines("Error"), std::vector<std::string>{"Access denied"});
  EXPECT_NO_THROW(utils_.SaveItem(mail));  // the bracket opens again
}

TEST_F(SaveBracketTest, NestedSaveInsideAnOpenBracketRaisesAndKeepsTheOuterFlag) {
  // A SaveItem that could not open its bracket saves nothing and leaves the flag to
  // the owner of the open bracket.
  auto mail = NewItem(ItemClass::kMail, inbox_);
  Watch();
  utils_.PreSaveItem();
  mail->SetSubject("Not saved");
  EXPECT_THROW(utils_.SaveItem(mail), ZError);
  EXPECT_TRUE(utils_.SquelchItemSend());
  EXPECT_EQ(own_ + foreign_, 0);
  utils_.PostSaveItem();
  EXPECT_EQ(Lines("Error").size(), 1u);
}

}  // namespace
}  // namespace zintra
