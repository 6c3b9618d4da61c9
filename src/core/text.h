// Text helpers with the semantics the system's VB heritage expects: ASCII
// case-insensitive comparison (vbTextCompare), Trim of spaces only, Split/Replace.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace zintra::text {

// One character to lower case, ASCII letters only (as LCase).
constexpr char LowerAscii(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

// Eight characters at once to lower case, ASCII letters only; every other byte
// (UTF-8's included) unchanged. A byte's high bit is set in `upper` only when it is
// 'A' to 'Z'.
constexpr uint64_t LowerAsciiWord(uint64_t w) {
  constexpr uint64_t kOnes = 0x0101010101010101ull;
  constexpr uint64_t kHighBits = 0x8080808080808080ull;
  const uint64_t low7 = w & ~kHighBits;
  const uint64_t at_least_a = low7 + kOnes * (0x80 - 'A');
  const uint64_t above_z = low7 + kOnes * (0x80 - 'Z' - 1);
  const uint64_t upper = at_least_a & ~above_z & ~w & kHighBits;
  return w | (upper >> 2);  // 0x80 >> 2 is the 0x20 between the cases
}

std::string LCase(std::string_view s);
std::string UCase(std::string_view s);
bool EqualsNoCase(std::string_view a, std::string_view b);
// A hash under which texts that EqualsNoCase finds equal agree.
size_t HashNoCase(std::string_view s);
// Position of needle in haystack at or after start, letters compared without case;
// npos when absent.
size_t FindNoCase(std::string_view haystack, std::string_view needle, size_t start = 0);
std::string Trim(std::string_view s);  // spaces only, as VB's Trim
std::vector<std::string> Split(std::string_view s, std::string_view delimiter);
std::string Replace(std::string_view s, std::string_view find, std::string_view with);
bool StartsWith(std::string_view s, std::string_view prefix);
bool EndsWith(std::string_view s, std::string_view suffix);

}  // namespace zintra::text
