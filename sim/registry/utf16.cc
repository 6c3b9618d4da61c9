#include "sim/registry/utf16.h"

#include <cstdint>

namespace zintra::sim {

namespace {

void AppendUnit(std::string* out, uint32_t unit) {
  out->push_back(static_cast<char>(unit & 0xFF));
  out->push_back(static_cast<char>(unit >> 8));
}

void AppendUtf8(std::string* out, uint32_t cp) {
  if (cp < 0x80) {
    out->push_back(static_cast<char>(cp));
  } else if (cp < 0x800) {
    out->push_back(static_cast<char>(0xC0 | (cp >> 6)));
    out->push_back(static_cast<char>(0x80 | (cp & 0x3F)));
  } else if (cp < 0x10000) {
    out->push_back(static_cast<char>(0xE0 | (cp >> 12)));
    out->push_back(static_cast<char>(0x80 | ((cp >> 6) & 0x3F)));
    out->push_back(static_cast<char>(0x80 | (cp & 0x3F)));
  } else {
    out->push_back(static_cast<char>(0xF0 | (cp >> 18)));
    out->push_back(static_cast<char>(0x80 | ((cp >> 12) & 0x3F)));
    out->push_back(static_cast<char>(0x80 | ((cp >> 6) & 0x3F)));
    out->push_back(static_cast<char>(0x80 | (cp & 0x3F)));
  }
}

// Decodes one UTF-8 sequence at s[*pos]; an invalid byte is taken as Latin-1.
uint32_t NextCodePoint(std::string_view s, size_t* pos) {
  const auto byte = [&](size_t i) { return static_cast<uint8_t>(s[i]); };
  uint8_t lead = byte(*pos);
  int extra = lead >= 0xF0 && lead < 0xF5   ? 3
              : lead >= 0xE0 && lead < 0xF0 ? 2
              : lead >= 0xC2 && lead < 0xE0 ? 1
                                            : 0;
  if (extra == 0 || *pos + extra >= s.size()) {
    ++*pos;
    return lead;
  }
  uint32_t cp = lead & (0x3F >> extra);
  for (int i = 1; i <= extra; ++i) {
    uint8_t next = byte(*pos + i);
    if ((next & 0xC0) != 0x80) {
      ++*pos;
      return lead;
    }
    cp = (cp << 6) | (next & 0x3F);
  }
  *pos += extra + 1;
  return cp;
}

}  // namespace

std::string Utf8ToUtf16Le(std::string_view utf8) {
  std::string out;
  out.reserve(utf8.size() * 2);
  size_t pos = 0;
  while (pos < utf8.size()) {
    uint32_t cp = NextCodePoint(utf8, &pos);
    if (cp >= 0x10000) {
      cp -= 0x10000;
      AppendUnit(&out, 0xD800 | (cp >> 10));
      AppendUnit(&out, 0xDC00 | (cp & 0x3FF));
    } else {
      AppendUnit(&out, cp);
    }
  }
  return out;
}

std::string Utf16LeToUtf8(std::string_view bytes) {
  std::string out;
  out.reserve(bytes.size() / 2);
  const auto unit = [&](size_t i) {
    return static_cast<uint32_t>(static_cast<uint8_t>(bytes[i])) |
           static_cast<uint32_t>(static_cast<uint8_t>(bytes[i + 1])) << 8;
  };
  for (size_t i = 0; i + 1 < bytes.size(); i += 2) {
    uint32_t cp = unit(i);
    if (cp >= 0xD800 && cp < 0xDC00 && i + 3 < bytes.size()) {
      uint32_t low = unit(i + 2);
      if (low >= 0xDC00 && low < 0xE000) {
        AppendUtf8(&out, 0x10000 + ((cp - 0xD800) << 10) + (low - 0xDC00));
        i += 2;
        continue;
      }
    }
    if (cp >= 0xD800 && cp < 0xE000) cp = 0xFFFD;
    AppendUtf8(&out, cp);
  }
  return out;
}

}  // namespace zintra::sim
