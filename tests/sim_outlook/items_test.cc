// The live sorted Items collection and Find over the filter syntax.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "src/core/date.h"
#include "tests/sim_outlook/sim_fixture.h"
#include "tests/support/error_of.h"

namespace zintra::sim {
namespace {

class ItemsTest : public SimTest {
 protected:
  // Mails "M1".."Mn" created one hour apart.
  void Fill(int n) {
    for (int i = 1; i <= n; ++i) {
      MailSpec desc{"M" + std::to_string(i)};
      desc.time = MakeDate(2026, 1, 1, i, 0, 0);
      builder.MailFrom(ProfileBuilder::Smtp("Bob", "bob@x.com"), desc);
    }
  }
  std::shared_ptr<Items> inbox_items = Default(kOlFolderInbox)->Items();
};

TEST_F(ItemsTest, NewerItemAddedDuringADescendingWalkRepeatsTheCurrentItem) {
  Fill(4);
  inbox_items->Sort("[Created]", true);
  EXPECT_EQ(inbox_items->GetFirst()->Subject(), "M4");
  EXPECT_EQ(inbox_items->GetNext()->Subject(), "M3");
  MailSpec newer{"New"};
  newer.time = MakeDate(2026, 1, 2);
  builder.MailFrom(ProfileBuilder::Smtp("Bob", "bob@x.com"), newer);
  // The new item sorts first and pushes the walk back by one: M3 again.
  EXPECT_EQ(inbox_items->GetNext()->Subject(), "M3");
  EXPECT_EQ(inbox_items->GetNext()->Subject(), "M2");
  EXPECT_EQ(inbox_items->GetNext()->Subject(), "M1");
  EXPECT_EQ(inbox_items->GetNext(), nullptr);
  EXPECT_EQ(inbox_items->Count(), 5);
}

TEST_F(ItemsTest, OlderItemAddedDuringTheWalkDoesNotShiftIt) {
  Fill(3);
  inbox_items->Sort("Created", true);
  inbox_items->GetFirst();
  MailSpec older{"Old"};
  older.time = MakeDate(2025, 6, 1);
  builder.MailFrom(ProfileBuilder::Smtp("Bob", "bob@x.com"), older);
  EXPECT_EQ(inbox_items->GetNext()->Subject(), "M2");
  EXPECT_EQ(inbox_items->GetNext()->Subject(), "M1");
  EXPECT_EQ(inbox_items->GetNext()->Subject(), "Old");
}

TEST_F(ItemsTest, RemovingAnItemBeforeThePositionSkipsOne) {
  Fill(4);
  inbox_items->Sort("Created", false);
  auto first = inbox_items->GetFirst();
  EXPECT_EQ(inbox_items->GetNext()->Subject(), "M2");
  first->Delete();
  EXPECT_EQ(inbox_items->GetNext()->Subject(), "M4");
}

TEST_F(ItemsTest, AChangedItemMovesOnlyWhenItsSortKeyMovesIt) {
  Fill(4);
  inbox_items->Sort("Subject", false);
  EXPECT_EQ(inbox_items->GetFirst()->Subject(), "M1");
  auto m2 = inbox_items->GetNext();
  // A mark leaves the order as it is.
  m2->SetSensitivity(kOlConfidential);
  m2->Save();
  auto m3 = inbox_items->GetNext();
  EXPECT_EQ(m3->Subject(), "M3");
  // A new key between the same neighbours keeps the place, and the place keeps the
  // new key: a later item sorts against it.
  m2->SetSubject("M15");
  m2->Save();
  MailSpec later{"m17"};
  builder.MailFrom(ProfileBuilder::Smtp("Bob", "bob@x.com"), later);
  // A key that sorts first moves the item to the front, before the walk's position.
  m3->SetSubject("A");
  m3->Save();
  std::vector<std::string> order;
  for (auto item = inbox_items->GetFirst(); item; item = inbox_items->GetNext()) {
    order.push_back(item->Subject());
  }
  EXPECT_EQ(order, (std::vector<std::string>{"A", "M1", "M15", "m17", "M4"}));
}

// The store keeps one order per sort key for the folder and keeps it in step whether
// or not a collection is walking it, so a collection sorted later sees every change.
TEST_F(ItemsTest, TheStoreKeepsEachOrderInStepForEveryCollection) {
  Fill(3);
  auto inbox = builder.Default(kOlFolderInbox);
  inbox_items->Sort("Created", false);
  EXPECT_EQ(inbox_items->GetFirst()->Subject(), "M1");
  inbox_items.reset();
  MailSpec older{"Old"}, newer{"New"};
  older.time = MakeDate(2025, 6, 1);
  newer.time = MakeDate(2026, 2, 1);
  builder.MailFrom(ProfileBuilder::Smtp("Bob", "bob@x.com"), newer);
  builder.MailFrom(ProfileBuilder::Smtp("Bob", "bob@x.com"), older);
  auto other = Default(kOlFolderInbox)->Items();
  other->Sort("[Created]", true);
  other->GetFirst()->Delete();  // New
  std::vector<std::string> order;
  for (auto item = other->GetFirst(); item; item = other->GetNext()) {
    order.push_back(item->Subject());
  }
  EXPECT_EQ(order, (std::vector<std::string>{"M3", "M2", "M1", "Old"}));
  // Both walks, both directions and the deletion used the one order of the folder;
  // another key is another order.
  EXPECT_EQ(inbox->indexes.size(), 1u);
  other->Sort("Subject", false);
  EXPECT_EQ(other->GetFirst()->Subject(), "M1");
  EXPECT_EQ(inbox->indexes.size(), 2u);
}

// Items created at the same moment: ascending takes them in the order they were made,
// descending in the opposite order, so that each direction is the other reversed.
TEST_F(ItemsTest, ItemsOfTheSameTimeSortInCreationOrderReversedWhenDescending) {
  for (const char* subject : {"A", "B", "C"}) {
    MailSpec same{subject};
    same.time = MakeDate(2026, 1, 1, 9, 0, 0);
    builder.MailFrom(ProfileBuilder::Smtp("Bob", "bob@x.com"), same);
  }
  auto walk = [&](bool descending) {
    inbox_items->Sort("Created", descending);
    std::string order;
    for (auto item = inbox_items->GetFirst(); item; item = inbox_items->GetNext()) {
      order += item->Subject();
    }
    return order;
  };
  EXPECT_EQ(walk(false), "ABC");
  EXPECT_EQ(walk(true), "CBA");
}

TEST_F(ItemsTest, UnknownSortPropertyIsRefused) {
  EXPECT_EQ(ErrorOf([&] { inbox_items->Sort("[Colour]", true); }), kMapiInvalidParameter);
}

TEST_F(ItemsTest, FindWalksEveryContactCarryingTheAddressInAnySlot) {
  builder.Contact(customers, {"Ann", {"ann@fabrikam.com"}});
  builder.Contact(customers, {"Bob", {"bob@home.net", "ANN@fabrikam.com"}});
  builder.Contact(customers, {"Cid", {"cid@fabrikam.com"}});
  builder.Contact(customers, {"Dee", {"x@y.z", "y@y.z", "ann@fabrikam.com"}});
  auto items = F(customers)->Items();
  const std::string q = "\"ann@fabrikam.com\"";
  std::vector<std::string> found;
  for (auto c = items->Find("[Email1Address] = " + q + " or [Email2Address] = " + q +
                            " or [Email3Address] = " + q);
       c; c = items->FindNext()) {
    found.push_back(c->FullName());
  }
  EXPECT_EQ(found, (std::vector<std::string>{"Ann", "Bob", "Dee"}));
}

struct FilterCase {
  const char* filter;
  int matches;  // of the three contacts below
};

class FilterTest : public SimTest, public testing::WithParamInterface<FilterCase> {};

TEST_P(FilterTest, CountsMatches) {
  builder.Contact(customers, {"Ann Lee", {"ann@fabrikam.com"}, "Customers, Suppliers"});
  builder.Contact(customers, {"Bob O'Neil", {"bob@home.net"}, "suppliers", kOlPrivate});
  builder.Contact(customers, {"Cid", {}});
  auto items = F(customers)->Items();
  int n = 0;
  for (auto c = items->Find(GetParam().filter); c; c = items->FindNext()) ++n;
  EXPECT_EQ(n, GetParam().matches) << GetParam().filter;
}

INSTANTIATE_TEST_SUITE_P(
    Syntax, FilterTest,
    testing::Values(
        FilterCase{"[FullName] = 'Bob O''Neil'", 1}, FilterCase{"[Categories] = \"Suppliers\"", 2},
        FilterCase{"[Sensitivity] = 2", 1},
        FilterCase{"[Sensitivity] <> 2 and [Email1Address] <> \"\"", 1},
        FilterCase{"not ([FullName] = \"Cid\")", 2},
        FilterCase{
            "([FullName] = \"Cid\" or [FullName] = \"Ann Lee\") and [Categories] = \"customers\"",
            1},
        FilterCase{"[Created] > \"1/1/2020 9:00 AM\"", 3},
        FilterCase{"[Email2Address] = \"\"", 0}));

TEST_F(SimTest, MalformedFiltersAreRefusedWithInvalidParameter) {
  auto items = F(customers)->Items();
  for (const char* bad : {"[Email1Address = \"a\"", "[Email1Address] ~ \"a\"", "[Subject] = \"a",
                          "[Subject] = \"a\" or", "Subject = \"a\""}) {
    EXPECT_EQ(ErrorOf([&] { items->Find(bad); }), kMapiInvalidParameter) << bad;
  }
}

}  // namespace
}  // namespace zintra::sim
