#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "tests/monitoring/monitoring_env.h"

namespace zintra::monitoring_test {
namespace {

using Strings = std::vector<std::string>;

class MonitoredFolderTest : public ::testing::Test {
 protected:
  MonitoredFolderTest() {
    env.settings.MonitorMethod = 1;  // no monitors of the manager's own
    projects = env.builder.Folder("Projects");
  }
  // A monitor of `record` with the setting the manager would give it.
  std::shared_ptr<MonitoredFolder> Watch(const std::shared_ptr<sim::FolderRecord>& record) {
    if (!env.queue) env.Start();
    auto folder = env.FolderOf(record);
    FolderSetting setting;
    setting.SetAllItemsLogged(true);
    auto monitor = std::make_shared<MonitoredFolder>(env.addin);
    EXPECT_TRUE(monitor->Initialize(folder, env.monitoring, setting));
    return monitor;
  }
  double At(int day, int hour, int minute = 0) { return MakeDate(2026, 1, day, hour, minute, 0); }

  MonitoringEnv env;
  std::shared_ptr<sim::FolderRecord> projects;
};

struct DirectionCase {
  int32_t folder;  // default-folder number, 0 for the "Projects" mail folder, -1 Calendar
  bool inbox_is_outgoing;
  bool incoming, outgoing, ignore_changes;
};

class DirectionTest : public MonitoredFolderTest,
                      public ::testing::WithParamInterface<DirectionCase> {};

TEST_P(DirectionTest, FlagsFollowTheFolder) {
  const DirectionCase& c = GetParam();
  env.settings.InboxIsOutgoingToo = c.inbox_is_outgoing;
  auto record = c.folder == 0 ? projects : env.builder.Default(c.folder);
  auto monitor = Watch(record);
  EXPECT_EQ(monitor->IsIncomingFolder(), c.incoming);
  EXPECT_EQ(monitor->IsOutgoingFolder(), c.outgoing);
  EXPECT_EQ(monitor->IgnoreChanges(), c.ignore_changes);
  EXPECT_TRUE(env.Logged("Initializing MonitoredFolder for EntryID {" +
                         env.profile.EntryIdOf(*record) + "}"));
  EXPECT_TRUE(env.Logged("Successfully initialized monitoring of folder " + record->name));
  EXPECT_EQ(env.monitoring->Monitors().Count(), 1);
}

INSTANTIATE_TEST_SUITE_P(
    Folders, DirectionTest,
    ::testing::Values(DirectionCase{kOlFolderInbox, false, true, false, true},
                      DirectionCase{kOlFolderInbox, true, true, true, true},
                      DirectionCase{kOlFolderSentMail, false, false, true, true},
                      DirectionCase{kOlFolderOutbox, false, false, true, false},
                      DirectionCase{kOlFolderDeletedItems, false, true, true, true},
                      DirectionCase{0, false, true, true, false},
                      DirectionCase{kOlFolderCalendar, false, false, false, false}));

TEST_F(MonitoredFolderTest, FolderThatCannotBeOpenedLeavesNoMonitor) {
  env.Start();
  FolderSetting setting;
  setting.EntryID = "00AB";
  setting.StoreID = "00CD";
  auto monitor = std::make_shared<MonitoredFolder>(env.addin);
  EXPECT_FALSE(monitor->Initialize(nullptr, env.monitoring, setting));
  EXPECT_EQ(env.monitoring->Monitors().Count(), 0);
  EXPECT_EQ(env.Errors().size(), 1u);
}

TEST_F(MonitoredFolderTest, ScanWalksNewestFirstToTheEnd) {
  auto monitor = Watch(projects);
  env.Run();
  EXPECT_TRUE(env.Screened().empty());
  env.Mail("a", At(2, 9), projects);
  env.Mail("c", At(4, 9), projects);
  env.Mail("b", At(3, 9), projects);
  env.recorder.lines.clear();
  monitor->Scan(false);
  monitor->Scan(false);  // ignored while scanning
  EXPECT_TRUE(monitor->Scanning());
  EXPECT_FALSE(monitor->TaskId().empty());
  env.Run();
  EXPECT_EQ(env.Screened(), (Strings{"c", "b", "a"}));
  EXPECT_EQ(monitor->ScannedCount(), 3);
  EXPECT_FALSE(monitor->Scanning());
  EXPECT_TRUE(monitor->TaskId().empty());
  EXPECT_EQ(env.Count("Completing scan for folder 'Projects'; reached end of messages."), 1);
}

struct StopCase {
  bool stop_when_found;
  int32_t overlap_hours;
  Strings handed;
  std::string stopped_at;  // "" when the scan reaches the end
};

class StopRuleTest : public MonitoredFolderTest, public ::testing::WithParamInterface<StopCase> {};

TEST_P(StopRuleTest, StopsAtOldEnoughLoggedItem) {
  const StopCase& c = GetParam();
  env.settings.QuickscanOverlapHours = c.overlap_hours;
  env.settings.ProcessingDelay = 0;
  env.Mail("new", At(5, 10), projects);
  env.MarkLogged(env.Mail("first logged", At(5, 9, 10), projects));
  // 24 h 40 min before the first logged item, but 25 hour boundaries.
  env.MarkLogged(env.Mail("day before", At(4, 8, 30), projects));
  env.MarkLogged(env.Mail("oldest", At(1, 8), projects));
  auto monitor = Watch(projects);
  env.recorder.lines.clear();
  monitor->Scan(c.stop_when_found);
  env.Run();
  EXPECT_EQ(env.Screened(), c.handed);
  if (c.stopped_at.empty()) {
    EXPECT_EQ(env.Count("Completing scan for folder 'Projects'; reached end of messages."), 1);
  } else {
    EXPECT_TRUE(
        env.Logged("Completing scan for folder 'Projects'; reached a message that's "
                   "already been processed: '" +
                   c.stopped_at + "'"));
  }
  EXPECT_EQ(env.monitoring->ScanningCount(), 0);
}

INSTANTIATE_TEST_SUITE_P(
    Rules, StopRuleTest,
    ::testing::Values(StopCase{true, 0, {"new"}, "first logged"},
                      StopCase{true, 24, {"new", "first logged"}, "day before"},
                      StopCase{true, 25, {"new", "first logged", "day before"}, "oldest"},
                      StopCase{false, 0, {"new", "first logged", "day before", "oldest"}, ""}));

// A job that runs between two steps of a scan and delivers mail once the scan has
// handed `after` to processing: mail arriving from outside while the scan runs.
class DeliveryBetweenSteps : public IJob {
 public:
  DeliveryBetweenSteps(MonitoringEnv& env, std::string after, std::function<void()> deliver)
      : env_(env), after_(std::move(after)), deliver_(std::move(deliver)) {}
  void Activate() override {
    if (env_.Count("JobProcess queuing " + after_) == 0) {
      env_.queue->Queue(self.lock(), false);
      return;
    }
    deliver_();
  }
  void Abort() override {}
  std::string JobDescription() override { return "delivery"; }
  std::weak_ptr<IJob> self;

