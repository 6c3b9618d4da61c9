#include <gtest/gtest.h>

#include <set>

#include "sim/outlook/sim_keys.h"
#include "src/host/mapi_object.h"
#include "tests/logging/zintra_utils_fixture.h"

namespace zintra {
namespace {

using testing_support::ZintraUtilsTest;

using ItemTypeTest = ZintraUtilsTest;

TEST_F(ItemTypeTest, KindsGroupIntoOutlookItemTypes) {
  const std::pair<ItemClass, int32_t> cases[] = {
      {ItemClass::kMail, kOlMailItem},
      {ItemClass::kReport, kOlMailItem},
      {ItemClass::kAppointment, kOlAppointmentItem},
      {ItemClass::kMeeting, kOlAppointmentItem},
      {ItemClass::kContact, kOlContactItem},
      {ItemClass::kTask, kOlTaskItem},
      {ItemClass::kTaskRequest, kOlTaskItem},
      {ItemClass::kTaskRequestUpdate, kOlTaskItem},
      {ItemClass::kTaskRequestAccept, kOlTaskItem},
      {ItemClass::kTaskRequestDecline, kOlTaskItem},
      {ItemClass::kJournal, kOlJournalItem},
      {ItemClass::kDocument, kOlJournalItem},
      {ItemClass::kNote, kOlNoteItem},
      {ItemClass::kPost, kOlPostItem},
      {ItemClass::kRemote, kOlPostItem},
      {ItemClass::kDistList, kOlDistributionListItem},
      {ItemClass::kSharing, kOlMailItem},
  };
  for (const auto& [kind, type] : cases) {
    auto item = sim::MakeItem(&profile_, profile_.NewMessage(kind, inbox_));
    EXPECT_EQ(utils_.OLItemType(item), type) << ItemClassTypeName(kind);
  }
  EXPECT_EQ(utils_.OLItemType(nullptr), kOlMailItem);
}

struct VersionCase {
  const char* host_version;
  bool v9, v10, v12_or_higher;
};

class HostVersionTest : public ZintraUtilsTest, public testing::WithParamInterface<VersionCase> {};

TEST_P(HostVersionTest, MajorNumberBeforeTheFirstPoint) {
  profile_.SetVersion(GetParam().host_version);
  EXPECT_EQ(utils_.Outlook9(), GetParam().v9);
  EXPECT_EQ(utils_.Outlook10(), GetParam().v10);
  EXPECT_EQ(utils_.Outlook12OrHigher(), GetParam().v12_or_higher);
}

INSTANTIATE_TEST_SUITE_P(Hosts, HostVersionTest,
                         testing::Values(VersionCase{"9.0.0.2416", true, false, false},
                                         VersionCase{"10.0.0.2627", false, true, false},
                                         VersionCase{"11.0.0.8312", false, false, false},
                                         VersionCase{"12.0.0.4518", false, false, true},
                                         VersionCase{"16", false, false, true},
                                         VersionCase{"", false, false, false},
                                         VersionCase{"x9.0", false, false, false}));

TEST_F(ZintraUtilsTest, VersionsAnswerFalseWithoutTheHostOrAfterKill) {
  profile_.SetVersion("9.0.0.2416");
  profile_.Faults().FailAlways("Application.Version", kMapiCallFailed);
  EXPECT_FALSE(utils_.Outlook9());
  profile_.Faults().Clear();
  EXPECT_TRUE(utils_.Outlook9());
  utils_.Kill();
  EXPECT_FALSE(utils_.Outlook9());
  EXPECT_EQ(utils_.Version(), "3.0.112");
}

TEST_F(ZintraUtilsTest, KeysAreNeverHandedOutTwice) {
  std::set<std::string> keys;
  for (int i = 0; i < 1000; ++i) EXPECT_TRUE(keys.insert(utils_.GenerateKey()).second);
}

TEST_F(ZintraUtilsTest, OptionalMessageWithoutAFormIsLoggedNotShown) {
  EXPECT_FALSE(utils_.OptionalMsgBox(7, "Folder moved", "Zintra"));
  ASSERT_EQ(Lines("Warning").size(), 1u);
  EXPECT_NE(Lines("Warning")[0].find("Folder moved"), std::string::npos);
}

TEST_F(ZintraUtilsTest, LinksTheContactAsThisSessionSeesIt) {
  auto contact = sim::MakeItem(&profile_, profile_.NewMessage(ItemClass::kContact, contacts_));
  contact->SetFullName("Ana Lima");
  contact->Save();
  auto journal = NewItem(ItemClass::kJournal, journal_, "Phone call");
  utils_.AddToLinksCollection(journal->Links(), contact);
  journal->Save();
  auto links = app_->Session()->GetItemFromID(journal->EntryID())->Links();
  ASSERT_EQ(links->Count(), 1);
  EXPECT_EQ(links->Item(1)->Item()->EntryID(), contact->EntryID());

  // A contact that is gone cannot be linked; the error names this step.
  contact->Delete();
  auto gone = sim::MakeItem(&profile_, sim::RecordOf(contact));
  try {
    utils_.AddToLinksCollection(journal->Links(), gone);
    FAIL() << "linking a deleted contact must raise";
  } catch (const ZError& e) {
    EXPECT_NE(e.Source().find("ZintraUtils.AddToLinksCollection"), std::string::npos);
  }
}

}  // namespace
}  // namespace zintra
