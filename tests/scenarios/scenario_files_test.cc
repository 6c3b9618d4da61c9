// The end-to-end scenarios written as scenario files (tests/scenarios/data/*.json): each
// is read and played by the runner as `zintra-sim run` plays it, and every expectation
// it states must be met. A failure names the file, the expectation's line and what was
// found instead.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include "tools/zintra-sim/expectations.h"
#include "tools/zintra-sim/runner.h"
#include "tools/zintra-sim/scenario_reader.h"
#include "tools/zintra-sim/scenario_writer.h"

namespace zintra::simtool {
namespace {

namespace fs = std::filesystem;

std::vector<std::string> ScenarioFiles() {
  std::vector<std::string> files;
  for (const auto& entry : fs::directory_iterator(ZINTRA_SCENARIO_DATA)) {
    if (entry.path().extension() == ".json") files.push_back(entry.path().string());
  }
  std::sort(files.begin(), files.end());
  return files;
}

class ScenarioFileTest : public ::testing::TestWithParam<std::string> {};

TEST_P(ScenarioFileTest, EveryExpectationIsMet) {
  Scenario scenario = ReadScenarioFile(GetParam());
  ASSERT_FALSE(scenario.expect.empty()) << GetParam() << " checks nothing";
  RunOptions options;
  options.quiet = true;
  std::ostringstream progress;
  RunResult result = RunScenario(scenario, options, progress);
  for (const ExpectationOutcome& outcome : result.expectations) {
    EXPECT_TRUE(outcome.met) << GetParam() << ": " << DescribeOutcome(outcome);
  }
  EXPECT_EQ(result.exit_code, 0);
}

void ExpectSameSteps(const std::vector<StepSpec>& a, const std::vector<StepSpec>& b) {
  ASSERT_EQ(a.size(), b.size());
  for (size_t i = 0; i < a.size(); ++i) {
    SCOPED_TRACE("step " + std::to_string(i) + " (" + StepName(a[i].kind) + ")");
    EXPECT_EQ(b[i].kind, a[i].kind);
    EXPECT_EQ(b[i].target, a[i].target);
    EXPECT_EQ(b[i].folder, a[i].folder);
    EXPECT_EQ(b[i].hard, a[i].hard);
    EXPECT_EQ(b[i].during, a[i].during);
    EXPECT_EQ(b[i].during_job, a[i].during_job);
    EXPECT_EQ(b[i].fault.member, a[i].fault.member);
    EXPECT_EQ(b[i].fault.mode, a[i].fault.mode);
    EXPECT_EQ(b[i].fault.n, a[i].fault.n);
    EXPECT_EQ(b[i].fault.error, a[i].fault.error);
    EXPECT_EQ(b[i].fault.text, a[i].fault.text);
    EXPECT_EQ(b[i].fault.target, a[i].fault.target);
    EXPECT_EQ(b[i].fault.folder, a[i].fault.folder);
    EXPECT_EQ(b[i].answers.message_box, a[i].answers.message_box);
    EXPECT_EQ(b[i].answers.optional, a[i].answers.optional);
    EXPECT_EQ(b[i].message, a[i].message);
    EXPECT_EQ(b[i].wparam, a[i].wparam);
    EXPECT_EQ(b[i].checks.size(), a[i].checks.size());
    EXPECT_EQ(b[i].item.has_value(), a[i].item.has_value());
    if (a[i].item && b[i].item) {
      EXPECT_EQ(b[i].item->item_class, a[i].item->item_class);
      EXPECT_EQ(b[i].item->class_given, a[i].item->class_given);
      EXPECT_EQ(b[i].item->attachments, a[i].item->attachments);
    }
  }
}

// Written out and read again, every scenario file is the same scenario: the writer
// keeps every step, mark, file and expectation, and writing it again changes nothing.
TEST_P(ScenarioFileTest, WritesBackAsTheSameScenario) {
  const std::string dir = fs::path(GetParam()).parent_path().string();
  Scenario scenario = ReadScenarioFile(GetParam());
  const std::string written = ScenarioJson(scenario).dump(2);
  Scenario again = ReadScenarioText(written, "again.json", dir);
  EXPECT_EQ(ScenarioJson(again).dump(2), written);
  ExpectSameSteps(scenario.timeline, again.timeline);
  EXPECT_EQ(again.files.size(), scenario.files.size());
  ASSERT_EQ(again.expect.size(), scenario.expect.size());
  for (size_t i = 0; i < scenario.expect.size(); ++i) {
    const ExpectSpec& a = scenario.expect[i];
    const ExpectSpec& b = again.expect[i];
    SCOPED_TRACE("expectation on line " + std::to_string(a.source_line));
    EXPECT_EQ(b.kind, a.kind);
    EXPECT_EQ(b.match, a.match);
    EXPECT_EQ(b.count, a.count);
    EXPECT_EQ(b.present, a.present);
    EXPECT_EQ(b.host.fields, a.host.fields);
    EXPECT_EQ(b.host.texts, a.host.texts);
    EXPECT_EQ(b.log_text + b.what + b.reg_key + b.reg_name + b.reg_value,
              a.log_text + a.what + a.reg_key + a.reg_name + a.reg_value);
  }
  EXPECT_EQ(again.first_run, scenario.first_run);
  EXPECT_EQ(again.log_level, scenario.log_level);
}

std::string TestName(const ::testing::TestParamInfo<std::string>& info) {
  std::string name = fs::path(info.param).stem().string();
  std::replace_if(
      name.begin(), name.end(), [](char c) { return !std::isalnum(c); }, '_');
  return name;
}

INSTANTIATE_TEST_SUITE_P(Data, ScenarioFileTest, ::testing::ValuesIn(ScenarioFiles()), TestName);

}  // namespace
}  // namespace zintra::simtool
