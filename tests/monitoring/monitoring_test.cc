#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "tests/monitoring/monitoring_env.h"

namespace zintra::monitoring_test {
namespace {

using Strings = std::vector<std::string>;

Strings MonitorNames(const Monitoring& monitoring) {
  Strings names;
  for (const auto& m : monitoring.Monitors().Values()) names.push_back(m->FolderName());
  return names;
}

TEST(MonitoringTest, MethodsChooseTheMonitoredFolders) {
  {
    MonitoringEnv env;  // 0: the default folders, in order
    env.Start();
    EXPECT_EQ(MonitorNames(*env.monitoring),
              (Strings{"Calendar", "Inbox", "Journal", "Sent Items", "Tasks"}));
    const auto& monitors = env.monitoring->Monitors();
    EXPECT_EQ(monitors.Item(1)->Setting().ItemTypes, 2);   // appointments
    EXPECT_EQ(monitors.Item(2)->Setting().ItemTypes, 64);  // Inbox: its own kind, mail
    EXPECT_EQ(monitors.Item(5)->Setting().ItemTypes, 4096 + 8192 + 16384 + 32768 + 65536);
    EXPECT_TRUE(env.addin->messages.empty());
  }
  {
    MonitoringEnv env;  // 1: window monitoring, no folders
    env.settings.MonitorMethod = 1;
    env.Start();
    env.monitoring->ScanInbox();
    EXPECT_EQ(env.monitoring->Monitors().Count(), 0);
    EXPECT_FALSE(env.monitoring->Scanning());
  }
  {
    MonitoringEnv env;  // 2: the personal store but Drafts, Outbox, Notes, Deleted Items
    env.settings.MonitorMethod = 2;
    env.builder.Folder("Old", kOlMailItem, env.builder.Default(kOlFolderDeletedItems));
    env.builder.Folder("Projects", kOlMailItem, env.builder.Default(kOlFolderInbox));
    env.Start();
    Strings names = MonitorNames(*env.monitoring);
    for (const char* excluded : {"Drafts", "Outbox", "Notes", "Deleted Items", "Old"}) {
      EXPECT_EQ(std::count(names.begin(), names.end(), excluded), 0) << excluded;
    }
    EXPECT_EQ(std::count(names.begin(), names.end(), "Projects"), 1);
    EXPECT_EQ(std::count(names.begin(), names.end(), "Inbox"), 1);
  }
}

TEST(MonitoringTest, ListedFoldersWithOneThatCannotBeOpenedWarnOnce) {
  MonitoringEnv env;
  env.settings.MonitorMethod = 3;
  auto projects = env.builder.Folder("Projects");
  env.settings.MonitorFolderEntryIDs.Add(env.profile.EntryIdOf(*projects));
  env.settings.MonitorFolderStoreIDs.Add(env.profile.StoreIdOf(*projects->store));
  env.settings.MonitorFolderFlags.Add(64 + 128);
  env.settings.MonitorFolderEntryIDs.Add("00BADBAD");
  env.settings.MonitorFolderStoreIDs.Add("00BADBAD");
  env.settings.MonitorFolderFlags.Add(64);
  env.settings.MonitorFoldersCount = 2;
  env.Start();
  EXPECT_EQ(MonitorNames(*env.monitoring), Strings{"Projects"});
  EXPECT_EQ(env.monitoring->Monitors().Item(1)->Setting().ItemTypes, 64);  // 128 switched off
  ASSERT_EQ(env.addin->messages.size(), 1u);
  EXPECT_EQ(env.addin->messages[0], "2|" + env.strings.Load(2) + "|" + env.strings.Load(2650));

  env.settings.MonitorFoldersCount = 0;
  env.monitoring->Addin_RegSettingsChanged(&env.settings);
  EXPECT_EQ(env.monitoring->Monitors().Count(), 0);
  EXPECT_EQ(env.addin->messages.size(), 1u);
}

TEST(MonitoringTest, InboxIsScannedAtStartupExceptOnTheFirstRun) {
  for (bool first_run : {true, false}) {
    MonitoringEnv env;
    env.settings.ScanInbox = true;
    env.settings.UserFirstRun(first_run);
    env.Mail("Backlog", 0);
    env.Start();
    env.Run();
    EXPECT_EQ(env.Count("Scanning Inbox"), first_run ? 0 : 1);
    EXPECT_EQ(env.Screened(), first_run ? Strings{} : Strings{"Backlog"});
  }
}

TEST(MonitoringTest, RequestsDuringAScanYieldOneRescanAndScanAllWaits) {
  MonitoringEnv env;
  env.Mail("One", 0);
  env.Start();
  auto inbox = env.Default(kOlFolderInbox);
  env.monitoring->ScanFolder(inbox, false);
  env.monitoring->ScanFolder(inbox, false);
  env.monitoring->ScanFolder(inbox, false);
  env.monitoring->ScanAll(false);  // a scan is running: nothing
  EXPECT_EQ(env.monitoring->ScanningCount(), 1);
  EXPECT_EQ(env.Count("Instructing monitor for folder 'Inbox' to rescan once scanning is complete"),
            2);
  env.Run();
  EXPECT_EQ(env.Count("Initiating rescan on folder 'Inbox'"), 1);
  EXPECT_EQ(env.Count("Completing scan for folder 'Inbox'"), 2);
  EXPECT_EQ(env.monitoring->ScanningCount(), 0);

  env.monitoring->ScanFolder(env.FolderOf(env.builder.Folder("Elsewhere")), true);
  EXPECT_EQ(env.Errors(),
            Strings{"Monitoring.ScanFolder was asked to scan a folder that is not monitored"});
}

TEST(MonitoringTest, BurstOfNewItemsQueuesTheFolderOnceAndScansOnce) {
  MonitoringEnv env;
  env.settings.ProcessingDelay = 2000;
  env.Start();
  for (int i = 1; i <= 10; ++i) {
    env.Mail("Burst " + std::to_string(i), 0);
    env.loop.AdvanceByMs(300);  // less than the delay: every item pushes the scan back
  }
  EXPECT_EQ(env.Count("Queueing folder 'Inbox' for delayed item processing"), 1);
  EXPECT_EQ(env.monitoring->DelayedCount(), 1);
  EXPECT_TRUE(env.Screened().empty());
  env.Run();
  EXPECT_EQ(env.Count("Initiating scanning on folders that were delayed for processing"), 1);
  EXPECT_EQ(env.Count("Completing scan for folder 'Inbox'"), 1);
  EXPECT_EQ(env.Screened().size(), 10u);
  EXPECT_FALSE(env.monitoring->DelayPending());
}

TEST(MonitoringTest, ScanAllCancelsThePendingDelayAndScansEveryFolderToTheEnd) {
  MonitoringEnv env;
  env.settings.ProcessingDelay = 2000;
  env.MarkLogged(env.Mail("Old", 0));
  env.Start();
  env.Mail("New", 0);
  ASSERT_TRUE(env.monitoring->DelayPending());
  env.monitoring->ScanAll(false);
  EXPECT_FALSE(env.monitoring->DelayPending());
  EXPECT_EQ(env.monitoring->ScanningCount(), 5);
  env.Run();
  EXPECT_EQ(env.Screened(), (Strings{"New", "Old"}));
  EXPECT_EQ(env.Count("Initiating scanning on folders"), 0);

  // Only the timer went: the Inbox is still queued, so the next new mail restarts the
  // delay without queueing it twice, and one delayed scan follows.
  EXPECT_EQ(env.monitoring->DelayedCount(), 1);
  env.Mail("Later", 0);
  EXPECT_TRUE(env.monitoring->DelayPending());
  EXPECT_EQ(env.Count("Queueing folder 'Inbox' for delayed item processing"), 1);
  env.Run();
  EXPECT_EQ(env.Count("Initiating scanning on folders that were delayed for processing"), 1);
  EXPECT_EQ(env.monitoring->DelayedCount(), 0);
  EXPECT_EQ(env.Screened(), (Strings{"New", "Old", "Later"}));

  env.monitoring->QueueDelayedScan(env.FolderOf(env.builder.Folder("Elsewhere")));
  EXPECT_EQ(env.Errors(), Strings{"Folder 'Elsewhere' is not monitored, but was found in list of "
                                  "folders queued for delayed item processing."});
}

TEST(MonitoringTest, NoDelayProcessesAtOnce) {
  MonitoringEnv env;
  env.Start();
  env.Mail("Now", 0);
  EXPECT_EQ(env.monitoring->DelayedCount(), 0);
  EXPECT_EQ(env.Screened(), Strings{"Now"});
}

TEST(MonitoringTest, SettingsChangeRebuildsMonitorsAndDropsTheirScans) {
  MonitoringEnv env;
  env.Mail("One", 0);
  env.Start();
  env.monitoring->ScanAll(false);
  env.settings.MonitorMethod = 1;
  env.monitoring->Addin_RegSettingsChanged(&env.settings);
  EXPECT_EQ(env.monitoring->Monitors().Count(), 0);
  EXPECT_FALSE(env.monitoring->Scanning());
  env.Run();
  env.Stop();
  EXPECT_TRUE(env.Errors().empty());
}

TEST(MonitoringTest, LingeringCheckReportsWhatIsLeft) {
  MonitoringEnv env;
  env.settings.ProcessingDelay = 2000;
  env.Start();
  env.monitoring->ScanFolder(env.Default(kOlFolderInbox), true);
  env.Mail("Late", 0);
  env.monitoring->CheckLingeringRefs();
  const Strings errors = env.Errors();
  EXPECT_EQ(std::count(errors.begin(), errors.end(),
                       "MonitoredFolder object for 'Inbox' still exists in CheckLinger"),
            1);
  EXPECT_EQ(errors.size(), 7u);  // five monitors, one scanning, one delayed folder
  EXPECT_EQ(errors[5],
            "MonitoredFolder object for 'Inbox' still exists in FoldersScanning in "
            "CheckLinger");
  EXPECT_EQ(errors[6],
            "MonitoredFolder object for 'Inbox' still exists in DelayedFoldersToScan "
            "queue in CheckLinger");
}

TEST(MonitoringTest, CleanShutdownLeavesNothingToReport) {
  MonitoringEnv env;
  env.settings.ProcessingDelay = 2000;
  env.Start();
  env.Mail("Late", 0);
  env.monitoring->ScanAll(true);
  env.Stop();
  EXPECT_TRUE(env.Errors().empty());
}

}  // namespace
}  // namespace zintra::monitoring_test
