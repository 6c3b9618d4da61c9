#include "src/outlook/folder_helpers.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "src/outlook/vb_app_object.h"
#include "tests/outlook/outlook_fixture.h"

namespace zintra::testing_support {
namespace {

class FolderHelpersTest : public OutlookTest {
 protected:
  // A chain of `depth` folders "L1".."L<depth>" under the mailbox; returns the deepest.
  std::shared_ptr<Folder> Chain(int depth, const std::string& prefix = "L") {
    std::shared_ptr<sim::FolderRecord> folder;
    for (int i = 1; i <= depth; ++i) {
      folder = builder_.Folder(prefix + std::to_string(i), kOlMailItem, folder);
    }
    return F(folder);
  }
};

TEST_F(FolderHelpersTest, PathNamesEveryFolderFromTheStoreDown) {
  EXPECT_EQ(FullMAPIPathName(F(builder_.Default(kOlFolderInbox))), "\\Mailbox - Jane Doe\\Inbox");
  EXPECT_EQ(FullMAPIPathName(F(host_.profile.DefaultStore()->root)), "\\Mailbox - Jane Doe");
  EXPECT_EQ(Foldername(F(builder_.Default(kOlFolderInbox))), "Inbox");
}

TEST_F(FolderHelpersTest, DeepPathsAreCutAfterFiftyLevels) {
  std::string path = FullMAPIPathName(Chain(60));
  EXPECT_EQ(path.rfind("...\\L10\\L11\\", 0), 0u) << path;
  EXPECT_TRUE(path.ends_with("\\L59\\L60")) << path;
  EXPECT_EQ(std::count(path.begin(), path.end(), '\\'), 51);
  // Fifty parents exactly: the walk reaches the top and nothing is cut.
  std::string whole = FullMAPIPathName(Chain(49, "M"));
  EXPECT_EQ(whole.rfind("\\Mailbox - Jane Doe\\M1\\", 0), 0u) << whole;
}

TEST_F(FolderHelpersTest, AParentThatCannotBeReadEndsTheWalk) {
  auto inbox = F(builder_.Default(kOlFolderInbox));
  host_.profile.Faults().FailAlways("Folder.Parent", kMapiNetworkError);
  EXPECT_EQ(FullMAPIPathName(inbox), "\\Inbox");
  EXPECT_EQ(RootFolder(inbox)->Name(), "Inbox");
}

TEST_F(FolderHelpersTest, PublicFoldersAreRecognisedByTheLocalisedName) {
  auto all_public = builder_.PublicFolders();
  auto shared = F(host_.profile.AddFolder(all_public, "Shared Journal", kOlJournalItem));
  EXPECT_TRUE(IsPublicFolder(shared, strings_));
  EXPECT_FALSE(IsPublicFolder(F(builder_.Default(kOlFolderJournal)), strings_));
  EXPECT_FALSE(IsPublicFolder(shared, StringTable(Language::kFrench)));  // "Dossiers publics"
  EXPECT_EQ(RootFolder(shared)->Name(), "Public Folders");
}

TEST_F(FolderHelpersTest, PersonalStoreRootIsTheTopOfTheDefaultStore) {
  builder_.PersonalFolders("Archive");
  auto root = PersonalStoreRoot(*host_.application->Session());
  EXPECT_EQ(root->Name(), "Mailbox - Jane Doe");
  EXPECT_EQ(root->EntryID(), F(host_.profile.DefaultStore()->root)->EntryID());
}

TEST_F(FolderHelpersTest, FoldersSameBySearchKeyOrElseByEntryId) {
  auto session = host_.application->Session();
  auto inbox1 = session->GetDefaultFolder(kOlFolderInbox);
  auto inbox2 = session->GetFolderFromID(inbox1->EntryID(), inbox1->StoreID());
  auto sent = session->GetDefaultFolder(kOlFolderSentMail);
  EXPECT_TRUE(FoldersSame(inbox1, inbox2, utils_, errors_));
  EXPECT_FALSE(FoldersSame(inbox1, sent, utils_, errors_));
  EXPECT_FALSE(FoldersSame(inbox1, nullptr, utils_, errors_));
  EXPECT_TRUE(log_.lines.empty());

  host_.profile.Faults().FailAlways("MapiUtils.HrGetOneProp", kMapiNoAccess);
  EXPECT_TRUE(FoldersSame(inbox1, inbox2, utils_, errors_));
  EXPECT_FALSE(FoldersSame(inbox1, sent, utils_, errors_));
  ASSERT_EQ(log_.lines.size(), 2u);
  EXPECT_EQ(log_.lines[1].text,
            "Using EntryID's to compare '\\Mailbox - Jane Doe\\Inbox' to '\\Mailbox - Jane "
            "Doe\\Sent Items' because of failure reading PR_SEARCH_KEY");
}

TEST_F(FolderHelpersTest, GlobalApplicationIsTheConnectedOneOrCreatedOnce) {
  VbAppObject app(host_.factory);
  auto first = app.Get();
  EXPECT_EQ(first, app.Get());
  EXPECT_EQ(std::count(host_.factory.Requests().begin(), host_.factory.Requests().end(),
                       std::string("Outlook.Application")),
            1);
  EXPECT_EQ(first->Version(), "11.0.0.8312");
}

}  // namespace
}  // namespace zintra::testing_support
