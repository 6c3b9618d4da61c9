// ScenarioFields: the typed fields of a scenario file (people, times, items, folders,
// the profile, the registry), read strictly from their JSON nodes. A value of the wrong
// kind or form throws InputError naming the file, line and field, and what was expected.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "tools/zintra-sim/json_source.h"
#include "tools/zintra-sim/scenario.h"

namespace zintra::simtool {

// "Name <user@domain>", "user@domain", an Exchange address, or {name, smtp, exchange}.
PersonSpec ReadPerson(const JsonNode& n);
// One person or a list of them.
std::vector<PersonSpec> ReadPeople(const JsonNode& n);
// "2026-01-05T09:30:00" as a date serial.
double ReadTime(const JsonNode& n);
// An object of scalars, each as text.
std::map<std::string, std::string> ReadTextMap(const JsonNode& n);
// `folder_kind_known` false: the item is saved by a step into a folder known only when
// it is played, so a missing class is settled then (see ItemClassForFolderType).
ItemSpec ReadItem(const JsonNode& n, ItemClass default_class, bool folder_kind_known = true);
// A top folder of the mailbox without a "type" named like a default folder has its kind.
FolderSpec ReadFolder(const JsonNode& n, bool top_of_mailbox);
ProfileSpec ReadProfile(const JsonNode& n);
// Values and .reg files; file paths resolve against base_dir and must exist.
RegistrySpec ReadRegistry(const JsonNode& n, const std::string& base_dir);

}  // namespace zintra::simtool
