#include "src/core/keyed_collection.h"
#include "tests/support/error_of.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>

namespace zintra {
namespace {

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

TEST(KeyedCollectionTest, LookupAndRemoveIfPresentTellAMissingKeyWithoutThrowing) {
  KeyedCollection<std::string> c;
  c.Add("a", "k1");
  c.Add("b", "k2");
  ASSERT_NE(c.Lookup("K2"), nullptr);
  *c.Lookup("K2") = "b2";  // the item itself, not a copy
  EXPECT_EQ(c.Item(2), "b2");
  EXPECT_EQ(c.Lookup("k3"), nullptr);
  EXPECT_FALSE(c.RemoveIfPresent("k3"));
  EXPECT_EQ(c.Count(), 2);
  EXPECT_TRUE(c.RemoveIfPresent("K1"));
  EXPECT_EQ(c.Item(1), "b2");
  EXPECT_FALSE(c.Contains("k1"));
}

// Small collections find keys by walking their items and large ones through an index:
// the answers must not change as a collection grows past the switch or shrinks again.
TEST(KeyedCollectionTest, KeysAreFoundAlikeAtEverySize) {
  KeyedCollection<int> c;
  for (int i = 1; i <= 40; ++i) {
    c.Add(i, "Key" + std::to_string(i));
    if (i % 3 == 0) c.Add(-i);  // items without a key are never found by one
    for (int j = 1; j <= i; ++j) {
      ASSERT_EQ(c.Item("KEY" + std::to_string(j)), j) << "after " << i << " adds";
    }
    EXPECT_FALSE(c.Contains("key" + std::to_string(i + 1)));
    EXPECT_FALSE(c.Contains(""));
    EXPECT_EQ(ErrorOf([&] { c.Add(0, "kEY1"); }), kErrDuplicateKey);
  }
  const KeyedCollection<int> copy = c;
  for (int i = 40; i >= 1; --i) {
    ASSERT_TRUE(c.RemoveIfPresent("key" + std::to_string(i)));
    EXPECT_FALSE(c.Contains("Key" + std::to_string(i)));
    if (i > 1) {
      EXPECT_EQ(c.Item("Key1"), 1);
    }
  }
  EXPECT_EQ(c.Count(), 13);  // the items without a key
  EXPECT_EQ(copy.Count(), 53);
  EXPECT_EQ(copy.Item("key40"), 40);
  c.Add(7, "key40");  // a removed key may come back
  EXPECT_EQ(c.Item("KEY40"), 7);
  c.Clear();
  c.Add(1, "a");
  EXPECT_EQ(c.Item("A"), 1);
}

TEST(KeyedCollectionTest, RemovingWhileWalkingASnapshotIsSafe) {
  KeyedCollection<int> c;
  for (int i = 1; i <= 5; ++i) c.Add(i, "k" + std::to_string(i));
  for (const auto& key : c.Keys()) {
    if (c.Item(key) % 2 == 1) c.Remove(key);
  }
  EXPECT_EQ(c.Values(), (std::vector<int>{2, 4}));
}

// Keys are compared eight characters at a time: a difference in any block or in the
// tail counts, and only A-Z and a-z are equal across cases ('@' and '`', '[' and '{'
// differ only in the bit between the cases; so do the UTF-8 bytes of "É" and "é").
TEST(KeyedCollectionTest, LongKeysMatchWithoutCaseOnlyForLetters) {
  KeyedCollection<int> c;
  c.Add(1, "00000000ABCDEF0123456789ABCDEF01@Contoso.Example");
  EXPECT_TRUE(c.Contains("00000000abcdef0123456789abcdef01@contoso.EXAMPLE"));
  EXPECT_FALSE(c.Contains("00000000abcdef0123456789abcdef01`contoso.example"));
  EXPECT_FALSE(c.Contains("00000000abcdef0123456789abcdef01@contoso.exampl"));
  EXPECT_FALSE(c.Contains("00000000abcdef0123456789abcdef01@contoso.exampla"));
  c.Add(2, "x[1]");
  EXPECT_FALSE(c.Contains("x{1}"));
  c.Add(3, "\xC3\x89t\xC3\xA9");  // "Été"
  EXPECT_TRUE(c.Contains("\xC3\x89T\xC3\xA9"));
  EXPECT_FALSE(c.Contains("\xC3\xA9t\xC3\xA9"));  // "été": not an ASCII letter
  EXPECT_EQ(ErrorOf([&] { c.Add(4, "00000000abcdef0123456789ABCDEF01@CONTOSO.example"); }),
            kErrDuplicateKey);
}

TEST(KeyedCollectionTest, KeysStayFoundAcrossGrowthMovesAndCopies) {
  KeyedCollection<int> c;
  for (int i = 0; i < 500; ++i) c.Add(i, "Entry-" + std::to_string(i) + "-of-the-collection");
  KeyedCollection<int> moved = std::move(c);
  EXPECT_EQ(moved.Item("ENTRY-0-OF-THE-COLLECTION"), 0);
  EXPECT_EQ(moved.Item("entry-499-of-the-collection"), 499);
  KeyedCollection<int> copy = moved;
  copy.Item("entry-7-of-the-collection") = 70;
  copy.Remove("entry-8-of-the-collection");
  EXPECT_EQ(moved.Item("entry-7-of-the-collection"), 7);
  EXPECT_TRUE(moved.Contains("entry-8-of-the-collection"));
  EXPECT_EQ(copy.Count(), 499);
  EXPECT_EQ(copy.Item(8), 70);  // items count from 1: the eighth holds entry 7
  EXPECT_EQ(copy.Item(9), 9);   // renumbered after the removal
  EXPECT_EQ(copy.KeyAt(9), "Entry-9-of-the-collection");
}

}  // namespace
}  // namespace zintra
