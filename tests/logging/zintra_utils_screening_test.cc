#include <gtest/gtest.h>

#include "sim/outlook/sim_keys.h"
#include "src/host/mapi_object.h"
#include "tests/logging/zintra_utils_fixture.h"

namespace zintra {
namespace {

using testing_support::ZintraUtilsTest;

struct Screened {
  bool passed;
  std::string reason, subject, folder, description;
};

class ScreeningTest : public ZintraUtilsTest {
 protected:
  Screened Screen(const std::shared_ptr<Item>& item, bool received = false, bool sent = false) {
    Screened s{};
    s.passed = utils_.GeneralScreening("new", item, received, sent, s.reason, s.subject, s.folder,
                                       s.description);
    return s;
  }
  // A mail stored in the Inbox, sent on 7 March 2026 14:05 and received at 14:35;
  // created (stored) whenever the profile's clock says.
  std::shared_ptr<Item> Mail() {
    auto item = NewItem(ItemClass::kMail, inbox_);
    auto record = sim::RecordOf(item);
    record->props.Set(kPrClientSubmitTime, Value::Date(MakeDate(2026, 3, 7, 14, 5, 0)));
    record->props.Set(kPrMessageDeliveryTime, Value::Date(MakeDate(2026, 3, 7, 14, 35, 0)));
    return item;
  }
  std::string Created(const std::shared_ptr<Item>& item) {
    return "[Created " + FormatDate(item->CreationTime(), "dd-mmm\\/yy h\\:Nna/p") + "]";
  }
};

TEST_F(ScreeningTest, RefusesItemsNoJobMayTouchInOrder) {
  EXPECT_EQ(Screen(nullptr).reason, "Item is nothing");
  EXPECT_EQ(Screen(NewItem(ItemClass::kRemote, inbox_)).reason, "Item is RemoteItem");
  EXPECT_EQ(Screen(NewItem(ItemClass::kNote, inbox_)).reason, "Item is NoteItem");
  EXPECT_EQ(Screen(NewItem(ItemClass::kSharing, inbox_)).reason, "Item is SharingItem");

  auto orphan = profile_.NewMessage(ItemClass::kMail, inbox_);
  orphan->folder.reset();
  Screened s = Screen(sim::MakeItem(&profile_, orphan));
  EXPECT_FALSE(s.passed);
  EXPECT_EQ(s.reason, "Item.Parent is nothing");
  EXPECT_EQ(s.subject, "");

  // A remote item that also carries the tag is refused as a remote item: the kind is
  // tested first.
  auto remote = NewItem(ItemClass::kRemote, inbox_);
  utils_.SetUserProperty(remote->UserProperties(), kPropZintraTag, kOlText, Value("Processing"),
                         false);
  EXPECT_EQ(Screen(remote).reason, "Item is RemoteItem");
  // None of these got as far as the debug line.
  EXPECT_TRUE(Lines("Message").empty());
}

struct DescriptionCase {
  bool received, sent;
  const char* expected;  // nullptr: the created description
};

class MailDescriptionTest : public ScreeningTest,
                            public testing::WithParamInterface<DescriptionCase> {};

TEST_P(MailDescriptionTest, CrossesReceivedAndSentTimes) {
  auto mail = Mail();
  Screened s = Screen(mail, GetParam().received, GetParam().sent);
  EXPECT_TRUE(s.passed);
  EXPECT_EQ(s.reason, "");
  EXPECT_EQ(s.description, GetParam().expected ? GetParam().expected : Created(mail));
}

INSTANTIATE_TEST_SUITE_P(Flags, MailDescriptionTest,
                         testing::Values(DescriptionCase{true, false, "[Recieved 07-Mar/26 2:05p]"},
                                         DescriptionCase{true, true, "[Recieved 07-Mar/26 2:05p]"},
                                         DescriptionCase{false, true, "[Sent 07-Mar/26 2:35p]"},
                                         DescriptionCase{false, false, nullptr}));

TEST_F(ScreeningTest, NonMailItemsAreDescribedByCreationWhateverTheFlags) {
  auto post = NewItem(ItemClass::kPost, inbox_);
  auto record = sim::RecordOf(post);
  record->props.Set(kPrClientSubmitTime, Value::Date(MakeDate(2026, 3, 7, 14, 5, 0)));
  EXPECT_EQ(Screen(post, true, true).description, Created(post));
  auto report = NewItem(ItemClass::kReport, inbox_);
  EXPECT_EQ(Screen(report, false, true).description, Created(report));
}

TEST_F(ScreeningTest, ContactsGoByFullNameAndTheFolderIsNamed) {
  auto contact = sim::MakeItem(&profile_, profile_.NewMessage(ItemClass::kContact, contacts_));
  contact->SetFullName("Ana Lima");
  contact->Save();
  Screened s = Screen(contact, true, false);
  EXPECT_TRUE(s.passed);
  EXPECT_EQ(s.subject, "Ana Lima");
  EXPECT_EQ(s.folder, "Contacts");
  EXPECT_EQ(Lines("Message"),
            std::vector<std::string>{"Screening new ContactItem 'Ana Lima' in 'Contacts' " +
                                     Created(contact)});
}

TEST_F(ScreeningTest, TaggedItemIsRefusedUntilTheTagIsCleared) {
  auto mail = Mail();
  utils_.SetUserProperty(mail->UserProperties(), kPropZintraTag, kOlText, Value("Processing"),
                         true);
  mail->Save();
  Screened s = Screen(mail, true);
  EXPECT_FALSE(s.passed);
  EXPECT_EQ(s.reason, "ZINTRAPROP_TAG is not empty");
  // The out-values are filled all the same: callers log them with the reason.
  EXPECT_EQ(s.subject, "Quarterly figures");
  EXPECT_EQ(s.folder, "Inbox");
  EXPECT_EQ(s.description, "[Recieved 07-Mar/26 2:05p]");
  EXPECT_EQ(Lines("Message").back(),
            "Screening new MailItem 'Quarterly figures' in 'Inbox' [Recieved 07-Mar/26 2:05p]");

  utils_.SetUserProperty(mail->UserProperties(), kPropZintraTag, kOlText, Value(""), true);
  mail->Save();
  s = Screen(mail, true);
  EXPECT_TRUE(s.passed);
  EXPECT_EQ(s.reason, "");
}

TEST_F(ScreeningTest, FailureIsLoggedAndRaisedWithTheStep) {
  auto mail = Mail();
  profile_.Faults().FailAlways("Item.Subject", kMapiNetworkError, "Network problem",
                               sim::ObjectKeyOf(mail));
  try {
    Screen(mail);
    FAIL() << "screening an unreadable item must raise";
  } catch (const ZError& e) {
    EXPECT_EQ(e.Number(), kMapiNetworkError);
    EXPECT_NE(e.Source().find("ZintraUtils.GeneralScreening"), std::string::npos);
  }
  ASSERT_EQ(log_.lines.size(), 1u);
  EXPECT_EQ(log_.lines[0].kind, "Error");
  EXPECT_EQ(log_.lines[0].number, kMapiNetworkError);
}

}  // namespace
}  // namespace zintra
