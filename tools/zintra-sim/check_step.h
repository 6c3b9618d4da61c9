// CheckStep: expectations checked at a point of the timeline ("do": "check") against the
// run as it stands then: the profile, the registry, the log lines, the messages shown
// and the error log written so far.
#pragma once

#include <vector>

#include "tools/zintra-sim/runner.h"
#include "tools/zintra-sim/scenario.h"

namespace zintra::simtool {

class World;

std::vector<ExpectationOutcome> CheckNow(World& world, const std::vector<ExpectSpec>& checks);

}  // namespace zintra::simtool
