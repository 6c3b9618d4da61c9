// DecisionLog: where the add-in states each decision it takes about an item or a
// monitored folder, as a plain record, at the moment it takes it: an item screened out
// and why, each address searched, each contact found and how, each copy made and
// where, how a folder scan ended. It is separate from the text log, which a level
// setting and a size limit thin out: a host that wants to know what the add-in did
// (a dry run over a mailbox) connects a recorder; the Windows host leaves it
// unconnected and the records go nowhere. Called on Outlook's thread only; Record
// must not throw.
#pragma once

#include <string>

namespace zintra {

enum class DecisionKind {
  // Folder decisions (`folder_name`, `folder_id`, `store_id` name the folder).
  kFolderMonitored,  // a monitor watches the folder; `reason`: "incoming", "outgoing", both
  kScanStarted,      // a scan of the folder began
  kScanEnded,        // it ended; `reason` says how; `subject`/`entry_id`: the item it stopped at
  // Item decisions (`entry_id`, `store_id`, `subject`, `folder_name` name the item).
  kNotProcessed,     // a new item that the monitor handed to no job; `reason`
  kSkipped,          // screened out, nothing written on it; `reason`
  kMarkedNotLogged,  // screened out and marked "Zintra Logged" = False; `reason`
  kQueued,           // passed screening: marked "Processing" and queued
  kNoAddressSearch,  // its addresses were not searched; `reason`
  kAddressSearched,  // `address` was searched for tracked contacts
  kLinkedContact,    // a link leads to the tracked contact `contact`/`contact_id`
  kAddressMatched,   // the search found `contact` for `address` (blanket: "*@domain")
  kContactAccepted,  // `contact` is one the item is logged for (set: `folderset`)
  kContactRefused,   // `contact` was found but not taken; `reason`
  kCopyMade,         // a copy `copy_id` was made in `copy_folder`; `shared`
  kFinished,         // the item got its final marks; `logged`, `shared`
  kEnded,            // the job ended before finishing; `reason`
};

struct Decision {
  DecisionKind kind = DecisionKind::kEnded;
  std::string reason{};
  std::string address{};
  std::string contact{}, contact_id{}, folderset{};
  std::string copy_folder{}, copy_id{};
  bool logged = false;
  bool shared = false;
  // Identity, filled in by the one who records (the item's, or the folder's).
  std::string entry_id{}, store_id{}, subject{}, folder_name{}, folder_id{};
};

class DecisionLog {
 public:
  virtual ~DecisionLog() = default;
  virtual void Record(const Decision& decision) { (void)decision; }
};

// The log of a host that connects none: records go nowhere.
inline DecisionLog& NoDecisionLog() {
  static DecisionLog none;
  return none;
}

}  // namespace zintra
