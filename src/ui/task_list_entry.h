// TaskListEntry: one user-visible task in the "finishing tasks" list. Shared by the
// job queue's task collections and the task list form; the form keeps the running
// totals, so the units are changed only through frmTaskList.
#pragma once

#include <cstdint>
#include <string>

namespace zintra {

struct TaskListEntry {
  std::string Key;
  std::string Description;
  int32_t RSIconIdx = 0;
  float TotalWorkUnits = 0;
  float UnitsDone = 0;
  bool IsSupport = false;
};

}  // namespace zintra
