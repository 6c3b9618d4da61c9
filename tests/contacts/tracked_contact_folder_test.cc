#include "src/contacts/tracked_contact_folder.h"

#include "src/core/date.h"
#include "src/host/mapi_object.h"
#include "tests/contacts/contacts_env.h"

namespace zintra::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class TrackedContactFolderTest : public ContactsTest {
 protected:
  void SetUp() override {
    contacts = AddContactFolder("Customers");
    AddContact(contacts, "Ann Archer", {"ann@archer.example", "ann.archer@home.example"});
    AddContact(contacts, "No Address", {});
    AddContact(contacts, "Bob Baker", {"bob@baker.example", "", "shared@team.example"});
    AddContact(contacts, "Cy Cole", {"SHARED@team.example"});
    AddContact(contacts, "Di Dunn", {"di@dunn.example"});
    Configure({contacts});
  }
  std::shared_ptr<Folder> contacts;
};

TEST_F(TrackedContactFolderTest, FillsInChunksAsOneJobThenAnswersFromTheCache) {
  Start(/*async=*/true);
  auto folder = Tracked(1);
  EXPECT_FALSE(folder->Ready());
  EXPECT_EQ(folder->CacheLeftToFill(), 5);
  EXPECT_EQ(view().rows().size(), 1u);
  EXPECT_TRUE(Logged("Cache for folder 'Customers' beginning refresh process."));

  Tick();  // chunk size 2
  EXPECT_EQ(folder->CacheLeftToFill(), 3);
  EXPECT_FALSE(folder->Ready());
  RunQueue();

  EXPECT_TRUE(folder->Ready());
  EXPECT_TRUE(folder->Cached());
  EXPECT_TRUE(Logged("Cache for folder 'Customers' finished refresh process."));
  EXPECT_TRUE(view().rows().empty());
  // Five addresses: the contact without one adds nothing, the shared one counts once.
  EXPECT_EQ(folder->CacheCount(), 5);
  EXPECT_EQ(folder->JobDescription(), "Fill cache for 'Customers'");

  // Letter case does not matter; the first contact added keeps a shared address.
  EXPECT_THAT(Names(folder->GetContactItems("ANN@Archer.Example")), ElementsAre("Ann Archer"));
  EXPECT_THAT(Names(folder->GetContactItems("shared@TEAM.example")), ElementsAre("Bob Baker"));
  EXPECT_THAT(folder->GetContactItems("nobody@nowhere.example"), IsEmpty());
  // The uncached search finds every contact that carries it.
  EXPECT_THAT(Names(folder->FindContactItems("shared@team.example")),
              ElementsAre("Bob Baker", "Cy Cole"));
}

TEST_F(TrackedContactFolderTest, ChunkSizeOneReadsOneRowPerActivation) {
  settings.GetRowChunkSize = 1;
  Start(/*async=*/true);
  auto folder = Tracked(1);
  for (int left = 4; left >= 0; --left) {
    Tick();
    EXPECT_EQ(folder->CacheLeftToFill(), left);
  }
  Tick();
  EXPECT_TRUE(folder->Ready());
}

TEST_F(TrackedContactFolderTest, UncachedModeSearchesTheFolderAndIsAlwaysReady) {
  settings.CacheContactFolders = false;
  Start();
  auto folder = Tracked(1);
  EXPECT_TRUE(folder->Ready());
  EXPECT_FALSE(folder->HasCache());
  EXPECT_EQ(folder->CacheCount(), 0);
  EXPECT_THAT(Names(folder->GetContactItems("Shared@Team.Example")),
              ElementsAre("Bob Baker", "Cy Cole"));
  // An address with a double quote still makes a well-formed filter.
  EXPECT_THAT(folder->GetContactItems("odd\"quote@x.example"), IsEmpty());
  EXPECT_TRUE(Errors().empty());
}

TEST_F(TrackedContactFolderTest, ErrorRowsAndErrorCellsAreSkipped) {
  auto broken = AddContact(contacts, "Unreadable", {"gone@x.example"});
  std::dynamic_pointer_cast<sim::MessageHolder>(broken)->Message()->unreadable = true;
  Start();
  auto folder = Tracked(1);
  EXPECT_TRUE(folder->Cached());
  EXPECT_EQ(folder->CacheLookup("gone@x.example"), nullptr);
  EXPECT_NE(folder->CacheLookup("di@dunn.example"), nullptr);
}

TEST_F(TrackedContactFolderTest, KeepsTheCacheInStepWithItemEvents) {
  Start();
  auto folder = Tracked(1);
  auto eve = AddContact(contacts, "Eve Evans", {"eve@evans.example"});
  EXPECT_THAT(Names(folder->GetContactItems("eve@evans.example")), ElementsAre("Eve Evans"));
  eve->SetEmail2Address("eve@work.example");
  eve->Save();
  EXPECT_THAT(Names(folder->GetContactItems("EVE@work.example")), ElementsAre("Eve Evans"));

  // A cached contact that is deleted and replaced: the folder decides, the cache learns.
  eve->Delete();
  AddContact(contacts, "Eve Again", {"eve@evans.example"});
  EXPECT_THAT(Names(folder->GetContactItems("eve@evans.example")), ElementsAre("Eve Again"));
  EXPECT_EQ(CountLines("Cache for folder 'Customers' held a stale entry"), 1);
}

