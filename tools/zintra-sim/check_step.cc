#include "tools/zintra-sim/check_step.h"

#include "tools/zintra-sim/disk_files.h"
#include "tools/zintra-sim/expectations.h"
#include "tools/zintra-sim/host_record.h"
#include "tools/zintra-sim/why_report.h"
#include "tools/zintra-sim/world.h"

namespace zintra::simtool {

std::vector<ExpectationOutcome> CheckNow(World& world, const std::vector<ExpectSpec>& checks) {
  RunResult now;
  now.log_lines = world.LogLines();
  now.host = RecordHost(world.outlook());
  now.host.files = FilesNamed(world.outlook().files, checks);
  now.why = BuildWhyReport(world.profile(), world.loader(), world.Decisions());
  return CheckExpectations(checks, world.outlook().registry, world.loader(), now);
}

}  // namespace zintra::simtool
