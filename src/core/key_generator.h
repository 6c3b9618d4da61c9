// KeyGenerator: fresh keys for keyed collections (task list, wait list, copy
// jobs). Keys are never reused by one generator, so a key is unique among every
// key it has handed out, live or not.
#pragma once

#include <cstdint>
#include <string>

namespace zintra {

class KeyGenerator {
 public:
  std::string GenerateKey() { return "K" + std::to_string(++last_); }

 private:
  uint64_t last_ = 0;
};

}  // namespace zintra
