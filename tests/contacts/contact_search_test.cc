#include "src/contacts/contact_search.h"

#include "tests/contacts/contacts_env.h"

namespace zintra::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class ContactSearchTest : public ContactsTest {
 protected:
  void SetUp() override {
    first = AddContactFolder("First");
    second = AddContactFolder("Second");
    AddContact(first, "Ann One", {"ann@x.example"});
    AddContact(first, "Bob One", {"bob@x.example"});
    AddContact(second, "Ann Two", {"ann@x.example"});
    AddContact(second, "Cy Two", {"cy@x.example"});
    Configure({first, second});
  }
  std::shared_ptr<ContactSearch> Search(const std::vector<std::string>& emails) {
    auto search = tracked->Search(emails);
    completions_ = std::make_shared<std::vector<bool>>();
    // Connected after Search returned, as a caller that found it still pending does.
    connection_ = search->SearchComplete.Connect(
        [list = completions_](bool aborted) { list->push_back(aborted); });
    return search;
  }
  std::vector<std::string> GroupKeysNames(const ContactSearch& search) {
    std::vector<std::string> out;
    for (const auto& group : search.GroupedResults()) {
      out.push_back(group.folder->Name() + ":" + std::to_string(group.contacts.size()));
    }
    return out;
  }

  std::shared_ptr<Folder> first, second;
  std::shared_ptr<std::vector<bool>> completions_;
  Connection connection_;
};

TEST_F(ContactSearchTest, WithoutUniqueAddressesEveryFolderIsSearchedForEveryAddress) {
  settings.UniqueEmailAddresses = false;
  Start();
  auto search = Search({"ANN@x.example", "cy@x.example", "nobody@x.example", "ann@X.example"});
  EXPECT_TRUE(search->Completed());
  EXPECT_EQ(search->EmailCount(), 3);  // the repeated address is searched once
  EXPECT_THAT(Names(search->Results("ann@x.example")), ElementsAre("Ann One", "Ann Two"));
  EXPECT_THAT(Names(search->Results("cy@x.example")), ElementsAre("Cy Two"));
  EXPECT_THAT(search->Results("nobody@x.example"), IsEmpty());
  EXPECT_THAT(Names(search->AllResults()), ElementsAre("Ann One", "Ann Two", "Cy Two"));
  EXPECT_THAT(GroupKeysNames(*search), ElementsAre("First:1", "Second:2"));
  EXPECT_EQ(CountLines("Searching folder "), 2);
  EXPECT_EQ(tracked->PendingSearchCount(), 0);
}

TEST_F(ContactSearchTest, AContactFoundForTwoAddressesIsInItsGroupForEach) {
  AddContact(first, "Dee One", {"dee@x.example", "dee@home.example"});
  for (bool unique : {false, true}) {
    settings.UniqueEmailAddresses = unique;
    if (!tracked) Start();
    auto search = Search({"dee@x.example", "dee@home.example"});
    EXPECT_TRUE(search->Completed());
    EXPECT_THAT(Names(search->Results("dee@x.example")), ElementsAre("Dee One"));
    EXPECT_THAT(Names(search->Results("dee@home.example")), ElementsAre("Dee One"));
    ASSERT_EQ(search->GroupedResults().size(), 1u);
    EXPECT_THAT(Names(search->GroupedResults().front().contacts),
                ElementsAre("Dee One", "Dee One"));
  }
}

TEST_F(ContactSearchTest, UniqueAddressesStopOnceEveryAddressIsFound) {
  settings.UniqueEmailAddresses = true;
  Start();
  auto search = Search({"ann@x.example", "bob@x.example"});
  EXPECT_TRUE(search->Completed());
  EXPECT_EQ(search->FoundCount(), 2);
  EXPECT_TRUE(Logged("Searching folder First"));
  EXPECT_FALSE(Logged("Searching folder Second"));
  EXPECT_THAT(Names(search->Results("ann@x.example")), ElementsAre("Ann One"));

  // A found address is not searched again in later folders; the rest are.
  auto partial = Search({"ann@x.example", "cy@x.example"});
  EXPECT_THAT(Names(partial->Results("ann@x.example")), ElementsAre("Ann One"));
  EXPECT_THAT(Names(partial->Results("cy@x.example")), ElementsAre("Cy Two"));
}

TEST_F(ContactSearchTest, APendingSearchResumesWithTheSkippedFoldersWhenAllAreReady) {
  settings.UniqueEmailAddresses = false;
  settings.GetRowChunkSize = 1;
  for (int i = 0; i < 4; ++i) AddContact(second, "Extra " + std::to_string(i), {});
  Start(/*async=*/true);
  // The fills take turns; the first folder's (three activations) ends first.
  for (int i = 0; i < 10 && !Tracked(1)->Ready(); ++i) Tick();
  ASSERT_TRUE(Tracked(1)->Ready());
  ASSERT_FALSE(Tracked(2)->Ready());

  auto search = Search({"ann@x.example"});
  EXPECT_FALSE(search->Completed());
  EXPECT_TRUE(Logged("Searching folder First"));
  EXPECT_FALSE(Logged("Searching folder Second"));  // skipped without a line
  EXPECT_EQ(tracked->PendingSearchCount(), 1);
  EXPECT_THAT(*completions_, IsEmpty());

  RunQueue();
  EXPECT_TRUE(search->Completed());
  EXPECT_THAT(*completions_, ElementsAre(false));
  EXPECT_EQ(CountLines("Searching folder First"), 1);  // not searched twice
  EXPECT_THAT(Names(search->Results("ann@x.example")), ElementsAre("Ann One", "Ann Two"));
  EXPECT_EQ(tracked->PendingSearchCount(), 0);
}

TEST_F(ContactSearchTest, CompletesOnceAndAKilledSearchCompletesAsAborted) {
  Start(/*async=*/true);
  auto pending = Search({"ann@x.example"});
  auto pending_completions = completions_;
  pending->Kill();
  pending->Kill();
  EXPECT_THAT(*pending_completions, ElementsAre(true));
  EXPECT_EQ(tracked->PendingSearchCount(), 0);

  auto other = Search({"cy@x.example"});
  RunQueue();
  other->Kill();  // already complete: nothing more is raised
  EXPECT_THAT(*completions_, ElementsAre(false));
  EXPECT_THAT(*pending_completions, ElementsAre(true));
}

TEST_F(ContactSearchTest, NoAddressesOrAFolderThatDiesStillComplete) {
  Start(/*async=*/true);
  EXPECT_TRUE(tracked->Search(std::vector<std::string>{})->Completed());

  profile.Faults().FailAlways("MapiTable.GetRows", kMapiNetworkError, "Network error");
  auto search = Search({"cy@x.example"});
  RunQueue();
  EXPECT_EQ(tracked->FolderCount(), 0);
  EXPECT_TRUE(search->Completed());
  EXPECT_THAT(*completions_, ElementsAre(false));
}

}  // namespace
}  // namespace zintra::testing
