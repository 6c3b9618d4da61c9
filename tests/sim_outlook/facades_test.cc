// The object model and the MAPI library are two views of one stored message.
#include <gtest/gtest.h>

#include "sim/mapi/sim_mapi_table.h"
#include "sim/outlook/message_props.h"
#include "tests/sim_outlook/sim_fixture.h"
#include "tests/support/error_of.h"

namespace zintra::sim {
namespace {

TEST_F(SimTest, UserPropertyWrittenThroughOutlookIsReadThroughTheLibraryAndBack) {
  auto item = NewItem(Default(kOlFolderInbox), kOlMailItem, "Quote");
  item->UserProperties()->Add("Zintra Tag", kOlText, false)->SetValue(Value("Processing"));

  auto message = rdo->GetMessageFromID(item->EntryID(), item->Parent()->StoreID());
  auto through_library = message->UserProperties()->Find("zintra tag");
  ASSERT_NE(through_library, nullptr);
  EXPECT_EQ(through_library->GetValue(), Value("Processing"));
  // The same value as a named property of the public-strings set.
  int32_t tag =
      utils->GetIDsFromNames(item->MAPIOBJECT(), kPsPublicStrings, Value("Zintra Tag"), false);
  EXPECT_EQ(utils->HrGetOneProp(item->MAPIOBJECT(), tag | kPtString8), Value("Processing"));

  message->UserProperties()->Add("Zintra Logged", kOlYesNo, false)->SetValue(Value(true));
  auto logged = item->UserProperties()->Find("Zintra Logged");
  ASSERT_NE(logged, nullptr);
  EXPECT_EQ(logged->GetValue(), Value(true));
  EXPECT_EQ(logged->Type(), kOlYesNo);
}

TEST_F(SimTest, NamedPropertyMappingBelongsToTheStoreAndTravelsWithCopyAndMove) {
  auto other_store = builder.PersonalFolders();
  // Spend some ids in the second store so the same name maps to another tag there.
  auto archive = host.profile.AddFolder(other_store, "Archive", kOlMailItem);
  auto filler = I(host.profile.NewMessage(ItemClass::kMail, archive));
  for (int i = 0; i < 5; ++i) {
    utils->GetIDsFromNames(filler->MAPIOBJECT(), kPsPublicStrings,
                           Value("filler" + std::to_string(i)), true);
  }
  auto item = NewItem(Default(kOlFolderInbox), kOlMailItem, "Order");
  const char kSet[] = "{1431FEFD-624F-4E83-B1E7-2FB23BE33AF4}";
  int32_t tag =
      utils->GetIDsFromNames(item->MAPIOBJECT(), kSet, Value("Zintra Last Audited"), true);
  utils->HrSetOneProp(item->MAPIOBJECT(), tag | kPtSystime, Value::Date(46000.5), true);
  item->UserProperties()->Add("Zintra Shared", kOlYesNo, false)->SetValue(Value(true));

  auto moved = item->Copy()->Move(F(archive));
  int32_t moved_tag =
      utils->GetIDsFromNames(moved->MAPIOBJECT(), kSet, Value("Zintra Last Audited"), false);
  EXPECT_NE(PropId(moved_tag), PropId(tag));
  EXPECT_EQ(utils->HrGetOneProp(moved->MAPIOBJECT(), moved_tag | kPtSystime), Value::Date(46000.5));
  EXPECT_EQ(moved->UserProperties()->Find("Zintra Shared")->GetValue(), Value(true));
  EXPECT_EQ(moved->Subject(), "Order");
  EXPECT_EQ(moved->Parent()->Name(), "Archive");
}

TEST_F(SimTest, ContactAddressesAreTheNamedPropertiesATableReads) {
  auto ann = builder.Contact(customers,
                             {"Ann Lee", {"ann@fabrikam.com", "ann.lee@home.net"}, "Customers"});
  I(ann)->SetEmail3Address("alee@fabrikam.com");
  EXPECT_EQ(I(ann)->Email2Address(), "ann.lee@home.net");

  auto mapi = F(customers)->MAPIOBJECT();
  std::vector<int32_t> columns;
  for (int32_t id : {0x8083, 0x8093, 0x80A3}) {
    columns.push_back(utils->GetIDsFromNames(mapi, kPsetidAddress, Value(id), true) | kPtString8);
  }
  columns.push_back(kPrEntryId);
  SimMapiTable table(&host.profile);
  table.SetItem(F(customers)->Items());
  table.SetColumns(columns);
  auto rows = table.GetRows(10);
  ASSERT_EQ(rows.rows.size(), 1u);
  const auto& cells = rows.rows[0].cells;
  EXPECT_EQ(cells[0].value, Value("ann@fabrikam.com"));
  EXPECT_EQ(cells[2].value, Value("alee@fabrikam.com"));
  EXPECT_EQ(ToHex(cells[3].value.ToBinary()), I(ann)->EntryID());
}

TEST_F(SimTest, MembersAKindLacksThrow438) {
  auto mail = I(builder.MailFrom(ProfileBuilder::Smtp("Bob", "bob@x.com"), {"Hi"}));
  auto contact = I(builder.Contact(customers, {"Ann Lee", {"ann@fabrikam.com"}}));
  auto note =
      I(builder.Item(builder.Default(kOlFolderNotes), ItemClass::kNote, "Call back\r\nsoon"));
  auto expect_438 = [](auto&& call) { EXPECT_EQ(ErrorOf([&] { call(); }), kErrNoSuchMember); };
  expect_438([&] { mail->FullName(); });
  expect_438([&] { mail->Owner(); });
  expect_438([&] { contact->Recipients(); });
  expect_438([&] { contact->SentOn(); });
  expect_438([&] { note->UserProperties(); });
  EXPECT_EQ(note->Subject(), "Call back");
  EXPECT_EQ(note->TypeName(), "NoteItem");
  EXPECT_EQ(contact->Subject(), "Ann Lee");
}

TEST_F(SimTest, LinksResolveToTheirContactUntilItIsGone) {
  auto ann = builder.Contact(customers, {"Ann Lee", {"ann@fabrikam.com"}});
  auto mail = builder.MailFrom(ProfileBuilder::Smtp("Ann Lee", "ann@fabrikam.com"), {"Quote"});
  builder.Link(mail, ann);
  auto links = I(mail)->Copy()->Links();
  ASSERT_EQ(links->Count(), 1);
  EXPECT_EQ(links->Item(1)->Name(), "Ann Lee");
  EXPECT_EQ(links->Item(1)->Item()->EntryID(), I(ann)->EntryID());
  host.profile.DestroyMessage(ann);
  EXPECT_EQ(ErrorOf([&] { links->Item(1)->Item(); }), kMapiNotFound);
}

}  // namespace
}  // namespace zintra::sim
