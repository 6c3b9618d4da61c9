#include "win32/com/bstr.h"

#include "win32/com/unicode.h"

namespace zintra::win32 {

Bstr::Bstr(std::string_view utf8) {
  std::wstring w = Widen(utf8);
  b_ = SysAllocStringLen(w.data(), static_cast<UINT>(w.size()));
}

std::string Bstr::ToUtf8(BSTR b) {
  if (!b) return {};
  return Narrow(std::wstring_view(b, SysStringLen(b)));
}

}  // namespace zintra::win32
