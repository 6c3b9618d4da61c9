// The report of why says what the add-in decided: the contacts it found and how, the
// reason it screened an item out, why an item was never reached. It must not name a
// contact the add-in did not find (a received mail is matched on its sender alone),
// must not call a tracked address untracked, and must not change when the add-in's
// text log is thinned out by its level or cut by its size limit.
#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tools/zintra-sim/demo_scenario.h"
#include "tools/zintra-sim/importer.h"
#include "tools/zintra-sim/runner.h"
#include "tools/zintra-sim/scenario_reader.h"
#include "tools/zintra-sim/scenario_writer.h"

namespace zintra::simtool {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

RunResult Play(const Scenario& s, int log_level = -1) {
  RunOptions o;
  o.quiet = true;
  o.log_level = log_level;
  std::ostringstream out;
  return RunScenario(s, o, out);
}

const WhyRow& Row(const RunResult& r, const std::string& folder, const std::string& subject) {
  for (const WhyRow& row : r.why) {
    if (row.subject == subject && row.folder.ends_with("/" + folder)) return row;
  }
  static const WhyRow kNone;
  ADD_FAILURE() << "no row for '" << subject << "' in " << folder;
  return kNone;
}

// The demo's "Re: invoice 2291" comes from Grace Kim with Elena Berg, also a tracked
// contact, in Cc: the add-in searches the sender alone and logs it to Grace Kim only.
// Every contact the report names is one that the add-in's own log (at full level in
// the demo) says it found.
TEST(WhyReportTest, DemoNamesOnlyContactsTheAddinFound) {
  RunResult r = Play(ReadScenarioText(kDemoScenario, "demo", "."));
  const WhyRow& invoice = Row(r, "Inbox", "Re: invoice 2291");
  EXPECT_EQ(invoice.outcome, "logged");
  EXPECT_THAT(invoice.contacts, ElementsAre("Grace Kim (grace.kim@fabrikam.com)"));
  // Sent mail is searched by its recipients.
  EXPECT_THAT(Row(r, "Sent Items", "Agenda for our visit").contacts,
              ElementsAre("Elena Berg (elena.berg@tailspintoys.com)"));
  for (const WhyRow& row : r.why) {
    if (row.outcome != "logged") continue;
    for (const std::string& contact : row.contacts) {
      std::string name = contact.substr(0, contact.rfind(" ("));
      EXPECT_THAT(r.log_lines, Contains("M FoundLinkedContact: '" + name + "'"))
          << row.subject << ": " << contact;
    }
  }
}

// Mail from a colleague who is also a tracked contact is refused as internal mail;
// mail from a stranger with a tracked contact in Cc names no contact; a private
// contact is no tracked contact. The same whatever the log keeps.
Scenario Colleagues(const std::string& log_values) {
  std::string internal;
  for (int i = 0; i < 40; ++i) {
    internal += R"js({"subject": "Internal )js" + std::to_string(i) +
                R"js(", "from": "Bob Stone <bob@contoso.com>", "to": "jane@contoso.com"},)js";
  }
  return ReadScenarioText(R"js({"profile": {"user": "Jane Doe <jane@contoso.com>",
    "stores": [{"folders": [
      {"name": "Inbox", "items": [)js" +
                              internal + R"js(
        {"subject": "From a stranger", "from": "x@unknown.example", "to": "jane@contoso.com",
         "cc": "ann@fabrikam.com"},
        {"subject": "From Pat", "from": "pat@fabrikam.com", "to": "jane@contoso.com"},
        {"subject": "From Ann", "from": "ann@fabrikam.com", "to": "jane@contoso.com",
         "cc": ["pat@fabrikam.com", "bob@contoso.com"]}]},
      {"name": "Archive", "items": [{"subject": "Filed away", "from": "ann@fabrikam.com",
                                     "to": "jane@contoso.com"}]},
      {"name": "Sent Items", "items": [{"subject": "Sent before", "from": "jane@contoso.com",
                                        "to": "ann@fabrikam.com"}]},
      {"name": "Clients", "type": "contact", "items": [
        {"full_name": "Bob Stone", "emails": ["bob@contoso.com"]},
        {"full_name": "Ann Lee", "emails": ["ann@fabrikam.com"]},
        {"full_name": "Pat Roe", "emails": ["pat@fabrikam.com"], "sensitivity": "private"}]}]}]},
    "foldersets": [{"contacts": "Clients", "journal": "Journal"}],
    "registry": {"values": [)js" +
                              log_values + R"js(]}})js",
                          "t.json", ".");
}

