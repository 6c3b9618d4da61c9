// MimeReader: mail items from .eml files (one RFC 5322 message) and mbox files (many,
// each after a "From " line), parsed with GMime. Read: From, To, Cc, Bcc (groups
// flattened), the Date, the subject with its encoded words decoded to UTF-8, the text
// body and the attachments (name, type, decoded size). Exchange-style addresses
// ("/O=ORG/OU=.../CN=NAME") are kept as they are. A delivery report becomes a report
// item, an invitation (text/calendar METHOD:REQUEST) a meeting request.
//
// Errors throw InputError naming the file (and, in an mbox, the line where the bad
// message starts): a file that holds no mail headers, an mbox that does not begin
// with a "From " line. Addresses without a domain are left out and counted in
// `skipped_addresses`, so the caller can say so.
#pragma once

#include <string>
#include <vector>

#include "tools/zintra-sim/scenario.h"

namespace zintra::simtool {

struct MailReadResult {
  std::vector<ItemSpec> items;  // class mail (or report, meeting)
  int skipped_addresses = 0;
};

MailReadResult ReadEml(const std::string& bytes, const std::string& file);
MailReadResult ReadMbox(const std::string& bytes, const std::string& file);

}  // namespace zintra::simtool
