// MonitoringAddin: the add-in application as folder monitoring sees it. It is the
// item-logging view of the add-in (LoggingAddin: settings, queue, utilities, tracked
// contacts, the Kill broadcast) plus what the monitors and the delayed scan need:
// Outlook's application, the error handling for folder comparison, and the clock,
// pump and job-engine view that a JobDelayedTrigger runs on. The add-in's
// AddinServices implements it; tests implement it over the simulated host.
//
// Monitoring and its monitors hold it weakly and treat a vanished add-in as shut
// down. Called on Outlook's thread only. OLApp returns nullptr once released; no
// other member throws.
#pragma once

#include <memory>

#include "src/logging/logging_addin.h"

namespace zintra {

class Application;
class Clock;
class ErrorHandling;
class JobAddin;
class MessagePump;
class ObjectFactory;

class MonitoringAddin : public LoggingAddin {
 public:
  // Outlook's application object (its inspectors, its namespace).
  virtual std::shared_ptr<Application> OLApp() = 0;
  // The add-in's error handling (folder comparison logs through it).
  virtual ErrorHandling& Errors() = 0;
  // The job engine's view of the add-in, for the delay trigger.
  virtual std::shared_ptr<JobAddin> JobHost() = 0;
  virtual Clock& TimeSource() = 0;
  virtual MessagePump& Pump() = 0;
  // Classes created by ProgID (the subclassing service of note windows).
  virtual ObjectFactory& Objects() = 0;
};

}  // namespace zintra
