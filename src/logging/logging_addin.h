// LoggingAddin: the add-in application as item logging sees it. It is the contact
// tracking view of the add-in (ContactsAddin) plus what the processing, copy and
// audit jobs need beyond it: the utility object, the tracked contacts, the library
// session and the add-in's Kill broadcast. The add-in's AddinServices implements it;
// test fixtures implement it over the simulated host.
//
// Jobs hold the add-in weakly and treat a vanished add-in as shut down. Called on
// Outlook's thread only. Utils and Tracked return nullptr once released;
// RDOSession throws the platform's error when the library cannot be reached.
#pragma once

#include <memory>

#include "src/contacts/contacts_addin.h"
#include "src/core/event.h"

namespace zintra {

class RdoSession;
class TrackedContacts;
class ZintraUtils;

class LoggingAddin : public ContactsAddin {
 public:
  // The single utility object (marks, save bracket, screening); nullptr once killed.
  virtual ZintraUtils* Utils() = 0;
  // The tracked contact folders; nullptr before creation or after shut-down.
  virtual std::shared_ptr<TrackedContacts> Tracked() = 0;
  // The library session that shares Outlook's logon (current user, hard deletes).
  virtual std::shared_ptr<RdoSession> RDOSession() = 0;
  // Raised at the start of tear-down: every job drops what it holds (Addin_Kill).
  virtual Event<>& KillBroadcast() = 0;
  // True while the add-in is let go without its queued work done (Outlook released it
  // with no window closed): a job that has not started copying leaves its item
  // unmarked for the next start instead of deciding it.
  virtual bool LeavingWorkForNextStart() { return false; }
};

}  // namespace zintra
