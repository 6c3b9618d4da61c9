// AddinPart: one of the long-lived subsystem objects that ZintraAddinApp creates at
// start-up after its job queue (TrackedContacts, Toolbars, Monitoring) and kills at
// tear-down. The add-in calls each part at its place in the start-up and tear-down
// order; a part reaches the add-in through ZintraAddinApp::Services(), the one object
// that implements every subsystem's view of the add-in. AddinParts holds one factory
// per part, the subsystems' own by default; a test may put others in (or none: a part
// left without a factory is not created).
//
// Contract: Initialize is called once, right after creation; it may throw (the
// add-in's start-up then fails and tears down). Kill is called once at tear-down,
// after the add-in's Kill broadcast; it drops every reference the part holds and
// must not throw. StopMonitoring is called on Monitoring only, at the start of the
// add-in's Shutdown, before the queue is flushed; Inspectors_NewInspector on Monitoring
// only, for each inspector Outlook opens while the add-in runs. Addin_RegSettingsChanged
// is called on every part, in start-up order, after the add-in replaced its settings
// (the new ones are read through the add-in); it must not throw.
#pragma once

#include <functional>
#include <memory>

namespace zintra {

class Inspector;
class RegSettings;
class ZintraAddinApp;

class AddinPart {
 public:
  virtual ~AddinPart() = default;
  virtual void Initialize(const std::shared_ptr<ZintraAddinApp>& AddinApp) = 0;
  virtual void Kill() = 0;
  virtual void StopMonitoring() {}
  virtual void Inspectors_NewInspector(const std::shared_ptr<Inspector>& /*Inspector*/) {}
  virtual void Addin_RegSettingsChanged(const RegSettings& /*OldSettings*/) {}
};

using AddinPartFactory = std::function<std::shared_ptr<AddinPart>()>;

// The subsystems as parts (tracked_contacts_part.cc, toolbars_part.cc, monitoring_part.cc).
AddinPartFactory TrackedContactsPartFactory();
AddinPartFactory ToolbarsPartFactory();
AddinPartFactory MonitoringPartFactory();

struct AddinParts {
  AddinPartFactory TrackedContacts = TrackedContactsPartFactory();
  // Not created when the setting NeverLoadToolbars is set.
  AddinPartFactory Toolbars = ToolbarsPartFactory();
  AddinPartFactory Monitoring = MonitoringPartFactory();
};

}  // namespace zintra
