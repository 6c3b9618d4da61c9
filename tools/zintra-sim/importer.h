// Importer: turns exported contacts and mail into a scenario profile, so a user can
// dry-run the add-in's settings over a real mailbox. vCard files become contacts in
// the mailbox's Contacts folder; mail received goes to the Inbox, in date order; mail
// sent by the user is sent by the user in the scenario's timeline, after Outlook
// starts, so that it reaches Sent Items as Outlook files a sent mail. A folder given is read for
// its .vcf, .vcard, .eml and .mbox files (sorted by name). The user is the one given, else the
// address that receives the most of the imported mail.
//
// Every file is read before anything is returned: the first bad file throws
// InputError (file, line, what was expected) and nothing is produced.
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
  std::vector<std::string> notes;  // things the user should know (addresses left out)
};

ImportResult Import(const std::vector<std::string>& paths, const std::optional<PersonSpec>& user);

}  // namespace zintra::simtool
