// TrackedContactsPart: TrackedContacts as one of the add-in's parts. ZintraAddinApp
// creates it first among its parts (through AddinParts::TrackedContacts, see
// TrackedContactsPartFactory) and kills it at tear-down; the part implements
// ContactsAddin over the add-in. Other parts reach the tracked folders through
// TrackedContactsOf(add-in).
//
// Ownership: the add-in holds the part; the part holds TrackedContacts until Kill. The
// add-in is held weakly. Initialize raises TrackedContacts' errors; Kill never throws.
#pragma once

#include <memory>

#include "src/addin/addin_part.h"
#include "src/contacts/contacts_addin.h"
#include "src/contacts/tracked_contacts.h"
#include "src/contacts_part/addin_view.h"
#include "src/core/event.h"

namespace zintra {

class TrackedContactsPart : public AddinPart,
                            public AddinView<ContactsAddin>,
                            public std::enable_shared_from_this<TrackedContactsPart> {
 public:
  void Initialize(const std::shared_ptr<ZintraAddinApp>& AddinApp) override;
  void Kill() override;
  void Addin_RegSettingsChanged(const RegSettings& OldSettings) override;

  const std::shared_ptr<TrackedContacts>& Tracked() const { return tracked_; }

 private:
  std::shared_ptr<TrackedContacts> tracked_;
  Connection addin_kill_;
};

AddinPartFactory TrackedContactsPartFactory();
// The tracked contacts of the add-in's TrackedContactsPart; nullptr without one.
std::shared_ptr<TrackedContacts> TrackedContactsOf(const ZintraAddinApp& app);

}  // namespace zintra
