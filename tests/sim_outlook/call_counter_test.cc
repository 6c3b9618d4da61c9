// The call counter sees every call the system makes into the simulated host, one per
// member call, sorted into the kinds that cost differently inside Outlook.
#include <gtest/gtest.h>

#include "sim/outlook/call_counter.h"
#include "src/host/outlook_item_parts.h"
#include "tests/sim_outlook/sim_fixture.h"

namespace zintra::sim {
namespace {

using Kind = CallCounter::Kind;

TEST_F(SimTest, CountsEveryMemberCallByKind) {
  auto item = NewItem(Default(kOlFolderInbox), kOlMailItem, "A");
  CallCounter counter;
  host.profile.Faults().SetCounter(&counter);

  // Writing a user property the way the add-in does: the collection, a search, an
  // add, the value, then one store write.
  auto props = item->UserProperties();
  EXPECT_EQ(props->Find("Zintra Tag"), nullptr);
  props->Add("Zintra Tag", kOlText, false)->SetValue(Value(std::string("Processing")));
  item->Save();
  (void)item->Subject();
  auto copy = item->Copy();
  auto moved = copy->Move(Default(kOlFolderJournal));
  auto journal_items = Default(kOlFolderJournal)->Items();
  (void)journal_items->GetFirst();
  (void)host.application->Session()->GetItemFromID(moved->EntryID());

  EXPECT_EQ(counter.CallsOf("Item.UserProperties"), 1);
  EXPECT_EQ(counter.CallsOf("UserProperties.Find"), 1);
  EXPECT_EQ(counter.CallsOf("Item.Save"), 1);
  const CallCounter::Tally t = counter.Totals();
  EXPECT_EQ(t.Of(Kind::kSave), 1);
  EXPECT_EQ(t.Of(Kind::kCopyMove), 2);
  EXPECT_EQ(t.Of(Kind::kFind), 1);
  EXPECT_EQ(t.Of(Kind::kRow), 1);
  EXPECT_EQ(t.Of(Kind::kOpen), 1);
  EXPECT_EQ(t.Of(Kind::kPropertyWrite), 2);  // UserProperties.Add, UserProperty.SetValue
  // Item.UserProperties, Item.Subject, Folder.Items, Application.Session, Item.EntryID.
  EXPECT_EQ(t.Of(Kind::kPropertyRead), 5) << t.ToString();
  EXPECT_EQ(t.Total(), 13);

  // Detached, nothing more is counted; a difference of tallies is what happened between.
  const CallCounter::Tally before = counter.Totals();
  host.profile.Faults().SetCounter(nullptr);
  item->Save();
  EXPECT_EQ((counter.Totals() - before).Total(), 0);
  counter.Reset();
  EXPECT_EQ(counter.Totals().Total(), 0);
  EXPECT_EQ(counter.CallsOf("Item.Save"), 0);
}

TEST(CallCounterTest, KindsFollowWhatTheCallCostsTheHost) {
  EXPECT_EQ(CallCounter::KindOf("Item.Subject"), Kind::kPropertyRead);
  EXPECT_EQ(CallCounter::KindOf("MapiUtils.HrGetOneProp"), Kind::kPropertyRead);
  EXPECT_EQ(CallCounter::KindOf("Item.SetSubject"), Kind::kPropertyWrite);
  EXPECT_EQ(CallCounter::KindOf("MapiUtils.HrSetOneProp"), Kind::kPropertyWrite);
  EXPECT_EQ(CallCounter::KindOf("RdoMessage.Save"), Kind::kSave);
  EXPECT_EQ(CallCounter::KindOf("SafeItem.CopyTo"), Kind::kCopyMove);
  EXPECT_EQ(CallCounter::KindOf("Items.FindNext"), Kind::kFind);
  EXPECT_EQ(CallCounter::KindOf("RdoSession.GetMessageFromID"), Kind::kOpen);
  EXPECT_EQ(CallCounter::KindOf("MapiTable.GetRows"), Kind::kRow);
  EXPECT_EQ(CallCounter::KindOf("Items.GetNext"), Kind::kRow);
  EXPECT_EQ(CallCounter::KindOf("Registry.QueryValue"), Kind::kRegistryRead);
  EXPECT_EQ(CallCounter::KindOf("Registry.SetValue"), Kind::kRegistryWrite);
  EXPECT_EQ(CallCounter::KindOf("Item.Delete"), Kind::kOther);
  EXPECT_EQ(CallCounter::KindOf("CommandBarControl.SetCaption"), Kind::kOther);
}

TEST(CallCounterTest, AnObserverNamesTheClassAndTalliesSubtract) {
  CallCounter counter;
  auto registry = counter.Observer("Registry.");
  registry("OpenKey");
  registry("QueryValue");
  const CallCounter::Tally opened = counter.Totals();
  registry("CloseKey");
  counter.Count("Item.Save");
  EXPECT_EQ(counter.CallsOf("Registry.QueryValue"), 1);
  EXPECT_EQ(opened.ToString(), "registry reads 2");
  EXPECT_EQ((counter.Totals() - opened).ToString(), "saves 1, other 1");
  EXPECT_EQ(counter.Totals().Total(), 4);
  EXPECT_EQ(counter.ByMember().front().first, "Item.Save");  // ties go by name
}

}  // namespace
}  // namespace zintra::sim
