// VCardReader: contacts from vCard text (versions 2.1, 3.0 and 4.0; a file may hold
// many cards). Read: FN (else N), every EMAIL line (grouped "item1.EMAIL" too; a
// preferred address first), CATEGORIES, ORG (the organisation, not the unit) and
// CLASS (PRIVATE -> private, CONFIDENTIAL -> confidential sensitivity). Folded lines,
// quoted-printable values with soft line breaks, 2.1 CHARSET parameters and the
// backslash escapes of 3.0/4.0 are decoded; text in no charset that is not UTF-8 is read
// as Windows-1252; binary values (photos) are skipped.
//
// Errors throw InputError naming the file and line: a line outside a card, a content
// line without "name:value", an unknown VERSION, a card not closed by END:VCARD, a
// card with neither a name nor an address.
#pragma once

#include <string>
#include <vector>

#include "tools/zintra-sim/scenario.h"

namespace zintra::simtool {

// Contact items (class contact) in file order; `file` names the source in errors. What the
// user should know about the file (values read as Windows-1252) goes to `notes`.
std::vector<ItemSpec> ReadVCards(const std::string& text, const std::string& file,
                                 std::vector<std::string>* notes = nullptr);

// Decodes quoted-printable text ("=C3=A9", soft line breaks "=\n").
std::string DecodeQuotedPrintable(const std::string& text);

}  // namespace zintra::simtool
