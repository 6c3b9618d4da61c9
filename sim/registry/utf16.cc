#include "sim/registry/utf16.h"

#include <bit>
#include <cstdint>
#include <cstring>

namespace zintra::sim {

namespace {

// Both conversions write into a buffer cut to length at the end, and copy runs of ASCII
// eight bytes at a time: an exported key tree repeats every key's path on its own line,
// so the text is mostly ASCII and long.
static_assert(std::endian::native == std::endian::little, "the unit masks read bytes in order");
constexpr uint64_t kHighBits = 0x8080808080808080ull;       // any byte >= 0x80
constexpr uint64_t kNonAsciiUnits = 0xFF80FF80FF80FF80ull;  // any unit >= 0x80

uint64_t Load8(const char* p) {
  uint64_t word;
  std::memcpy(&word, p, sizeof word);
  return word;
}

char* AppendUnit(char* out, uint32_t unit) {
  *out++ = static_cast<char>(unit & 0xFF);
  *out++ = static_cast<char>(unit >> 8);
  return out;
}

char* AppendUtf8(char* out, uint32_t cp) {
  if (cp < 0x80) {
    *out++ = static_cast<char>(cp);
  } else if (cp < 0x800) {
    *out++ = static_cast<char>(0xC0 | (cp >> 6));
    *out++ = static_cast<char>(0x80 | (cp & 0x3F));
  } else if (cp < 0x10000) {
    *out++ = static_cast<char>(0xE0 | (cp >> 12));
    *out++ = static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
    *out++ = static_cast<char>(0x80 | (cp & 0x3F));
  } else {
    *out++ = static_cast<char>(0xF0 | (cp >> 18));
    *out++ = static_cast<char>(0x80 | ((cp >> 12) & 0x3F));
    *out++ = static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
    *out++ = static_cast<char>(0x80 | (cp & 0x3F));
  }
  return out;
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
  // Every byte of input gives at most two of output: one byte one unit, two or three
  // bytes one unit, four bytes two units.
  std::string out(utf8.size() * 2, '\0');
  char* at = out.data();
  size_t pos = 0;
  while (pos < utf8.size()) {
    if (utf8.size() - pos >= 8 && (Load8(utf8.data() + pos) & kHighBits) == 0) {
      for (int i = 0; i < 8; ++i) at = AppendUnit(at, static_cast<uint8_t>(utf8[pos + i]));
      pos += 8;
      continue;
    }
    uint32_t cp = NextCodePoint(utf8, &pos);
    if (cp >= 0x10000) {
      cp -= 0x10000;
      at = AppendUnit(at, 0xD800 | (cp >> 10));
      at = AppendUnit(at, 0xDC00 | (cp & 0x3FF));
    } else {
      at = AppendUnit(at, cp);
    }
  }
  out.resize(static_cast<size_t>(at - out.data()));
  return out;
}

std::string Utf16LeToUtf8(std::string_view bytes) {
  // Mostly ASCII: one byte a unit to start with, grown when fewer than eight are left
  // (four ASCII units, or one character of up to four bytes).
  std::string out(bytes.size() / 2 + 8, '\0');
  size_t at = 0;
  const auto unit = [&](size_t i) {
    return static_cast<uint32_t>(static_cast<uint8_t>(bytes[i])) |
           static_cast<uint32_t>(static_cast<uint8_t>(bytes[i + 1])) << 8;
  };
  for (size_t i = 0; i + 1 < bytes.size(); i += 2) {
    if (out.size() - at < 8) out.resize(out.size() * 2);
    if (bytes.size() - i >= 8 && (Load8(bytes.data() + i) & kNonAsciiUnits) == 0) {
      for (int k = 0; k < 4; ++k) out[at++] = bytes[i + 2 * k];
      i += 6;  // and 2 more by the loop
      continue;
    }
    uint32_t cp = unit(i);
    if (cp >= 0xD800 && cp < 0xDC00 && i + 3 < bytes.size()) {
      uint32_t low = unit(i + 2);
      if (low >= 0xDC00 && low < 0xE000) {
        at = static_cast<size_t>(
            AppendUtf8(out.data() + at, 0x10000 + ((cp - 0xD800) << 10) + (low - 0xDC00)) -
            out.data());
        i += 2;
        continue;
      }
    }
    if (cp >= 0xD800 && cp < 0xE000) cp = 0xFFFD;
    at = static_cast<size_t>(AppendUtf8(out.data() + at, cp) - out.data());
  }
  out.resize(at);
  return out;
}

}  // namespace zintra::sim
