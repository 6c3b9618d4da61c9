// HostSteps: the timeline steps that act on the simulated host rather than as the user
// of Outlook: a member of Outlook, the MAPI library, the registry or the disk starts to
// fail ("fail") or every failure set so far is lifted ("heal"), a folder vanishes
// ("remove-folder"), and the user's answers to the next message boxes are given
// ("answer"). Read strictly like every step; played against the run's World.
#pragma once

#include <string>

#include "tools/zintra-sim/json_source.h"
#include "tools/zintra-sim/scenario.h"

namespace zintra::simtool {

class World;

bool IsHostStep(StepKind kind);
// Fills `step` (its kind already read) from the step's fields.
void ReadHostStep(const JsonNode& n, StepSpec& step);
// Plays it; a target or folder that no longer exists is an error of the run.
void PlayHostStep(World& world, const StepSpec& step);

}  // namespace zintra::simtool
