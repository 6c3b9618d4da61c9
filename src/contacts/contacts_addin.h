// ContactsAddin: the add-in application as contact tracking sees it. The add-in's
// AddinServices implements it; TrackedContacts, TrackedContactFolder and ContactSearch hold it
// weakly and treat a vanished add-in as shut down.
//
// Called on Outlook's thread only. Session, CreateLibraryObject and LibraryUtils may
// throw the platform's ZError (a dead connection, a class that cannot be created);
// the other members should not.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "src/host/automation_object.h"
#include "src/host/decision_log.h"

namespace zintra {

class ICheckLinger;
class JobEngineLog;
class JobQueue;
class MapiUtils;
class Namespace;
class RegSettings;
class StringTable;

// Library object kinds this subsystem creates (the library factory's numbering).
inline constexpr int32_t kLibraryMapiTable = 3;

class ContactsAddin {
 public:
  virtual ~ContactsAddin() = default;

  // The settings in force. The reference may change on every settings change, so
  // callers read it afresh and never keep it.
  virtual const RegSettings& Settings() = 0;
  // The add-in's queue; nullptr once released.
  virtual std::shared_ptr<JobQueue> GetJobQueue() = 0;
  // Outlook's MAPI namespace (Application.Session).
  virtual std::shared_ptr<Namespace> Session() = 0;
  // The library's utility object (named properties, entry-identifier comparison);
  // nullptr when the library is not available.
  virtual std::shared_ptr<MapiUtils> LibraryUtils() = 0;
  // A new library object of `kind` through the add-in's library factory; throws as
  // the factory does (the failure is already logged there).
  virtual std::shared_ptr<AutomationObject> CreateLibraryObject(int32_t kind) = 0;
  // True once the add-in has begun to quit (Outlook is exiting).
  virtual bool Quitting() = 0;
  // Registers an object for the lingering-reference check (ZintraUtils.SetCheckLinger).
  virtual void SetCheckLinger(std::shared_ptr<ICheckLinger> obj) = 0;
  // A fresh key, unique among live keys (ZintraUtils.GenerateKey).
  virtual std::string GenerateKey() = 0;
  // ZintraUtils.OptionalMsgBox: shows the message unless dialog DialogIdx is
  // suppressed; never throws.
  virtual bool OptionalMsgBox(int32_t DialogIdx, const std::string& Message,
                              const std::string& Caption) = 0;
  virtual const StringTable& Strings() = 0;
  // Log lines and error records (modErrorHandling).
  virtual JobEngineLog& Log() = 0;
  // VB's Now, as a date serial.
  virtual double Now() = 0;
  // Where the add-in states its decisions about items (nowhere unless a host connects one).
  virtual DecisionLog& Decisions() { return NoDecisionLog(); }
};

}  // namespace zintra
