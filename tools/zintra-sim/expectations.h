// Expectations: the checks a scenario makes after its timeline, each answered with
// whether it was met and what was found instead. Text compares without regard to
// letter case ("True" matches "true"); an expected "" means the field is absent.
#pragma once

#include <vector>

#include "sim/outlook/profile.h"
#include "tools/zintra-sim/profile_loader.h"
#include "tools/zintra-sim/runner.h"

namespace zintra::simtool {

std::vector<ExpectationOutcome> CheckExpectations(const std::vector<ExpectSpec>& descs,
                                                  const sim::Profile& profile,
                                                  const ProfileLoader& loader,
                                                  const RunResult& result);
// "line 12: folder 'Journal' holds 1 matching item(s), expected 2"
std::string DescribeOutcome(const ExpectationOutcome& outcome);

}  // namespace zintra::simtool
