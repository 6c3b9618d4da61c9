// AddinPart: one of the long-lived subsystem objects that ZintraAddinApp creates at
// start-up after its job queue (TrackedContacts, Toolbars, Monitoring) and kills at
// tear-down. The add-in knows them only through this interface, so a subsystem that
// needs the add-in does not make the add-in depend on it: the composition root hands
// the add-in one factory per part (AddinParts), and the add-in calls them at their
// place in the start-up order. A part left without a factory is not created.
//
// Contract: Initialize is called once, right after creation; it may throw (the
// add-in's start-up then fails and tears down). Kill is called once at tear-down,
// after the add-in's Kill broadcast; it drops every reference the part holds and
// must not throw. StopMonitoring is called on Monitoring only, at the start of the
// add-in's Shutdown, before the queue is flushed. Addin_RegSettingsChanged is called
// on every part, in start-up order, after the add-in replaced its settings (the new
// ones are read through the add-in); it must not throw.
#pragma once

#include <functional>
#include <memory>

namespace zintra {

class RegSettings;
class ZintraAddinApp;

class AddinPart {
 public:
  virtual ~AddinPart() = default;
  virtual void Initialize(const std::shared_ptr<ZintraAddinApp>& AddinApp) = 0;
  virtual void Kill() = 0;
  virtual void StopMonitoring() {}
  virtual void Addin_RegSettingsChanged(const RegSettings& /*OldSettings*/) {}
};

using AddinPartFactory = std::function<std::shared_ptr<AddinPart>()>;

struct AddinParts {
  AddinPartFactory TrackedContacts;
  // Not created when the setting NeverLoadToolbars is set.
  AddinPartFactory Toolbars;
  AddinPartFactory Monitoring;
};

}  // namespace zintra
