// ResultsWriter: the files a run leaves in its output folder (see runner.h), written
// all or nothing through OutputFiles. ProfileJson dumps the profile as it ended.
#pragma once

#include <filesystem>

#include <nlohmann/json.hpp>

#include "sim/addin_host/sim_outlook.h"
#include "sim/outlook/profile.h"
#include "tools/zintra-sim/profile_loader.h"
#include "tools/zintra-sim/runner.h"

namespace zintra::simtool {

nlohmann::ordered_json ResultProfileJson(const sim::Profile& profile, const ProfileLoader& loader);
nlohmann::ordered_json ReportJson(const Scenario& scenario, const RunResult& result);

void WriteResults(const std::filesystem::path& dir, const Scenario& scenario,
                  const sim::Profile& profile, const ProfileLoader& loader,
                  sim::SimOutlook& outlook, const RunResult& result);

}  // namespace zintra::simtool
