// Text helpers with the semantics the system's VB heritage expects: ASCII
// case-insensitive comparison (vbTextCompare), Trim of spaces only, Split/Replace.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zintra::text {

std::string LCase(std::string_view s);
std::string UCase(std::string_view s);
bool EqualsNoCase(std::string_view a, std::string_view b);
// Position of needle in haystack at or after start, letters compared without case;
// npos when absent.
size_t FindNoCase(std::string_view haystack, std::string_view needle, size_t start = 0);
std::string Trim(std::string_view s);  // spaces only, as VB's Trim
std::vector<std::string> Split(std::string_view s, std::string_view delimiter);
std::string Replace(std::string_view s, std::string_view find, std::string_view with);
bool StartsWith(std::string_view s, std::string_view prefix);
bool EndsWith(std::string_view s, std::string_view suffix);

}  // namespace zintra::text
