// NamedPropMap: one store's mapping of named properties (property-set GUID plus a
// name or a numeric id) to property ids 0x8000 and above, created on demand, as a
// store's name-to-id table does. GUIDs compare without regard to letter case; names
// are case-sensitive, as in MAPI.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>
#include <variant>
#include <vector>

namespace zintra::sim {

struct NamedPropKey {
  std::string guid;                         // upper case "{...}"
  std::variant<int32_t, std::string> name;  // numeric id or string name
  bool operator==(const NamedPropKey&) const = default;
};

class NamedPropMap {
 public:
  // The property id for the name; with create false, nullopt when unknown. Throws
  // kMapiCallFailed when the store's 32,767 named ids are used up.
  std::optional<uint16_t> IdFor(const NamedPropKey& key, bool create);
  // The name of a mapped id; nullptr for an id this store never mapped.
  const NamedPropKey* NameOf(uint16_t id) const;
  size_t Size() const { return names_.size(); }

  static NamedPropKey Key(std::string_view guid, int32_t id);
  static NamedPropKey Key(std::string_view guid, std::string_view name);

 private:
  struct KeyHash {
    size_t operator()(const NamedPropKey& k) const;
  };
  std::unordered_map<NamedPropKey, uint16_t, KeyHash> ids_;
  std::vector<NamedPropKey> names_;  // index = id - 0x8000
};

}  // namespace zintra::sim
