// OutlookStoreReader: the mail and contacts of an Outlook data file (.pst, or an .ost
// cache), read with libpff. Every folder is walked; mail (notes, reports, meeting
// requests, posts) is read as from a .msg file: subject, plain-text body, sender and
// recipients with their SMTP and Exchange addresses, time sent, sensitivity, categories,
// attachments; contacts with their name, company, three addresses, categories and
// sensitivity. Items of other kinds (calendar, tasks, notes) are counted, not read.
//
// A file libpff cannot open or read (damaged, not a data file) and a password-protected
// one throw InputError naming the file.
#pragma once

#include <string>
#include <vector>

#include "tools/zintra-sim/scenario.h"

namespace zintra::simtool {

struct StoreReadResult {
  std::vector<ItemSpec> mails;
  std::vector<ItemSpec> contacts;
  std::vector<std::string> notes;  // what the user should know about the file
};

StoreReadResult ReadOutlookStore(const std::string& file);

}  // namespace zintra::simtool
