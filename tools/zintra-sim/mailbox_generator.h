// MailboxGenerator: a made-up mailbox as exported files, for measuring and checking
// `import` and `run` at the size of a real one: contacts.vcf (vCard 3.0, one to three
// addresses each, some private or with categories) and mail.mbox (mail from tracked
// contacts, from strangers and mailing lists, mail the user sent to contacts, some with
// Cc, attachments or a sensitivity), dated over the month before the dry run. The same
// counts and seed give the same files.
#pragma once

#include <cstdint>
#include <filesystem>

#include "tools/zintra-sim/scenario.h"

namespace zintra::simtool {

struct GeneratedMailbox {
  PersonSpec user;  // the mailbox's owner: import with --user
  int contacts = 0;
  int mails = 0;
  int sent = 0;  // of `mails`, sent by the user
};

// Writes contacts.vcf and mail.mbox into `dir` (made if missing).
GeneratedMailbox GenerateMailbox(const std::filesystem::path& dir, int mails, int contacts,
                                 uint32_t seed = 1);

}  // namespace zintra::simtool
