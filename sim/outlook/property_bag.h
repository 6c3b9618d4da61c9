// PropertyBag: the MAPI properties of one message or folder, keyed by property id.
// Small (a message holds a dozen or two), so a flat vector beats a map in memory and
// speed at the 100,000-item scale. Values keep the type they were written with;
// reading with another type of the same family (8-bit/Unicode text) succeeds, with an
// unrelated type it reports absence, as MAPI does.
#pragma once

#include <cstdint>
#include <vector>

#include "src/core/value.h"

namespace zintra::sim {

struct Property {
  uint16_t id;
  uint16_t type;
  Value value;
};

class PropertyBag {
 public:
  // nullptr when absent or of an incompatible type (type 0 accepts any).
  const Value* Get(int32_t tag) const;
  const Property* Find(uint16_t id) const;
  // Converts the value to the tag's type (text for PT_STRING8, ...); a conversion
  // that cannot succeed throws ZError 13.
  void Set(int32_t tag, const Value& value);
  bool Remove(uint16_t id);
  const std::vector<Property>& All() const { return props_; }
  std::vector<Property>& Mutable() { return props_; }

  static Value Coerce(uint16_t type, const Value& value);

 private:
  std::vector<Property> props_;
};

}  // namespace zintra::sim
