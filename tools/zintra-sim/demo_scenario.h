// The built-in scenario of `zintra-sim demo` (a scenario file's text; `demo --print`
// shows it).
#pragma once

namespace zintra::simtool {

extern const char kDemoScenario[];

}  // namespace zintra::simtool
