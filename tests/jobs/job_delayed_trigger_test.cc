#include "src/jobs/job_delayed_trigger.h"

#include <gtest/gtest.h>

#include "tests/jobs/job_test_env.h"

namespace zintra::testing {
namespace {

constexpr int64_t kMs = 1000;

struct TriggerEnv : JobEnv {
  explicit TriggerEnv(double start = MakeDate(2024, 3, 1, 9, 0, 0)) : JobEnv(true, start) {
    Start();
  }
  std::shared_ptr<JobDelayedTrigger> Make(float delay_ms) {
    auto job = std::make_shared<JobDelayedTrigger>(clock, loop);
    triggered_conn = job->Trigger.Connect([this] { ++triggered; });
    aborted_conn = job->Aborted.Connect([this] { ++aborted; });
    job->Initialize(addin, delay_ms);
    return job;
  }
  int triggered = 0;
  int aborted = 0;
  Connection triggered_conn, aborted_conn;
};

TEST(JobDelayedTrigger, ZeroDelayTriggersOnTheFirstActivation) {
  TriggerEnv env;
  auto job = env.Make(0);
  EXPECT_EQ(job->JobDescription(), "JobDelayedTrigger");
  EXPECT_EQ(env.queue->QueuedJobsCount(), 1);
  env.loop.AdvanceBy(16 * kMs);
  EXPECT_EQ(env.triggered, 1);
  EXPECT_EQ(env.queue->QueuedJobsCount(), 0);
  EXPECT_TRUE(env.loop.RunUntilIdle());
  EXPECT_EQ(env.triggered, 1);
}

TEST(JobDelayedTrigger, RestartPostponesTheTriggerToTheNewDelay) {
  TriggerEnv env;
  auto job = env.Make(1000);
  env.loop.AdvanceBy(900 * kMs);
  job->Restart(1000);
  env.loop.AdvanceBy(900 * kMs);
  EXPECT_EQ(env.triggered, 0);
  EXPECT_TRUE(env.queue->TimerForm()->Active());  // the wait keeps the timer going
  env.loop.AdvanceBy(200 * kMs);
  EXPECT_EQ(env.triggered, 1);
}

TEST(JobDelayedTrigger, WaitAcrossMidnightTriggersAtTheFirstActivationAfterIt) {
  TriggerEnv env(MakeDate(2024, 3, 1, 23, 59, 59) + 0.9 / 86400.0);
  env.Make(60'000);  // a minute, of which 0.1 s passes before midnight
  env.loop.AdvanceBy(90 * kMs);
  EXPECT_EQ(env.triggered, 0);
  env.loop.AdvanceBy(20 * kMs);  // past midnight, the next tick triggers
  EXPECT_EQ(env.triggered, 1);
  EXPECT_LT(env.clock.SecondsSinceMidnight(), 1.0f);
}

TEST(JobDelayedTrigger, AbortRaisesAbortedAndFlushAbortsAWaitingTrigger) {
  TriggerEnv env;
  env.Make(10'000);
  env.queue->Flush(true);
  EXPECT_EQ(env.aborted, 1);
  EXPECT_EQ(env.triggered, 0);
  EXPECT_EQ(env.queue->QueuedJobsCount(), 0);
}

TEST(JobDelayedTrigger, OldOutlookPumpsMessagesWhileWaiting) {
  TriggerEnv env;
  env.addin->outlook12 = false;
  env.Make(100);
  env.loop.RunUntilIdle();
  EXPECT_GT(env.loop.do_events_count(), 3);
  EXPECT_EQ(env.triggered, 1);
}

TEST(JobDelayedTrigger, ErrorFromATriggerListenerIsLogged) {
  TriggerEnv env;
  auto job = env.Make(0);
  Connection bad = job->Trigger.Connect([] { throw ZError(kErrObjectNotSet); });
  env.loop.RunUntilIdle();
  const auto errors = env.Errors();
  ASSERT_EQ(errors.size(), 1u);
  EXPECT_EQ(errors[0].number, kErrObjectNotSet);
  EXPECT_EQ(errors[0].Innermost().rfind("JobDelayedTrigger.", 0), 0u);
}

}  // namespace
}  // namespace zintra::testing
