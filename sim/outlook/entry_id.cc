#include "sim/outlook/entry_id.h"

namespace zintra::sim {

namespace {

constexpr uint8_t kProviderUid[16] = {0x38, 0xA1, 0xBB, 0x10, 0x05, 0xE5, 0x10, 0x1A,
                                      0xA1, 0xBB, 0x08, 0x00, 0x2B, 0x2A, 0x56, 0xC2};

int HexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  return -1;
}

}  // namespace

Bytes MakeEntryId(const Bytes& store_uid, EntryKind kind, uint32_t number) {
  Bytes id;
  id.reserve(25);
  id.resize(4, 0);
  for (uint8_t b : store_uid) id.push_back(b);
  id.push_back(static_cast<uint8_t>(kind));
  for (int shift = 24; shift >= 0; shift -= 8) id.push_back(static_cast<uint8_t>(number >> shift));
  return id;
}

Bytes MakeStoreId(const Bytes& store_uid) {
  Bytes id;
  id.reserve(36);
  id.resize(4, 0);
  for (uint8_t b : kProviderUid) id.push_back(b);
  for (uint8_t b : store_uid) id.push_back(b);
  return id;
}

std::optional<ParsedEntryId> ParseEntryId(const Bytes& id) {
  if (id.size() != 25 || id[0] || id[1] || id[2] || id[3]) return std::nullopt;
  uint8_t kind = id[20];
  if (kind != 1 && kind != 2) return std::nullopt;
  uint32_t number = 0;
  for (int i = 21; i < 25; ++i) number = (number << 8) | id[i];
  return ParsedEntryId{Bytes(id.begin() + 4, id.begin() + 20), static_cast<EntryKind>(kind),
                       number};
}

std::optional<Bytes> ParseStoreId(const Bytes& id) {
  if (id.size() != 36) return std::nullopt;
  for (int i = 0; i < 16; ++i) {
    if (id[4 + i] != kProviderUid[i]) return std::nullopt;
  }
  return Bytes(id.begin() + 20, id.end());
}

std::string ToHex(const Bytes& bytes) {
  static const char kDigits[] = "0123456789ABCDEF";
  std::string out;
  out.reserve(bytes.size() * 2);
  for (uint8_t b : bytes) {
    out.push_back(kDigits[b >> 4]);
    out.push_back(kDigits[b & 15]);
  }
  return out;
}

std::optional<Bytes> FromHex(std::string_view hex) {
  if (hex.size() % 2 != 0) return std::nullopt;
  Bytes out;
  out.reserve(hex.size() / 2);
  for (size_t i = 0; i < hex.size(); i += 2) {
    int hi = HexDigit(hex[i]);
    int lo = HexDigit(hex[i + 1]);
    if (hi < 0 || lo < 0) return std::nullopt;
    out.push_back(static_cast<uint8_t>(hi * 16 + lo));
  }
  return out;
}

}  // namespace zintra::sim
