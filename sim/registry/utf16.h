// Conversions between UTF-8 text (the sim's strings) and UTF-16LE bytes (what regedit
// writes). Bytes that are not valid UTF-8 are taken as Latin-1 characters; an unpaired
// surrogate becomes U+FFFD.
#pragma once

#include <string>
#include <string_view>

namespace zintra::sim {

std::string Utf8ToUtf16Le(std::string_view utf8);
// `bytes` must have an even length (the caller checks).
std::string Utf16LeToUtf8(std::string_view bytes);

}  // namespace zintra::sim
