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

}  // namespace
}  // namespace zintra
