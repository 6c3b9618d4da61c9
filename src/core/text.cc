#include "src/core/text.h"

#include <algorithm>

namespace zintra::text {
namespace {
char Lower(char c) { return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c; }
char Upper(char c) { return (c >= 'a' && c <= 'z') ? static_cast<char>(c - 'a' + 'A') : c; }
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
  for (size_t i = 0; i < a.size(); ++i) {
    if (Lower(a[i]) != Lower(b[i])) return false;
  }
  return true;
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
