// Dispatchable: a late-bound call by member name (VB's CallByName). Objects that a
// JobCallback may call implement it; an unknown name throws ZError 438.
#pragma once

#include <string_view>

#include "src/core/value.h"

namespace zintra {

class Dispatchable {
 public:
  virtual ~Dispatchable() = default;
  // arg is nullptr for a call without argument.
  virtual Value Invoke(std::string_view name, const Value* arg) = 0;
};

}  // namespace zintra
