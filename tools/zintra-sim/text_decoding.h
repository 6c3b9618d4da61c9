// TextDecoding: bytes of an unknown or declared charset made into UTF-8, since scenario
// files are UTF-8 and old mail and vCards often are not (8-bit bodies without a charset,
// Latin-1 cards without CHARSET).
#pragma once

#include <string>

namespace zintra::simtool {

bool IsUtf8(const std::string& bytes);
// Converts text in `charset` to UTF-8; "" when the charset is unknown or the bytes are not
// valid in it.
std::string ConvertToUtf8(const std::string& bytes, const std::string& charset);
// The bytes as UTF-8: converted from `declared` when that works, else kept when already
// UTF-8, else read as Windows-1252 (Latin-1 for its five unassigned bytes). `fell_back`
// is set when neither the declared charset nor UTF-8 fitted.
std::string DecodeText(const std::string& bytes, const std::string& declared,
                       bool* fell_back = nullptr);

}  // namespace zintra::simtool
