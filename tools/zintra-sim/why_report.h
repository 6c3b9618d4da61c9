// WhyReport: what happened to each item, read back after a run. Every outcome,
// contact, copy and reason comes from the decisions the add-in stated while it ran
// (DecisionLog): nothing is taken from the add-in's text log, whose level and size
// limit thin it out, and no match is worked out again from the profile. The profile
// only lists the items, so that those the add-in never reached are reported too, each
// with why: its folder was not monitored, or the scan of it stopped, or never ran.
// Also the text table and the JSON of the report.
#pragma once

#include <iosfwd>
#include <vector>

#include <nlohmann/json.hpp>

#include "sim/outlook/profile.h"
#include "src/host/decision_log.h"
#include "tools/zintra-sim/profile_loader.h"
#include "tools/zintra-sim/runner.h"

namespace zintra::simtool {

std::vector<WhyRow> BuildWhyReport(const sim::Profile& profile, const ProfileLoader& loader,
                                   const std::vector<Decision>& decisions);
void PrintWhyTable(const std::vector<WhyRow>& rows, std::ostream& out);
nlohmann::ordered_json WhyJson(const std::vector<WhyRow>& rows);

}  // namespace zintra::simtool
