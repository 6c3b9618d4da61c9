// The identifiers a letter carries in its document variables "Zintra_Log_To" (the
// folder that receives the logged letter) and "Zintra_Link_To" (the contact it is
// linked to): the object's hexadecimal EntryID, a semicolon, and the hexadecimal
// StoreID of its store, e.g. "00000000A1B2...;0000000038A1BB...". Both parts are
// hexadecimal, so the separator never occurs inside them. A text without the
// semicolon is an EntryID alone, looked up in every store.
#pragma once

#include <string>

namespace zintra {

struct LetterId {
  std::string entry_id;
  std::string store_id;  // "" when not stored
};

std::string FormatLetterId(const std::string& entry_id, const std::string& store_id);
// Surrounding blanks are ignored. An empty text gives an empty EntryID.
LetterId ParseLetterId(const std::string& text);

}  // namespace zintra
