// The MAPI library over the profile: contents tables, senders and recipients, the
// session, and the class registry.
#include <gtest/gtest.h>

#include "sim/mapi/sim_mapi_table.h"
#include "sim/mapi/sim_safe_item.h"
#include "src/host/mapi_safe_item.h"
#include "tests/sim_outlook/sim_fixture.h"
#include "tests/support/error_of.h"

namespace zintra::sim {
namespace {

class TableTest : public SimTest {
 protected:
  TableTest() {
    for (int i = 1; i <= 7; ++i) {
      ContactSpec desc{"C" + std::to_string(i)};
      if (i % 2) desc.emails = {"c" + std::to_string(i) + "@x.com"};
      builder.Contact(customers, desc);
    }
    table.SetItem(F(customers));
    email1 =
        utils->GetIDsFromNames(F(customers)->MAPIOBJECT(), kPsetidAddress, Value(0x8083), true) |
        kPtString8;
    table.SetColumns({email1, kPrEntryId});
  }
  SimMapiTable table{&host.profile};
  int32_t email1 = 0;
};

TEST_F(TableTest, ChunksCoverEveryRowOnceWithErrorCellsForMissingProperties) {
  EXPECT_EQ(table.RowCount(), 7);
  std::vector<size_t> chunks;
  int missing = 0;
  for (;;) {
    MapiRows rows = table.GetRows(3);
    ASSERT_FALSE(rows.IsError());
    if (rows.rows.empty()) break;
    chunks.push_back(rows.rows.size());
    for (const MapiRow& row : rows.rows) {
      ASSERT_EQ(row.cells.size(), 2u);
      if (row.cells[0].IsError()) {
        EXPECT_EQ(row.cells[0].error, kMapiNotFound);
        ++missing;
      }
      EXPECT_FALSE(row.cells[1].IsError());
    }
  }
  EXPECT_EQ(chunks, (std::vector<size_t>{3, 3, 1}));
  EXPECT_EQ(missing, 3);
  table.GoToFirst();
  EXPECT_EQ(table.GetRows(100).rows.size(), 7u);
}

TEST_F(TableTest, AnUnreadableMessageIsAnErrorRowAndAVanishedFolderAnErrorResult) {
  customers->messages[1]->unreadable = true;
  MapiRows rows = table.GetRows(3);
  EXPECT_FALSE(rows.rows[0].IsError());
  EXPECT_TRUE(rows.rows[1].IsError());
  host.profile.DeleteFolder(customers);
  MapiRows after = table.GetRows(3);
  EXPECT_TRUE(after.IsError());
  EXPECT_EQ(after.error, kMapiObjectDeleted);
  EXPECT_TRUE(after.rows.empty());
}

TEST_F(SimTest, SafeMailGivesSmtpAndExchangeSendersWithTheirSmtpAddress) {
  Person colleague = ProfileBuilder::Exchange("Max Muster", "mmuster", "CONTOSO");
  auto internal = builder.MailFrom(colleague, {"Lunch"});
  auto external = builder.MailFrom(ProfileBuilder::Smtp("Ann Lee", "ann@fabrikam.com"), {"Quote"});
  auto safe =
      std::dynamic_pointer_cast<SafeItem>(host.factory.CreateObject("TovuRedemption.TovuMailItem"));
  ASSERT_NE(safe, nullptr);

  safe->SetItem(I(internal));
  auto sender = safe->Sender();
  EXPECT_EQ(sender->Type(), "EX");
  EXPECT_EQ(sender->Address(), "/O=CONTOSO/OU=FIRST ADMINISTRATIVE GROUP/CN=RECIPIENTS/CN=MMUSTER");
  EXPECT_EQ(sender->Fields(kPrSmtpAddress), Value("mmuster@contoso.com"));
  EXPECT_EQ(safe->Fields(kPrSenderEmailAddress), Value(sender->Address()));
  EXPECT_EQ(safe->Recipients()->Item(1)->Address(), host.profile.CurrentUser().ex_dn);

  safe->SetItem(I(external));
  EXPECT_EQ(safe->Sender()->Type(), "SMTP");
  EXPECT_EQ(safe->Sender()->Address(), "ann@fabrikam.com");

  safe->SetItem(I(builder.Contact(customers, {"Ann"})));
  EXPECT_THROW(safe->Sender(), ZError);
}

TEST_F(SimTest, RecipientsResolveAgainstTheDirectory) {
  host.profile.AddPerson(ProfileBuilder::Exchange("Max Muster", "mmuster", "CONTOSO"));
  auto item = host.application->CreateItem(kOlMailItem);
  auto recipients = item->Recipients();
  recipients->Add("mmuster@contoso.com");
  recipients->Add("someone@else.org");
  recipients->Add("Nobody Known");
  EXPECT_EQ(recipients->Item(1)->AddressEntry()->Type(), "EX");
  EXPECT_EQ(recipients->Item(2)->AddressEntry()->Address(), "someone@else.org");
  EXPECT_FALSE(recipients->Item(3)->Resolved());
  EXPECT_EQ(recipients->Item(3)->AddressEntry(), nullptr);
}

TEST_F(SimTest, SessionNeedsOutlooksLogonAndOpensByIdentifier) {
  auto session = std::dynamic_pointer_cast<RdoSession>(
      host.factory.CreateObject("tovuredemption.TovuRDOSession"));
  ASSERT_NE(session, nullptr);
  EXPECT_EQ(ErrorOf([&] { session->CurrentUser(); }), kMapiNotInitialized);
  session->SetMAPIOBJECT(host.application->Session()->MAPIOBJECT());
  EXPECT_EQ(session->CurrentUser()->Name(), "Jane Doe");
  auto inbox = Default(kOlFolderInbox);
  EXPECT_EQ(session->GetFolderFromID(inbox->EntryID(), inbox->StoreID())->Name(), "Inbox");
  EXPECT_EQ(ErrorOf([&] { session->GetMessageFromID(inbox->EntryID()); }),
            kMapiNotFound);  // a folder's id is not a message
}

TEST_F(SimTest, RegistryKnowsTheLibrarysSeventeenClassesAndRefusesOthers) {
  for (const char* name :
       {"TovuAddressLists", "TovuMAPIFolder", "TovuMAPITable", "TovuMAPIUtils",
        "TovuAppointmentItem", "TovuContactItem", "TovuCurrentUser", "TovuDistList",
        "TovuJournalItem", "TovuMailItem", "TovuMeetingItem", "TovuPostItem", "TovuTaskItem",
        "TovuReportItem", "TovuInspector", "TovuRDOSession", "TovuRDOFolder"}) {
    EXPECT_NE(host.factory.CreateObject(std::string("TovuRedemption.") + name), nullptr) << name;
  }
  EXPECT_EQ(ErrorOf([&] { host.factory.CreateObject("TovuRedemption."); }), kErrCannotCreateObject);
}

TEST_F(SimTest, NewMailReachesTheLibrarysEvent) {
  std::string arrived;
  auto c = utils->NewMail.Connect([&](std::string id) { arrived = id; });
  int outlook_new_mail = 0;
  auto o = host.application->NewMail.Connect([&] { ++outlook_new_mail; });
  auto item = host.application->CreateItem(kOlMailItem);
  item->SetSubject("Hello");
  host.application->Deliver(item);
  EXPECT_EQ(outlook_new_mail, 1);
  EXPECT_EQ(host.application->Session()->GetItemFromID(arrived)->Subject(), "Hello");
}

}  // namespace
}  // namespace zintra::sim
