// End to end in C++: what a scenario file cannot state (how often a text recurs inside
// one item's body). The other end-to-end scenarios are files in data/, played by
// scenario_files_test.cc.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "sim/outlook/profile_builder.h"
#include "sim/outlook/sim_folder.h"
#include "sim/outlook/sim_item.h"
#include "src/addin/addin_services.h"
#include "src/contacts/tracked_contacts.h"
#include "src/host/outlook_item_parts.h"
#include "src/logging/zintra_utils.h"
#include "tests/addin/addin_fixture.h"

namespace zintra::testing {
namespace {

class ScenarioTest : public ::testing::Test {
 protected:
  ScenarioTest() : builder(outlook.profile()) {
    fixture.parts = AddinParts{};  // the subsystems' own parts, without the toolbar
    fixture.parts.Toolbars = nullptr;
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
  // Subjects of the logged copies in the journal.
  std::vector<std::string> Copies() {
    std::vector<std::string> out;
    for (const auto& m : journal->messages) {
      if (!m->deleted) out.push_back(sim::MakeItem(&outlook.profile(), m)->Subject());
    }
    return out;
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

// The parts meet through the add-in's one services object: what the contact tracking
// part registers there gives the toolbar's letters their journal, the options page finds
// the monitoring manager there, and the services go with the add-in.
TEST_F(ScenarioTest, PartsShareTheAddinsServicesUntilTearDown) {
  Start();
  std::shared_ptr<AddinServices> services = fixture.addin()->Services();
  ASSERT_NE(services, nullptr);
  ASSERT_NE(services->Tracked(), nullptr);
  EXPECT_EQ(services->Tracked()->Folders().Count(), 1);
  EXPECT_NE(services->GetMonitoring(), nullptr);
  std::shared_ptr<Folder> log_folder =
      services->TrackedLogFolder(sim::MakeFolder(&outlook.profile(), clients));
  ASSERT_NE(log_folder, nullptr);
  EXPECT_EQ(log_folder->EntryID(), outlook.profile().EntryIdOf(*journal));
  EXPECT_EQ(services->TrackedLogFolder(sim::MakeFolder(&outlook.profile(), journal)), nullptr);

  std::weak_ptr<AddinServices> gone = services;
  services.reset();
  ExpectCleanShutdown();
  EXPECT_TRUE(gone.expired());
}

}  // namespace
}  // namespace zintra::testing
