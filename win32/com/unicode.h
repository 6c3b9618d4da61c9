// The portable core keeps text as UTF-8; Windows speaks UTF-16. Invalid sequences become
// U+FFFD rather than failing: text from a mailbox is not ours to reject.
#pragma once

#include <string>
#include <string_view>

namespace zintra::win32 {

std::wstring Widen(std::string_view utf8);
std::string Narrow(std::wstring_view utf16);

}  // namespace zintra::win32
