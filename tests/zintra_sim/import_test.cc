// Import of real exported contacts and mail (the sample files in tests/data/mail), and of
// bad files.
#include <filesystem>
#include <fstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/error_of.h"
#include "tools/zintra-sim/importer.h"
#include "tools/zintra-sim/input_error.h"
#include "tools/zintra-sim/mime_reader.h"
#include "tools/zintra-sim/scenario_reader.h"
#include "tools/zintra-sim/scenario_writer.h"
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

// A fresh folder holding the given files (name -> bytes).
std::string Folder(const std::string& name, const std::map<std::string, std::string>& files) {
  std::filesystem::path dir = std::filesystem::path(::testing::TempDir()) / ("import-" + name);
  std::filesystem::remove_all(dir);
  std::filesystem::create_directories(dir);
  for (const auto& [file, bytes] : files) {
    std::ofstream(dir / file, std::ios::binary) << bytes;
  }
  return dir.string();
}

ItemSpec Mail(const std::string& text) { return ReadEml(text, "t.eml").items.at(0); }

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

// RFC 2156's Sensitivity header, as Outlook writes it into the mail it sends.
TEST(MailImportTest, ReadsTheSensitivityHeader) {
  const std::pair<const char*, int32_t> cases[] = {{"Personal", kOlPersonal},
                                                   {"private", kOlPrivate},
                                                   {"Company-Confidential", kOlConfidential},
                                                   {"Secret", kOlNormal}};
  for (const auto& [value, expected] : cases) {
    ItemSpec m = Mail(std::string("From: a@b.c\nSubject: s\nSensitivity: ") + value + "\n\nx\n");
    EXPECT_EQ(m.sensitivity, expected) << value;
  }
  EXPECT_EQ(Mail("From: a@b.c\nSubject: s\n\nx\n").sensitivity, kOlNormal);
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
  std::optional<InputError> e =
      Raised<InputError>([&] { ReadMbox("Subject: no marker\n\nbody\n", "n.mbox"); });
  ASSERT_TRUE(e);
  EXPECT_THAT(e->what(), HasSubstr("n.mbox:1: expected an mbox file"));
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

TEST(RealFileImportTest, EightBitTextWithoutCharsetIsReadAsWindows1252) {
  // A Latin-1 body and subject with no charset, a Latin-1 card without CHARSET.
  std::string dir = Folder(
      "8bit",
      {
          {"old.eml",
           "From: a@b.c\nSubject: caf\xE9\nDate: Mon, 5 Jan 2026 09:00:00 +0000\n\n"
           "d\xE9j\xE0 vu \x80 5\n"},
          {"card.vcf", "BEGIN:VCARD\r\nVERSION:2.1\r\nN:M\xFCller;J\xFCrgen\r\nEND:VCARD\r\n"},
      });
  ImportResult r = Import({dir}, PersonSpec{"A", "a@b.c", ""});
  EXPECT_NO_THROW(ScenarioJson(r.scenario).dump());
  // The user's own mail is sent in the timeline, after Outlook starts.
  ASSERT_GE(r.scenario.timeline.size(), 2u);
  ASSERT_EQ(r.scenario.timeline[1].kind, StepKind::kSend);
  ASSERT_TRUE(r.scenario.timeline[1].item.has_value());
  const ItemSpec& mail = *r.scenario.timeline[1].item;
  EXPECT_EQ(mail.subject, "café");
  EXPECT_EQ(mail.body, "déjà vu € 5\n");
  EXPECT_EQ(r.scenario.profile.stores[0].folders[2].items.at(0).full_name, "Jürgen Müller");
  ASSERT_EQ(r.notes.size(), 2u);  // per file
  EXPECT_THAT(r.notes[0], HasSubstr("card.vcf: 1 value"));
  EXPECT_THAT(r.notes[1], HasSubstr("old.eml: 1 message has 8-bit text"));
  // A part without a charset takes the one the mail declares; UTF-8 stays as it is.
  ItemSpec declared = Mail(
      "From: a@b.c\nContent-Type: multipart/mixed; boundary=x\n\n--x\nContent-Type: text/plain\n\n"
      "\xB1\n--x\nContent-Type: text/plain; charset=iso-8859-2; name=a.txt\n\n\xB1\n--x--\n");
  EXPECT_EQ(declared.body, "ą");  // the line end before a boundary is the boundary's
  EXPECT_EQ(Mail("From: a@b.c\n\nd\xC3\xA9j\xC3\xA0\n").body, "déjà\n");
}

TEST(RealFileImportTest, EveryAddressIsKeptAsTheMailGivesIt) {
  // A 1991 mail: local addresses, no Date header, its date on the mbox "From " line.
  MailReadResult old = ReadMbox(
      "From abel Tue Mar 12 10:31:05 1991\nFrom: abel\nTo: stornett@flash, bob, Carol <carol>\n"
      "Subject: lunch\n\nnoon?\n",
      "old.mbox");
  const ItemSpec& m = old.items.at(0);
  ASSERT_TRUE(m.from.has_value());
  EXPECT_EQ(m.from->smtp, "abel");
  ASSERT_EQ(m.to.size(), 3u);
  EXPECT_EQ(m.to[0].smtp, "stornett@flash");
  EXPECT_EQ(m.to[1].smtp, "bob");
  EXPECT_EQ(m.to[2].name, "Carol");
  EXPECT_EQ(m.to[2].smtp, "carol");
  EXPECT_EQ(FormatIsoTime(m.time), "1991-03-12T10:31:05");
  EXPECT_EQ(old.skipped_addresses, 0);
  // ... and a scenario written from it reads back with them.
  Scenario s;
  s.name = "old";
  s.profile.user = *m.from;
  StoreSpec store;
  store.folders.push_back(FolderSpec{"Inbox", kOlMailItem, {}, {m}});
  s.profile.stores.push_back(store);
  Scenario back = ReadScenarioText(ScenarioJson(s).dump(), "old.json", ".");
  const ItemSpec& read = back.profile.stores.at(0).folders.at(0).items.at(0);
  EXPECT_EQ(read.from, m.from);
  EXPECT_EQ(read.to, m.to);
  // Outlook's semicolons separate recipients; a group's semicolon still ends the group.
  ItemSpec outlook = Mail(
      "From: a@b.c\nTo: Ann <ann@x.com>; bob@y.com; \"Lee; C\" <c@z.com>;\n"
      "Cc: team: d@e.f, g@h.i;, j@k.l\nSubject: s\n\n");
  ASSERT_EQ(outlook.to.size(), 3u);
  EXPECT_EQ(outlook.to[1].smtp, "bob@y.com");
  EXPECT_EQ(outlook.to[2].name, "Lee; C");
  ASSERT_EQ(outlook.cc.size(), 3u);
  EXPECT_EQ(outlook.cc[2].smtp, "j@k.l");
  ItemSpec exchange = Mail(
      "From: a@b.c\nTo: Tom </O=CONTOSO/OU=SITE/CN=RECIPIENTS/CN=TOM>; ann@x.com\nSubject: s\n\n");
  ASSERT_EQ(exchange.to.size(), 2u);
  EXPECT_EQ(exchange.to[0].exchange, "/O=CONTOSO/OU=SITE/CN=RECIPIENTS/CN=TOM");
  EXPECT_EQ(exchange.to[1].smtp, "ann@x.com");
}

TEST(RealFileImportTest, ZoneNamesAndDateFallbacks) {
  EXPECT_EQ(FormatIsoTime(Mail("From: a@b.c\nDate: Mon, 5 Jan 2026 09:00:00 cst\n\n").time),
            "2026-01-05T15:00:00");
  EXPECT_EQ(FormatIsoTime(Mail("From: a@b.c\nDate: mon, 5 jan 2026 09:00:00 EST\n\n").time),
            "2026-01-05T14:00:00");
  EXPECT_EQ(FormatIsoTime(Mail("From: a@b.c\nReceived: from x by y; Tue, 6 Jan 2026 10:00:00 "
                               "+0200\n\n")
                              .time),
            "2026-01-06T08:00:00");
}

TEST(RealFileImportTest, QuotedPrintableSoftBreakBeforeABlankLineEndsTheValue) {
  auto cards = ReadVCards(
      "BEGIN:VCARD\r\nVERSION:2.1\r\nN:Doe;John\r\nORG;ENCODING=QUOTED-PRINTABLE:Fabrikam=\r\n"
      "\r\nCATEGORIES:Customers\r\nNOTE;ENCODING=QUOTED-PRINTABLE:one=0D=0A=\r\ntwo\r\n"
      "END:VCARD\r\n",
      "qp.vcf");
  ASSERT_EQ(cards.size(), 1u);
  EXPECT_EQ(cards[0].company, "Fabrikam");
  EXPECT_EQ(cards[0].categories, "Customers");
  EXPECT_EQ(cards[0].body, "one\r\ntwo");  // a soft break inside a value still joins
}

TEST(RealFileImportTest, ForwardedMessagesAreAttachmentsAndTheBodyIsFoundInRelatedParts) {
  ItemSpec forward = Mail(
      "From: a@b.c\nSubject: Fwd\nContent-Type: multipart/mixed; boundary=outer\n\n"
      "--outer\nContent-Type: text/plain\n\nsee below\n"
      "--outer\nContent-Type: message/rfc822\nContent-Transfer-Encoding: 7bit\n\n"
      "From: c@d.e\nSubject: Quarterly figures\nContent-Type: multipart/mixed; boundary=inner\n\n"
      "--inner\nContent-Type: text/plain\n\nattached\n--inner\nContent-Type: application/pdf; "
      "name=q3.pdf\nContent-Disposition: attachment; filename=q3.pdf\n\nPDF\n--inner--\n"
      "--outer--\n");
  EXPECT_EQ(forward.body, "see below");
  ASSERT_EQ(forward.attachments.size(), 1u);
  EXPECT_EQ(forward.attachments[0].name, "Quarterly figures");
  EXPECT_EQ(forward.attachments[0].content_type, "message/rfc822");
  EXPECT_GT(forward.attachments[0].size, 100);
  ItemSpec related = Mail(
      "From: a@b.c\nSubject: News\nContent-Type: multipart/related; boundary=r\n\n"
      "--r\nContent-Type: multipart/alternative; boundary=a\n\n"
      "--a\nContent-Type: text/plain; charset=utf-8\n\nplain words\n"
      "--a\nContent-Type: text/html\n\n<p>html words</p>\n--a--\n"
      "--r\nContent-Type: image/png\nContent-ID: <logo>\nContent-Transfer-Encoding: base64\n\n"
      "iVBORw0KGgo=\n--r--\n");
  EXPECT_EQ(related.body, "plain words");
  EXPECT_TRUE(related.attachments.empty());
}

TEST(RealFileImportTest, MboxHonoursContentLengthAndIsFoundWithoutAnExtension) {
  // The first mail's body holds a marker and a header line; its Content-Length covers them.
  std::string body = "quoted:\n\nFrom x@y Mon Jan  5 09:00:00 2026\nSubject: not a mail\n\nend\n";
  std::string mbox =
      "From a@b Mon Jan  5 09:00:00 2026\nFrom: a@b.c\nSubject: one\n"
      "Content-Length: " +
      std::to_string(body.size()) + "\n\n" + body +
      "\nFrom a@b Mon Jan  5 10:00:00 2026\nFrom: a@b.c\nSubject: two\n\nbody\n";
  MailReadResult r = ReadMbox(mbox, "c.mbox");
  ASSERT_EQ(r.items.size(), 2u);
  EXPECT_THAT(r.items[0].body, HasSubstr("Subject: not a mail"));
  EXPECT_EQ(r.items[1].subject, "two");
  // A length that does not end at a marker is not believed.
  std::string wrong =
      "From a@b Mon Jan  5 09:00:00 2026\nFrom: a@b.c\nContent-Length: 3\n\n"
      "body\n\nFrom a@b Mon Jan  5 10:00:00 2026\nFrom: a@b.c\n\nbody\n";
  EXPECT_EQ(ReadMbox(wrong, "w.mbox").items.size(), 2u);
  // A mail client's extensionless mbox folder is imported; files of no known kind are
  // named, not silently left out.
  std::string dir = Folder("noext", {{"Inbox", mbox}, {"Inbox.msf", "// <!-- <mdb:mork:z"}});
  ImportResult folder = Import({dir}, PersonSpec{"Me", "me@x.y", ""});
  EXPECT_EQ(folder.received, 2);
  ASSERT_EQ(folder.not_imported.size(), 1u);
  EXPECT_THAT(folder.not_imported[0], HasSubstr("Inbox.msf: not a vCard"));
}

TEST(RealFileImportTest, OutlookFilesAndUnknownFilesFailByName) {
  // A data file's header cut short (signature, checksum, "SM" for a store, the Unicode
  // format's version 23), and one of an unknown content type.
  std::string cut("!BDN\x12\x34\x56\x78SM\x17\x00\x13\x00", 14);
  std::string dir = Folder("outlook", {{"cut.pst", cut},
                                       {"cache.ost", "!BDN" + std::string(600, '\x5A')},
                                       {"picture.png", "\x89PNG\r\n"},
                                       {"ok.eml", "From: a@b.c\nSubject: s\n\nx\n"}});
  struct Case {
    const char* name;
    const char* message;
  } cases[] = {{"cut.pst", "a damaged or unreadable Outlook data file"},
               {"cache.ost", "unsupported content type"},
               {"picture.png", "not a vCard (.vcf), mail (.eml), mbox or Outlook"}};
  for (const Case& c : cases) {
    std::string file = dir + "/" + c.name;
    try {
      Import({file}, std::nullopt);
      ADD_FAILURE() << "accepted " << c.name;
    } catch (const InputError& e) {
      EXPECT_EQ(e.file(), file);
      EXPECT_THAT(e.what(), HasSubstr(c.message));
    }
  }
  ImportResult r = Import({dir}, std::nullopt);
  EXPECT_EQ(r.received + r.sent, 1);
  EXPECT_EQ(r.not_imported.size(), 3u);
  // A folder of which nothing can be read fails, naming each file and why.
  std::string bad = Folder("nothing", {{"a.pst", cut}, {"b.msg", "not a compound file"}});
  std::optional<InputError> e = Raised<InputError>([&] { Import({bad}, std::nullopt); });
  ASSERT_TRUE(e) << "a folder of unreadable files gave an empty scenario";
  EXPECT_THAT(e->what(), HasSubstr("nothing could be imported"));
  EXPECT_THAT(e->what(), HasSubstr("a.pst: a damaged or unreadable Outlook data file"));
  EXPECT_THAT(e->what(), HasSubstr("b.msg: a damaged Outlook item"));
}

}  // namespace
}  // namespace zintra::simtool
