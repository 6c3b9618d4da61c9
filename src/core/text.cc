#include "src/core/text.h"

#include <algorithm>
#include <cstring>

namespace zintra::text {
namespace {
char Lower(char c) { return LowerAscii(c); }
char Upper(char c) { return (c >= 'a' && c <= 'z') ? static_cast<char>(c - 'a' + 'A') : c; }
// The `n` (at most eight) characters at `p` in one word, the rest zero bytes, which
// are no letters.
uint64_t LoadWord(const char* p, size_t n) {
  uint64_t w = 0;
  std::memcpy(&w, p, n);
  return w;
}

}  // namespace

std::string LCase(std::string_view s) {
  std::string out(s);
  std::transform(out.begin(), out.end(), out.begin(), Lower);
  return out;
}

std::string UCase(std::string_view s) {
  std::string out(s);
  std::transform(out.begin(), out.end(), out.begin(), Upper);
  return out;
}

bool EqualsNoCase(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  const size_t n = a.size();
  size_t i = 0;
  for (; i + 8 <= n; i += 8) {
    const uint64_t wa = LoadWord(a.data() + i, 8), wb = LoadWord(b.data() + i, 8);
    if (wa != wb && LowerAsciiWord(wa) != LowerAsciiWord(wb)) return false;
  }
  if (i == n) return true;
  return LowerAsciiWord(LoadWord(a.data() + i, n - i)) ==
         LowerAsciiWord(LoadWord(b.data() + i, n - i));
}

size_t HashNoCase(std::string_view s) {
  uint64_t h = 0x9E3779B97F4A7C15ull * (s.size() + 1);
  auto mix = [&h](uint64_t w) {
    h ^= LowerAsciiWord(w);
    h *= 0xff51afd7ed558ccdull;
    h ^= h >> 32;
  };
  size_t i = 0;
  for (; i + 8 <= s.size(); i += 8) mix(LoadWord(s.data() + i, 8));
  if (i < s.size()) mix(LoadWord(s.data() + i, s.size() - i));
  return static_cast<size_t>(h);
}

size_t FindNoCase(std::string_view haystack, std::string_view needle, size_t start) {
  if (needle.empty()) return start <= haystack.size() ? start : std::string_view::npos;
  if (haystack.size() < needle.size()) return std::string_view::npos;
  for (size_t i = start; i + needle.size() <= haystack.size(); ++i) {
    if (EqualsNoCase(haystack.substr(i, needle.size()), needle)) return i;
  }
  return std::string_view::npos;
}

std::string Trim(std::string_view s) {
  size_t b = s.find_first_not_of(' ');
  if (b == std::string_view::npos) return {};
  size_t e = s.find_last_not_of(' ');
  return std::string(s.substr(b, e - b + 1));
}

std::vector<std::string> Split(std::string_view s, std::string_view delimiter) {
  std::vector<std::string> parts;
  if (delimiter.empty()) {
    parts.emplace_back(s);
    return parts;
  }
  size_t pos = 0;
  while (true) {
    size_t next = s.find(delimiter, pos);
    if (next == std::string_view::npos) {
      parts.emplace_back(s.substr(pos));
      return parts;
    }
    parts.emplace_back(s.substr(pos, next - pos));
    pos = next + delimiter.size();
  }
}

std::string Replace(std::string_view s, std::string_view find, std::string_view with) {
  if (find.empty()) return std::string(s);
  std::string out;
  size_t pos = 0;
  while (true) {
    size_t next = s.find(find, pos);
    if (next == std::string_view::npos) break;
    out.append(s.substr(pos, next - pos));
    out.append(with);
    pos = next + find.size();
  }
  out.append(s.substr(pos));
  return out;
}

bool StartsWith(std::string_view s, std::string_view prefix) {
  return s.substr(0, prefix.size()) == prefix;
}

bool EndsWith(std::string_view s, std::string_view suffix) {
  return s.size() >= suffix.size() && s.substr(s.size() - suffix.size()) == suffix;
}

}  // namespace zintra::text
