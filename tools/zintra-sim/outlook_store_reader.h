// OutlookStoreReader: the folders, mail and contacts of an Outlook data file (.pst, or an
// .ost cache), read with libpff. The folders the user sees (below the store's top, not
// its search and view folders) are kept nested as in the file, each with its kind (the
// folder's container class); the store's default folders (Sent Items, Deleted Items,
// Contacts, Calendar, ...) are known by the identifiers the store keeps for them and take
// the names a mailbox gives them, whatever their language; items filed at the top itself
// go to the Inbox or Contacts. Mail (notes, reports, meeting
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
  std::vector<FolderSpec> folders;  // the top's folders, with their subfolders and items
  int mails = 0;
  int contacts = 0;
  std::vector<std::string> notes;  // what the user should know about the file
};

StoreReadResult ReadOutlookStore(const std::string& file);

}  // namespace zintra::simtool
