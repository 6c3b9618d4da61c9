// Window timers, the message pump and the clock on the platform's message queue.
#include <gtest/gtest.h>

#include <cmath>
#include <ctime>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "src/core/date.h"
#include "tests/win32/ports/pump_util.h"
#include "win32/ports/failure_log.h"
#include "win32/ports/message_window.h"
#include "win32/ports/win32_clock.h"
#include "win32/ports/win32_timer_factory.h"

namespace zintra::win32 {
namespace {

using testing::PumpUntil;

std::unique_ptr<Timer> Started(Win32TimerFactory& factory, int32_t interval) {
  auto timer = factory.CreateTimer();
  timer->SetInterval(interval);
  timer->SetEnabled(true);
  return timer;
}

TEST(Win32Timer, TicksWhileMessagesArePumpedAndStopsWhenDisabled) {
  Win32TimerFactory factory;
  auto timer = factory.CreateTimer();
  EXPECT_FALSE(timer->Enabled());
  EXPECT_EQ(timer->Interval(), 0);
  int ticks = 0;
  Connection c = timer->Tick.Connect([&] { ++ticks; });
  timer->SetInterval(10);
  Sleep(40);
  Win32MessagePump().DoEvents();
  EXPECT_EQ(ticks, 0) << "a disabled timer ticked";

  timer->SetEnabled(true);
  ASSERT_TRUE(PumpUntil([&] { return ticks >= 3; }));
  timer->SetEnabled(false);
  const int seen = ticks;
  Sleep(40);
  Win32MessagePump().DoEvents();
  EXPECT_EQ(ticks, seen);

  timer->SetInterval(0);
  timer->SetEnabled(true);
  Sleep(40);
  Win32MessagePump().DoEvents();
  EXPECT_EQ(ticks, seen) << "an interval of 0 ticked";
}

TEST(Win32Timer, NeverReentersItsOwnTickButOthersTickInside) {
  Win32TimerFactory factory;
  auto slow = Started(factory, 10);
  auto other = Started(factory, 10);
  int depth = 0, max_depth = 0, slow_ticks = 0, other_ticks = 0, other_inside = 0;
  Connection c1 = slow->Tick.Connect([&] {
    ++slow_ticks;
    max_depth = std::max(max_depth, ++depth);
    Sleep(30);  // both timers are due again
    Win32MessagePump().DoEvents();
    --depth;
  });
  Connection c2 = other->Tick.Connect([&] {
    ++other_ticks;
    if (depth > 0) ++other_inside;
  });
  ASSERT_TRUE(PumpUntil([&] { return slow_ticks >= 3 && other_inside >= 1; }));
  EXPECT_EQ(max_depth, 1);
}

TEST(Win32Timer, DestroyedFromItsOwnTickStopsAtOnceAndOutlivesItsFactory) {
  auto factory = std::make_unique<Win32TimerFactory>();
  auto timer = Started(*factory, 5);
  auto witness = Started(*factory, 5);
  factory.reset();
  int ticks = 0, witness_ticks = 0;
  Connection c = timer->Tick.Connect([&] {
    ++ticks;
    timer.reset();
  });
  Connection w = witness->Tick.Connect([&] { ++witness_ticks; });
  ASSERT_TRUE(PumpUntil([&] { return witness_ticks >= 5; }));
  EXPECT_EQ(ticks, 1);
}

TEST(Win32Timer, AHandlerThatThrowsIsReportedAndTheTimerGoesOn) {
  std::vector<std::string> reports;
  FailureSink old = SetFailureSink([&](const std::string& where, const std::string& what) {
    reports.push_back(where + ": " + what);
  });
  Win32TimerFactory factory;
  auto timer = Started(factory, 5);
  int ticks = 0;
  Connection c = timer->Tick.Connect([&] {
    if (++ticks == 1) throw std::runtime_error("handler failed");
  });
  const bool went_on = PumpUntil([&] { return ticks >= 3; });
  SetFailureSink(old);
  ASSERT_TRUE(went_on);
  ASSERT_FALSE(reports.empty());
  EXPECT_EQ(reports.front(), "Timer tick: handler failed");
}

TEST(Win32MessagePump, DispatchesPostedMessagesAndLeavesAQuitRequestForTheHost) {
  std::vector<UINT> seen;
  MessageWindow window([&](UINT message, WPARAM wparam, LPARAM, LRESULT*) {
    if (message >= WM_APP) seen.push_back(static_cast<UINT>(wparam));
    return false;
  });
  PostMessageA(window.hwnd(), WM_APP, 1, 0);
  PostMessageA(window.hwnd(), WM_APP, 2, 0);
  PostQuitMessage(7);
  PostMessageA(window.hwnd(), WM_APP, 3, 0);
  Win32MessagePump().DoEvents();
  EXPECT_EQ(seen, (std::vector<UINT>{1, 2, 3})) << "posted messages come before the quit request";
  MSG msg{};
  ASSERT_TRUE(PeekMessageA(&msg, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE));
  EXPECT_EQ(msg.wParam, 7u);
}

TEST(Win32Clock, ReadsTheLocalTime) {
  Win32Clock clock;
  const std::time_t before = std::time(nullptr);
  const double now = clock.Now();
  const float seconds = clock.SecondsSinceMidnight();
  std::tm local{};
  localtime_s(&local, &before);
  const double expected = MakeDate(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday,
                                   local.tm_hour, local.tm_min, local.tm_sec);
  EXPECT_NEAR(now, expected, 2.0 / 86400);
  EXPECT_NEAR(std::round(now * 86400), now * 86400, 1e-3) << "whole seconds";
  const double of_day = (now - static_cast<int64_t>(now)) * 86400.0;
  if (of_day > 2 && of_day < 86398) {
    EXPECT_NEAR(seconds, of_day, 2.0);
  }
}

}  // namespace
}  // namespace zintra::win32
