// Progress: what a run shows while it works. Each timeline step is announced with its
// virtual time. While time passes, the add-in's task list is shown task by task, as
// its window shows it: on a terminal (live) one bar per task, redrawn in place, and the
// number of jobs queued; otherwise plain lines, one when a task appears, when its
// progress passes a quarter, and when it is done. Quiet shows nothing.
#pragma once

#include <iosfwd>
#include <map>
#include <string>
#include <vector>

#include "tools/zintra-sim/scenario.h"

namespace zintra::simtool {

// One row of the task list as shown: the task's description and its percentage.
struct TaskRow {
  std::string key;
  std::string description;
  int percent = 0;
};

class Progress {
 public:
  Progress(std::ostream& out, bool quiet, bool live) : out_(out), quiet_(quiet), live_(live) {}
  void Step(const StepSpec& step, double now);
  // The task list's rows as they are now (empty: no task list), and the queue's length.
  void Update(const std::vector<TaskRow>& rows, int queued);
  // Something the user should know about a step ("the click does nothing").
  void Note(const std::string& text);
  void Done();

  // "start (explorer, add-in)", "deliver 'Quote'", "wait 10m"
  static std::string Describe(const StepSpec& step);
  // "[#######-------]  50%  Process email: Quote"
  static std::string Bar(const TaskRow& row, int width);

 private:
  void EraseLive();
  std::ostream& out_;
  bool quiet_;
  bool live_;
  int live_lines_ = 0;  // lines of the live block on screen
  std::string last_live_;
  // Plain lines: each task's last shown quarter (-1 when only announced).
  std::map<std::string, std::pair<std::string, int>> shown_;
};

}  // namespace zintra::simtool
