// Any member can be told to fail, always, on the n-th call or after n calls, for one
// object or for the whole class; the failure surfaces as the platform's error.
#include <gtest/gtest.h>

#include "sim/mapi/sim_mapi_table.h"
#include "sim/outlook/sim_keys.h"
#include "tests/sim_outlook/sim_fixture.h"
#include "tests/support/error_of.h"

namespace zintra::sim {
namespace {

constexpr int32_t kNetwork = kMapiNetworkError;

TEST_F(SimTest, ModesCountTheCallsTheyMatch) {
  auto item = NewItem(Default(kOlFolderInbox), kOlMailItem, "A");
  auto& faults = host.profile.Faults();
  int on_second = faults.FailOnCall("Item.Subject", 2, kNetwork, "The connection died");
  std::vector<int32_t> seen;
  for (int i = 0; i < 3; ++i) seen.push_back(ErrorOf([&] { item->Subject(); }));
  EXPECT_EQ(seen, (std::vector<int32_t>{0, kNetwork, 0}));
  EXPECT_EQ(faults.CallsSeen(on_second), 3);
  faults.Remove(on_second);

  faults.FailAfterCalls("Item.Save", 1, kMapiNoAccess);
  EXPECT_EQ(ErrorOf([&] { item->Save(); }), 0);
  EXPECT_EQ(ErrorOf([&] { item->Save(); }), kMapiNoAccess);
  EXPECT_EQ(ErrorOf([&] { item->Save(); }), kMapiNoAccess);
  faults.Clear();
  EXPECT_EQ(ErrorOf([&] { item->Save(); }), 0);
}

TEST_F(SimTest, RulesTargetOneObjectOrAWholeClassWithTheGivenText) {
  auto a = NewItem(Default(kOlFolderInbox), kOlMailItem, "A");
  auto b = NewItem(Default(kOlFolderInbox), kOlMailItem, "B");
  const std::string a_id = a->EntryID();
  auto& faults = host.profile.Faults();
  // Keyed by the stored message: every object for it fails, through either facade.
  faults.FailAlways("Item.*", kNetwork, "Network problems are preventing connection",
                    ObjectKeyOf(a));
  auto again = host.application->Session()->GetItemFromID(a_id);
  EXPECT_EQ(ErrorOf([&] { again->Body(); }), kNetwork);
  EXPECT_EQ(ErrorOf([&] { b->Body(); }), 0);
  try {
    a->Subject();
  } catch (const ZError& e) {
    EXPECT_EQ(e.Description(), "Network problems are preventing connection");
    EXPECT_EQ(e.Source(), "Item.Subject");
  }
  faults.Clear();
  faults.FailAlways("Namespace.GetDefaultFolder", kMapiNotFound);
  EXPECT_EQ(ErrorOf([&] { host.application->Session()->GetDefaultFolder(kOlFolderInbox); }),
            kMapiNotFound);
}

TEST_F(SimTest, LibraryMembersFailTooSoAFillCanDieMidway) {
  builder.Contacts(customers, 10);
  SimMapiTable table(&host.profile);
  table.SetItem(F(customers));
  host.profile.Faults().FailOnCall("MapiTable.GetRows", 2, kNetwork, {}, customers.get());
  EXPECT_EQ(table.GetRows(4).rows.size(), 4u);
  EXPECT_EQ(ErrorOf([&] { table.GetRows(4); }), kNetwork);
  EXPECT_EQ(table.GetRows(4).rows.size(), 4u);  // the failed call read nothing
  host.profile.Faults().FailAlways("MapiUtils.HrGetOneProp", kMapiCallFailed);
  EXPECT_EQ(ErrorOf([&] { utils->HrGetOneProp(F(customers)->MAPIOBJECT(), kPrSearchKey); }),
            kMapiCallFailed);
  host.profile.Faults().FailAlways("ObjectFactory.CreateObject", kErrCannotCreateObject);
  EXPECT_EQ(ErrorOf([&] { host.factory.CreateObject("TovuRedemption.TovuMAPIUtils"); }),
            kErrCannotCreateObject);
}

}  // namespace
}  // namespace zintra::sim
