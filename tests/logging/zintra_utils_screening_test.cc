#include <gtest/gtest.h>

#include "tests/logging/zintra_utils_fixture.h"

namespace zintra {
namespace {

using testing_support::ZintraUtilsTest;

struct Screened {
  bool passed;
  std::string reason, subject, folder, description;
};

class UtilsScreeningTest : public ZintraUtilsTest {
 protected:
  Screened Screen(const std::shared_ptr<Item>& item, bool received = false, bool sent = false) {
    Screened s{};
    s.passed = utils_.GeneralScreening("new", item, received, sent, s.reason, s.subject, s.folder,
                                       s.description);
    return s;
  }
  // Sent on 7 March 2026 at 14:05, received at 14:35.
  std::shared_ptr<Item> Mail() {
    auto item = NewItem(ItemClass::kMail);
    sim::RecordOf(item)->props.Set(kPrClientSubmitTime,
                                   Value::Date(MakeDate(2026, 3, 7, 14, 5, 0)));
    sim::RecordOf(item)->props.Set(kPrMessageDeliveryTime,
                                   Value::Date(MakeDate(2026, 3, 7, 14, 35, 0)));
    return item;
  }
  static std::string Created(const std::shared_ptr<Item>& item) {
    return "[Created " + FormatDate(item->CreationTime(), "dd-mmm\\/yy h\\:Nna/p") + "]";
  }
};

TEST_F(UtilsScreeningTest, RefusesWhatNoJobMayTouchKindBeforeTag) {
  auto remote = NewItem(ItemClass::kRemote);
  utils_.SetUserProperty(remote->UserProperties(), kPropZintraTag, kOlText, Value("Processing"),
                         false);
  auto orphan = profile_.NewMessage(ItemClass::kMail, inbox_);
  orphan->folder.reset();
  EXPECT_EQ(Screen(nullptr).reason, "Item is nothing");
  EXPECT_EQ(Screen(remote).reason, "Item is RemoteItem");
  EXPECT_EQ(Screen(NewItem(ItemClass::kNote)).reason, "Item is NoteItem");
  EXPECT_EQ(Screen(NewItem(ItemClass::kSharing)).reason, "Item is SharingItem");
  Screened s = Screen(sim::MakeItem(&profile_, orphan));
  EXPECT_FALSE(s.passed);
  EXPECT_EQ(s.reason, "Item.Parent is nothing");
  EXPECT_TRUE(Lines("Message").empty());  // none got as far as the debug line
}

struct DescriptionCase {
  ItemClass kind;
  bool received, sent;
  const char* expected;  // nullptr: the created description
};
class UtilsDescriptionTest : public UtilsScreeningTest,
                             public testing::WithParamInterface<DescriptionCase> {};

TEST_P(UtilsDescriptionTest, ReceivedAndSentTimesAreCrossedForMailOnly) {
  auto item = GetParam().kind == ItemClass::kMail ? Mail() : NewItem(GetParam().kind);
  Screened s = Screen(item, GetParam().received, GetParam().sent);
  EXPECT_TRUE(s.passed);
  EXPECT_EQ(s.reason, "");
  EXPECT_EQ(s.description, GetParam().expected ? GetParam().expected : Created(item));
}

INSTANTIATE_TEST_SUITE_P(
    Flags, UtilsDescriptionTest,
    testing::Values(DescriptionCase{ItemClass::kMail, true, false, "[Recieved 07-Mar/26 2:05p]"},
                    DescriptionCase{ItemClass::kMail, true, true, "[Recieved 07-Mar/26 2:05p]"},
                    DescriptionCase{ItemClass::kMail, false, true, "[Sent 07-Mar/26 2:35p]"},
                    DescriptionCase{ItemClass::kMail, false, false, nullptr},
                    DescriptionCase{ItemClass::kPost, true, true, nullptr},
                    DescriptionCase{ItemClass::kReport, false, true, nullptr}));

TEST_F(UtilsScreeningTest, TaggedItemIsRefusedUntilTheTagIsCleared) {
  auto mail = Mail();
  utils_.SetUserProperty(mail->UserProperties(), kPropZintraTag, kOlText, Value("Processing"),
                         true);
  utils_.SaveItem(mail);
  Screened s = Screen(mail, true);
  EXPECT_FALSE(s.passed);
  EXPECT_EQ(s.reason, "ZINTRAPROP_TAG is not empty");
  EXPECT_EQ(Lines("Message").back(),
            "Screening new MailItem 'Figures' in 'Inbox' [Recieved 07-Mar/26 2:05p]");

  utils_.SetUserProperty(mail->UserProperties(), kPropZintraTag, kOlText, Value(""), true);
  utils_.SaveItem(mail);
  EXPECT_TRUE(Screen(mail, true).passed);

  // A contact goes by its full name.
  auto contact = sim::MakeItem(
      &profile_, build_.Contact(build_.Default(kOlFolderContacts), {"Ana Lima", {"ana@x.com"}}));
  s = Screen(contact, true);
  EXPECT_TRUE(s.passed);
  EXPECT_EQ(Lines("Message").back(),
            "Screening new ContactItem 'Ana Lima' in 'Contacts' " + Created(contact));
}

TEST_F(UtilsScreeningTest, UnreadableItemIsLoggedAndRaised) {
  auto mail = Mail();
  profile_.Faults().FailAlways("Item.Subject", kMapiNetworkError, "Network problem",
                               sim::ObjectKeyOf(mail));
  EXPECT_THROW(Screen(mail), ZError);
  EXPECT_EQ(Lines("Error"), std::vector<std::string>{"Network problem"});
}

}  // namespace
}  // namespace zintra
