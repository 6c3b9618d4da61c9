// Expectations: the checks a scenario makes after its timeline, each answered with
// whether it was met and what was found instead. Text compares without regard to
// letter case ("True" matches "true"); an expected "" means the field is absent.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "sim/registry/memory_registry.h"
#include "tools/zintra-sim/profile_loader.h"
#include "tools/zintra-sim/runner.h"

namespace zintra::simtool {

std::vector<ExpectationOutcome> CheckExpectations(const std::vector<ExpectSpec>& descs,
                                                  const sim::MemoryRegistry& registry,
                                                  const ProfileLoader& loader,
                                                  const RunResult& result);
// "HKLM\\Software\\X" or "HKEY_CURRENT_USER\\Software\\X" -> hive and path (HKCU unless
// the key names the machine hive).
std::pair<HKey, std::string> SplitRegKey(const std::string& key);
// A registry value as expectations compare it: a DWORD in decimal, a string as it is,
// a multi-string joined with "; "; nullopt when absent.
std::optional<std::string> RegistryText(const sim::MemoryRegistry& registry, const std::string& key,
                                        const std::string& name);
// "line 12: folder 'Journal' holds 1 matching item(s), expected 2"
std::string DescribeOutcome(const ExpectationOutcome& outcome);

}  // namespace zintra::simtool
