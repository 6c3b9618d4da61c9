// ScenarioWriter: a scenario (or the profile part of one) as the JSON that
// ScenarioReader reads back to the same data, every step and expectation included.
// `import` writes its result with it.
#pragma once

#include <nlohmann/json.hpp>

#include "tools/zintra-sim/scenario.h"

namespace zintra::simtool {

nlohmann::ordered_json PersonJson(const PersonSpec& p);
nlohmann::ordered_json ItemJson(const ItemSpec& item);
nlohmann::ordered_json ProfileJson(const ProfileSpec& profile);
nlohmann::ordered_json RegistryJson(const RegistrySpec& registry);
nlohmann::ordered_json StepJson(const StepSpec& step);
nlohmann::ordered_json ExpectJson(const ExpectSpec& expectation);
nlohmann::ordered_json FilesJson(const std::vector<FileSpec>& files);
// The whole scenario: the profile, Outlook's version, the start time, the registry
// values, the files, the timeline and the expectations.
nlohmann::ordered_json ScenarioJson(const Scenario& scenario);

}  // namespace zintra::simtool
