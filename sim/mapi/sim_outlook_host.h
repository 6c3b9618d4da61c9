// SimOutlookHost: the simulated Outlook side of a Host in one object: the profile,
// Outlook's application over it, and the class registry with the MAPI library and
// "Outlook.Application" registered. Build the profile with ProfileBuilder(profile).
// Members are destroyed in reverse order, so the application goes before the profile.
#pragma once

#include <memory>

#include "sim/mapi/sim_class_registry.h"
#include "sim/outlook/profile.h"
#include "sim/outlook/sim_ol_application.h"

namespace zintra::sim {

struct SimOutlookHost {
  explicit SimOutlookHost(Clock* clock = nullptr)
      : profile(clock),
        application(std::make_shared<SimOlApplication>(&profile)),
        factory(&profile) {
    factory.RegisterLibrary();
    std::weak_ptr<SimOlApplication> app = application;
    factory.Register("Outlook.Application",
                     [app]() -> std::shared_ptr<AutomationObject> { return app.lock(); });
  }

  Profile profile;
  std::shared_ptr<SimOlApplication> application;
  SimClassRegistry factory;
};

}  // namespace zintra::sim
