#include "src/jobs/job_callback.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "src/core/z_error.h"

namespace zintra {
namespace {

class Target : public Dispatchable {
 public:
  Value Invoke(std::string_view name, const Value* arg) override {
    calls.push_back(std::string(name) + (arg ? "(" + arg->ToString() + ")" : "()"));
    if (name == "Fails") throw ZError(kErrNoSuchMember);
    return {};
  }
  std::vector<std::string> calls;
};

TEST(JobCallback, CallsByNameWithNoArgumentOrExactlyTheOneGiven) {
  auto target = std::make_shared<Target>();
  JobCallback without, with;
  without.Initialize(target, "deferred", "Refresh", "");
  with.Initialize(target, "deferred", "Scan", "", Value("Inbox"));
  EXPECT_EQ(without.JobDescription(), "deferred");
  without.Activate();
  with.Activate();
  EXPECT_THAT(target->calls, ::testing::ElementsAre("Refresh()", "Scan(Inbox)"));
  EXPECT_FALSE(with.HoldsTarget());
  with.Activate();  // one-shot: the target is gone
  EXPECT_EQ(target->calls.size(), 2u);
}

TEST(JobCallback, AbortCallsTheAbortMethodOnlyWhenNamedAndAlwaysReleases) {
  auto target = std::make_shared<Target>();
  JobCallback silent, named;
  silent.Initialize(target, "d", "Refresh", "");
  named.Initialize(target, "d", "Refresh", "Cancel", Value(int32_t{7}));
  silent.Abort();
  named.Abort();
  EXPECT_THAT(target->calls, ::testing::ElementsAre("Cancel(7)"));
  EXPECT_FALSE(silent.HoldsTarget());
  EXPECT_FALSE(named.HoldsTarget());
  EXPECT_EQ(target.use_count(), 1);
}

TEST(JobCallback, ErrorsOfTheCalledMethodAreSwallowed) {
  auto target = std::make_shared<Target>();
  JobCallback job;
  job.Initialize(target, "d", "Fails", "Fails");
  EXPECT_NO_THROW(job.Activate());
  EXPECT_FALSE(job.HoldsTarget());
}

}  // namespace
}  // namespace zintra
