// The watch over jobs that logging jobs start: what the tear-down's check names, and
// that a long session's finished jobs do not pile up in it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "src/jobs/i_job.h"
#include "src/logging/lingering_jobs.h"
#include "tests/logging/zintra_utils_fixture.h"

namespace zintra {
namespace {

using testing::ElementsAre;
using testing::Le;
using testing_support::ZintraUtilsTest;

class NamedJob : public IJob {
 public:
  explicit NamedJob(std::string description) : description_(std::move(description)) {}
  void Activate() override {}
  void Abort() override {}
  std::string JobDescription() override { return description_; }

 private:
  std::string description_;
};

using LingeringJobsTest = ZintraUtilsTest;

TEST_F(LingeringJobsTest, TheCheckNamesOnlyTheJobsStillAliveWithTheirOwnersWords) {
  auto copy = std::make_shared<NamedJob>("Copy to Customers");
  auto audit = std::make_shared<NamedJob>("Audit Re: prices");
  utils_.WatchLingeringJob("Lingering JobLog after JobProcess killed: ", copy);
  utils_.WatchLingeringJob("Lingering JobCreateShared after JobProcess killed: ",
                           std::make_shared<NamedJob>("ended long ago"));
  utils_.WatchLingeringJob("Lingering JobAudit after JobChanged killed: ", audit);
  utils_.CheckLingering();
  EXPECT_THAT(Lines("Warning"),
              ElementsAre("Lingering JobLog after JobProcess killed: Copy to Customers",
                          "Lingering JobAudit after JobChanged killed: Audit Re: prices"));
}

TEST_F(LingeringJobsTest, ASessionOfManyFinishedJobsKeepsOnlyTheRunningOnes) {
  LingeringJobs watch(world_.errors);
  auto running = std::make_shared<NamedJob>("still copying");
  watch.Watch("Lingering JobLog after JobProcess killed: ", running);
  for (int i = 0; i < 100000; ++i) {
    watch.Watch("Lingering JobLog after JobProcess killed: ", std::make_shared<NamedJob>("done"));
  }
  EXPECT_THAT(watch.Watched(), Le(4u));
  watch.CheckLingeringRefs();
  EXPECT_THAT(Lines("Warning"),
              ElementsAre("Lingering JobLog after JobProcess killed: still copying"));
  running.reset();
  watch.CheckLingeringRefs();
  EXPECT_THAT(Lines("Warning"),
              ElementsAre("Lingering JobLog after JobProcess killed: still copying"));
}

}  // namespace
}  // namespace zintra
