// The address index compares ASCII letters without regard to case and every other byte
// exactly, at every position of addresses of every length.
#include "src/contacts/address_cache.h"

#include <gtest/gtest.h>

#include <string>

namespace zintra {
namespace {

TEST(AddressCacheTest, OnlyAsciiLettersMatchInTheOtherCase) {
  for (size_t length : {1u, 7u, 8u, 9u, 16u, 23u}) {
    for (size_t pos = 0; pos < length; ++pos) {
      for (int c = 1; c < 256; ++c) {
        std::string stored(length, 'q');
        stored[pos] = static_cast<char>(c);
        AddressCache cache;
        ASSERT_TRUE(cache.AddAddress(stored, "ID"));
        // The letter in the other case (or the byte itself for anything else).
        std::string other = stored;
        if (c >= 'a' && c <= 'z') other[pos] = static_cast<char>(c - 32);
        if (c >= 'A' && c <= 'Z') other[pos] = static_cast<char>(c + 32);
        if (length > 1) other[(pos + 1) % length] = 'Q';  // a 'q' elsewhere, in capitals
        EXPECT_NE(cache.Find(other), nullptr) << "byte " << c << " at " << pos << " of " << length;
        // A byte 0x20 away that is not the same letter is another address.
        for (int d : {c ^ 0x20, c + 1}) {
          if (d <= 0 || d > 255) continue;
          const bool same_letter = ((c | 0x20) >= 'a' && (c | 0x20) <= 'z') && (d == (c ^ 0x20));
          std::string near = stored;
          near[pos] = static_cast<char>(d);
          EXPECT_EQ(cache.Find(near) != nullptr, same_letter)
              << "byte " << c << " against " << d << " at " << pos << " of " << length;
        }
      }
    }
  }
}

TEST(AddressCacheTest, LengthDecidesBeforeTheBytes) {
  AddressCache cache;
  cache.AddAddress("ann@fabrikam.com", "A");
  EXPECT_EQ(cache.Find("ann@fabrikam.co"), nullptr);
  EXPECT_EQ(cache.Find("ann@fabrikam.com."), nullptr);
  EXPECT_EQ(cache.Find(std::string("ann@fabrikam.com\0", 17)), nullptr);
  ASSERT_NE(cache.Find("ANN@Fabrikam.COM"), nullptr);
  EXPECT_EQ(*cache.Find("ANN@Fabrikam.COM"), "A");
}

TEST(AddressCacheTest, FirstContactKeepsAnAddressThroughGrowthAndRemoval) {
  AddressCache cache;
  // No Reserve: the index grows many times over while it fills.
  for (int i = 0; i < 5000; ++i) {
    const std::string id = "ID" + std::to_string(i);
    EXPECT_EQ(cache.Add(id, "a" + std::to_string(i) + "@x.example", "",
                        "shared" + std::to_string(i / 2) + "@x.example"),
              i % 2 == 0 ? 2 : 1);
  }
  EXPECT_EQ(cache.Count(), 7500);
  ASSERT_NE(cache.Find("SHARED7@X.EXAMPLE"), nullptr);
  EXPECT_EQ(*cache.Find("SHARED7@X.EXAMPLE"), "ID14");
  EXPECT_EQ(*cache.Find("A4999@x.example"), "ID4999");
  EXPECT_FALSE(cache.AddAddress("a17@X.example", "other"));

  // Removed addresses are gone, the others stay, and a removed one can come back.
  for (int i = 0; i < 5000; i += 3)
    EXPECT_TRUE(cache.Remove("a" + std::to_string(i) + "@x.example"));
  EXPECT_FALSE(cache.Remove("a0@x.example"));
  EXPECT_EQ(cache.Find("a3@x.example"), nullptr);
  EXPECT_EQ(*cache.Find("a4@x.example"), "ID4");
  EXPECT_TRUE(cache.AddAddress("A3@x.example", "again"));
  EXPECT_EQ(*cache.Find("a3@X.EXAMPLE"), "again");
  EXPECT_EQ(cache.Count(), 7500 - 1667 + 1);

  cache.Clear();
  EXPECT_EQ(cache.Count(), 0);
  EXPECT_EQ(cache.Find("a4@x.example"), nullptr);
  EXPECT_TRUE(cache.AddAddress("a4@x.example", "fresh"));
  EXPECT_EQ(*cache.Find("a4@x.example"), "fresh");
}

TEST(AddressCacheTest, LongAddressesAreKeptWhole) {
  AddressCache cache;
  // Past the lookup's own buffer, and past a block of keys.
  const std::string long_one = std::string(300, 'x') + "@Y.example";
  const std::string huge = std::string(70000, 'z') + "@y.example";
  EXPECT_TRUE(cache.AddAddress(long_one, "L"));
  EXPECT_TRUE(cache.AddAddress(huge, "H"));
  EXPECT_TRUE(cache.AddAddress("short@y.example", "S"));
  std::string other_case = huge;
  other_case[69999] = 'Z';
  ASSERT_NE(cache.Find(other_case), nullptr);
  EXPECT_EQ(*cache.Find(other_case), "H");
  EXPECT_EQ(*cache.Find(std::string(300, 'X') + "@y.EXAMPLE"), "L");
  EXPECT_EQ(cache.Find(std::string(299, 'x') + "@y.example"), nullptr);
  EXPECT_EQ(*cache.Find("Short@y.example"), "S");
}

}  // namespace
}  // namespace zintra
