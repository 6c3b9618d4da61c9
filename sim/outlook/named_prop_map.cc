#include "sim/outlook/named_prop_map.h"

#include <functional>

#include "src/core/text.h"
#include "src/core/z_error.h"
#include "src/host/mapi_object.h"

namespace zintra::sim {

size_t NamedPropMap::KeyHash::operator()(const NamedPropKey& k) const {
  size_t h = std::hash<std::string>()(k.guid);
  if (const auto* id = std::get_if<int32_t>(&k.name)) {
    return h ^ (std::hash<int32_t>()(*id) * 31);
  }
  return h ^ (std::hash<std::string>()(std::get<std::string>(k.name)) * 131);
}

NamedPropKey NamedPropMap::Key(std::string_view guid, int32_t id) {
  return NamedPropKey{text::UCase(guid), id};
}

NamedPropKey NamedPropMap::Key(std::string_view guid, std::string_view name) {
  return NamedPropKey{text::UCase(guid), std::string(name)};
}

std::optional<uint16_t> NamedPropMap::IdFor(const NamedPropKey& key, bool create) {
  auto it = ids_.find(key);
  if (it != ids_.end()) return it->second;
  if (!create) return std::nullopt;
  if (names_.size() >= 0x7FFF) throw ZError(kMapiCallFailed, "Named property table is full");
  uint16_t id = static_cast<uint16_t>(0x8000 + names_.size());
  names_.push_back(key);
  ids_.emplace(key, id);
  return id;
}

const NamedPropKey* NamedPropMap::NameOf(uint16_t id) const {
  if (id < 0x8000 || id - 0x8000u >= names_.size()) return nullptr;
  return &names_[id - 0x8000u];
}

}  // namespace zintra::sim
