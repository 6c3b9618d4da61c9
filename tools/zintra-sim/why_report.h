// WhyReport: what happened to each item, read back after a run. Outcomes and
// attribution come from the resulting profile (ProfileFacts): an item is logged when
// its "Zintra Logged" mark says so; its contacts are those it or its copies are linked
// to and those of the folder set whose log folder holds a copy that the item was from
// or to, each with the way it matched (the item's own link, or which of the contact's
// addresses the item was from or to); its copies are those its copy lists name; a copy
// is an item another item names as its copy. Only why an item was screened out comes
// from the add-in's log: the reason logged right after the add-in screened that item
// (by subject and folder). Also the text table and the JSON of the report.
#pragma once

#include <iosfwd>
#include <string>
#include <unordered_map>
#include <vector>

#include <nlohmann/json.hpp>

#include "sim/outlook/profile.h"
#include "tools/zintra-sim/profile_loader.h"
#include "tools/zintra-sim/runner.h"

namespace zintra::simtool {

// `foldersets` are the scenario's folder sets: a copy in a set's log folder was logged
// for the contacts of that set's contact folder.
std::vector<WhyRow> BuildWhyReport(const sim::Profile& profile, const ProfileLoader& loader,
                                   const std::vector<FoldersetSpec>& foldersets,
                                   const std::vector<std::string>& log_lines);
// The reasons the add-in logged for screening items out, read in one pass: each is the
// reason logged right after the add-in began screening that item (subject and folder).
class ScreeningReasons {
 public:
  explicit ScreeningReasons(const std::vector<std::string>& log_lines);
  // "" when none; folder "" takes the item's last reason in any folder.
  std::string For(const std::string& subject, const std::string& folder) const;

 private:
  std::unordered_map<std::string, std::string> by_folder_, by_subject_;
};

// The reason the log gives for the item `subject` in the folder named `folder` being
// skipped or marked not-logged ("" if none); folder "" takes any folder.
std::string ScreeningReason(const std::string& subject, const std::string& folder,
                            const std::vector<std::string>& log_lines);
void PrintWhyTable(const std::vector<WhyRow>& rows, std::ostream& out);
nlohmann::ordered_json WhyJson(const std::vector<WhyRow>& rows);

}  // namespace zintra::simtool
