#include "sim/registry/utf16.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace zintra::sim {
namespace {

// Characters with their UTF-8 and UTF-16LE bytes as the Unicode standard gives them.
struct Character {
  std::string utf8;
  std::string utf16le;
};

const std::vector<Character>& Characters() {
  static const std::vector<Character> kCharacters = {
      {"\xC3\xA9", std::string("\xE9\x00", 2)},                  // U+00E9 e acute
      {"\xE2\x82\xAC", std::string("\xAC\x20", 2)},              // U+20AC euro sign
      {"\xF0\x9F\x98\x80", std::string("\x3D\xD8\x00\xDE", 4)},  // U+1F600, a surrogate pair
      {"\xEF\xBF\xBF", std::string("\xFF\xFF", 2)},              // U+FFFF, the last of the plane
  };
  return kCharacters;
}

// ASCII of `length` bytes, "a".."z" repeated, and its UTF-16LE.
Character Ascii(size_t length) {
  Character run;
  for (size_t i = 0; i < length; ++i) {
    const char c = static_cast<char>('a' + i % 26);
    run.utf8 += c;
    run.utf16le += c;
    run.utf16le += '\0';
  }
  return run;
}

// Runs of ASCII of every length around the eight bytes copied at once, before, between
// and after each character, so that every character meets every alignment.
TEST(Utf16Test, AsciiRunsOfEveryLengthAroundEachCharacterConvertBothWays) {
  for (const Character& c : Characters()) {
    for (size_t before = 0; before <= 17; ++before) {
      for (size_t after = 0; after <= 17; ++after) {
        const Character head = Ascii(before), tail = Ascii(after);
        const std::string utf8 = head.utf8 + c.utf8 + tail.utf8 + c.utf8;
        const std::string utf16 = head.utf16le + c.utf16le + tail.utf16le + c.utf16le;
        ASSERT_EQ(Utf8ToUtf16Le(utf8), utf16) << before << " " << after;
        ASSERT_EQ(Utf16LeToUtf8(utf16), utf8) << before << " " << after;
      }
    }
  }
  EXPECT_EQ(Utf8ToUtf16Le(""), "");
  EXPECT_EQ(Utf16LeToUtf8(""), "");
}

// Text with no ASCII at all, long: up to four bytes of UTF-8 for each two of UTF-16.
TEST(Utf16Test, LongTextWithoutAsciiConvertsBothWays) {
  for (const Character& c : Characters()) {
    std::string utf8, utf16;
    for (int i = 0; i < 1000; ++i) {
      utf8 += c.utf8;
      utf16 += c.utf16le;
    }
    EXPECT_EQ(Utf8ToUtf16Le(utf8), utf16);
    EXPECT_EQ(Utf16LeToUtf8(utf16), utf8);
  }
}

TEST(Utf16Test, InvalidBytesAreLatin1AndLoneSurrogatesBecomeTheReplacementCharacter) {
  const Character run = Ascii(9);
  // 0xFF is no UTF-8 lead byte: the character U+00FF; a lead byte cut short likewise.
  EXPECT_EQ(Utf8ToUtf16Le(run.utf8 + "\xFF" + run.utf8),
            run.utf16le + std::string("\xFF\x00", 2) + run.utf16le);
  EXPECT_EQ(Utf8ToUtf16Le(run.utf8 + "\xE2\x82"), run.utf16le + std::string("\xE2\x00\x82\x00", 4));
  // A high surrogate followed by ASCII, and a low surrogate alone.
  EXPECT_EQ(Utf16LeToUtf8(std::string("\x3D\xD8", 2) + run.utf16le), "\xEF\xBF\xBD" + run.utf8);
  EXPECT_EQ(Utf16LeToUtf8(run.utf16le + std::string("\x00\xDE", 2)), run.utf8 + "\xEF\xBF\xBD");
  // A unit from 0x80 up inside what would otherwise be an ASCII run of four units.
  EXPECT_EQ(Utf16LeToUtf8(std::string("a\0b\0\x80\0c\0d\0", 10)),
            "ab\xC2\x80"
            "cd");
  EXPECT_EQ(Utf16LeToUtf8(std::string("a\0b\0\x41\x01"
                                      "c\0d\0",
                                      10)),
            "ab\xC5\x81"
            "cd");
}

}  // namespace
}  // namespace zintra::sim
