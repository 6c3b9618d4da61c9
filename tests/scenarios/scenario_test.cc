// End to end: the add-in with its tracked contacts and folder monitoring in a simulated
// Outlook process, from start-up to shut-down, as a user lives it.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "sim/outlook/profile_builder.h"
#include "sim/outlook/sim_folder.h"
#include "sim/outlook/sim_item.h"
#include "src/contacts_part/tracked_contacts_part.h"
#include "src/host/outlook_item_parts.h"
#include "src/logging/zintra_utils.h"
#include "src/monitoring_part/monitoring_part.h"
#include "tests/addin/addin_fixture.h"

namespace zintra::testing {
namespace {

class ScenarioTest : public ::testing::Test {
 protected:
  ScenarioTest() : builder(outlook.profile()) {
    fixture.parts.TrackedContacts = TrackedContactsPartFactory();
    fixture.parts.Toolbars = nullptr;
    fixture.parts.Monitoring = MonitoringPartFactory();
    auto top = outlook.profile().DefaultStore()->root;
    clients = builder.ContactFolder("Clients", top);
    journal = builder.Folder("Clients Journal", kOlJournalItem, top);
    ann = builder.Contact(clients, {"Ann Lee", {"ann@fabrikam.com"}});
    settings.Read(false, false, false);
    settings.ContactFolderEntryIDs.Add(outlook.profile().EntryIdOf(*clients));
    settings.ContactFolderStoreIDs.Add(outlook.profile().StoreIdOf(*clients->store));
    settings.JournalFolderEntryIDs.Add(outlook.profile().EntryIdOf(*journal));
    settings.JournalFolderStoreIDs.Add(outlook.profile().StoreIdOf(*journal->store));
    for (StringList* list : {&settings.EmailFolderEntryIDs, &settings.EmailFolderStoreIDs,
                             &settings.SharedCalendarEntryIDs, &settings.SharedCalendarStoreIDs,
                             &settings.SharedJournalEntryIDs, &settings.SharedJournalStoreIDs,
                             &settings.SharedTaskListEntryIDs, &settings.SharedTaskListStoreIDs}) {
      list->Add(std::string());
    }
    settings.FoldersetFlags.Add(0);
    settings.FoldersetCount = 1;
  }

  void Start() {
    settings.Save();
    settings.UserFirstRun(false);
    outlook.Start(sim::StartWindows::kExplorer, true);
    outlook.loop.RunUntilIdle();
  }
  std::shared_ptr<sim::MessageRecord> MailFromAnn(const std::string& subject) {
    return builder.MailFrom(sim::ProfileBuilder::Smtp("Ann Lee", "ann@fabrikam.com"),
                            {subject, "", 0});
  }
  // Subjects of the logged copies in the journal.
  std::vector<std::string> Copies() {
    std::vector<std::string> out;
    for (const auto& m : journal->messages) {
      if (!m->deleted) out.push_back(sim::MakeItem(&outlook.profile(), m)->Subject());
    }
    return out;
  }
  Value Logged(const std::shared_ptr<sim::MessageRecord>& record) {
    auto item = sim::MakeItem(&outlook.profile(), record);
    return fixture.addin()->Utils()->GetUserProperty(item->UserProperties(), kPropZintraLogged);
  }
  std::shared_ptr<Monitoring> Manager() {
    auto part = std::dynamic_pointer_cast<MonitoringPart>(fixture.addin()->Monitoring());
    return part ? part->GetMonitoring() : nullptr;
  }
  int Count(const std::string& text) {
    int n = 0;
    for (const auto& line : fixture.Lines()) n += line.find(text) != std::string::npos ? 1 : 0;
    return n;
  }
  void ExpectCleanShutdown() {
    outlook.Quit();
    EXPECT_TRUE(outlook.Ended());
    for (const auto& line : fixture.Warnings()) {
      EXPECT_EQ(line.find("Lingering"), std::string::npos) << line;
      EXPECT_EQ(line.find("still exists"), std::string::npos) << line;
    }
  }

