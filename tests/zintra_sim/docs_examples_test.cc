// The examples of docs/scenarios.md are scenario text a reader may copy: each is read
// (and a timeline example played) the way zintra-sim reads a file, inside the profile
// the guide shows first, so an example that goes stale fails here.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "tests/zintra_sim/cli_fixture.h"
#include "tools/zintra-sim/input_error.h"
#include "tools/zintra-sim/runner.h"
#include "tools/zintra-sim/scenario_reader.h"

namespace zintra::simtool {
namespace {

// The text of every ```json block of the guide, in order.
std::vector<std::string> JsonBlocks() {
  std::ifstream in(std::string(ZINTRA_SOURCE_DIR) + "/docs/scenarios.md");
  std::vector<std::string> blocks;
  std::string line, block;
  bool inside = false;
  while (std::getline(in, line)) {
    if (!inside && line == "```json") {
      inside = true;
      block.clear();
    } else if (inside && line == "```") {
      inside = false;
      blocks.push_back(block);
    } else if (inside) {
      block += line + "\n";
    }
  }
  return blocks;
}

bool Starts(const std::string& block, const char* with) { return block.rfind(with, 0) == 0; }

class DocsExamplesTest : public testing_support::CliFixture {};

TEST_F(DocsExamplesTest, EveryExampleReadsAndEveryTimelinePlays) {
  const std::vector<std::string> blocks = JsonBlocks();
  ASSERT_GE(blocks.size(), 10u);
  std::string profile;
  for (const std::string& b : blocks) {
    if (Starts(b, "\"profile\"")) profile = b;
  }
  ASSERT_FALSE(profile.empty()) << "the guide shows no profile";
  // The registry example names a .reg file beside the scenario.
  Write("settings.reg",
        "Windows Registry Editor Version 5.00\r\n\r\n[HKEY_CURRENT_USER\\Software\\Brellow\\Zintra]"
        "\r\n\"ScanInbox\"=dword:00000000\r\n");
  const std::string base = dir_.string();
  for (const std::string& b : blocks) {
    SCOPED_TRACE(b);
    std::string text;
    bool play = false;
    if (Starts(b, "\"profile\"")) {
      text = "{" + b + "}";
    } else if (Starts(b, "\"marks\"")) {
      text = R"({"profile": {"user": "jane@contoso.com", "stores": [{"folders": [{"name": "Tasks",
               "items": [{"id": "copy1"}, {"id": "copy2"}, {"id": "task", )" +
             b + "}]}]}]}}";
    } else if (Starts(b, "\"registry\"") || Starts(b, "\"files\"")) {
      text = "{" + profile + ",\n" + b + "}";
    } else if (Starts(b, "{\"do\"")) {
      text = "{" + profile + ",\n\"timeline\": [{\"do\": \"start\"},\n" + b + "]}";
      play = true;
    } else if (Starts(b, "{\"message\"") || Starts(b, "{\"error_record\"") ||
               Starts(b, "{\"dialog\"")) {
      text = "{" + profile + ",\n\"expect\": [" + b + "]}";
    } else {
      ADD_FAILURE() << "an example of no known kind";
      continue;
    }
    try {
      Scenario s = ReadScenarioText(text, "example.json", base);
      if (play) {
        RunOptions options;
        options.quiet = true;
        std::ostringstream progress;
        RunScenario(s, options, progress);
      }
    } catch (const InputError& e) {
      ADD_FAILURE() << e.what();
    }
  }
}

}  // namespace
}  // namespace zintra::simtool
