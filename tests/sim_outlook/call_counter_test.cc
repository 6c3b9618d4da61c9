// The call counter sees every call the system makes into the simulated host, one per
// member call, sorted into the kinds that cost differently inside Outlook.
#include <gtest/gtest.h>

#include "sim/outlook/call_counter.h"
#include "sim/registry/memory_registry.h"
#include "src/host/outlook_folder.h"
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
  auto call = [&](std::string_view member) {
    registry.enter(member);
    registry.leave();
  };
  call("OpenKey");
  call("QueryValue");
  const CallCounter::Tally opened = counter.Totals();
  call("CloseKey");
  counter.Count("Item.Save");
  EXPECT_EQ(counter.CallsOf("Registry.QueryValue"), 1);
  EXPECT_EQ(opened.ToString(), "registry reads 2");
  EXPECT_EQ((counter.Totals() - opened).ToString(), "saves 1, other 1");
  EXPECT_EQ(counter.Totals().Total(), 4);
  EXPECT_EQ(counter.ByMember().front().first, "Item.Save");  // ties go by name
}

// A clock the test moves by hand: every duration below is known exactly.
int64_t fake_now = 0;
int64_t FakeNow() { return fake_now; }

TEST(CallCounterTest, HostTimeCountsANestedCallOnceAndLeavesOutTheAddinsHandlers) {
  CallCounter counter;
  counter.SetClock(&FakeNow);
  fake_now = 1000;
  {
    auto copy = counter.Enter("Item.Copy");  // the host at work from 1000
    fake_now += 10;
    {
      auto save = counter.Enter("Item.Save");  // inside the copy: no second span
      fake_now += 15;
    }
    fake_now += 5;
    {
      auto handler = counter.Callback();  // the add-in's ItemAdd handler: 100 of its own
      fake_now += 40;
      {
        auto subject = counter.Enter("Item.Subject");
        fake_now += 4;
      }  // a call of its own
      fake_now += 56;
    }
    fake_now += 10;
  }
  fake_now += 200;  // the add-in between calls
  EXPECT_EQ(counter.HostNanoseconds(), 10 + 15 + 5 + 4 + 10);
  EXPECT_EQ(counter.Totals().Total(), 3);
  const int64_t elapsed = fake_now - 1000;
  EXPECT_EQ(elapsed - counter.HostNanoseconds(), 40 + 56 + 200);  // the add-in's own
  // Copy's start and end, Subject's, and the handler's two edges.
  EXPECT_EQ(counter.ClockReadings(), 6);

  // A call that throws (a fault rule fired) ends there; Reset clears the time too.
  try {
    auto failing = counter.Enter("Item.Save");
    fake_now += 7;
    throw 1;
  } catch (int) {
  }
  EXPECT_EQ(counter.HostNanoseconds(), 44 + 7);
  counter.Reset();
  EXPECT_EQ(counter.HostNanoseconds(), 0);
  {
    auto read = counter.Enter("Item.Subject");
    fake_now += 3;
  }
  EXPECT_EQ(counter.HostSeconds(), 3e-9);
}

// A clock that moves one on every reading: each span of host time then measures 1.
int64_t TickingNow() { return ++fake_now; }

// Registry calls through the registry's observer are host time like Outlook's, kept
// apart as registry time; a call that fails still ends.
TEST(CallCounterTest, RegistryCallsAreTimedAsTheHostsAndApart) {
  MemoryRegistry reg;
  reg.SetDword(kHKeyCurrentUser, "Software\\F", "N", 7);
  CallCounter counter;
  counter.SetClock(&TickingNow);
  const auto observer = counter.Observer("Registry.");
  reg.SetCallObserver(observer.enter, observer.leave);
  reg.FailCall("QueryValue", kRegAccessDenied);
  HKey key = 0;
  ASSERT_EQ(reg.OpenKey(kHKeyCurrentUser, "Software\\F", kKeyRead, &key), kRegSuccess);
  uint8_t data[4];
  uint32_t size = sizeof data;
  EXPECT_EQ(reg.QueryValue(key, "N", nullptr, data, &size), kRegAccessDenied);
  EXPECT_EQ(reg.QueryValue(key, "N", nullptr, data, &size), kRegSuccess);
  EXPECT_EQ(counter.RegistryNanoseconds(), 3);  // one tick each
  EXPECT_EQ(counter.HostNanoseconds(), 3);
  {
    // An Outlook call is the host's and not the registry's, and a registry call made
    // inside it is part of its one span.
    auto save = counter.Enter("Item.Save");
    reg.CloseKey(key);
  }
  EXPECT_EQ(counter.HostNanoseconds(), 4);
  EXPECT_EQ(counter.RegistryNanoseconds(), 3);
  EXPECT_EQ(counter.Totals().Of(Kind::kRegistryRead), 3);
  EXPECT_EQ(counter.CallsOf("Registry.CloseKey"), 1);
  EXPECT_EQ(counter.RegistryCalls(), 4);
  reg.SetCallObserver(nullptr);
  counter.Reset();
  EXPECT_EQ(counter.RegistryNanoseconds(), 0);
}

TEST_F(SimTest, SimulatedMembersTimeTheirCallAndStopWhileTheAddinHandlesTheirEvents) {
  auto inbox = Default(kOlFolderInbox);
  auto items = inbox->Items();
  auto item = items->Add(kOlMailItem);
  CallCounter counter;
  counter.SetClock(&TickingNow);
  host.profile.Faults().SetCounter(&counter);
  std::string seen;
  auto added = items->ItemAdd.Connect([&](std::shared_ptr<Item> added_item) {
    fake_now += 500;               // the add-in's own work, inside Item.Save
    seen = added_item->Subject();  // a host call of its own
  });
  // Three spans: Save up to its event, Subject, Save after the handler returned.
  item->Save();
  EXPECT_EQ(counter.HostNanoseconds(), 3) << "the handler's time went to the host";
  EXPECT_EQ(counter.CallsOf("Item.Save"), 1);
  EXPECT_EQ(counter.CallsOf("Item.Subject"), 1);

  // A fault that fires ends its call (one span); a save of a stored item raises
  // ItemChange, whose handler's time is the add-in's (two spans around it).
  host.profile.Faults().FailOnCall("Item.Save", 1, kMapiNoAccess);
  EXPECT_THROW(item->Save(), ZError);
  auto changed = items->ItemChange.Connect([&](std::shared_ptr<Item>) { fake_now += 30; });
  item->Save();
  EXPECT_EQ(counter.HostNanoseconds(), 3 + 1 + 2);
  host.profile.Faults().SetCounter(nullptr);
  item->Save();  // detached: nothing more
  EXPECT_EQ(counter.HostNanoseconds(), 6);
}

}  // namespace
}  // namespace zintra::sim
