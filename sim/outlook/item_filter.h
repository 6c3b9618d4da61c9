// ItemFilter: a compiled Items.Find / Items.Restrict condition.
//   condition := term { "or" term }      term := factor { "and" factor }
//   factor    := "not" factor | "(" condition ")" | "[" property "]" op literal
//   op        := = | <> | < | > | <= | >=
//   literal   := "text" (a doubled quote inside) | 'text' | number | True | False
// Properties: Subject, Body, MessageClass, Categories (= matches any one category),
// Companies, FullName, Email1Address..Email3Address, Owner, Type, Sensitivity,
// CreationTime/Created, LastModificationTime/Modified, SentOn/Sent,
// ReceivedTime/Received, and otherwise a user property of that name. Dates compare
// with literals "m/d/yyyy", "m/d/yyyy h:nn", "m/d/yyyy h:nn AM". Text compares
// without regard to letter case. A property an item lacks matches nothing.
// Compile throws ZError kMapiInvalidParameter with the reason for a malformed filter.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "sim/outlook/sim_records.h"

namespace zintra::sim {

class ItemFilter {
 public:
  static ItemFilter Compile(const std::string& filter);
  bool Matches(const MessageRecord& message) const;

  struct Node;

 private:
  explicit ItemFilter(std::shared_ptr<const Node> root) : root_(std::move(root)) {}
  std::shared_ptr<const Node> root_;
};

// A date literal in the forms above; nullopt when the text is not one.
std::optional<double> ParseFilterDate(const std::string& text);

}  // namespace zintra::sim
