// The link lists an item keeps of its copies.
#include "src/logging/logged_items_link.h"

#include <gtest/gtest.h>

#include "src/host/outlook_folder.h"
#include "src/host/outlook_item.h"
#include "tests/logging/logging_env.h"

namespace zintra::testing_support {
namespace {

class LoggedItemsLinkTest : public ::testing::Test {
 protected:
  LoggedItemsLinkTest() { env.Start(); }
  std::shared_ptr<Item> NewItem(const std::shared_ptr<sim::FolderRecord>& folder,
                                const std::string& subject) {
    return env.ItemOf(env.builder.Item(folder, ItemClass::kJournal, subject));
  }
  LoggingEnv env;
};

TEST_F(LoggedItemsLinkTest, LinksAreAppendedInOrderAndLineUpWithTheirStores) {
  auto original = NewItem(env.builder.Default(kOlFolderJournal), "Call");
  auto elsewhere = env.builder.PersonalFolders();
  std::vector<std::shared_ptr<Item>> copies = {
      NewItem(env.builder.Default(kOlFolderJournal), "Copy 1"), NewItem(elsewhere, "Copy 2"),
      NewItem(env.builder.Default(kOlFolderJournal), "Copy 3")};

  LoggedItemsLink link(env.utils);
  link.InitializeLogged(original);
  EXPECT_FALSE(link.HasLinks());
  EXPECT_FALSE(link.Validate());
  link.LinkToItem(copies[0]);
  EXPECT_EQ(link.LinkedEntryIDs().ToStringArray().size(), 1u);
  link.LinkToItem(copies[1]);
  link.LinkToItem(copies[2]);

  // Read back through a fresh object over the stored message.
  LoggedItemsLink reread(env.utils);
  reread.InitializeLogged(env.app->Session()->GetItemFromID(original->EntryID()));
  ASSERT_TRUE(reread.Validate());
  auto links = reread.Links();
  ASSERT_EQ(links.size(), 3u);
  for (size_t i = 0; i < 3; ++i) {
    EXPECT_EQ(links[i].first, copies[i]->EntryID());
    EXPECT_EQ(links[i].second, copies[i]->Parent()->StoreID());
  }
  EXPECT_NE(links[0].second, links[1].second);
  // The shared pair is a list of its own.
  LoggedItemsLink shared(env.utils);
  shared.InitializeShared(original);
  EXPECT_FALSE(shared.HasLinks());
}

TEST_F(LoggedItemsLinkTest, SameCopyTwiceIsListedTwice) {
  auto original = NewItem(env.builder.Default(kOlFolderJournal), "Call");
  auto copy = NewItem(env.builder.Default(kOlFolderJournal), "Copy");
  LoggedItemsLink link(env.utils);
  link.InitializeShared(original);
  link.LinkToItem(copy);
  link.LinkToItem(copy);
  auto links = link.Links();
  ASSERT_EQ(links.size(), 2u);
  EXPECT_EQ(links[0], links[1]);
}

TEST_F(LoggedItemsLinkTest, EntryListWithoutStoreListHasLinksButDoesNotValidate) {
  auto original = NewItem(env.builder.Default(kOlFolderJournal), "Call");
  env.utils.SetNamedProp(original->MAPIOBJECT(), Value(std::string(kPropLoggedEntryIds)),
                         Value(Value::StringArray{"00AB"}), kPtMvString8, true);
  LoggedItemsLink link(env.utils);
  link.InitializeLogged(original);
  EXPECT_TRUE(link.HasLinks());
  EXPECT_FALSE(link.Validate());
  EXPECT_TRUE(link.Links().empty());
  // Lists of different lengths do not line up either.
  env.utils.SetNamedProp(original->MAPIOBJECT(), Value(std::string(kPropLoggedStoreIds)),
                         Value(Value::StringArray{"S1", "S2"}), kPtMvString8, true);
  EXPECT_FALSE(link.Validate());
  // A new link evens them out again.
  link.LinkToItem(NewItem(env.builder.Default(kOlFolderJournal), "Copy"));
  EXPECT_TRUE(link.Validate());
  EXPECT_EQ(link.Links().size(), 3u);
}

}  // namespace
}  // namespace zintra::testing_support
