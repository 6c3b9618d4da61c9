// Playing scenarios end to end in the simulated Outlook: steps, virtual time,
// expectations, results on disk and bad input found before anything is written.
#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/error_of.h"
#include "tools/zintra-sim/demo_scenario.h"
#include "tools/zintra-sim/expectations.h"
#include "tools/zintra-sim/input_error.h"
#include "tools/zintra-sim/progress.h"
#include "tools/zintra-sim/runner.h"
#include "tools/zintra-sim/scenario_reader.h"

namespace zintra::simtool {
namespace {

namespace fs = std::filesystem;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

class RunnerTest : public ::testing::Test {
 protected:
  ~RunnerTest() override {
    std::error_code ec;
    fs::remove_all(dir_, ec);
  }
  RunResult Run(const std::string& text, bool write = false) {
    Scenario s = ReadScenarioText(text, "t.json", ".");
    RunOptions o;
    o.quiet = true;
    if (write) o.out_dir = dir_.string();
    return RunScenario(s, o, out_);
  }
  fs::path dir_ =
      fs::temp_directory_path() / ("zintra-sim-test-" + std::to_string(std::random_device{}()));
  std::ostringstream out_;
};

std::string WithTimeline(const std::string& timeline, const std::string& expect) {
  return R"js({"profile": {"user": "Jane Doe <jane@contoso.com>", "stores": [{"folders": [
    {"name": "Inbox", "items": [{"id": "old", "subject": "Backlog", "from": "ann@fabrikam.com",
                                 "to": "jane@contoso.com"}]},
    {"name": "Clients", "type": "contact", "items": [{"id": "ann", "full_name": "Ann Lee",
                                                        "emails": ["ann@fabrikam.com"]}]}]}]},
  "foldersets": [{"contacts": "Clients", "journal": "Journal"}],
  "timeline": )js" +
         timeline + R"js(, "expect": )js" + expect + "}";
}

TEST_F(RunnerTest, StepsChangeTheProfileAndExpectationsSeeIt) {
  RunResult r = Run(WithTimeline(
      R"js([{"do": "start"}, {"do": "wait", "for": "1m"},
          {"do": "deliver", "item": {"id": "new", "subject": "Quote", "from": "ann@fabrikam.com",
                                     "to": "jane@contoso.com"}},
          {"do": "send", "item": {"id": "reply", "subject": "Re: Quote", "to": "ann@fabrikam.com"}},
          {"do": "change", "target": "old", "set": {"subject": "Backlog (edited)", "Note": "x"
}
},
          {"do": "delete", "target": "reply"},
          {"do": "wait", "for": "1m"}, {"do": "quit"}])js",
      R"js([{"folder": "Inbox", "count": 2},
          {"folder": "Inbox", "match": {"subject": "quote", "from": "ann@fabrikam.com"}, "count": 1},
          {"folder": "Deleted Items", "match": {"subject": "Re: Quote", "from": "Jane Doe"}},
          {"item": "old", "match": {"subject": "Backlog (edited)", "Note": "x"
}
},
          {"log": "Initializing the addin"},
          {"log": "Outlook opened with no windows", "present": false}])js"));
  for (const auto& e : r.expectations) EXPECT_TRUE(e.met) << DescribeOutcome(e);
  EXPECT_EQ(r.exit_code, 0);
}

TEST_F(RunnerTest, FailedExpectationsAreNamedWithTheirLine) {
  RunResult r = Run(WithTimeline(R"js([{"do": "start", "windows": "none"}])js",
                                 R"js([{"folder": "Inbox", "count": 5},
{"item": "old", "match": {"Zintra Logged": "True"}},
{"log": "Outlook opened with no windows"},
{"total": "errors", "equals": 0}])js"));
  EXPECT_EQ(r.exit_code, 1);
  ASSERT_EQ(r.expectations.size(), 4u);
  EXPECT_FALSE(r.expectations[0].met);
  EXPECT_THAT(DescribeOutcome(r.expectations[0]),
              HasSubstr("folder 'Inbox' holds 1 item(s), expected 5"));
  EXPECT_FALSE(r.expectations[1].met);
  EXPECT_THAT(DescribeOutcome(r.expectations[1]),
              HasSubstr("item 'old': Zintra Logged is '', expected 'True'"));
  EXPECT_EQ(r.expectations[1].desc.source_line, r.expectations[0].desc.source_line + 1);
  EXPECT_TRUE(r.expectations[2].met);
  EXPECT_TRUE(r.expectations[3].met);
}

TEST_F(RunnerTest, ResultsAreWrittenToTheOutputFolder) {
  RunResult r = Run(WithTimeline(R"js([{"do": "start"}, {"do": "quit"}])js", "[]"), true);
  for (const char* f : {"profile.json", "log.json", "log.txt", "report.json"}) {
    EXPECT_TRUE(fs::exists(dir_ / f)) << f;
  }
  EXPECT_FALSE(r.error_log_path.empty());
  EXPECT_TRUE(fs::exists(r.error_log_path));
  std::ifstream profile(dir_ / "profile.json");
  std::string text((std::istreambuf_iterator<char>(profile)), std::istreambuf_iterator<char>());
  EXPECT_THAT(text, HasSubstr("\"Backlog\""));
  EXPECT_THAT(r.log_lines, Contains("M Initializing the addin"));
}