 private:
  MonitoringEnv& env_;
  std::string after_;
  std::function<void()> deliver_;
};

TEST_F(MonitoredFolderTest, NewerItemsArrivingDuringScanAreBumpedOlderAreNot) {
  for (int i = 1; i <= 4; ++i) env.Mail("m" + std::to_string(i), At(1, 8 + i), projects);
  auto monitor = Watch(projects);
  auto delivery = std::make_shared<DeliveryBetweenSteps>(env, "m3", [&] {
    env.Mail("newer 1", At(6, 9), projects);
    env.Mail("newer 2", At(6, 10), projects);
    env.Mail("older", At(1, 1), projects);
  });
  delivery->self = delivery;
  env.recorder.lines.clear();
  monitor->Scan(false);
  env.queue->Queue(delivery, false);
  env.Run();
  EXPECT_EQ(env.Count("Bumping GetNext() result to correct next-item pointer: "), 2);
  // The three new items are processed as they arrive; the scan then goes on with "m2",
  // neither repeating "m3" nor skipping anything, and meets "older" again at the end.
  EXPECT_EQ(env.Screened(),
            (Strings{"m4", "m3", "newer 1", "newer 2", "older", "m2", "m1", "older"}));
  EXPECT_TRUE(env.Errors().empty());
}

TEST_F(MonitoredFolderTest, TheAddinsOwnItemsComingAndGoingCostNoItemItsTurn) {
  // Items the add-in itself adds to and removes from the scanned folder while the
  // scan runs (a working copy, a copy on its way) are not bumps, and their leaving
  // does not make the scan skip an item.
  for (int i = 1; i <= 4; ++i) env.Mail("m" + std::to_string(i), At(1, 8 + i), projects);
  auto monitor = Watch(projects);
  std::vector<std::shared_ptr<sim::MessageRecord>> own;
  auto add_own = std::make_shared<DeliveryBetweenSteps>(env, "m4", [&] {
    env.utils.PreSaveItem();
    own.push_back(env.Mail("own copy", At(7, 9), projects));
    env.utils.PostSaveItem();
  });
  add_own->self = add_own;
  auto remove_own = std::make_shared<DeliveryBetweenSteps>(env, "m3", [&] {
    env.utils.PreSaveItem();
    env.profile.DestroyMessage(own.at(0));
    env.utils.PostSaveItem();
  });
  remove_own->self = remove_own;
  monitor->Scan(false);
  env.queue->Queue(add_own, false);
  env.queue->Queue(remove_own, false);
  env.Run();
  EXPECT_EQ(env.Count("Bumping GetNext() result to correct next-item pointer: "), 0);
  EXPECT_EQ(env.Count("Item in Projects intercepted: own copy"), 0);
  EXPECT_EQ(env.Screened(), (Strings{"m4", "m3", "m2", "m1"}));
  EXPECT_TRUE(env.Errors().empty());
}

TEST_F(MonitoredFolderTest, AnItemTheUserFilesAwayDuringAScanCostsNoOtherItemItsTurn) {
  for (int i = 1; i <= 4; ++i) env.Mail("m" + std::to_string(i), At(1, 8 + i), projects);
  auto newest = env.Mail("newest", At(2, 8), projects);
  auto archive = env.builder.Folder("Archive");
  auto monitor = Watch(projects);
  auto file_away = std::make_shared<DeliveryBetweenSteps>(
      env, "m3", [&] { env.profile.MoveMessage(newest, archive); });
  file_away->self = file_away;
  monitor->Scan(false);
  env.queue->Queue(file_away, false);
  env.Run();
  EXPECT_EQ(env.Screened(), (Strings{"newest", "m4", "m3", "m2", "m1"}));
}

TEST_F(MonitoredFolderTest, NewItemsOfLoggedKindsStartProcessing) {
  auto monitor = Watch(projects);
  FolderSetting mail_only;
  mail_only.SetItemSetting(FolderSetting::OutlookItemType_to_ItemType(kOlMailItem), true);
  auto contacts_record = env.builder.ContactFolder("Clients");
  auto contacts = std::make_shared<MonitoredFolder>(env.addin);
  ASSERT_TRUE(contacts->Initialize(env.FolderOf(contacts_record), env.monitoring, mail_only));
  env.Mail("Hello", 0, projects);
  env.builder.Contact(contacts_record, {"Ann Lee", {"ann@fabrikam.com"}});
  env.Run();
  EXPECT_TRUE(env.Logged("Item in Projects intercepted: Hello"));
  EXPECT_TRUE(env.Logged("Initializing JobProcess for Hello"));
  EXPECT_TRUE(env.Logged("Item in Clients intercepted: Ann Lee"));
  EXPECT_FALSE(env.Logged("Initializing JobProcess for Ann Lee"));
  EXPECT_EQ(env.Screened(), Strings{"Hello"});

  monitor->Kill();
  contacts->Kill();
  EXPECT_EQ(env.monitoring->Monitors().Count(), 0);
  env.Mail("After kill", 0, projects);
  EXPECT_FALSE(env.Logged("Item in Projects intercepted: After kill"));
}

TEST_F(MonitoredFolderTest, ChangesAreAuditedExceptInInboxSentAndDeleted) {
  env.settings.AuditTrail = true;
  env.settings.MinAuditInterval = 0;
  auto journal = env.builder.Default(kOlFolderJournal);
  auto inbox = env.builder.Default(kOlFolderInbox);
  auto journal_monitor = Watch(journal);
  auto inbox_monitor = Watch(inbox);
  auto entry = env.builder.Item(journal, ItemClass::kJournal, "Call");
  auto mail = env.Mail("Mail", 0);
  env.MarkLogged(entry);
  env.MarkLogged(mail);
  env.Run();
  env.recorder.lines.clear();
  for (auto record : {entry, mail}) {
    auto item = env.ItemOf(record);
    item->SetBody("edited");
    item->Save();
  }
  env.Run();
  EXPECT_TRUE(env.Logged("Begin auditing for item 'Call'"));
  EXPECT_FALSE(env.Logged("Begin auditing for item 'Mail'"));
}

}  // namespace
}  // namespace zintra::monitoring_test
