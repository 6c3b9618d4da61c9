// Progress: what a run shows while it works. Each timeline step is announced with its
// virtual time; while time passes, the add-in's task list (its entries and overall
// progress) and queue are shown, as a bar redrawn in place on a terminal (live) or as
// a plain line whenever they change. Quiet shows nothing.
#pragma once

#include <iosfwd>
#include <memory>
#include <string>

#include "tools/zintra-sim/scenario.h"

namespace zintra {
class ZintraAddinApp;
}

namespace zintra::simtool {

class Progress {
 public:
  Progress(std::ostream& out, bool quiet, bool live) : out_(out), quiet_(quiet), live_(live) {}
  void Step(const StepSpec& step, double now);
  void Update(const std::shared_ptr<ZintraAddinApp>& addin);
  void Done();

  // "start (explorer, add-in)", "deliver 'Quote'", "wait 10m"
  static std::string Describe(const StepSpec& step);

 private:
  void EndLiveLine();
  std::ostream& out_;
  bool quiet_;
  bool live_;
  bool live_line_ = false;
  std::string last_;
};

}  // namespace zintra::simtool
