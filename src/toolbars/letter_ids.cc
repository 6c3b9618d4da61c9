#include "src/toolbars/letter_ids.h"

#include "src/core/text.h"

namespace zintra {

std::string FormatLetterId(const std::string& entry_id, const std::string& store_id) {
  return store_id.empty() ? entry_id : entry_id + ";" + store_id;
}

LetterId ParseLetterId(const std::string& text) {
  const std::string trimmed = text::Trim(text);
  const size_t semicolon = trimmed.find(';');
  if (semicolon == std::string::npos) return {trimmed, {}};
  return {text::Trim(trimmed.substr(0, semicolon)), text::Trim(trimmed.substr(semicolon + 1))};
}

}  // namespace zintra
