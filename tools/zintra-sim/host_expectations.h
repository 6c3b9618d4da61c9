// HostExpectations: the checks a scenario makes on what the user was shown and on the
// error log:
//   {"message": text or string number, "kind", "title", "buttons", "icon", "answer",
//    "ticked", "present", "count"}    a message shown (or, with present false, not)
//   {"messages": [text, ...]}          every message shown, in this order
//   {"error_record": {column: value}, "present", "count"}  rows of the error log
//   {"error_log": path}                the error log's file, as the add-in names it
//   {"log_order": [text, ...]}         log lines containing the texts were written in
//                                      this order (other lines may come between)
// A text matches when the shown text contains it; other fields compare without regard
// to case.
#pragma once

#include "tools/zintra-sim/host_record.h"
#include "tools/zintra-sim/json_source.h"
#include "tools/zintra-sim/runner.h"
#include "tools/zintra-sim/scenario.h"

namespace zintra::simtool {

bool IsHostExpectation(const JsonNode& n);
ExpectSpec ReadHostExpectation(const JsonNode& n);
ExpectationOutcome CheckHostExpectation(const ExpectSpec& e, const RunResult& result);

}  // namespace zintra::simtool