  AddinFixture fixture;
  sim::SimOutlook& outlook = fixture.outlook;
  sim::ProfileBuilder builder;
  RegSettings settings{outlook.registry, outlook.files, outlook.platform};
  std::shared_ptr<sim::FolderRecord> clients, journal;
  std::shared_ptr<sim::MessageRecord> ann;
};

TEST_F(ScenarioTest, InboxBacklogIsScannedAndLoggedAtStartup) {
  auto quote = MailFromAnn("Quote");
  auto order = MailFromAnn("Order");
  auto spam = builder.MailFrom(sim::ProfileBuilder::Smtp("Bob", "bob@spam.example"), {"Offer"});
  Start();
  EXPECT_EQ(Count("Scanning Inbox"), 1);
  EXPECT_EQ(Copies(), (std::vector<std::string>{"Order", "Quote"}));
  EXPECT_TRUE(Logged(quote).ToBool());
  EXPECT_FALSE(Logged(spam).ToBool());
  ExpectCleanShutdown();
}

TEST_F(ScenarioTest, NewMailIsLoggedOnceAndSentMailAgainstItsRecipients) {
  Start();
  MailFromAnn("New order");
  outlook.loop.RunUntilIdle();
  EXPECT_EQ(Copies(), std::vector<std::string>{"New order"});

  auto mail = outlook.app().CreateItem(kOlMailItem);
  mail->SetSubject("Delivery date");
  mail->Recipients()->Add("ann@fabrikam.com");
  ASSERT_TRUE(outlook.app().Send(mail));
  outlook.loop.RunUntilIdle();
  EXPECT_EQ(Copies(), (std::vector<std::string>{"New order", "Delivery date"}));
  ExpectCleanShutdown();
}

TEST_F(ScenarioTest, ProcessingDelayTurnsABurstIntoOneScan) {
  settings.ProcessingDelay = 2000;
  Start();
  const int scans_before = Count("Completing scan for folder 'Inbox'");
  for (int i = 1; i <= 10; ++i) {
    MailFromAnn("Burst " + std::to_string(i));
    outlook.loop.AdvanceByMs(100);
  }
  EXPECT_EQ(Count("Queueing folder 'Inbox' for delayed item processing"), 1);
  EXPECT_EQ(Copies().size(), 0u);
  outlook.loop.RunUntilIdle();
  EXPECT_EQ(Count("Initiating scanning on folders that were delayed for processing"), 1);
  EXPECT_EQ(Count("Completing scan for folder 'Inbox'") - scans_before, 1);
  EXPECT_EQ(Copies().size(), 10u);
  ExpectCleanShutdown();
}

TEST_F(ScenarioTest, EditedLoggedItemHasItsCopiesAuditedOnce) {
  settings.AuditTrail = true;
  settings.ProcessingDelay = 0;
  Start();
  auto item = outlook.app().CreateItem(kOlAppointmentItem);
  item->SetSubject("Site visit");
  item->Links()->Add(sim::MakeItem(&outlook.profile(), ann));
  item->Save();
  outlook.loop.RunUntilIdle();
  ASSERT_EQ(Copies(), std::vector<std::string>{"Site visit"});

  outlook.loop.AdvanceByMs(60000);
  item->SetBody("Moved to Friday");
  item->Save();
  outlook.loop.RunUntilIdle();
  const std::string body = sim::MakeItem(&outlook.profile(), journal->messages[0])->Body();
  size_t audits = 0;
  for (size_t at = body.find("Changed by"); at != std::string::npos;
       at = body.find("Changed by", at + 1)) {
    ++audits;
  }
  EXPECT_EQ(audits, 1u) << body;
  ExpectCleanShutdown();
}

TEST_F(ScenarioTest, SettingsReplacedWhileWorkIsQueued) {
  settings.ProcessingDelay = 2000;
  Start();
  for (int i = 1; i <= 5; ++i) MailFromAnn("Queued " + std::to_string(i));
  RegSettings changed = fixture.addin()->RegSettings();
  changed.AuditTrail = true;
  fixture.addin()->SetRegSettings(changed);
  EXPECT_EQ(Manager()->Monitors().Count(), 5);  // rebuilt
  outlook.loop.RunUntilIdle();
  EXPECT_EQ(Copies().size(), 5u);
  RegSettings reread{outlook.registry, outlook.files, outlook.platform};
  reread.Read(false, false, false);
  EXPECT_TRUE(reread.AuditTrail);
  ExpectCleanShutdown();
}

TEST_F(ScenarioTest, OutlookClosesWithJobsQueuedAndShutsDownCleanly) {
  settings.ProcessingDelay = 0;
  Start();
  for (int i = 1; i <= 5; ++i) MailFromAnn("Late " + std::to_string(i));
  ASSERT_GT(fixture.addin()->GetJobQueue()->QueuedJobsCount(), 0);
  ExpectCleanShutdown();
  for (const auto& line : fixture.Lines()) EXPECT_NE(line[0], 'E') << line;
}

}  // namespace
}  // namespace zintra::testing
