// A generated mailbox imported and played at the smallest and at the largest log
// settings: the report is the same at both, and agrees item by item with the marks and
// copies the add-in left in the profile.
#include <filesystem>
#include <sstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/zintra_sim/report_check.h"
#include "tools/zintra-sim/importer.h"
#include "tools/zintra-sim/mailbox_generator.h"
#include "tools/zintra-sim/runner.h"
#include "tools/zintra-sim/why_report.h"

namespace zintra::simtool {
namespace {

namespace fs = std::filesystem;

TEST(DryRunReportTest, TheReportIsWhatTheAddinDidWhateverTheLogSettings) {
  fs::path dir = fs::path(::testing::TempDir()) / "dry-run-generated";
  fs::remove_all(dir);
  GeneratedMailbox g = GenerateMailbox(dir / "export", 300, 80);
  ImportResult imported = Import({(dir / "export").string()}, g.user);
  EXPECT_EQ(imported.contacts, 80);
  EXPECT_EQ(imported.sent, g.sent);
  EXPECT_EQ(imported.received + imported.sent, 300);

  std::vector<WhyRow> reports[2];
  size_t log_lines[2] = {};
  for (int largest : {0, 1}) {
    Scenario s = imported.scenario;
    testing_support::SetLogSettings(s, largest != 0);
    RunOptions options;
    options.quiet = true;
    options.out_dir = (dir / (largest ? "largest" : "smallest")).string();
    std::ostringstream out;
    RunResult r = RunScenario(s, options, out);
    EXPECT_THAT(testing_support::ReportMismatches(options.out_dir), ::testing::IsEmpty())
        << (largest ? "largest" : "smallest") << " log settings";
    reports[largest] = r.why;
    log_lines[largest] = r.log_lines.size();
    // Every kind of outcome is there to be checked.
    int logged = 0, screened = 0;
    for (const WhyRow& row : r.why) {
      logged += row.outcome == "logged";
      screened += row.outcome == "screened";
    }
    EXPECT_GT(logged, 50);
    EXPECT_GT(screened, 10);
  }
  EXPECT_EQ(log_lines[0], 0u);  // the settings took effect
  EXPECT_GT(log_lines[1], 300u);
  EXPECT_EQ(WhyJson(reports[0]), WhyJson(reports[1]));
  if (!HasFailure()) fs::remove_all(dir);
}

}  // namespace
}  // namespace zintra::simtool
