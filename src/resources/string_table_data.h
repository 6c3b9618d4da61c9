// The rows of the string table: one per text number, English, French and Canadian
// French. An empty translation falls back to the English text.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace zintra::resources {

struct StringRow {
  int32_t id;
  const char* english;
  const char* french;
  const char* canadian_french;
};

// Sorted by id, ascending.
std::span<const StringRow> StringRows();

}  // namespace zintra::resources
