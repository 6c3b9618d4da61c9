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

std::string TestName(const ::testing::TestParamInfo<std::string>& info) {
  std::string name = fs::path(info.param).stem().string();
  std::replace_if(
      name.begin(), name.end(), [](char c) { return !std::isalnum(c); }, '_');
  return name;
}

INSTANTIATE_TEST_SUITE_P(Data, ScenarioFileTest, ::testing::ValuesIn(ScenarioFiles()), TestName);

}  // namespace
}  // namespace zintra::simtool
