// Scenario reader: any bytes as a scenario file, read and its timeline checked.
#include "fuzz/fuzz_input.h"
#include "tools/zintra-sim/scenario_reader.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  // .reg files named by the scenario resolve in a folder that does not exist.
  zintra::fuzz::Expect([&] {
    zintra::simtool::ReadScenarioText(zintra::fuzz::Text(data, size), "fuzz.json",
                                      "/nonexistent-zintra-fuzz");
  });
  return 0;
}
