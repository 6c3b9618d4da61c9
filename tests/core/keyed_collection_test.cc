#include "src/core/keyed_collection.h"

#include <gtest/gtest.h>

namespace zintra {
namespace {

int ErrorOf(const std::function<void()>& fn) {
  try {
    fn();
  } catch (const ZError& e) {
    return e.Number();
  }
  return 0;
}

TEST(KeyedCollectionTest, KeepsOrderFromOneAndFindsKeysWithoutCase) {
  KeyedCollection<int> c;
  c.Add(10, "Alpha");
  c.Add(20);
  c.Add(30, "gamma");
  EXPECT_EQ(c.Count(), 3);
  EXPECT_EQ(c.Item(1), 10);
  EXPECT_EQ(c.Item(3), 30);
  EXPECT_EQ(c.Item("ALPHA"), 10);
  EXPECT_EQ(c.Item("Gamma"), 30);
  EXPECT_EQ(c.KeyAt(1), "Alpha");
  EXPECT_TRUE(c.Contains("alpha"));
}

TEST(KeyedCollectionTest, DuplicateKeyIs457AndMissingKeyOrIndexIs5) {
  KeyedCollection<int> c;
  c.Add(1, "key");
  EXPECT_EQ(ErrorOf([&] { c.Add(2, "KEY"); }), kErrDuplicateKey);
  EXPECT_EQ(c.Count(), 1);  // the failed add left nothing behind
  EXPECT_EQ(ErrorOf([&] { (void)c.Item("other"); }), kErrInvalidCall);
  EXPECT_EQ(ErrorOf([&] { (void)c.Item(0); }), kErrInvalidCall);
  EXPECT_EQ(ErrorOf([&] { (void)c.Item(2); }), kErrInvalidCall);
  EXPECT_EQ(ErrorOf([&] { c.Remove("other"); }), kErrInvalidCall);
}

TEST(KeyedCollectionTest, RemovalRenumbersAndFreesTheKey) {
  KeyedCollection<std::string> c;
  c.Add("a", "k1");
  c.Add("b", "k2");
  c.Add("c", "k3");
  c.Remove("K2");
  EXPECT_EQ(c.Item(2), "c");
  c.Add("b2", "k2");  // the key may be used again
  EXPECT_EQ(c.Item(3), "b2");
  c.Remove(1);
  EXPECT_EQ(c.Item(1), "c");
  EXPECT_FALSE(c.Contains("k1"));
}

TEST(KeyedCollectionTest, RemovingWhileWalkingASnapshotIsSafe) {
  KeyedCollection<int> c;
  for (int i = 1; i <= 5; ++i) c.Add(i, "k" + std::to_string(i));
  for (const auto& key : c.Keys()) {
    if (c.Item(key) % 2 == 1) c.Remove(key);
  }
  EXPECT_EQ(c.Values(), (std::vector<int>{2, 4}));
}

}  // namespace
}  // namespace zintra
