#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "src/jobs/job_queue.h"
#include "tests/jobs/job_test_env.h"

namespace zintra::testing {
namespace {

using ::testing::ElementsAre;

TEST(JobQueueTaskList, EntriesFeedTheListAndItsOverallBar) {
  JobEnv env;
  env.Start();
  EXPECT_EQ(env.view().caption(), "Zintra is finishing tasks");
  EXPECT_EQ(env.view().abort_caption(), "Abort All");
  EXPECT_TRUE(env.queue->OnlySupportTasks());
  const std::string a = env.queue->TaskListAdd("Process email: hello", 3, 10, false);
  const std::string b = env.queue->TaskListAdd("Fill cache", 1, 30, true);
  EXPECT_FALSE(env.queue->OnlySupportTasks());
  env.queue->TaskListProgress(a, 5);
  EXPECT_EQ(env.view().progress(), 12);  // 5 of 40 units
  EXPECT_EQ(env.view().FindRow(a)->percent, 50);
  env.queue->TaskListRemove(a);  // a finished task counts as done
  EXPECT_EQ(env.view().progress(), 25);
  EXPECT_TRUE(env.queue->OnlySupportTasks());
  env.queue->TaskListProgress(b, 99);  // clamped to the task's total
  EXPECT_EQ(env.view().progress(), 100);
  env.queue->TaskListRemove(b);
  EXPECT_EQ(env.view().progress(), 0);
  EXPECT_TRUE(env.view().rows().empty());
  EXPECT_THAT(env.Lines("Message"),
              ElementsAre("Adding task Process email: hello", "Adding task Fill cache",
                          "Removing task Process email: hello", "Removing task Fill cache"));
  EXPECT_THROW(env.queue->TaskListRemove(a), ZError);
  EXPECT_THROW(env.queue->TaskListProgress("nope", 1), ZError);
}

struct PumpCase {
  bool outlook12;
  bool quitting;
  int64_t pumps_per_change;
};

class TaskListPumpTest : public ::testing::TestWithParam<PumpCase> {};

TEST_P(TaskListPumpTest, MessagesArePumpedOnOldOutlookOrWhileQuitting) {
  JobEnv env;
  env.addin->outlook12 = GetParam().outlook12;
  env.addin->quitting = GetParam().quitting;
  env.Start();
  const std::string key = env.queue->TaskListAdd("t", 0, 2, false);
  env.queue->TaskListProgress(key, 1);
  env.queue->TaskListRemove(key);
  EXPECT_EQ(env.loop.do_events_count(), 3 * GetParam().pumps_per_change);
}

INSTANTIATE_TEST_SUITE_P(Versions, TaskListPumpTest,
                         ::testing::Values(PumpCase{true, false, 0}, PumpCase{false, false, 1},
                                           PumpCase{true, true, 1}));

TEST(JobQueueTaskList, AbortClickArrivingDuringASynchronousFlushAbortsTheRest) {
  JobEnv env;
  env.addin->quitting = true;  // messages are pumped at each task change
  env.Start();
  env.queue->SetPaused(true);
  const std::string key = env.queue->TaskListAdd("closing", 0, 3, false);
  std::vector<std::shared_ptr<ScriptedJob>> jobs;
  for (int i = 0; i < 3; ++i) {
    jobs.push_back(env.Job("j" + std::to_string(i)));
    jobs.back()->on_activate = [&, i](ScriptedJob&) {
      env.queue->TaskListProgress(key, static_cast<float>(i + 1));
    };
    env.queue->Queue(jobs.back(), false);
  }
  env.loop.Post([&] { env.view().ClickAbort(); });
  env.queue->Flush(false);
  EXPECT_THAT(env.trace, ElementsAre("j0", "abort j1", "abort j2"));
}

TEST(JobQueueTaskList, MinimiseSendsTheListToTheTrayAndTheMenuBringsItBack) {
  JobEnv env;
  env.Start();
  env.queue->TaskListAdd("t", 0, 1, false);
  env.queue->SetTaskListVisible(true);
  env.view().ClickMinimize();
  EXPECT_FALSE(env.queue->TaskListVisible());
  EXPECT_EQ(env.shell.icons().size(), 1u);
  sim::SimTrayView& tray = *env.forms.tray();
  EXPECT_EQ(tray.menu().item(0).caption, "Show Zintra Monitor");

  // A run that lasts does not pop a minimised list back up.
  env.queue->SetTaskListVisible(true);
  EXPECT_FALSE(env.queue->TaskListVisible());

  tray.menu().ChooseOnPopup(0);
  tray.SendIconMessage(kWmRButtonDown);  // right button: the menu, default item in bold
  EXPECT_TRUE(env.queue->TaskListVisible());
  EXPECT_THAT(tray.menu().popups(), ElementsAre(0));
  EXPECT_EQ(tray.menu().item(0).caption, "Hide Zintra Monitor");
  tray.menu().Choose(0);
  EXPECT_FALSE(env.queue->TaskListVisible());
  tray.SendIconMessage(kWmLButtonUp);  // left click shows the list
  EXPECT_TRUE(env.queue->TaskListVisible());
}

TEST(JobQueueTaskList, TrayIconGoesWhenTheLastTaskIsRemovedOrTheQueueIsKilled) {
  JobEnv env;
  env.Start();
  const std::string key = env.queue->TaskListAdd("t", 0, 1, false);
  env.view().ClickMinimize();
  EXPECT_EQ(env.shell.icons().size(), 1u);
  env.queue->TaskListRemove(key);
  EXPECT_TRUE(env.shell.icons().empty());
  EXPECT_EQ(env.forms.tray(), nullptr);

  env.queue->TaskListAdd("again", 0, 1, false);
  env.view().ClickMinimize();
  EXPECT_EQ(env.shell.icons().size(), 1u);
  env.queue->Kill();
  EXPECT_TRUE(env.shell.icons().empty());
  EXPECT_EQ(env.forms.task_list(), nullptr);
}

}  // namespace
}  // namespace zintra::testing
