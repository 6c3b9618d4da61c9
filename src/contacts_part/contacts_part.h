// ContactsPart: TrackedContacts as one of the add-in's parts. ZintraAddinApp creates it
// at its place in the start-up order (right after the job queue) through the factory
// the composition root puts in AddinParts::TrackedContacts, and kills it at tear-down.
// It implements ContactsAddin over the add-in and its Host bundle, so that contact
// tracking sees only that narrow interface, and forwards the add-in's Kill broadcast
// and settings changes to TrackedContacts.
//
// Ownership: the add-in is held weakly (it owns this part); Kill drops TrackedContacts
// and the add-in. Called on Outlook's thread only.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "src/addin/addin_part.h"
#include "src/addin/errors_job_log.h"
#include "src/contacts/contacts_addin.h"
#include "src/contacts/tracked_contacts.h"
#include "src/core/event.h"
#include "src/outlook/library_factory.h"

namespace zintra {

class ContactsPart : public AddinPart,
                     public ContactsAddin,
                     public std::enable_shared_from_this<ContactsPart> {
 public:
  // --- AddinPart ---
  void Initialize(const std::shared_ptr<ZintraAddinApp>& AddinApp) override;
  void Kill() override;
  void Addin_RegSettingsChanged(const RegSettings& OldSettings) override;

  // The tracked contacts; nullptr before Initialize and after Kill.
  const std::shared_ptr<zintra::TrackedContacts>& GetTrackedContacts() const { return tracked_; }

  // --- ContactsAddin --- (throw 91 once the add-in is gone, where a reference is due)
  const RegSettings& Settings() override;
  std::shared_ptr<JobQueue> GetJobQueue() override;
  std::shared_ptr<Namespace> Session() override;
  std::shared_ptr<MapiUtils> LibraryUtils() override;
  std::shared_ptr<AutomationObject> CreateLibraryObject(int32_t kind) override;
  bool Quitting() override;
  void SetCheckLinger(std::shared_ptr<ICheckLinger> obj) override;
  std::string GenerateKey() override;
  bool OptionalMsgBox(int32_t DialogIdx, const std::string& Message,
                      const std::string& Caption) override;
  const StringTable& Strings() override;
  JobLog& Log() override;
  double Now() override;

 private:
  ZintraAddinApp& App();

  std::weak_ptr<ZintraAddinApp> app_;
  std::shared_ptr<zintra::TrackedContacts> tracked_;
  std::optional<ErrorsJobLog> log_;
  std::optional<LibraryFactory> library_;
  Connection addin_kill_;
};

AddinPartFactory ContactsPartFactory();

}  // namespace zintra
