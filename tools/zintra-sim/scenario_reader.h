// ScenarioReader: reads a scenario file (docs/scenarios.md) strictly. Every problem —
// bad JSON, a field of the wrong type, an unknown field, an unknown item class, a link
// or timeline target naming no item, an unreadable .reg file — throws InputError
// naming the file, the line and the field, and what was expected. Nothing is built
// or written while reading.
#pragma once

#include <string>

#include "tools/zintra-sim/scenario.h"

namespace zintra::simtool {

// `file` is read from disk; relative paths in it resolve against its folder.
Scenario ReadScenarioFile(const std::string& file);
// From text; `file` names it in errors, `base_dir` resolves relative paths.
Scenario ReadScenarioText(const std::string& text, const std::string& file,
                          const std::string& base_dir);
// The whole file, or InputError naming it.
std::string ReadWholeFile(const std::string& file);

}  // namespace zintra::simtool
