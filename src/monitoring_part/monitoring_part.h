// MonitoringPart: Monitoring as one of the add-in's parts. ZintraAddinApp creates it
// last among its parts (through AddinParts::Monitoring, see MonitoringPartFactory),
// stops its delayed scans at the start of Shutdown and kills it at tear-down. The part
// implements MonitoringAddin over the add-in, so the monitors, the processing jobs
// they create and the hooked inspectors see only that interface; the add-in's
// Inspectors_NewInspector hands the part to every HookedInspector.
//
// Ownership: the add-in holds the part; the part holds Monitoring (which the
// lingering-reference registration also holds until the check). Jobs and monitors
// hold the part weakly. Initialize raises only when the add-in is missing; Monitoring
// logs its own errors.
#pragma once

#include <memory>

#include "src/addin/addin_part.h"
#include "src/contacts_part/addin_view.h"
#include "src/core/event.h"
#include "src/monitoring/monitoring.h"
#include "src/monitoring/monitoring_addin.h"

namespace zintra {

class MonitoringPart : public AddinPart,
                       public AddinView<MonitoringAddin>,
                       public std::enable_shared_from_this<MonitoringPart> {
 public:
  // --- AddinPart ---
  void Initialize(const std::shared_ptr<ZintraAddinApp>& AddinApp) override;
  void Kill() override;
  void StopMonitoring() override;
  void Addin_RegSettingsChanged(const RegSettings& OldSettings) override;

  // The manager (ScanAll for the options page); nullptr after Kill.
  const std::shared_ptr<zintra::Monitoring>& GetMonitoring() const { return monitoring_; }

  // --- LoggingAddin ---
  ZintraUtils* Utils() override;
  std::shared_ptr<TrackedContacts> Tracked() override;
  std::shared_ptr<RdoSession> RDOSession() override;
  Event<>& KillBroadcast() override;
  bool LeavingWorkForNextStart() override;
  // --- MonitoringAddin ---
  std::shared_ptr<Application> OLApp() override;
  ErrorHandling& Errors() override { return App().Errors(); }
  std::shared_ptr<JobAddin> JobHost() override { return LockApp(); }
  Clock& TimeSource() override { return App().Host().clock; }
  MessagePump& Pump() override { return App().Host().pump; }
  ObjectFactory& Objects() override { return App().Host().objects; }

 private:
  std::shared_ptr<zintra::Monitoring> monitoring_;
  // Stands in for the add-in's Kill event once the add-in is gone.
  Event<> no_kill_;
};

AddinPartFactory MonitoringPartFactory();

}  // namespace zintra
