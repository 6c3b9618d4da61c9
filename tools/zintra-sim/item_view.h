// ItemView: what the program reads back from a simulated item after a run: its
// fields, the add-in's marks ("Zintra Tag", "Zintra Logged", "Zintra Shared", the
// copy lists) and its links, read straight from the stored properties so that
// reading never raises item events.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "sim/outlook/sim_records.h"

namespace zintra::simtool {

struct ItemMarks {
  std::optional<std::string> tag, logged, shared;  // user properties, as text
  int logged_copies = 0;
  int shared_copies = 0;
  std::vector<std::string> links;  // display names of linked items
};

ItemMarks ReadMarks(const sim::MessageRecord& m);
// A field by the name expectations use: subject, body, class, message_class,
// sensitivity, from, to, categories, full_name, email1..3, company, links,
// logged_copies, shared_copies; any other name is a user property ("" when absent).
std::string FieldText(const sim::MessageRecord& m, const std::string& field);
std::string SubjectOf(const sim::MessageRecord& m);

}  // namespace zintra::simtool
