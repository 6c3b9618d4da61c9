#include "src/jobs/job_queue.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/jobs/job_test_env.h"
#include "tests/support/error_of.h"

namespace zintra::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr int64_t kMs = 1000;

// A started queue, run at once or (async) on 10 ms timer slices of 15.625 ms clock ticks.
template <bool kAsync>
class QueueTest : public ::testing::Test {
 protected:
  QueueTest() { env.Start(); }
  JobEnv env{kAsync};
};
using JobQueueSync = QueueTest<false>;
using JobQueueAsync = QueueTest<true>;

TEST_F(JobQueueSync, QueueRunsTheJobAndItsRequeuedWorkBeforeReturning) {
  auto a = env.Job("a", 3);
  env.queue->Queue(a, false);
  EXPECT_EQ(a->activations, 3);
  EXPECT_EQ(env.queue->QueuedJobsCount(), 0);
  EXPECT_EQ(env.queue->ActiveJob(), nullptr);
}

TEST_F(JobQueueSync, JobQueuedFromInsideAnActivationRunsAfterItInTheSameRun) {
  auto inner = env.Job("inner");
  auto outer = env.Job("outer");
  outer->on_activate = [&](ScriptedJob&) {
    env.queue->Queue(inner, false);
    EXPECT_EQ(inner->activations, 0);
    EXPECT_EQ(env.queue->ActiveJob(), outer);
    env.trace.push_back("outer returns");
  };
  env.queue->Queue(outer, false);
  EXPECT_THAT(env.trace, ElementsAre("outer", "outer returns", "inner"));
}

TEST_F(JobQueueSync, LatestTopPriorityJobRunsFirst) {
  env.queue->SetPaused(true);
  env.queue->Queue(env.Job("top-on-empty"), true);  // an empty queue appends
  env.queue->Queue(env.Job("normal"), false);
  env.queue->Queue(env.Job("top1"), true);
  env.queue->Queue(env.Job("top2"), true);
  EXPECT_THAT(env.trace, IsEmpty());
  env.queue->SetPaused(false);
  EXPECT_THAT(env.trace, ElementsAre("top2", "top1", "top-on-empty", "normal"));
}

TEST_F(JobQueueSync, JobRequeueingWhileAbortingIsToldToAbortAgainWithAWarning) {
  env.queue->SetPaused(true);
  auto stubborn = env.Job("stubborn");
  stubborn->on_abort = [&](ScriptedJob& self) {
    if (self.aborts == 1) env.queue->Queue(self.shared_from_this(), true);
  };
  auto other = env.Job("other");
  env.queue->Queue(stubborn, false);
  env.queue->Queue(other, false);
  env.queue->Flush(true);
  EXPECT_THAT(env.trace, ElementsAre("abort stubborn", "abort stubborn", "abort other"));
  EXPECT_THAT(env.Lines("Warning"),
              ElementsAre("Job 'stubborn' trying to re-queue while queue is aborting. Telling it "
                          "to Abort."));
  EXPECT_EQ(env.queue->QueuedJobsCount(), 0);
}

TEST_F(JobQueueSync, PausingRules) {
  auto job = env.Job("pauser");
  ZError raised(0);
  job->on_activate = [&](ScriptedJob&) {
    try {
      env.queue->SetPaused(true);
    } catch (const ZError& e) {
      raised = e;
    }
  };
  env.queue->SetPaused(true);
  env.queue->Queue(job, false);
  env.queue->SetPaused(true);  // same value: nothing
  EXPECT_EQ(job->activations, 0);
  env.queue->Flush(false);  // a flush runs even a paused queue
  EXPECT_EQ(raised.Number(), kErrInvalidCall);
  EXPECT_EQ(raised.Description(), "Cannot pause Queue while flushing");
}

TEST_F(JobQueueSync, RunLongerThanOneSecondShowsTheTaskListAndHidesItAtTheEnd) {
  auto slow = env.Job("slow", 6);
  slow->on_activate = [&](ScriptedJob&) { env.clock.AdvanceMs(600); };
  env.queue->Queue(slow, false);
  EXPECT_THAT(env.view().visibility_changes(), ElementsAre(true, false));
  ASSERT_EQ(env.windows.calls().size(), 1u);  // put on top once, however long the run
  const auto& top = env.windows.calls().front();
  EXPECT_EQ(top.hwnd, env.view().hWnd());
  EXPECT_EQ(top.insert_after, -1);
  EXPECT_EQ(top.flags, 35u);

  auto quick = env.Job("quick", 3);
  quick->on_activate = [&](ScriptedJob&) { env.clock.AdvanceMs(300); };
  env.queue->Queue(quick, false);
  EXPECT_EQ(env.view().visibility_changes().size(), 2u);
}

