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

#include <string>
#include <vector>

#include "tools/zintra-sim/scenario.h"

namespace zintra::simtool {

ItemSpec ReadMsg(const std::string& bytes, const std::string& file);

}  // namespace zintra::simtool