std::vector<std::string> Lines(const RunResult& r) {
  std::vector<std::string> out;
  for (const WhyRow& row : r.why) {
    std::string contacts;
    for (const std::string& c : row.contacts) contacts += c + ";";
    out.push_back(row.folder + "|" + row.subject + "|" + row.outcome + "|" + contacts + "|" +
                  row.reason + "|" + std::to_string(row.logged_copies));
  }
  return out;
}

TEST(WhyReportTest, ReasonsNameNoTrackedAddressAsUntrackedWhateverTheLogKeeps) {
  const std::string kLogging = R"js({"key": "HKCU\\Software\\Brellow\\Zintra\\Logging", )js";
  RunResult full = Play(Colleagues(kLogging + R"js("name": "LogLevel", "dword": 3})js"));
  // A log of 1 KB keeps a few lines only; at level 0 it keeps none.
  RunResult cut = Play(Colleagues(kLogging + R"js("name": "MaxLogSizeKB", "dword": 1})js"), 3);
  RunResult none = Play(Colleagues(""), 0);
  EXPECT_THAT(none.log_lines, IsEmpty());
  EXPECT_THAT(cut.log_lines, Not(Contains(HasSubstr("'Internal 0'"))));
  EXPECT_THAT(full.log_lines, Contains(HasSubstr("'Internal 0'")));

  for (int i = 0; i < 40; ++i) {
    const WhyRow& row = Row(full, "Inbox", "Internal " + std::to_string(i));
    EXPECT_EQ(row.outcome, "screened");
    EXPECT_EQ(row.reason, "Item has no links or recipients") << row.subject;
  }
  const WhyRow& stranger = Row(full, "Inbox", "From a stranger");
  EXPECT_EQ(stranger.outcome, "screened");
  EXPECT_THAT(stranger.contacts, IsEmpty());
  EXPECT_EQ(stranger.reason, "no tracked contact for x@unknown.example, *@unknown.example");
  EXPECT_EQ(Row(full, "Inbox", "From Pat").reason,
            "no tracked contact for pat@fabrikam.com, *@fabrikam.com");
  EXPECT_THAT(Row(full, "Inbox", "From Ann").contacts, ElementsAre("Ann Lee (ann@fabrikam.com)"));
  for (const WhyRow& row : full.why) {
    EXPECT_THAT(row.reason, Not(HasSubstr("bob@contoso.com"))) << row.subject;
    EXPECT_THAT(row.reason, Not(HasSubstr("ann@fabrikam.com"))) << row.subject;
  }
  // Items the add-in never reached, each with why.
  const WhyRow& archived = Row(full, "Archive", "Filed away");
  EXPECT_EQ(archived.outcome, "not reached");
  EXPECT_EQ(archived.reason, "the folder 'Archive' is not monitored");
  const WhyRow& sent = Row(full, "Sent Items", "Sent before");
  EXPECT_EQ(sent.outcome, "not reached");
  EXPECT_THAT(sent.reason, HasSubstr("'Sent Items' is monitored for new items only"));

  EXPECT_EQ(Lines(cut), Lines(full));
  EXPECT_EQ(Lines(none), Lines(full));
}