TEST_F(TrackedContactFolderTest, AStaleCacheIsRefilledOnlyAfterTenMinutes) {
  Start();
  auto folder = Tracked(1);
  // Leave one item for five cached addresses... then pad the cache past nine per item.
  for (int i = 0; i < 10; ++i) {
    AddContact(contacts, "Temp " + std::to_string(i),
               {"t" + std::to_string(i) + "a@x.example", "t" + std::to_string(i) + "b@x.example",
                "t" + std::to_string(i) + "c@x.example"});
  }
  auto items = contacts->Items();
  while (items->Count() > 3) items->Remove(1);
  ASSERT_GT(folder->CacheCount(), 3 * kStaleAddressesPerItem);
  const int refills = CountLines("Cache for folder 'Customers' beginning refresh process.");

  clock.Advance(10 * 60 * sim::VirtualClock::kMicrosPerSecond);  // not more than 10
  AddContact(contacts, "Fay", {"fay@x.example"});
  EXPECT_EQ(CountLines("Cache for folder 'Customers' beginning refresh process."), refills);

  clock.Advance(61 * sim::VirtualClock::kMicrosPerSecond);
  items->Remove(1);
  EXPECT_EQ(CountLines("Cache for folder 'Customers' beginning refresh process."), refills + 1);
  EXPECT_LE(folder->CacheCount(), 9);
}

TEST_F(TrackedContactFolderTest, AFolderThatStopsAnsweringIsReportedAndKilled) {
  profile.Faults().FailAfterCalls("MapiTable.GetRows", 1, kMapiNetworkError, "Network error");
  Start(/*async=*/true);
  auto folder = Tracked(1);
  RunQueue();

  EXPECT_TRUE(folder->Killed());
  EXPECT_EQ(tracked->FolderCount(), 0);
  ASSERT_EQ(contacts_addin->shown.size(), 1u);
  EXPECT_EQ(contacts_addin->shown[0].dialog, kDialogFolderConnectionLost);
  EXPECT_EQ(contacts_addin->shown[0].message.rfind(contacts_addin->Strings().Load(1100), 0), 0u);
  EXPECT_NE(contacts_addin->shown[0].message.find("Customers"), std::string::npos);
  EXPECT_EQ(contacts_addin->shown[0].caption, "Zintra");
  ASSERT_EQ(Errors().size(), 1u);
  EXPECT_EQ(Errors()[0].text, "Connection to folder Customers died for reason:Network error");
  EXPECT_TRUE(view().rows().empty());
  EXPECT_THAT(folder->GetContactItems("ann@archer.example"), IsEmpty());
}

TEST_F(TrackedContactFolderTest, AnErrorResultEndsTheFillAsALostConnection) {
  Start(/*async=*/true);
  auto folder = Tracked(1);
  Tick();
  profile.DeleteFolder(std::dynamic_pointer_cast<sim::FolderHolder>(contacts)->FolderRec());
  RunQueue();
  EXPECT_TRUE(folder->Killed());
  ASSERT_FALSE(Errors().empty());
  EXPECT_NE(Errors().back().text.find("died for reason:"), std::string::npos);
}

TEST_F(TrackedContactFolderTest, OutlookExitAndAbortReturnToUncachedMode) {
  settings.StopFillingCachesOnExit = true;
  Start(/*async=*/true);
  auto folder = Tracked(1);
  contacts_addin->quitting = true;
  RunQueue();
  EXPECT_TRUE(Logged("Cache for folder 'Customers' switched to uncached mode for Outlook exit."));
  EXPECT_FALSE(folder->HasCache());
  EXPECT_TRUE(folder->Ready());
  EXPECT_TRUE(view().rows().empty());
  EXPECT_THAT(Names(folder->GetContactItems("di@dunn.example")), ElementsAre("Di Dunn"));

  tracked->Kill();
  contacts_addin->quitting = false;
  Start(/*async=*/true);
  queue->Abandon();
  EXPECT_TRUE(Logged("Cache for folder 'Customers' switched to uncached mode due to job abort."));
  EXPECT_FALSE(Tracked(1)->HasCache());
}

class FolderFlagsTest : public ContactsTest, public ::testing::WithParamInterface<int32_t> {};

TEST_P(FolderFlagsTest, FlagBitsReadAsProperties) {
  auto contacts = FolderOf(builder.Default(kOlFolderContacts));
  Configure({contacts});
  settings.FoldersetFlags.Item(1) = GetParam();
  Start();
  EXPECT_EQ(Tracked(1)->FLAGS(), GetParam());
  EXPECT_EQ(Tracked(1)->Flag_LogRoutedItems(), (GetParam() & 1) != 0);
  EXPECT_EQ(Tracked(1)->Flag_LeavePersonalCopy(), (GetParam() & 2) != 0);
}

INSTANTIATE_TEST_SUITE_P(All, FolderFlagsTest, ::testing::Values(0, 1, 2, 3, 7));

TEST_F(TrackedContactFolderTest, ANameThatCannotBeReadIsLoggedWithTheErrorNumber) {
  Start();
  profile.Faults().FailAlways("Folder.Name", kMapiNetworkError, "Network error");
  EXPECT_EQ(Tracked(1)->Name(), "Customers");
  ASSERT_EQ(Errors().size(), 1u);
  const std::string text = Errors()[0].text;
  EXPECT_NE(text.find(" while accessing Name property of "), std::string::npos);
  EXPECT_NE(text.find("Error " + std::to_string(kMapiNetworkError)), std::string::npos);
  EXPECT_NE(text.find("Customers"), std::string::npos);
}

}  // namespace
}  // namespace zintra::testing
