#include "src/core/unique_handle.h"

#include <gtest/gtest.h>

#include <vector>

namespace zintra {
namespace {

// A handle table that records every close, so each test sees what was closed how often.
struct ClosedLog {
  std::vector<int> closed;
};

struct LoggedTraits {
  using Handle = int;
  static int Invalid() { return 0; }
  void Close(int handle) const { log->closed.push_back(handle); }
  ClosedLog* log = nullptr;
};
using Owned = UniqueHandle<LoggedTraits>;

TEST(UniqueHandleTest, ClosesEachHandleOnceThroughTheTraitsItWasGiven) {
  ClosedLog first;
  ClosedLog second;
  {
    Owned a(7, LoggedTraits{&first});
    Owned b(8, LoggedTraits{&second});
    Owned moved(std::move(a));
    EXPECT_FALSE(a.valid());
    EXPECT_EQ(moved.get(), 7);
    // Taking b's handle closes 7 through the first log, then closes 8 through the second.
    moved = std::move(b);
    EXPECT_EQ(first.closed, std::vector<int>{7});
    EXPECT_EQ(moved.get(), 8);
  }
  EXPECT_EQ(first.closed, std::vector<int>{7});
  EXPECT_EQ(second.closed, std::vector<int>{8});
}

TEST(UniqueHandleTest, ResetReleaseAndPut) {
  ClosedLog log;
  Owned owner(3, LoggedTraits{&log});
  owner.reset(4);
  EXPECT_EQ(log.closed, std::vector<int>{3});
  EXPECT_EQ(owner.release(), 4);
  EXPECT_FALSE(owner);
  owner.reset();
  EXPECT_EQ(log.closed, std::vector<int>{3}) << "a released handle is the caller's";
  // An opening function writes through put(); what was owned before is closed first.
  owner.reset(5);
  *owner.put() = 6;
  EXPECT_EQ(log.closed, (std::vector<int>{3, 5}));
  owner = Owned(0, LoggedTraits{&log});
  EXPECT_EQ(log.closed, (std::vector<int>{3, 5, 6}));
  owner.reset();
  EXPECT_EQ(log.closed, (std::vector<int>{3, 5, 6})) << "the invalid value is never closed";
}

// Like a kernel handle: two values own nothing.
int closes = 0;
int CountClose(long) { return ++closes; }

struct TwoInvalidTraits {
  using Handle = long;
  static long Invalid() { return -1; }
  static bool IsValid(long handle) { return handle != -1 && handle != 0; }
  void Close(long handle) const { CountClose(handle); }
};

TEST(UniqueHandleTest, TraitsDecideWhichValuesOwnNothing) {
  closes = 0;
  { UniqueHandle<TwoInvalidTraits> null_handle(0); }
  { UniqueHandle<TwoInvalidTraits> failed(-1); }
  EXPECT_EQ(closes, 0);
  { UniqueAny<long, &CountClose, -1L> opened(0); }
  EXPECT_EQ(closes, 1) << "with one invalid value, 0 is a handle like any other";
  static_assert(sizeof(UniqueAny<long, &CountClose>) == sizeof(long),
                "stateless traits take no room");
}

}  // namespace
}  // namespace zintra