TEST_F(RunnerTest, UnknownFoldersetFolderIsBadInputAndNothingIsWritten) {
  std::string text = WithTimeline("[]", "[]");
  text.replace(text.find("\"Journal\""), 9, "\"Jurnal\"");
  std::optional<InputError> e = Raised<InputError>([&] { Run(text, true); });
  ASSERT_TRUE(e);
  EXPECT_THAT(e->what(), HasSubstr("t.json:6: journal: no folder \"Jurnal\""));
  EXPECT_FALSE(fs::exists(dir_ / "profile.json"));
}

// The report attributes from the resulting profile: every logged item names the
// contacts it was logged to and how each matched, and its copies; items sharing a
// subject keep their own copies; an edited item keeps its attribution.
TEST_F(RunnerTest, DemoReportNamesEveryLoggedItemsContactsAndCopies) {
  Scenario s = ReadScenarioText(kDemoScenario, "demo", ".");
  RunOptions o;
  o.quiet = true;
  RunResult r = RunScenario(s, o, out_);
  EXPECT_THAT(r.log_lines, Contains("M Initializing the addin"));
  int logged = 0, copies = 0;
  for (const WhyRow& row : r.why) {
    if (row.outcome == "logged") {
      ++logged;
      EXPECT_FALSE(row.contacts.empty()) << row.subject;
      for (const std::string& c : row.contacts) EXPECT_THAT(c, HasSubstr(" (")) << row.subject;
      EXPECT_EQ(row.copies.size(), static_cast<size_t>(row.logged_copies + row.shared_copies))
          << row.subject;
      EXPECT_GE(row.logged_copies, 1) << row.subject;
    } else if (row.outcome == "copy") {
      ++copies;
      EXPECT_THAT(row.reason, HasSubstr(" copy of '")) << row.subject;
    }
    if (row.id == "in1") {
      EXPECT_EQ(row.subject, "Quote 4471 (revised)");
      EXPECT_EQ(row.outcome, "logged");
      EXPECT_THAT(row.contacts, ElementsAre("Ann Lee (ann.lee@fabrikam.com)"));
    }
    if (row.id == "new1" || row.id == "new4") {
      EXPECT_EQ(row.copies.size(), 1u) << row.id;
    }
  }
  EXPECT_GT(logged, 20);
  EXPECT_GE(copies, logged);
  // The phone call logged from the toolbar, and the letter filed.
  EXPECT_THAT(r.why,
              Contains(::testing::Field(&WhyRow::subject, "Call with Ann about quote 4471")));
  EXPECT_THAT(r.why, Contains(::testing::Field(&WhyRow::outcome, "letter")));
}

// A settings step replaces the add-in's settings: the error log moves to the new folder.
TEST_F(RunnerTest, SettingsStepMovesTheErrorLog) {
  RunResult r = Run(WithTimeline(R"js([{"do": "start"}, {"do": "wait", "for": "1m"},
      {"do": "settings", "registry": {"values": [{"key": "HKCU\\Software\\Brellow\\Zintra\\Logging",
        "name": "LogPath", "string": "D:\\Zintra Logs"}]}},
      {"do": "deliver", "item": {"subject": "After", "from": "ann@fabrikam.com"}},
      {"do": "wait", "for": "1m"}, {"do": "quit"}])js",
                                 "[]"),
                    true);
  EXPECT_THAT(r.error_log_path, HasSubstr("Zintra Logs"));
  EXPECT_TRUE(fs::exists(r.error_log_path));
  EXPECT_THAT(r.log_lines, Contains(HasSubstr("'After'")));
}

// Progress: plain lines per task (started, each quarter, done), a redrawn block per
// task on a terminal, nothing when quiet.
TEST(ProgressTest, ShowsEachTaskOfTheTaskList) {
  std::ostringstream plain;
  Progress p(plain, false, false);
  p.Update({{"a", "Scanning Inbox", 0}, {"b", "Process email: Quote", 10}}, 2);
  p.Update({{"a", "Scanning Inbox", 30}, {"b", "Process email: Quote", 20}}, 1);
  p.Update({{"a", "Scanning Inbox", 60}}, 0);
  p.Update({}, 0);
  EXPECT_EQ(plain.str(),
            "  task started: Scanning Inbox\n  task started: Process email: Quote\n"
            "  task 25%: Scanning Inbox\n  task 50%: Scanning Inbox\n"
            "  task done: Process email: Quote\n  task done: Scanning Inbox\n");

  std::ostringstream live;
  Progress l(live, false, true);
  l.Update({{"a", "Scanning Inbox", 50}}, 3);
  EXPECT_EQ(live.str(), "  [############------------]  50%  Scanning Inbox\n  3 job(s) queued\n");
  l.Update({{"a", "Scanning Inbox", 50}}, 3);  // unchanged: not redrawn
  l.Done();
  EXPECT_THAT(live.str(), HasSubstr("\x1b[1A\x1b[2K\x1b[1A\x1b[2K"));

  std::ostringstream quiet;
  Progress q(quiet, true, false);
  q.Update({{"a", "Scanning Inbox", 50}}, 1);
  q.Note("nothing");
  EXPECT_EQ(quiet.str(), "");
}

}  // namespace
}  // namespace zintra::simtool
