#include "src/core/event.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace zintra {
namespace {

TEST(EventTest, ConnectionLifetimeDecidesDelivery) {
  Event<int> ev;
  int sum = 0;
  {
    Connection c = ev.Connect([&](int v) { sum += v; });
    ev.Raise(2);
    EXPECT_EQ(ev.HandlerCount(), 1u);
  }
  ev.Raise(5);
  EXPECT_EQ(sum, 2);
  EXPECT_EQ(ev.HandlerCount(), 0u);
}

TEST(EventTest, ByReferenceArgumentsReachTheCaller) {
  Event<bool&> item_send;
  Connection c = item_send.Connect([](bool& cancel) { cancel = true; });
  bool cancel = false;
  item_send.Raise(cancel);
  EXPECT_TRUE(cancel);
}

TEST(EventTest, HandlersMayDisconnectOthersAndConnectNewOnesDuringARaise) {
  Event<> ev;
  std::vector<std::string> calls;
  std::optional<Connection> second;
  std::optional<Connection> late;
  Connection first = ev.Connect([&] {
    calls.push_back("first");
    second.reset();  // the second handler must not run in this raise
    late = ev.Connect([&] { calls.push_back("late"); });
  });
  second = ev.Connect([&] { calls.push_back("second"); });
  ev.Raise();
  EXPECT_EQ(calls, (std::vector<std::string>{"first"}));
  calls.clear();
  first.Disconnect();
  ev.Raise();
  EXPECT_EQ(calls, (std::vector<std::string>{"late"}));
}

TEST(EventTest, AHandlerMayDestroyTheEventAndConnectionsOutliveIt) {
  auto ev = std::make_unique<Event<>>();
  int after = 0;
  Connection a = ev->Connect([&] { ev.reset(); });
  Connection b = ev->Connect([&] { ++after; });
  ev->Raise();
  EXPECT_EQ(after, 1);  // already in the snapshot
  a.Disconnect();       // harmless once the event is gone
  EXPECT_FALSE(a.Connected());
}

// A lone handler is raised without a copied list of handlers; it keeps the same rules.
TEST(EventTest, ALoneHandlerMayConnectAnotherOrDestroyTheEvent) {
  auto ev = std::make_unique<Event<>>();
  std::vector<std::string> calls;
  std::optional<Connection> late;
  std::optional<Connection> only = ev->Connect([&] {
    calls.push_back("only");
    if (!late) late = ev->Connect([&] { calls.push_back("late"); });
  });
  ev->Raise();
  EXPECT_EQ(calls, (std::vector<std::string>{"only"}));  // the new one waits for the next
  ev->Raise();
  EXPECT_EQ(calls, (std::vector<std::string>{"only", "only", "late"}));
  only.reset();
  late.reset();
  int runs = 0;
  Connection last = ev->Connect([&] {
    ++runs;
    ev.reset();
  });
  ev->Raise();
  EXPECT_EQ(runs, 1);
  EXPECT_EQ(ev, nullptr);
  last.Disconnect();  // harmless once the event is gone
}

TEST(EventTest, MovedConnectionStillOwnsTheSubscription) {
  Event<> ev;
  int n = 0;
  Connection outer;
  {
    Connection inner = ev.Connect([&] { ++n; });
    outer = std::move(inner);
  }
  ev.Raise();
  EXPECT_EQ(n, 1);
}

TEST(EventWatchTest, TheWatcherHearsTheFirstHandlerAndTheLastOneLeaving) {
  std::vector<bool> heard;
  Event<int> event;
  event.Watch([&](bool on) { heard.push_back(on); });
  Connection first = event.Connect([](int) {});
  Connection second = event.Connect([](int) {});
  first.Disconnect();
  EXPECT_EQ(heard, std::vector<bool>{true});
  second.Disconnect();
  EXPECT_EQ(heard, (std::vector<bool>{true, false}));
  // A watcher that refuses fails the Connect and leaves no handler behind.
  event.Watch([](bool on) {
    if (on) throw std::runtime_error("no events here");
  });
  EXPECT_THROW((void)event.Connect([](int) {}), std::runtime_error);
  EXPECT_EQ(event.HandlerCount(), 0u);
}

TEST(EventWatchTest, AConnectionOutlivingItsEventCallsNoWatcher) {
  int calls = 0;
  Connection kept;
  {
    Event<> event;
    event.Watch([&](bool) { ++calls; });
    kept = event.Connect([] {});
  }
  kept.Disconnect();
  EXPECT_EQ(calls, 1);
}

}  // namespace
}  // namespace zintra
