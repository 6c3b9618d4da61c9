// MimeReader: mail items from .eml files (one RFC 5322 message) and mbox files (many,
// each after a "From " line, a declared Content-Length honoured), parsed with GMime. Read:
// From, To, Cc, Bcc (groups flattened; Outlook's semicolon-separated lists too), every
// address as the mail gives it (local ones like "abel" included), the Date (else the
// Received or mbox "From " line's date), the subject with its encoded words decoded, the
// plain-text body and the attachments (name, type, decoded size; a forwarded message is
// one attachment). Text in no declared charset that is not UTF-8 is read as Windows-1252.
// Exchange-style addresses ("/O=ORG/OU=.../CN=NAME") are kept as they are. A delivery
// report becomes a report item, an invitation (text/calendar METHOD:REQUEST) a meeting
// request.
//
// Errors throw InputError naming the file (and, in an mbox, the line where the bad
// message starts): a file that holds no mail headers, an mbox that does not begin
// with a "From " line. Entries without any address are left out and counted in
// `skipped_addresses`, so the caller can say so.
#pragma once

#include <string>
#include <vector>

#include "tools/zintra-sim/scenario.h"

namespace zintra::simtool {

struct MailReadResult {
  std::vector<ItemSpec> items;  // class mail (or report, meeting)
  int skipped_addresses = 0;
  std::vector<std::string> notes;  // what the user should know about the file
};

MailReadResult ReadEml(const std::string& bytes, const std::string& file);
MailReadResult ReadMbox(const std::string& bytes, const std::string& file);

}  // namespace zintra::simtool
