// TimelineCheck: what can be known to be wrong with a timeline before it plays, so that
// a bad scenario stops with the file, line and field and nothing is built or written:
// a step that needs Outlook running before any "start", a second "start" (a simulated
// Outlook process starts once), an item named after the step that deleted it or before
// the step that brings it, a folder named after the step that removed it, and a timeline
// that runs past the longest virtual time a run may cover (a wait of years would keep
// the program busy for hours). What only the playing can show (an item the add-in moved
// away, Outlook quitting when its last window closes) is checked by the runner as it
// plays.
#pragma once

#include "tools/zintra-sim/scenario.h"

namespace zintra::simtool {

// The longest virtual time a timeline may cover, from the scenario's start.
inline constexpr double kMaxTimelineDays = 366;
// The most steps a timeline may hold.
inline constexpr size_t kMaxTimelineSteps = 100000;

// Throws InputError for the first problem, naming the step's line and field.
void CheckTimeline(const Scenario& s);

}  // namespace zintra::simtool