TEST_F(JobQueueSync, AbandonAbortsQueuedJobsAndDisablesTheQueue) {
  env.queue->SetPaused(true);
  auto a = env.Job("a");
  env.queue->Queue(a, false);
  env.queue->Abandon();
  EXPECT_EQ(a->aborts, 1);
  EXPECT_FALSE(env.queue->QueueEnabled());
  auto late = env.Job("late");
  env.queue->Queue(late, false);
  env.queue->SetPaused(false);
  EXPECT_EQ(late->activations + late->aborts, 0);
  EXPECT_EQ(env.queue->QueuedJobsCount(), 0);
}

TEST_F(JobQueueSync, JobErrorsAreLoggedAndTheRunGoesOn) {
  env.queue->SetPaused(true);
  auto bad = env.Job("bad");
  bad->on_activate = [](ScriptedJob&) { throw ZError(kErrTypeMismatch, "Type mismatch"); };
  auto good = env.Job("good");
  env.queue->Queue(bad, false);
  env.queue->Queue(good, false);
  env.queue->SetPaused(false);
  EXPECT_EQ(good->activations, 1);
  EXPECT_THAT(env.Lines("Warning"),
              ElementsAre("ScriptedJob job's Activate() raised error 13 while executing.  The "
                          "information is logged next."));
  const auto errors = env.Errors();
  ASSERT_EQ(errors.size(), 1u);
  EXPECT_EQ(errors[0].number, kErrTypeMismatch);
  EXPECT_EQ(errors[0].Innermost(), "JobQueue.pDoJob");
}

TEST_F(JobQueueSync, OutlookQuittingDuringAJobShutsDownWhenItReturns) {
  env.queue->SetPaused(true);
  auto a = env.Job("a");
  a->on_activate = [&](ScriptedJob&) { env.queue->ShutdownZintraOnJobComplete = true; };
  auto b = env.Job("b");
  env.queue->Queue(a, false);
  env.queue->Queue(b, false);
  env.queue->SetPaused(false);
  EXPECT_EQ(env.addin->shutdowns, 1);
  EXPECT_EQ(b->activations + b->aborts, 0);
  EXPECT_FALSE(env.queue->ShutdownZintraOnJobComplete);
  EXPECT_EQ(env.queue->TimerForm(), nullptr);  // the add-in's shut-down killed the queue
}

TEST_F(JobQueueSync, SecondInitializeFails) {
  EXPECT_EQ(env.addin->lingers.size(), 1u);
  std::optional<ZError> e = Raised([&] { env.queue->Initialize(env.addin); });
  ASSERT_TRUE(e);
  EXPECT_EQ(e->Number(), kErrInvalidCall);
  EXPECT_EQ(e->Description(), "JobQueue already initialized");
}

TEST_F(JobQueueAsync, SliceEndsAfterOneActivationWhenTheClockHasNotMoved) {
  auto a = env.Job("a", 3);
  env.queue->Queue(a, false);
  EXPECT_EQ(a->activations, 0);
  EXPECT_TRUE(env.queue->TimerForm()->Timer1().Enabled());
  env.loop.AdvanceBy(16 * kMs);  // the first tick, at 15.625 ms
  EXPECT_EQ(a->activations, 1);
  env.loop.AdvanceBy(16 * kMs);
  EXPECT_EQ(a->activations, 2);
  EXPECT_TRUE(env.loop.RunUntilIdle());
  EXPECT_EQ(a->activations, 3);
  EXPECT_FALSE(env.queue->TimerForm()->Active());
}

TEST_F(JobQueueAsync, SliceRunsUntilTheChunkHasPassed) {
  env.addin->settings.QueuedWorkTimechunk = 50;
  env.Start();  // a new queue with the longer chunk
  auto a = env.Job("a", 10);
  a->on_activate = [&](ScriptedJob&) { env.clock.AdvanceMs(16); };
  env.queue->Queue(a, false);
  env.loop.AdvanceBy(16 * kMs);
  // Readings 31.25, 46.875 and 62.5 ms are short of 15.625 + 50; 78.125 is not.
  EXPECT_EQ(a->activations, 4);
}

