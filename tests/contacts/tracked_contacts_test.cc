#include "src/contacts/tracked_contacts.h"

#include "tests/contacts/contacts_env.h"
#include "tests/support/error_of.h"

namespace zintra::testing {
namespace {

using ::testing::ElementsAre;

struct FilterCase {
  const char* name;
  bool ignore_private;
  const char* setting;
  const char* categories;
  int32_t sensitivity;
  bool tracked;
};

class ShouldTrackTest : public ContactsTest, public ::testing::WithParamInterface<FilterCase> {};

TEST_P(ShouldTrackTest, AppliesSensitivityThenCategories) {
  const FilterCase& c = GetParam();
  auto folder = FolderOf(builder.Default(kOlFolderContacts));
  auto contact = AddContact(folder, "Pat", {"pat@x.example"}, c.categories, c.sensitivity);
  settings.IgnorePrivateContacts = c.ignore_private;
  settings.TrackedContactCategories = c.setting;
  Start();
  EXPECT_EQ(tracked->ShouldTrack(contact), c.tracked);
}

INSTANTIATE_TEST_SUITE_P(
    Filters, ShouldTrackTest,
    ::testing::Values(
        FilterCase{"NoFilter", true, "", "", 0, true},
        FilterCase{"BlanksAndCaseIgnored", true, "Customers, Suppliers", "suppliers", 0, true},
        FilterCase{"StrayBlanksAndCommas", true, " ,Customers,, ", " , customers ", 0, true},
        FilterCase{"OnlyCommasFiltersNothing", true, " , ,", "", 0, true},
        FilterCase{"NoCategoriesWhileFiltered", true, "Customers", "", 0, false},
        FilterCase{"OtherCategory", true, "Customers", "Press, Family", 0, false},
        FilterCase{"PrivateIgnored", true, "", "", kOlPrivate, false},
        FilterCase{"PersonalIgnored", true, "", "", kOlPersonal, false},
        FilterCase{"ConfidentialIgnored", true, "", "", kOlConfidential, false},
        FilterCase{"PrivateTrackedWhenSettingOff", false, "", "", kOlPrivate, true},
        FilterCase{"PrivateBeforeCategories", true, "Customers", "Customers", kOlPrivate, false}),
    [](const auto& test_info) { return std::string(test_info.param.name); });

class TrackedContactsTest : public ContactsTest {
 protected:
  void SetUp() override {
    first = AddContactFolder("First");
    second = AddContactFolder("Second");
    AddContact(first, "Ann", {"ann@x.example"});
    AddContact(second, "Bob", {"bob@x.example"});
    Configure({first, second});
  }
  std::shared_ptr<Folder> first, second;
};

TEST_F(TrackedContactsTest, BuildsOneFolderPerSetInTheOrderOfTheSettings) {
  Start();
  ASSERT_EQ(tracked->FolderCount(), 2);
  EXPECT_EQ(tracked->ReadyFolderCount(), 2);
  EXPECT_EQ(Tracked(1)->Name(), "First");
  EXPECT_EQ(Tracked(2)->Name(), "Second");
  EXPECT_EQ(tracked->FoldersetFor(app->Session()->GetFolderFromID(second->EntryID())), Tracked(2));
  EXPECT_TRUE(tracked->IsTrackedFolder(first));
  EXPECT_FALSE(tracked->IsTrackedFolder(AddContactFolder("Untracked")));
  EXPECT_FALSE(tracked->IsTrackedFolder(nullptr));
  ASSERT_EQ(contacts_addin->lingers.size(), 1u);
}

TEST_F(TrackedContactsTest, RebuildKeepsTheCachesOfFoldersThatStayConfigured) {
  Start();
  auto kept = Tracked(1);
  auto dropped = Tracked(2);
  const int fills = CountLines("Cache for folder 'First' beginning refresh process.");
  Configure({first});
  tracked->Addin_RegSettingsChanged(settings);
  ASSERT_EQ(tracked->FolderCount(), 1);
  EXPECT_EQ(Tracked(1), kept);
  EXPECT_TRUE(kept->Cached());
  EXPECT_FALSE(kept->Killed());
  EXPECT_TRUE(dropped->Killed());
  EXPECT_EQ(CountLines("Cache for folder 'First' beginning refresh process."), fills);

  // Reordered and extended: the order follows the settings, the kept folder stays.
  Configure({second, first});
  tracked->Addin_RegSettingsChanged(settings);
  ASSERT_EQ(tracked->FolderCount(), 2);
  EXPECT_EQ(Tracked(1)->Name(), "Second");
  EXPECT_EQ(Tracked(2), kept);
}

TEST_F(TrackedContactsTest, SetsThatCannotBeOpenedAreLeftOutAndReportedOnce) {
  Configure({first, second});
  settings.ContactFolderEntryIDs.Item(2) = "00000000DEADBEEF";
  settings.FoldersetCount = 3;  // the third set's identifiers are blank
  settings.ContactFolderEntryIDs.Add("");
  settings.ContactFolderStoreIDs.Add("");
  Start();
  EXPECT_EQ(tracked->FolderCount(), 1);
  ASSERT_EQ(contacts_addin->shown.size(), 1u);
  EXPECT_EQ(contacts_addin->shown[0].dialog, 2);
  EXPECT_EQ(contacts_addin->shown[0].message, contacts_addin->Strings().Load(1101));
  EXPECT_EQ(contacts_addin->shown[0].caption, contacts_addin->Strings().Load(2));
  ASSERT_EQ(Errors().size(), 2u);
  EXPECT_EQ(Errors()[1].text, "EntryID or StoreID parameter is blank");
}

TEST_F(TrackedContactsTest, SharingQueriesAndSetFoldersFollowTheSettings) {
  auto journal = FolderOf(builder.Folder("Shared Journal", kOlJournalItem));
  Start();
  EXPECT_FALSE(tracked->JournalSharingActive());
  settings.SharedJournalEntryIDs.Clear();
  settings.SharedJournalStoreIDs.Clear();
  settings.SharedJournalEntryIDs.Add("");
  settings.SharedJournalStoreIDs.Add("");
  settings.SharedJournalEntryIDs.Add(journal->EntryID());
  settings.SharedJournalStoreIDs.Add(journal->StoreID());
  settings.FoldersetFlags.Item(2) = 3;
  tracked->Addin_RegSettingsChanged(settings);
  EXPECT_TRUE(tracked->JournalSharingActive());
  EXPECT_FALSE(tracked->CalendarSharingActive());
  EXPECT_FALSE(tracked->TaskSharingActive());
  EXPECT_EQ(Tracked(2)->SharedJournal()->Name(), "Shared Journal");
  EXPECT_TRUE(Tracked(2)->Flag_LeavePersonalCopy());
}

TEST_F(TrackedContactsTest, SearchWithoutAddressesIsRefused) {
  Start();
  std::optional<ZError> e = Raised([&] { tracked->Search(nullptr); });
  ASSERT_TRUE(e);
  EXPECT_EQ(e->Number(), kErrInvalidCall);
  EXPECT_EQ(e->Description(), "No emails to search specified");
}

TEST_F(TrackedContactsTest, LingeringFoldersAndSearchesAreReported) {
  settings.GetRowChunkSize = 1;
  Start(/*async=*/true);
  auto search = tracked->Search(std::vector<std::string>{"ann@x.example"});
  tracked->CheckLingeringRefs();
  EXPECT_THAT(Lines("Warning"),
              ElementsAre("Lingering pTrackedFoldersets object for \"First\" exists in "
                          "TrackedContacts CheckLinger",
                          "Lingering pTrackedFoldersets object for \"Second\" exists in "
                          "TrackedContacts CheckLinger",
                          "Lingering pSearches objects exist in TrackedContacts CheckLinger"));
  tracked->Kill();
  recorder.lines.clear();
  tracked->CheckLingeringRefs();
  EXPECT_TRUE(Lines("Warning").empty());
  EXPECT_TRUE(search->Aborted());
}

}  // namespace
}  // namespace zintra::testing
