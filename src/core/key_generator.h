// KeyGenerator: fresh keys for keyed collections (task list, wait list, copy
// jobs). Keys are never reused by one generator, so a key is unique among every
// key it has handed out, live or not.
#pragma once

#include <charconv>
#include <cstdint>
#include <string>

namespace zintra {

class KeyGenerator {
 public:
  // Built in place as one string: a key is made for every task, wait and copy job.
  std::string GenerateKey() {
    char key[24] = {'K'};
    char* end = std::to_chars(key + 1, key + sizeof key, ++last_).ptr;
    return std::string(key, end);
  }

 private:
  uint64_t last_ = 0;
};

}  // namespace zintra
