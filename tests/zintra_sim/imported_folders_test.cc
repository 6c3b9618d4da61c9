// How an imported mailbox's folders are put together: a data file's nested folders
// merged by name with the mailbox's own and with another file's, the user's own mail
// taken out wherever it was filed, each folder in date order, untracked contact folders
// named.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tools/zintra-sim/imported_folders.h"

namespace zintra::simtool {
namespace {

using ::testing::ElementsAre;

ItemSpec MailFrom(const std::string& subject, const std::string& smtp, double time) {
  ItemSpec m;
  m.subject = subject;
  m.from = PersonSpec{"", smtp, ""};
  m.time = time;
  return m;
}

ItemSpec ContactNamed(const std::string& name) {
  ItemSpec c;
  c.item_class = ItemClass::kContact;
  c.full_name = c.subject = name;
  return c;
}

std::vector<std::string> Subjects(const FolderSpec& f) {
  std::vector<std::string> out;
  for (const ItemSpec& i : f.items) out.push_back(i.subject);
  return out;
}

TEST(ImportedFoldersTest, NestedFoldersMergeByNameAndTheUsersMailIsTakenOutEverywhere) {
  const PersonSpec me{"Jane Doe", "jane@contoso.com", ""};
  std::vector<FolderSpec> mailbox = {
      {"Inbox", kOlMailItem, {}, {MailFrom("loose", "ann@fabrikam.com", 30)}},
      {"Sent Items", kOlMailItem, {}, {}},
      {"Contacts", kOlContactItem, {}, {ContactNamed("Ann Lee")}}};
  // One data file: Inbox/Projects/2025 nested, a contact folder below Contacts.
  FolderSpec year{"2025", kOlMailItem, {}, {MailFrom("old", "tom@contoso.com", 5)}};
  FolderSpec projects{"Projects", kOlMailItem, {year}, {MailFrom("mine", "JANE@contoso.com", 7)}};
  FolderSpec suppliers{"Suppliers", kOlContactItem, {}, {ContactNamed("Wingtip Toys")}};
  std::vector<FolderSpec> first = {
      {"inbox", kOlMailItem, {projects}, {MailFrom("early", "ann@fabrikam.com", 10)}},
      {"Contacts", kOlContactItem, {suppliers}, {}}};
  // Another data file with the same Projects folder and one of its own.
  std::vector<FolderSpec> second = {
      {"Inbox",
       kOlMailItem,
       {{"projects", kOlMailItem, {}, {MailFrom("later", "ann@fabrikam.com", 9)}}},
       {}},
      {"Clients", kOlContactItem, {}, {ContactNamed("Contoso")}}};
  MergeFolders(mailbox, std::move(first));
  MergeFolders(mailbox, std::move(second));

  std::vector<ItemSpec> sent;
  std::vector<std::string> other_contacts;
  SettleFolders(mailbox, me, sent, other_contacts);

  ASSERT_EQ(mailbox.size(), 4u);
  EXPECT_EQ(mailbox[3].name, "Clients");
  const FolderSpec& inbox = mailbox[0];
  EXPECT_EQ(inbox.name, "Inbox");                               // the mailbox's own name stays
  EXPECT_THAT(Subjects(inbox), ElementsAre("early", "loose"));  // by date
  ASSERT_EQ(inbox.folders.size(), 1u);
  const FolderSpec& merged = inbox.folders[0];
  EXPECT_EQ(merged.name, "Projects");
  EXPECT_THAT(Subjects(merged), ElementsAre("later"));  // "mine" was taken out
  ASSERT_EQ(merged.folders.size(), 1u);
  EXPECT_THAT(Subjects(merged.folders[0]), ElementsAre("old"));
  EXPECT_THAT(Subjects(mailbox[2]), ElementsAre("Ann Lee"));
  ASSERT_EQ(mailbox[2].folders.size(), 1u);
  EXPECT_EQ(mailbox[2].folders[0].item_type, kOlContactItem);

  ASSERT_EQ(sent.size(), 1u);
  EXPECT_EQ(sent[0].subject, "mine");
  EXPECT_THAT(other_contacts, ElementsAre("Contacts/Suppliers", "Clients"));
}

}  // namespace
}  // namespace zintra::simtool
