#include "src/core/text.h"

#include <gtest/gtest.h>

#include <string>

namespace zintra {
namespace {

// Texts of every length up to three blocks of eight, so that each comparison and hash
// meets whole blocks and a tail.
TEST(TextTest, EqualsNoCaseFoldsOnlyAsciiLettersAtEveryPosition) {
  const std::string lower = "abcdefghijklmnopqrstuvwxyz";
  const std::string upper = "ABCDEFGHIJKLMNOPQRSTUVWXYZ";
  for (size_t n = 0; n <= 24; ++n) {
    const std::string a = lower.substr(0, n), b = upper.substr(0, n);
    EXPECT_TRUE(text::EqualsNoCase(a, b)) << n;
    EXPECT_EQ(text::HashNoCase(a), text::HashNoCase(b)) << n;
    for (size_t i = 0; i < n; ++i) {
      std::string changed = b;
      changed[i] = '@';  // one bit from 'A'..'Z' and '`'
      EXPECT_FALSE(text::EqualsNoCase(a, changed)) << n << " " << i;
    }
  }
  EXPECT_FALSE(text::EqualsNoCase("abc", "abcd"));
  EXPECT_FALSE(text::EqualsNoCase("[", "{"));
  EXPECT_FALSE(text::EqualsNoCase("@", "`"));
  EXPECT_FALSE(text::EqualsNoCase("\xC3\x89", "\xC3\xA9"));  // É and é
  EXPECT_TRUE(text::EqualsNoCase("\xC3\x89X", "\xC3\x89x"));
}

TEST(TextTest, CaseHelpersChangeOnlyAsciiLetters) {
  EXPECT_EQ(text::LCase("Mail@Contoso.COM [X]"), "mail@contoso.com [x]");
  EXPECT_EQ(text::UCase("mail@contoso.com {x}"), "MAIL@CONTOSO.COM {X}");
  EXPECT_EQ(text::LowerAscii('Z'), 'z');
  EXPECT_EQ(text::LowerAscii('['), '[');
  EXPECT_EQ(text::FindNoCase("Process ITEM: x", "item"), 8u);
}

}  // namespace
}  // namespace zintra
