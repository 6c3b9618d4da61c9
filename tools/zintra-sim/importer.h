// Importer: turns exported contacts and mail into a scenario profile, so a user can
// dry-run the add-in's settings over a real mailbox. vCard files become contacts in
// the mailbox's Contacts folder; mail received goes to the Inbox, in date order; an
// Outlook data file's folders are kept as the file nests them (see OutlookStoreReader),
// merged by name with the mailbox's own; mail sent by the user, wherever it was filed, is
// sent by the user in the scenario's timeline, after Outlook starts, so that it reaches
// Sent Items as Outlook files a sent mail. A folder given is read file by file (sorted by
// name), each known by its content or extension: vCard, .eml, mbox (with or without an
// extension), Outlook's .msg items and .pst/.ost data files. Exchange people whose SMTP
// address any item gives make the profile's directory. The user is the one given, else
// the address that receives the most of the imported mail.
//
// A file named on the command line that cannot be read throws InputError (file, line,
// what was expected) and nothing is produced; a file found in a folder that cannot be
// read (or is of no known kind) is named in `not_imported` with why, and the rest goes on;
// when nothing at all could be read, InputError lists them.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tools/zintra-sim/scenario.h"

namespace zintra::simtool {

// How long the imported scenario lets the add-in work before Outlook quits: enough
// for its queue to go through a mailbox of tens of thousands of mails.
inline constexpr double kDryRunWaitSeconds = 6 * 3600;

struct ImportResult {
  Scenario scenario;
  int contacts = 0;
  int received = 0;
  int sent = 0;
  std::vector<std::string> notes;         // things the user should know, per file
  std::vector<std::string> not_imported;  // "file: why" for files of a folder left out
};

ImportResult Import(const std::vector<std::string>& paths, const std::optional<PersonSpec>& user);

}  // namespace zintra::simtool