// Outlook quits while the start-up scan of the Inbox is under way: the items it did not
// reach say so.
TEST(WhyReportTest, ItemsTheScanDidNotReachSayWhy) {
  RunResult r = Play(ReadScenarioText(R"js({"profile": {"user": "Jane Doe <jane@contoso.com>",
    "stores": [{"folders": [
      {"name": "Inbox", "items": [
        {"subject": "One", "from": "ann@fabrikam.com", "to": "jane@contoso.com"},
        {"subject": "Two", "from": "ann@fabrikam.com", "to": "jane@contoso.com"}]},
      {"name": "Clients", "type": "contact", "items": [
        {"full_name": "Ann Lee", "emails": ["ann@fabrikam.com"]}]}]}]},
    "foldersets": [{"contacts": "Clients", "journal": "Journal"}],
    "timeline": [{"do": "start"}, {"do": "wait", "for": 0.02}, {"do": "quit"}]})js",
                                      "t.json", "."));
  for (const char* subject : {"One", "Two"}) {
    const WhyRow& row = Row(r, "Inbox", subject);
    EXPECT_EQ(row.outcome, "not reached");
    EXPECT_EQ(row.reason, "the scan of 'Inbox' ended before reaching it: Outlook was closing");
  }
}

// An imported mailbox whose user is also one of the contacts: the user's own mail is
// sent by the user once Outlook runs, so the add-in processes it in Sent Items and logs
// it to its recipients; nothing is left unreached. The timeline survives the scenario
// file that `import` writes.
TEST(WhyReportTest, ImportedSentMailIsSentByTheUserAndLogged) {
  namespace fs = std::filesystem;
  fs::path dir =
      fs::temp_directory_path() / ("zintra-why-" + std::to_string(std::random_device{}()));
  fs::create_directories(dir);
  auto write = [&](const std::string& name, const std::string& text) {
    std::ofstream(dir / name, std::ios::binary) << text;
  };
  write("received.eml",
        "From: Ann Lee <ann@fabrikam.com>\r\nTo: Jane Doe <jane@contoso.com>\r\n"
        "Subject: Quote\r\nDate: Mon, 05 Jan 2026 08:00:00 +0000\r\n\r\nHello\r\n");
  write("sent.eml",
        "From: Jane Doe <jane@contoso.com>\r\nTo: Ann Lee <ann@fabrikam.com>\r\n"
        "Cc: Jane Doe <jane@contoso.com>\r\n"
        "Subject: Re: Quote\r\nDate: Mon, 05 Jan 2026 08:30:00 +0000\r\n\r\nThanks\r\n");
  write("contacts.vcf",
        "BEGIN:VCARD\r\nVERSION:3.0\r\nFN:Ann Lee\r\nEMAIL:ann@fabrikam.com\r\nEND:VCARD\r\n"
        "BEGIN:VCARD\r\nVERSION:3.0\r\nFN:Jane Doe\r\nEMAIL:jane@contoso.com\r\nEND:VCARD\r\n");
  ImportResult imported = Import({dir.string()}, PersonSpec{"Jane Doe", "jane@contoso.com", ""});
  fs::remove_all(dir);
  EXPECT_EQ(imported.sent, 1);
  Scenario s = ReadScenarioText(ScenarioJson(imported.scenario).dump(), "i.json", ".");
  ASSERT_EQ(s.timeline.size(), imported.scenario.timeline.size());
  EXPECT_EQ(s.timeline[1].kind, StepKind::kSend);

  RunResult r = Play(s);
  const WhyRow& sent = Row(r, "Sent Items", "Re: Quote");
  EXPECT_EQ(sent.outcome, "logged");
  EXPECT_THAT(sent.contacts, Contains(HasSubstr("Ann Lee (ann@fabrikam.com)")));
  EXPECT_EQ(Row(r, "Inbox", "Quote").outcome, "logged");
  for (const WhyRow& row : r.why) EXPECT_NE(row.outcome, "not reached") << row.subject;
}

}  // namespace
}  // namespace zintra::simtool
