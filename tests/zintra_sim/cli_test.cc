// The program as a user runs it: bad input of every kind stops it with exit code 2, a
// message naming the file, the line or field and what was expected, and nothing
// written; failed expectations exit 1 with each one named; every sample file
// imports, and the imported scenario plays.
#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/zintra_sim/cli_fixture.h"
#include "tools/zintra-sim/cli.h"
#include "tools/zintra-sim/input_error.h"

namespace zintra::simtool {
namespace {

namespace fs = std::filesystem;
using ::testing::HasSubstr;

using CliTest = testing_support::CliFixture;

constexpr char kProfile[] =
    R"({"profile": {"user": "Jane Doe <jane@contoso.com>", "stores": [{"folders": [
  {"name": "Inbox", "items": [{"id": "m", "subject": "Hello", "from": "ann@fabrikam.com",
                                 "to": "jane@contoso.com"}]},
  {"name": "Clients", "type": "contact", "items": [
    {"id": "ann", "full_name": "Ann Lee", "emails": ["ann@fabrikam.com"]}]}]}]},
  "foldersets": [{"contacts": "Clients", "journal": "Journal"}])";

// A scenario whose timeline (line 6 on) is `steps`.
std::string WithSteps(const std::string& steps) {
  return std::string(kProfile) + ",\n  \"timeline\": [\n" + steps + "]}\n";
}

struct BadFile {
  const char* what;
  const char* command;  // run | import
  const char* name;     // file the case writes
  std::string text;
  const char* where;  // "<name>:<line>" part of the message
  const char* expected;
};

class BadInputTest : public CliTest, public ::testing::WithParamInterface<BadFile> {};

TEST_P(BadInputTest, ExitsTwoNamingFileLineAndExpectationAndWritesNothing) {
  const BadFile& c = GetParam();
  std::string file = Write(c.name, c.text);
  Write("good.vcf", "BEGIN:VCARD\nVERSION:3.0\nFN:Ann Lee\nEMAIL:ann@fabrikam.com\nEND:VCARD\n");
  int code = std::string(c.command) == "run"
                 ? Run({"run", file, "--out", Out()})
                 : Run({"import", (dir_ / "good.vcf").string(), file, "--out", Out() + ".json"});
  EXPECT_EQ(code, 2) << err_;
  EXPECT_THAT(err_, HasSubstr(c.where));
  EXPECT_THAT(err_, HasSubstr(c.expected));
  EXPECT_FALSE(fs::exists(Out())) << "a bad run wrote results";
  EXPECT_FALSE(fs::exists(Out() + ".json")) << "a bad import wrote a scenario";
}

INSTANTIATE_TEST_SUITE_P(
    Files, BadInputTest,
    ::testing::Values(
        BadFile{"scenario_syntax", "run", "s.json", "{\n\"name\": \"x\",\n}", "s.json:3",
                "not valid JSON"},
        BadFile{"click_unknown_button", "run", "s.json",
                WithSteps(R"({"do": "start"}, {"do": "click", "button": "fax"})"), "s.json:8",
                "expected phone-call, email, file-link, note, appointment or letter"},
        BadFile{"click_answer_never_asked", "run", "s.json", WithSteps(R"({"do": "start"},
{"do": "click", "button": "note", "selection": ["ann"], "link_items": ["m"]})"),
                "s.json:9", "shows no link dialog"},
        BadFile{"click_send_an_appointment", "run", "s.json",
                WithSteps(R"({"do": "click", "button": "appointment", "then": "send"})"),
                "s.json:8", "expected save, discard or keep-open"},
        BadFile{"click_link_unknown_item", "run", "s.json",
                WithSteps(R"({"do": "click", "button": "file-link", "selection": ["ann"],
 "link_items": ["ghost"]})"),
                "s.json:8", "no item has the id \"ghost\""},
        BadFile{"inspector_click_needs_one_item", "run", "s.json",
                WithSteps(R"({"do": "click", "button": "note", "in": "inspector"})"), "s.json:8",
                "exactly one item"},
        BadFile{"registry_expectation_hive", "run", "s.json",
                std::string(kProfile) +
                    ",\n\"expect\": [\n{\"registry\": \"HKXX\\\\Soft\", \"name\": \"a\", "
                    "\"value\": 1}]}",
                "s.json:8", "expected a key under HKCU"},
        BadFile{"vcard_unclosed", "import", "c.vcf", "BEGIN:VCARD\nVERSION:3.0\nFN:A\n", "c.vcf:1",
                "not closed by END:VCARD"},
        BadFile{"vcard_version", "import", "c.vcf", "BEGIN:VCARD\nVERSION:9.9\nEND:VCARD\n",
                "c.vcf:2", "expected 2.1, 3.0 or 4.0"},
        BadFile{"eml_without_headers", "import", "m.eml", "just text\nwithout any header\n",
                "m.eml", "expected"},
        BadFile{"mbox_without_marker", "import", "m.mbox", "Subject: x\n\nbody\n", "m.mbox:1",
                "expected an mbox file"}),
    [](const auto& param_info) { return std::string(param_info.param.what); });