TEST_F(JobQueueAsync, FlushFromInsideAJobRunsTheQueueToTheEnd) {
  auto flusher = env.Job("flusher");
  flusher->on_activate = [&](ScriptedJob&) { env.queue->Flush(false); };
  auto rest = env.Job("rest", 5);
  env.queue->Queue(flusher, false);
  env.queue->Queue(rest, false);
  env.loop.AdvanceBy(16 * kMs);
  EXPECT_EQ(rest->activations, 5);
  EXPECT_THAT(env.trace, ::testing::SizeIs(6));
}

TEST_F(JobQueueAsync, PauseFromInsideAJobStopsTheTimerUntilResumed) {
  auto pauser = env.Job("pauser");
  pauser->on_activate = [&](ScriptedJob&) { env.queue->SetPaused(true); };
  auto rest = env.Job("rest");
  env.queue->Queue(pauser, false);
  env.queue->Queue(rest, false);
  EXPECT_TRUE(env.loop.RunUntilIdle());
  EXPECT_EQ(rest->activations, 0);
  env.queue->SetPaused(false);
  EXPECT_TRUE(env.loop.RunUntilIdle());
  EXPECT_EQ(rest->activations, 1);
}

TEST_F(JobQueueAsync, KillWithATickPendingTouchesNoJob) {
  auto a = env.Job("a");
  env.queue->Queue(a, false);
  env.queue->Kill();
  EXPECT_EQ(env.queue->TimerForm(), nullptr);
  EXPECT_EQ(env.loop.EnabledTimerCount(), 0);
  env.loop.AdvanceBy(100 * kMs);
  EXPECT_EQ(a->activations + a->aborts, 0);
}

TEST_F(JobQueueAsync, OnlyAVanishedAddinStopsTicksNotAFailingOutlook) {
  env.addin->touch_fails = true;
  auto first = env.Job("first");
  env.queue->Queue(first, false);
  env.loop.AdvanceBy(16 * kMs);
  EXPECT_EQ(first->activations, 1);
  EXPECT_GT(env.addin->touches, 0);

  auto a = env.Job("a");
  env.queue->Queue(a, false);
  env.addin.reset();  // the queue holds it weakly
  env.loop.AdvanceBy(100 * kMs);
  EXPECT_EQ(a->activations + a->aborts, 0);
  EXPECT_EQ(env.queue->QueuedJobsCount(), 1);
}

TEST_F(JobQueueAsync, JobKillingTheQueueInsideATickIsSafe) {
  auto a = env.Job("a");
  a->on_activate = [&](ScriptedJob&) {
    env.queue->Kill();
    env.queue.reset();
    env.addin->lingers.clear();  // last owner gone while the tick is under way
  };
  env.queue->Queue(a, false);
  env.queue->Queue(env.Job("b"), false);
  EXPECT_TRUE(env.loop.RunUntilIdle());
  EXPECT_THAT(env.trace, ElementsAre("a"));
}

TEST_F(JobQueueSync, WaitListKeysAreFreshAndReleaseRemovesThem) {
  auto job = std::make_shared<OtherJob>();
  const std::string k1 = env.queue->WaitListAdd(job);
  const std::string k2 = env.queue->WaitListAdd(job);
  EXPECT_NE(k1, k2);
  env.queue->WaitListRelease(k1);
  EXPECT_EQ(env.queue->WaitListCount(), 1);
  EXPECT_THROW(env.queue->WaitListRelease(k1), ZError);
}

TEST_F(JobQueueSync, LingerReportsWaitingJobTypesOnceAndLeftoverTasks) {
  env.queue->Kill();
  env.queue->CheckLingeringRefs();
  EXPECT_THAT(env.Lines("Warning"), IsEmpty());

  env.Start();
  env.queue->WaitListAdd(env.Job("x"));
  env.queue->WaitListAdd(std::make_shared<OtherJob>());
  env.queue->WaitListAdd(env.Job("y"));
  env.queue->TaskListAdd("support", 0, 1, true);
  env.queue->TaskListAdd("user task", 0, 1, false);
  env.queue->Kill();
  env.queue->CheckLingeringRefs();
  EXPECT_THAT(env.Lines("Warning"),
              ElementsAre("Lingering Job objects exist in JobQueue's pWaitingOnEvent collection "
                          "after AddinApp fired Kill event.  They are of the following types: "
                          "ScriptedJob, OtherJob",
                          "Non-support tasks failed to remove themselves in JobQueue CheckLinger"));
}

}  // namespace
}  // namespace zintra::testing
