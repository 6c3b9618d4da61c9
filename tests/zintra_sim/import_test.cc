// Import of real exported contacts and mail (the sample files in tests/data/mail), and of
// bad files.
#include <filesystem>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tools/zintra-sim/importer.h"
#include "tools/zintra-sim/input_error.h"
#include "tools/zintra-sim/mime_reader.h"
#include "tools/zintra-sim/scenario_reader.h"
#include "tools/zintra-sim/vcard_reader.h"

namespace zintra::simtool {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

std::string Samples() {
  std::string path = std::string(ZINTRA_TEST_DATA) + "/mail";
  if (!std::filesystem::is_directory(path))
    ADD_FAILURE() << "The sample mail folder is missing: looked in '" << path << "'";
  return path;
}

std::vector<ItemSpec> Cards(const std::string& name) {
  std::string file = Samples() + "/vcf/" + name;
  return ReadVCards(ReadWholeFile(file), file);
}

TEST(VCardImportTest, ReadsNamesAddressesCategoriesAndCompanies) {
  auto gmail = Cards("gmail-single2.vcf");
  ASSERT_EQ(gmail.size(), 1u);
  EXPECT_EQ(gmail[0].full_name, "VCard Test");
  // Grouped "item1.EMAIL" is an address like the others; all five are kept in order.
  EXPECT_THAT(gmail[0].emails,
              ElementsAre("email@example.com", "homeemail@example.com", "workemail@example.com",
                          "otheremail@example.com", "customcategory@example.com"));
  auto list = Cards("gmail-list.vcf");
  ASSERT_EQ(list.size(), 3u);
  EXPECT_EQ(list[2].full_name, "Doug White");
  auto outlook21 = Cards("Gmail_contact.vcf");
  ASSERT_EQ(outlook21.size(), 1u);
  EXPECT_EQ(outlook21[0].company, "CompanyName");  // the organisation, not the unit
  auto photo = Cards("Contact.vcf");               // a folded base64 photo is skipped
  ASSERT_EQ(photo.size(), 1u);
  EXPECT_THAT(photo[0].emails, ElementsAre("user@domain.com"));
  auto full = Cards("fullcontact.vcf");
  ASSERT_EQ(full.size(), 1u);
  EXPECT_EQ(full[0].company, "Organization1");
  EXPECT_FALSE(full[0].categories.empty());
}

TEST(VCardImportTest, DecodesTheEncodingsOfEachVersion) {
  auto cards = ReadVCards(
      "BEGIN:VCARD\r\nVERSION:2.1\r\nN;CHARSET=ISO-8859-1;ENCODING=QUOTED-PRINTABLE:M=FCller;J=\r\n"
      "=FCrgen\r\nEMAIL;INTERNET:j@x.de\r\nEMAIL;PREF;INTERNET:juergen@x.de\r\nCLASS:PRIVATE\r\n"
      "END:VCARD\r\n"
      "BEGIN:VCARD\nVERSION:4.0\nFN:Lee\\, Ann\nCATEGORIES:Customers,Key\\, Accounts\nORG:Fab"
      "\n rikam;Sales\nEMAIL:mailto:ann@fabrikam.com\nCLASS:CONFIDENTIAL\nEND:VCARD\n",
      "t.vcf");
  ASSERT_EQ(cards.size(), 2u);
  EXPECT_EQ(cards[0].full_name, "Jürgen Müller");
  EXPECT_THAT(cards[0].emails, ElementsAre("juergen@x.de", "j@x.de"));  // preferred first
  EXPECT_EQ(cards[0].sensitivity, kOlPrivate);
  EXPECT_EQ(cards[1].full_name, "Lee, Ann");
  EXPECT_EQ(cards[1].categories, "Customers, Key, Accounts");
  EXPECT_EQ(cards[1].company, "Fabrikam");
  EXPECT_THAT(cards[1].emails, ElementsAre("ann@fabrikam.com"));
  EXPECT_EQ(cards[1].sensitivity, kOlConfidential);
}

TEST(VCardImportTest, BadCardsNameTheLine) {
  struct Case {
    const char* text;
    int line;
    const char* message;
  } cases[] = {
      {"BEGIN:VCARD\nVERSION:3.0\nFN:A\nEMAIL a@b.c\nEND:VCARD\n", 4, "expected a vCard line"},
      {"\nFN:A\n", 2, "expected BEGIN:VCARD"},
      {"BEGIN:VCARD\nVERSION:5.0\nEND:VCARD\n", 2, "expected 2.1, 3.0 or 4.0"},
      {"BEGIN:VCARD\nVERSION:3.0\nFN:A\n", 1, "not closed by END:VCARD"},
      {"BEGIN:VCARD\nVERSION:3.0\nTEL:1\nEND:VCARD\n", 1, "no name"},
      {"BEGIN:VCARD\nFN:A\nBEGIN:VCARD\n", 3, "expected END:VCARD first"},
  };
  for (const Case& c : cases) {
    try {
      ReadVCards(c.text, "bad.vcf");
      ADD_FAILURE() << "accepted: " << c.text;
    } catch (const InputError& e) {
      EXPECT_EQ(e.line(), c.line) << e.what();
      EXPECT_THAT(e.what(), HasSubstr(c.message));
      EXPECT_THAT(e.what(), HasSubstr("bad.vcf:"));
    }
  }
}

TEST(MailImportTest, ReadsHeadersEncodedWordsAndAttachments) {
  std::string dir = Samples() + "/eml/";
  auto read = [&](const std::string& name) {
    return ReadEml(ReadWholeFile(dir + name), dir + name).items.at(0);
  };
  ItemSpec japanese = read("japanese.txt");
  EXPECT_THAT(japanese.subject, HasSubstr("日本語"));
  ItemSpec attached = read("Attachments.eml");
  ASSERT_EQ(attached.attachments.size(), 1u);
  EXPECT_EQ(attached.attachments[0].name, "License.txt");
  EXPECT_GT(attached.attachments[0].size, 0);
  ItemSpec headers = read("emlWithHeaders.eml");
  EXPECT_TRUE(headers.from.has_value());
  EXPECT_FALSE(headers.to.empty());
  EXPECT_NE(headers.time, kUnsetDate);
  EXPECT_EQ(read("delivery-status.txt").item_class, ItemClass::kReport);
  EXPECT_EQ(read("TestAppointment.eml").item_class, ItemClass::kMeeting);
  // Folded display names are shown on one line.
  for (const PersonSpec& p : read("tnefWithMsgInside.eml").to) {
    EXPECT_EQ(p.name.find('\n'), std::string::npos) << p.name;
  }
}

TEST(MailImportTest, ExchangeAddressesStayAsTheyAre) {
  auto r = ReadEml(
      "From: Tom Baker </O=CONTOSO/OU=FIRST ADMINISTRATIVE GROUP/CN=RECIPIENTS/CN=TBAKER>\n"
      "To: ann@fabrikam.com, undisclosed-recipients:;\nSubject: =?UTF-8?B?w6l0w6k=?=\n"
      "Date: Mon, 5 Jan 2026 09:00:00 +0100\n\nHello\n",
      "x.eml");
  const ItemSpec& m = r.items.at(0);
  EXPECT_EQ(m.from->exchange, "/O=CONTOSO/OU=FIRST ADMINISTRATIVE GROUP/CN=RECIPIENTS/CN=TBAKER");
  EXPECT_EQ(m.subject, "été");
  EXPECT_EQ(FormatIsoTime(m.time), "2026-01-05T08:00:00");
  ASSERT_EQ(m.to.size(), 1u);
  EXPECT_EQ(m.body, "Hello\n");
}

TEST(MailImportTest, MboxKeepsUnescapedFromLinesInBodies) {
  std::string dir = Samples() + "/mbox/";
  auto count = [&](const std::string& name) {
    return ReadMbox(ReadWholeFile(dir + name), dir + name).items.size();
  };
  EXPECT_EQ(count("unmunged.mbox.txt"), 2u);
  EXPECT_EQ(count("simple.mbox.txt"), 3u);
  EXPECT_EQ(count("issue1189.mbox.txt"), 4u);
  auto r = ReadMbox(ReadWholeFile(dir + "unmunged.mbox.txt"), "u");
  EXPECT_THAT(r.items[0].body, HasSubstr("From Russia with love"));
  EXPECT_EQ(r.items[1].source_line, 13);
}

TEST(MailImportTest, BadMailFilesAreNamed) {
  EXPECT_THROW(ReadEml("just some text without headers\n", "n.eml"), InputError);
  try {
    ReadMbox("Subject: no marker\n\nbody\n", "n.mbox");
    ADD_FAILURE();
  } catch (const InputError& e) {
    EXPECT_THAT(e.what(), HasSubstr("n.mbox:1: expected an mbox file"));
  }
}

TEST(ImportTest, MailGoesToInboxOrSentItemsAndContactsAreTracked) {
  std::string dir = Samples();
  ImportResult r = Import({dir + "/vcf", dir + "/mbox/simple.mbox.txt"},
                          PersonSpec{"Fejj", "fejj@gnome.org", ""});
  EXPECT_EQ(r.contacts, 10);
  EXPECT_EQ(r.sent + r.received, 3);
  EXPECT_GT(r.sent, 0);  // mail from the user
  const auto& folders = r.scenario.profile.stores[0].folders;
  EXPECT_EQ(folders[0].name, "Inbox");
  EXPECT_EQ(folders[1].name, "Sent Items");
  EXPECT_EQ(folders[2].item_type, kOlContactItem);
  ASSERT_EQ(r.scenario.foldersets.size(), 1u);
  EXPECT_EQ(r.scenario.foldersets[0].contacts, "Contacts");
  // A missing path fails before anything is produced.
  EXPECT_THROW(Import({dir + "/vcf", "/no/such/file.eml"}, std::nullopt), InputError);
}

}  // namespace
}  // namespace zintra::simtool
