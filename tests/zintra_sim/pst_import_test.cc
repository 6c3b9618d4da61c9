// Import of real Outlook data files (tests/data/mail/pst, written by Outlook): their
// folders, contacts and mail, checked against what pffexport (pff-tools) lists for each
// file; and damaged and password-protected files.
#include <filesystem>
#include <fstream>
#include <random>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/error_of.h"
#include "tests/zintra_sim/cli_fixture.h"
#include "tools/zintra-sim/importer.h"
#include "tools/zintra-sim/input_error.h"
#include "tools/zintra-sim/outlook_store_reader.h"

namespace zintra::simtool {
namespace {

namespace fs = std::filesystem;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::UnorderedElementsAre;

std::string PstPath(const std::string& name) {
  return std::string(ZINTRA_TEST_DATA) + "/mail/pst/" + name;
}

const FolderSpec* FindFolder(const std::vector<FolderSpec>& folders, const std::string& name) {
  for (const FolderSpec& f : folders) {
    if (f.name == name) return &f;
  }
  return nullptr;
}

std::vector<std::string> FolderNames(const std::vector<FolderSpec>& folders) {
  std::vector<std::string> names;
  for (const FolderSpec& f : folders) names.push_back(f.name);
  return names;
}

TEST(PstImportTest, KeepsTheStoresFoldersWithTheirKindsAndReadsItsContact) {
  StoreReadResult r = ReadOutlookStore(PstPath("dist-list.pst"));
  // The folders below "Top of Personal Folders"; the search and view folders beside it
  // are not the user's.
  EXPECT_THAT(FolderNames(r.folders),
              UnorderedElementsAre("Junk E-mail", "Calendar", "Deleted Items", "RSS Feeds",
                                   "Journal", "Contacts", "Sent Items", "Notes", "Drafts", "Outbox",
                                   "Inbox", "Tasks"));
  // Container classes IPF.Appointment, IPF.Contact, IPF.Journal, IPF.StickyNote,
  // IPF.Task; IPF.Note (Junk E-mail, RSS Feeds' IPF.Note.OutlookHomepage) and none are mail.
  const std::pair<const char*, int32_t> kinds[] = {
      {"Calendar", kOlAppointmentItem}, {"Contacts", kOlContactItem},
      {"Journal", kOlJournalItem},      {"Notes", kOlNoteItem},
      {"Tasks", kOlTaskItem},           {"RSS Feeds", kOlMailItem},
      {"Junk E-mail", kOlMailItem},     {"Inbox", kOlMailItem},
      {"Deleted Items", kOlMailItem}};
  for (const auto& [name, kind] : kinds) {
    const FolderSpec* f = FindFolder(r.folders, name);
    ASSERT_NE(f, nullptr) << name;
    EXPECT_EQ(f->item_type, kind) << name;
  }
  EXPECT_EQ(r.mails, 0);
  ASSERT_EQ(r.contacts, 1);
  const FolderSpec* contacts = FindFolder(r.folders, "Contacts");
  ASSERT_EQ(contacts->items.size(), 1u);
  const ItemSpec& c = contacts->items[0];
  EXPECT_EQ(c.item_class, ItemClass::kContact);
  EXPECT_EQ(c.full_name, "contact name 1");
  EXPECT_THAT(c.emails, ElementsAre("contact1@rjohnson.id.au"));
  EXPECT_EQ(c.sensitivity, kOlNormal);
  // The distribution list and the appointment are counted, not imported.
  EXPECT_THAT(r.notes, ::testing::Contains(HasSubstr("2 items of other kinds")));
}

TEST(PstImportTest, ALocalisedStoreKeepsItsMailAtTheTopAndKnowsItsDeletedItems) {
  StoreReadResult r = ReadOutlookStore(PstPath("attachAndInline.pst"));
  // "削除済みアイテム" is the store's Deleted Items; the mail filed at the top of the
  // store ("Outlook データ ファイルのトップ") goes to the Inbox.
  EXPECT_THAT(FolderNames(r.folders), ElementsAre("Inbox", "Deleted Items"));
  ASSERT_EQ(r.mails, 1);
  const ItemSpec& m = FindFolder(r.folders, "Inbox")->items.at(0);
  EXPECT_EQ(m.subject, "Attach and inline");
  EXPECT_FALSE(m.from.has_value());  // never sent: no sender
  EXPECT_THAT(m.to, ElementsAre(PersonSpec{"xmailuser@xmailserver.test",
                                           "xmailuser@xmailserver.test", ""}));
  EXPECT_TRUE(m.cc.empty());
  // Not sent, so its time is when it was delivered to the store: 22:19:50.992 UTC.
  EXPECT_EQ(FormatIsoTime(m.time), "2021-07-27T22:19:50");
  EXPECT_EQ(m.sensitivity, kOlNormal);
  EXPECT_EQ(m.categories, "");
  ASSERT_EQ(m.attachments.size(), 2u);
  EXPECT_EQ(m.attachments[0].name, "attach.png");
  EXPECT_EQ(m.attachments[0].size, 1558);
  EXPECT_EQ(m.attachments[1].name, "image001.png");
  EXPECT_EQ(m.attachments[1].size, 809);
}

TEST(PstImportTest, AnAttachedOutlookMessageIsOneAttachment) {
  StoreReadResult r = ReadOutlookStore(PstPath("msgInMsg.pst"));
  ASSERT_EQ(r.mails, 1);
  const ItemSpec& m = FindFolder(r.folders, "Inbox")->items.at(0);
  EXPECT_EQ(m.subject, "I have attachments!");
  EXPECT_EQ(m.body, "I have attachments!\r\n");
  EXPECT_EQ(FormatIsoTime(m.time), "2020-09-10T10:18:08");
  ASSERT_EQ(m.attachments.size(), 2u);
  EXPECT_EQ(m.attachments[0].content_type, "message/rfc822");
  EXPECT_EQ(m.attachments[1].name, "green.png");
  EXPECT_EQ(m.attachments[1].size, 134);
}

TEST(PstImportTest, TheImportedMailboxHasTheStoresFoldersBesideItsOwn) {
  ImportResult r = Import({PstPath("dist-list.pst"), PstPath("msgInMsg.pst")},
                          PersonSpec{"Jane Doe", "jane@contoso.com", ""});
  EXPECT_EQ(r.contacts, 1);
  EXPECT_EQ(r.received, 1);
  const auto& folders = r.scenario.profile.stores.at(0).folders;
  // The mailbox's own folders first; a store's folders of those names are those folders.
  std::vector<std::string> names = FolderNames(folders);
  ASSERT_EQ(names.size(), 12u);
  EXPECT_THAT(std::vector<std::string>(names.begin(), names.begin() + 3),
              ElementsAre("Inbox", "Sent Items", "Contacts"));
  EXPECT_THAT(names, UnorderedElementsAre("Inbox", "Sent Items", "Contacts", "Junk E-mail",
                                          "Calendar", "Deleted Items", "RSS Feeds", "Journal",
                                          "Notes", "Drafts", "Outbox", "Tasks"));
  EXPECT_EQ(folders[0].items.at(0).subject, "I have attachments!");
  EXPECT_EQ(folders[2].items.at(0).full_name, "contact name 1");
  EXPECT_EQ(FindFolder(folders, "Calendar")->item_type, kOlAppointmentItem);
}

// Outlook data files that cannot be read: each fails naming the file, never otherwise.
TEST(PstImportTest, DamagedAndPasswordProtectedFilesFailByName) {
  std::optional<InputError> locked =
      Raised<InputError>([&] { ReadOutlookStore(PstPath("passworded.pst")); });
  ASSERT_TRUE(locked) << "read a password-protected store";
  EXPECT_EQ(locked->file(), PstPath("passworded.pst"));
  EXPECT_THAT(locked->what(), HasSubstr("password-protected"));
  std::ifstream in(PstPath("dist-list.pst"), std::ios::binary);
  const std::string good((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  ASSERT_EQ(good.size(), 271360u);
  fs::path dir = fs::path(::testing::TempDir()) / "pst-damaged";
  fs::create_directories(dir);
  auto write = [&](const std::string& bytes) {
    std::ofstream(dir / "bad.pst", std::ios::binary) << bytes;
    return (dir / "bad.pst").string();
  };
  // Cut short after the header, after the first pages; the header alone.
  for (size_t size : {size_t{600}, size_t{20000}, size_t{512}}) {
    std::string file = write(good.substr(0, size));
    try {
      ReadOutlookStore(file);
      ADD_FAILURE() << "read a store cut to " << size << " bytes";
    } catch (const InputError& e) {
      EXPECT_EQ(e.file(), file);
      EXPECT_THAT(e.what(), HasSubstr("damaged"));
    }
  }
  // Runs of bytes overwritten all over the file: read or refused, nothing else.
  std::mt19937 random(17);
  int refused = 0;
  for (int round = 0; round < 40; ++round) {
    std::string bytes = good;
    for (int hit = 0; hit < 8; ++hit) {
      size_t at = random() % (bytes.size() - 64);
      for (size_t i = 0; i < 64; ++i) bytes[at + i] = static_cast<char>(random());
    }
    try {
      ReadOutlookStore(write(bytes));
    } catch (const InputError&) {
      ++refused;
    } catch (const std::exception& e) {
      ADD_FAILURE() << "round " << round << ": " << e.what();
    }
  }
  SUCCEED() << refused << " of 40 refused";
}

class PstCliTest : public testing_support::CliFixture {};

// On the command line a password-protected store stops the import with exit code 2 and
// a message naming it; inside a folder it is named as not imported and the rest goes on.
TEST_F(PstCliTest, APasswordProtectedStoreIsNamedNeverSkippedSilently) {
  std::string scenario = (dir_ / "s.json").string();
  EXPECT_EQ(Run({"import", PstPath("passworded.pst"), "--out", scenario}), 2);
  EXPECT_THAT(err_, HasSubstr("passworded.pst"));
  EXPECT_THAT(err_, HasSubstr("password-protected"));
  EXPECT_FALSE(fs::exists(scenario));

  fs::create_directories(dir_ / "export");
  fs::copy_file(PstPath("passworded.pst"), dir_ / "export" / "old.pst");
  fs::copy_file(PstPath("msgInMsg.pst"), dir_ / "export" / "mail.pst");
  EXPECT_EQ(Run({"import", (dir_ / "export").string(), "--out", scenario}), 0) << err_;
  EXPECT_THAT(err_, HasSubstr("old.pst"));
  EXPECT_THAT(err_, HasSubstr("not imported"));
  EXPECT_EQ(Run({"run", scenario, "--out", Out(), "--quiet"}), 0) << out_ << err_;
}

// A real Outlook item of another kind (a sticky note) is refused by name, not skipped.
TEST_F(PstCliTest, AnOutlookItemThatIsNoMailOrContactIsNamed) {
  std::string note = std::string(ZINTRA_TEST_DATA) + "/mail/msg/note.msg";
  EXPECT_EQ(Run({"import", note, "--out", (dir_ / "s.json").string()}), 2);
  EXPECT_THAT(err_, HasSubstr("note.msg"));
  EXPECT_THAT(err_, HasSubstr("IPM.StickyNote"));
}

}  // namespace
}  // namespace zintra::simtool
