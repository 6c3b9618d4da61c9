// WhyReport: what happened to each item, read back after a run from the item marks
// and the add-in's log lines (the add-in itself is not asked). For every item the
// scenario made (contacts aside): logged (with the contacts it is linked to and its
// copies), screened (with the reason the log gives), in progress, or not reached;
// and every copy the add-in made. Also the text table and the JSON of the report.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "sim/outlook/profile.h"
#include "tools/zintra-sim/profile_loader.h"
#include "tools/zintra-sim/runner.h"

namespace zintra::simtool {

std::vector<WhyRow> BuildWhyReport(const sim::Profile& profile, const ProfileLoader& loader,
                                   const std::vector<std::string>& log_lines);
// The reason a log gives for an item being skipped or marked not-logged ("" if none).
std::string ScreeningReason(const std::string& subject, const std::vector<std::string>& log_lines);
void PrintWhyTable(const std::vector<WhyRow>& rows, std::ostream& out);
nlohmann::ordered_json WhyJson(const std::vector<WhyRow>& rows);

}  // namespace zintra::simtool
