#include "sim/time/event_loop.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

#include "src/core/date.h"

namespace zintra::sim {
namespace {

constexpr int64_t kMs = 1000;

TEST(VirtualClock, ReadsTimeOfDayInTicksAndNowInWholeSeconds) {
  VirtualClock clock(MakeDate(2024, 3, 1, 10, 0, 0));
  EXPECT_FLOAT_EQ(clock.SecondsSinceMidnight(), 36000.0f);
  clock.AdvanceMs(15);
  EXPECT_FLOAT_EQ(clock.SecondsSinceMidnight(), 36000.0f);  // not yet a tick
  clock.AdvanceMs(1);
  EXPECT_FLOAT_EQ(clock.SecondsSinceMidnight(), 36000.015625f);
  clock.AdvanceMs(990);
  EXPECT_EQ(DateDiff("s", MakeDate(2024, 3, 1, 10, 0, 0), clock.Now()), 1);
  clock.Advance(-5 * kMs);  // time never runs back
  EXPECT_EQ(clock.micros() % 1'000'000, 6 * kMs);

  clock.AdvanceToTimeOfDay(23, 59, 59, 990 * kMs);
  EXPECT_GT(clock.SecondsSinceMidnight(), 86399.9f);
  clock.AdvanceMs(20);  // midnight: the reading starts again from 0
  EXPECT_LT(clock.SecondsSinceMidnight(), 0.02f);
  EXPECT_EQ(SplitDate(clock.Now()).day, 2);
}

TEST(EventLoop, TimersFireOnTickBoundariesInOrderAsTimePasses) {
  VirtualClock clock(MakeDate(2024, 3, 1, 10, 0, 0));
  EventLoop loop(clock);
  std::vector<std::pair<char, int64_t>> fired;
  const int64_t t0 = clock.micros();
  auto fast = loop.CreateTimer();
  auto slow = loop.CreateTimer();
  Connection f = fast->Tick.Connect([&] { fired.push_back({'f', (clock.micros() - t0) / 125}); });
  Connection s = slow->Tick.Connect([&] { fired.push_back({'s', (clock.micros() - t0) / 125}); });
  fast->SetInterval(10);
  fast->SetEnabled(true);
  slow->SetInterval(40);
  slow->SetEnabled(true);
  loop.AdvanceBy(50 * kMs);
  // 10 ms ticks land on 15.625 ms boundaries (in units of 0.125 ms: 125 each).
  EXPECT_THAT(fired, ::testing::ElementsAre(
                         std::pair<char, int64_t>{'f', 125}, std::pair<char, int64_t>{'f', 250},
                         std::pair<char, int64_t>{'f', 375}, std::pair<char, int64_t>{'s', 375}));
  EXPECT_EQ(clock.micros() - t0, 50 * kMs);
  slow->SetInterval(0);  // interval 0: no ticks
  fast->SetEnabled(false);
  EXPECT_EQ(loop.EnabledTimerCount(), 0);
  EXPECT_TRUE(loop.RunUntilIdle());
}

TEST(EventLoop, RunUntilIdleStopsAtTheLimitForATimerThatNeverStops) {
  VirtualClock clock(MakeDate(2024, 3, 1, 10, 0, 0));
  EventLoop loop(clock);
  auto timer = loop.CreateTimer();
  int ticks = 0;
  Connection c = timer->Tick.Connect([&] { ++ticks; });
  timer->SetInterval(100);
  timer->SetEnabled(true);
  EXPECT_FALSE(loop.RunUntilIdle(1000 * kMs));
  EXPECT_EQ(ticks, 9);  // each interval ends on the next clock tick: every 109.375 ms
}

TEST(EventLoop, TimerDestroyedInItsOwnTickStopsAndDoesNotReenter) {
  VirtualClock clock(MakeDate(2024, 3, 1, 10, 0, 0));
  EventLoop loop(clock);
  auto timer = loop.CreateTimer();
  int ticks = 0;
  Connection c = timer->Tick.Connect([&] {
    ++ticks;
    clock.AdvanceMs(50);  // overruns its interval...
    loop.DoEvents();      // ...but does not tick again from inside itself
    if (ticks == 2) timer.reset();
  });
  timer->SetInterval(10);
  timer->SetEnabled(true);
  loop.AdvanceBy(500 * kMs);
  EXPECT_EQ(ticks, 2);
  EXPECT_EQ(loop.EnabledTimerCount(), 0);
}

TEST(EventLoop, TimerOutlivingTheLoopIsHarmless) {
  VirtualClock clock(MakeDate(2024, 3, 1, 10, 0, 0));
  auto loop = std::make_unique<EventLoop>(clock);
  auto timer = loop->CreateTimer();
  loop.reset();
  timer->SetInterval(5);
  timer->SetEnabled(true);
  timer.reset();
}

}  // namespace
}  // namespace zintra::sim
