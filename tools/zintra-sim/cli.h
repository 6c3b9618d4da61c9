// The program's commands: demo, run SCENARIO, import PATH... Returns the exit code:
// 0 done (run: every expectation met), 1 an expectation failed, 2 bad input (nothing
// written), 3 the simulation itself failed.
#pragma once

namespace zintra::simtool {

inline constexpr int kExitExpectationFailed = 1;
inline constexpr int kExitSimulationFailed = 3;

int Main(int argc, char** argv);

}  // namespace zintra::simtool