TEST_F(CliTest, BadRegFileNamesItsLine) {
  Write("bad.reg",
        "Windows Registry Editor Version 5.00\n\n[HKEY_CURRENT_USER\\Software\\X]\n"
        "\"Value\"=oops:1\n");
  std::string file =
      Write("s.json", std::string(kProfile) + ",\n\"registry\": {\"files\": [\"bad.reg\"]}}");
  EXPECT_EQ(Run({"run", file, "--out", Out()}), 2);
  EXPECT_THAT(err_, HasSubstr("bad.reg:4"));
  EXPECT_FALSE(fs::exists(Out()));
}

TEST_F(CliTest, FailedExpectationsExitOneAndAreEachNamed) {
  std::string file = Write("s.json", std::string(kProfile) + R"(,
"expect": [
  {"item": "m", "match": {"Zintra Logged": "False"}},
  {"folder": "Journal", "match": {"subject": "Hello"}, "count": 2},
  {"registry": "HKCU\\Software\\Brellow\\Zintra", "name": "Nothing", "value": "x"}]})");
  EXPECT_EQ(Run({"run", file, "--out", Out(), "--quiet"}), 1);
  EXPECT_THAT(out_,
              HasSubstr("s.json: line 8: item 'm': Zintra Logged is 'True', expected 'False'"));
  EXPECT_THAT(out_, HasSubstr("line 9: folder 'Journal' holds 1 item(s) with subject='Hello', "
                              "expected 2"));
  EXPECT_THAT(out_, HasSubstr("line 10: registry HKCU\\Software\\Brellow\\Zintra \"Nothing\" is "
                              "absent, expected 'x'"));
  EXPECT_THAT(out_, HasSubstr("expectations 0/3 met"));
  EXPECT_TRUE(fs::exists(fs::path(Out()) / "report.json"));
}

TEST_F(CliTest, QuietPrintsNoStepsAndLogLevelZeroKeepsTheLogEmpty) {
  std::string file = Write("s.json", std::string(kProfile) + "}");
  EXPECT_EQ(Run({"run", file, "--out", Out(), "--log-level", "0", "--no-table"}), 0) << err_;
  EXPECT_THAT(out_, HasSubstr("[09:00:00] start"));
  EXPECT_THAT(out_, HasSubstr("0 log lines"));
  EXPECT_EQ(Run({"run", file, "--out", Out(), "--quiet"}), 0);
  EXPECT_THAT(out_, ::testing::Not(HasSubstr("[09:00:00]")));
  EXPECT_THAT(out_, HasSubstr("1 logged"));
  EXPECT_EQ(Run({"run", file, "--out", Out(), "--log-level", "9"}), 2);
}

