// ServedProfile: a simulated mailbox seen two ways — directly through the simulated
// Outlook (`sim_app`) and through the automation server over it plus the adapters
// (`app`) — so tests can check that both agree, that events raised in the simulation
// arrive through the adapters' sinks, and that injected faults keep their numbers.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "sim/mapi/sim_class_registry.h"
#include "sim/outlook/profile.h"
#include "sim/outlook/profile_builder.h"
#include "sim/outlook/sim_ol_application.h"
#include "src/core/z_error.h"
#include "src/host/outlook_application.h"
#include "tests/support/error_of.h"
#include "win32/com/com_ptr.h"
#include "win32/outlook/com_adapter.h"
#include "win32/sim_server/dispatch_object.h"

namespace zintra::win32::testing {

struct ServedProfile {
  ServedProfile();
  ~ServedProfile();

  // The adapter of the library class `class_name`, over a served simulated object.
  std::shared_ptr<AutomationObject> Library(const std::string& class_name);
  // Sinks advised on `adapter`'s object for `iid` right now.
  static size_t Sinks(const AutomationObject& adapter, const IID& iid);
  // The served object behind `adapter` (empty when it is not one of ours).
  static ComPtr<DispatchObject> Served(const AutomationObject& adapter);

  sim::Profile profile;
  sim::ProfileBuilder build{profile};
  std::shared_ptr<sim::FolderRecord> contacts;
  std::shared_ptr<sim::SimOlApplication> sim_app;
  sim::SimClassRegistry classes{&profile};
  std::shared_ptr<Application> app;
};

}  // namespace zintra::win32::testing
