// Checks a dry run's report against what the add-in left in the profile, read back from
// the results folder (report.json against profile.json): each item's row says logged
// exactly when the add-in marked it logged, counts the copies the add-in made of it, and
// names only contacts that hold an address the item names (or its domain). Shared by the tests and
// the benchmark of a generated mailbox.
#pragma once

#include <string>
#include <vector>

#include "tools/zintra-sim/scenario.h"

namespace zintra::simtool::testing_support {

// One line per disagreement ("Message 12: report says logged, marks say False"); empty
// when the report and the profile agree.
std::vector<std::string> ReportMismatches(const std::string& results_dir);

// The add-in's log settings at their smallest (nothing logged, a 1 KB log) or their
// largest (every line, error reporting, the largest log), as registry values of `s`.
void SetLogSettings(Scenario& s, bool largest);

}  // namespace zintra::simtool::testing_support
