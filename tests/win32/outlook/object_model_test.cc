// Outlook's object model read and written through the server and the adapters agrees
// with the simulated Outlook read directly; its failures keep their numbers.
#include <gtest/gtest.h>

#include <vector>

#include "src/core/date.h"
#include "src/host/mapi_address.h"
#include "src/host/outlook_constants.h"
#include "tests/win32/outlook/served_profile.h"
#include "win32/outlook/wrap.h"
#include "win32/sim_server/server_members.h"

namespace zintra::win32::testing {
namespace {

struct Seen {
  std::string type_name, subject, entry_id;
  ItemClass item_class;
  double sent_on, received;
  bool operator==(const Seen&) const = default;
};

std::vector<Seen> Walk(const std::shared_ptr<Items>& items) {
  std::vector<Seen> seen;
  for (auto item = items->GetFirst(); item; item = items->GetNext()) {
    seen.push_back({item->TypeName(), item->Subject(), item->EntryID(), item->Class(),
                    item->SentOn(), item->ReceivedTime()});
  }
  return seen;
}

class ObjectModelTest : public ::testing::TestWithParam<int32_t> {
 protected:
  ServedProfile p;
};

TEST_P(ObjectModelTest, EveryDefaultFolderReadsAlikeSortedAndWalked) {
  auto direct = p.sim_app->Session()->GetDefaultFolder(GetParam());
  auto adapted = p.app->Session()->GetDefaultFolder(GetParam());
  EXPECT_EQ(adapted->Name(), direct->Name());
  EXPECT_EQ(adapted->EntryID(), direct->EntryID());
  EXPECT_EQ(adapted->StoreID(), direct->StoreID());
  EXPECT_EQ(adapted->DefaultItemType(), direct->DefaultItemType());
  auto direct_items = direct->Items();
  auto adapted_items = adapted->Items();
  EXPECT_EQ(adapted_items->Count(), direct_items->Count());
  direct_items->Sort("[Subject]", true);
  adapted_items->Sort("[Subject]", true);
  EXPECT_EQ(Walk(adapted_items), Walk(direct_items));
}

INSTANTIATE_TEST_SUITE_P(Folders, ObjectModelTest,
                         ::testing::Values(kOlFolderInbox, kOlFolderSentMail, kOlFolderContacts,
                                           kOlFolderDrafts));

TEST(ObjectModelTest, ContactsReadTheirOwnMembersAndRefuseOthers) {
  ServedProfile p;
  auto folder = p.app->Session()->GetFolderFromID(
      p.sim_app->Session()->Folders()->Item(1)->Folders()->Item("Customers")->EntryID());
  auto ann = folder->Items()->Find("[FullName] = 'Ann Lee'");
  ASSERT_TRUE(ann);
  EXPECT_EQ(ann->Class(), ItemClass::kContact);
  EXPECT_EQ(ann->TypeName(), "ContactItem");
  EXPECT_EQ(ann->Email2Address(), "ann.lee@home.net");
  EXPECT_EQ(ann->Categories(), "Customers");
  EXPECT_FALSE(folder->Items()->Find("[FullName] = 'Nobody'"));
  auto mail = p.app->Session()->GetDefaultFolder(kOlFolderInbox)->Items()->GetFirst();
  EXPECT_EQ(ErrorOf([&] { mail->FullName(); }), kErrNoSuchMember);
  EXPECT_EQ(ErrorOf([&] { ann->SentOn(); }), kErrNoSuchMember);
  EXPECT_EQ(ErrorOf([&] { folder->Items()->Find("[FullName] = "); }), kMapiInvalidParameter);
}

TEST(ObjectModelTest, ParentsWalkUpToTheNamespace) {
  ServedProfile p;
  auto inbox = p.app->Session()->GetDefaultFolder(kOlFolderInbox);
  auto top = std::dynamic_pointer_cast<Folder>(inbox->Parent());
  ASSERT_TRUE(top);
  EXPECT_EQ(top->Name(), "Mailbox - Jane Doe");
  auto ns = top->Parent();
  EXPECT_TRUE(std::dynamic_pointer_cast<Namespace>(ns));
  EXPECT_FALSE(std::dynamic_pointer_cast<Folder>(ns));
  EXPECT_EQ(inbox->Items()->GetFirst()->Parent()->EntryID(), inbox->EntryID());
  EXPECT_EQ(p.app->Session()->Folders()->Item(1)->Name(), "Mailbox - Jane Doe");
  EXPECT_EQ(p.app->Session()->CurrentUser()->Name(), "Jane Doe");
}

TEST(ObjectModelTest, WritesThroughTheAdapterAreStoredInTheProfile) {
  ServedProfile p;
  auto drafts = p.app->Session()->GetDefaultFolder(kOlFolderDrafts);
  auto item = drafts->Items()->Add(kOlMailItem);
  item->SetSubject("Written \xe2\x82\xac");
  item->SetSensitivity(kOlPrivate);
  item->Recipients()->Add("ann@fabrikam.com");
  item->Attachments()->Add("C:\\Letters\\Ann.doc", kOlByReference, 0, "");
  item->Attachments()->Add("C:\\Letters\\Bo.doc", kOlByReference, 1, "Letter to Bo");
  EXPECT_EQ(ErrorOf([&] { item->Attachments()->Add("C:\\None.doc", kOlByValue, 0, ""); }),
            kMapiNotFound);
  auto prop = item->UserProperties()->Add("Logged", kOlYesNo, false);
  prop->SetValue(Value(true));
  item->Save();
  ASSERT_FALSE(item->EntryID().empty());

  auto stored = p.sim_app->Session()->GetItemFromID(item->EntryID());
  EXPECT_EQ(stored->Subject(), "Written \xe2\x82\xac");
  EXPECT_EQ(stored->Sensitivity(), kOlPrivate);
  EXPECT_EQ(stored->Recipients()->Item(1)->Address(), "ann@fabrikam.com");
  EXPECT_EQ(stored->UserProperties()->Find("logged")->GetValue(), Value(true));
  EXPECT_FALSE(item->UserProperties()->Find("Absent"));
  auto attachments = stored->Attachments();
  ASSERT_EQ(attachments->Count(), 2);
  EXPECT_EQ(attachments->Item(1)->DisplayName(), "Letter to Bo");
  EXPECT_EQ(attachments->Item(2)->DisplayName(), "Ann.doc");
  EXPECT_EQ(item->Attachments()->Item(2)->PathName(), "C:\\Letters\\Ann.doc");

  auto moved = item->Move(p.app->Session()->GetDefaultFolder(kOlFolderInbox));
  EXPECT_EQ(moved->Parent()->Name(), "Inbox");
  EXPECT_EQ(ErrorOf([&] { item->Move(p.sim_app->Session()->GetDefaultFolder(6)); }),
            kErrTypeMismatch);  // a folder of another host is not an argument
}

TEST(ObjectModelTest, LinksAndAddressEntriesComeBackAsTheirPorts) {
  ServedProfile p;
  auto contact =
      p.app->Session()->Folders()->Item(1)->Folders()->Item("customers")->Items()->Item(1);
  auto mail = p.app->Session()->GetDefaultFolder(kOlFolderInbox)->Items()->GetFirst();
  mail->Links()->Add(contact);
  mail->Save();
  ASSERT_EQ(mail->Links()->Count(), 1);
  EXPECT_EQ(mail->Links()->Item(1)->Item()->FullName(), contact->FullName());
  auto sent = p.app->Session()->GetDefaultFolder(kOlFolderSentMail)->Items()->GetFirst();
  auto entry = sent->Recipients()->Item(1)->AddressEntry();
  ASSERT_TRUE(entry);
  EXPECT_EQ(entry->Type(), "SMTP");
  EXPECT_EQ(entry->Address(), "ann@fabrikam.com");
  EXPECT_EQ(ErrorOf([&] { mail->Links()->Item(9); }), kErrInvalidCall);
}

TEST(ObjectModelTest, InjectedFaultsArriveWithTheirNumbers) {
  ServedProfile p;
  auto items = p.app->Session()->GetDefaultFolder(kOlFolderInbox)->Items();
  ASSERT_TRUE(items->GetFirst());
  p.profile.Faults().FailOnCall("Items.GetNext", 1, kMapiNetworkError, "The network is down");
  std::optional<ZError> e = Raised([&] { items->GetNext(); });
  ASSERT_TRUE(e);
  EXPECT_EQ(e->Number(), kMapiNetworkError);
  EXPECT_EQ(e->Description(), "The network is down");
  EXPECT_TRUE(items->GetNext());  // the rule fired once
  p.profile.Faults().FailAlways("Item.Save", kMapiNoAccess);
  EXPECT_EQ(ErrorOf([&] { items->GetFirst()->Save(); }), kMapiNoAccess);
  EXPECT_EQ(ErrorOf([&] { p.app->Session()->GetItemFromID("00FF"); }), kMapiNotFound);
  EXPECT_EQ(ErrorOf([&] { p.app->Session()->GetDefaultFolder(99); }), kMapiNotFound);
}

TEST(ObjectModelTest, OutlooksNoneDateReadsAsUnset) {
  // A kind of its own (99): a made-up item must not share the DISPIDs of real mail.
  ComPtr<DispatchObject> d = DispatchObject::Create("FutureItem", nullptr);
  d->Member("Class", [](const DispatchArgs&) { return Ret(int32_t{99}); });
  d->Member("SentOn", [](const DispatchArgs&) { return RetDate(MakeDate(4501, 1, 1)); });
  d->Member("ReceivedTime", [](const DispatchArgs&) { return RetDate(45000.5); });
  auto item = Wrap<Item>(ComPtr<IDispatch>(d->AsDispatch()));
  EXPECT_EQ(item->TypeName(), "FutureItem");
  EXPECT_EQ(item->SentOn(), kUnsetDate);
  EXPECT_EQ(item->ReceivedTime(), 45000.5);
  EXPECT_EQ(ErrorOf([&] { item->CreationTime(); }), kErrNoSuchMember);
}

}  // namespace
}  // namespace zintra::win32::testing