TEST_F(CliTest, StatsCountTheHostCallsOfStartUpShutDownAndEachLoggedItem) {
  std::string file = Write("s.json", std::string(kProfile) + "}");
  EXPECT_EQ(Run({"run", file, "--out", Out(), "--quiet", "--stats"}), 0) << err_;
  // Start-up reads the settings from the registry; the item is saved and copied once.
  EXPECT_THAT(out_, ::testing::ContainsRegex("start-up: .*registry reads [1-9]"));
  EXPECT_THAT(out_, ::testing::ContainsRegex("per logged item \\(1\\): .*copies/moves 1"));
  EXPECT_THAT(out_, HasSubstr("shut-down: "));
  EXPECT_THAT(out_, HasSubstr("most called:"));
  EXPECT_THAT(out_, ::testing::ContainsRegex(
                        "start-up: +[0-9.]+ ms: the add-in's own [0-9.]+ ms, inside host calls "
                        "[0-9.]+ ms \\(registry [0-9.]+ ms\\)"));
  // The settings' registry calls are among the calls, and the process has a peak.
  EXPECT_THAT(out_, ::testing::ContainsRegex("Host calls: [0-9]+ in all, [1-9][0-9]* of them "
                                             "registry calls"));
  EXPECT_THAT(out_, ::testing::ContainsRegex("Peak memory: [1-9][0-9]* MB resident \\(the "
                                             "whole process; items in the profile: [1-9]"));
  EXPECT_EQ(Run({"run", file, "--out", Out(), "--quiet"}), 0);
  EXPECT_THAT(out_, ::testing::Not(HasSubstr("Host calls")));
}

std::vector<std::string> SampleFiles() {
  std::vector<std::string> files;
  fs::path root = fs::path(ZINTRA_TEST_DATA) / "mail";
  for (const char* kind : {"eml", "mbox", "vcf", "pst", "msg"}) {
    if (!fs::is_directory(root / kind)) continue;
    for (const auto& e : fs::directory_iterator(root / kind)) {
      // Those that cannot be imported (a password, a sticky note) have their own tests.
      std::string name = e.path().filename().string();
      if (name != "passworded.pst" && name != "note.msg") files.push_back(e.path().string());
    }
  }
  std::sort(files.begin(), files.end());
  return files;
}

class SampleImportTest : public CliTest, public ::testing::WithParamInterface<std::string> {};

// Every sample file imports (under the extension of its kind: the .txt samples are
// messages and mbox files), and the scenario made from it plays.
TEST_P(SampleImportTest, ImportsAndThePlayedScenarioRuns) {
  fs::path sample = GetParam();
  std::string kind = sample.parent_path().filename().string();
  std::string base = sample.filename().string();
  for (const std::string& suffix : {std::string(".txt"), "." + kind}) {
    if (base.size() > suffix.size() && base.ends_with(suffix))
      base.resize(base.size() - suffix.size());
  }
  fs::path copy = dir_ / (base + "." + kind);
  fs::copy_file(sample, copy);
  std::string scenario = (dir_ / "imported.json").string();
  ASSERT_EQ(
      Run({"import", copy.string(), "--out", scenario, "--user", "Jane Doe <jane@contoso.com>"}), 0)
      << err_;
  EXPECT_THAT(err_, HasSubstr("Imported "));
  EXPECT_EQ(Run({"run", scenario, "--out", Out(), "--quiet"}), 0) << out_ << err_;
}

INSTANTIATE_TEST_SUITE_P(Shared, SampleImportTest, ::testing::ValuesIn(SampleFiles()),
                         [](const auto& param_info) {
                           std::string n = fs::path(param_info.param).filename().string();
                           for (char& ch : n)
                             ch = std::isalnum(static_cast<unsigned char>(ch)) ? ch : '_';
                           return n;
                         });

}  // namespace
}  // namespace zintra::simtool
