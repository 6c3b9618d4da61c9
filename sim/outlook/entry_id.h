// Entry and store identifiers of the simulated profile. An entry identifier is 25
// bytes: four flag bytes, the store's 16-byte uid, a kind byte (1 folder, 2 message)
// and the 4-byte entry number; Outlook shows it as upper-case hexadecimal. A store
// identifier is the 4 flag bytes, a fixed provider uid and the store's uid.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zintra::sim {

using Bytes = std::vector<uint8_t>;

enum class EntryKind : uint8_t { kFolder = 1, kMessage = 2 };

struct ParsedEntryId {
  Bytes store_uid;
  EntryKind kind;
  uint32_t number;
};

Bytes MakeEntryId(const Bytes& store_uid, EntryKind kind, uint32_t number);
Bytes MakeStoreId(const Bytes& store_uid);
// nullopt for text that is not one of this profile's identifiers.
std::optional<ParsedEntryId> ParseEntryId(const Bytes& id);
std::optional<Bytes> ParseStoreId(const Bytes& id);

std::string ToHex(const Bytes& bytes);
// nullopt for odd length or a non-hex digit; letter case does not matter.
std::optional<Bytes> FromHex(std::string_view hex);

}  // namespace zintra::sim
