// ItemMarks fields: the parts of an item the add-in reads or writes beyond its plain
// fields, as expectations name them and as a scenario presets them:
//   "Zintra Last Audited"       the named date mark, "2026-01-05T09:01:00" ("" absent)
//   logged_copy_folders, shared_copy_folders
//                               the folders of the copies the entry-ID lists name, in list
//                               order, joined with "; " ("?" for a copy that is gone)
//   logged_copy_ids, shared_copy_ids
//                               the same as the scenario's item ids ("-" for a copy the
//                               add-in made)
//   logged_entry_ids, logged_store_ids, shared_entry_ids, shared_store_ids
//                               how many identifiers each list holds ("" when absent)
//   journal_type                a journal entry's Type ("Phone Call", "E-mail Message")
//   owner, ownership            a task's owner and Ownership (new, delegated, assigned)
//   attachments                 "name (size, by value)" or "name (link)", joined with "; "
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "sim/outlook/sim_records.h"
#include "tools/zintra-sim/json_source.h"
#include "tools/zintra-sim/scenario.h"

namespace zintra::simtool {

// A task's Ownership by its number (olNewTask, olDelegatedTask, olOwnTask).
inline constexpr const char* kOwnership[] = {"new", "delegated", "assigned"};

class ProfileLoader;

// nullopt when `field` is none of the names above.
std::optional<std::string> MarkText(const sim::MessageRecord& m, const std::string& field,
                                    const ProfileLoader& loader);

// The marks an item of the profile starts with: see PresetMarks in scenario.h.
PresetMarks ReadPresetMarks(const JsonNode& n);
// Writes the marks onto the item once every item of the profile exists (the lists name
// other items); an id naming no item throws std::invalid_argument with the id.
void ApplyPresetMarks(sim::MessageRecord& m, const PresetMarks& marks, const ProfileLoader& loader);

}  // namespace zintra::simtool
