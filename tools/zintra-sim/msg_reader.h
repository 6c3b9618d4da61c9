// MsgReader: an Outlook item saved as a .msg file (a compound file whose streams hold
// the item's MAPI properties) read into a mail or contact. Mail: message class, subject,
// plain-text body, sender (the "sent representing" one first) and To/Cc/Bcc recipients
// with their SMTP and Exchange addresses, the time sent (else received), sensitivity,
// categories and attachments (an attached item counts as one). Contact: full name,
// company, its three e-mail addresses, categories, sensitivity, notes. 8-bit strings are
// read in the item's code page.
//
// Errors throw InputError naming the file: a damaged compound file, no property stream,
// an item of a kind other than mail or contact.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tools/zintra-sim/scenario.h"

namespace zintra::simtool {

ItemSpec ReadMsg(const std::string& bytes, const std::string& file);

// A sender or recipient from its MAPI display name, address type, address and SMTP
// address: an Exchange one ("EX") keeps its distinguished name and the SMTP address when
// known; others are kept as given. nullopt without any address.
std::optional<PersonSpec> MapiPerson(const std::string& name, const std::string& type,
                                     const std::string& address, const std::string& smtp);
// A FILETIME (100 ns since 1601) as a date serial (days since 30 December 1899).
double FiletimeToSerial(uint64_t ticks);

}  // namespace zintra::simtool
