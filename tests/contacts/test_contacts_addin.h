// An add-in for contact tracking over the simulated host: the job queue, log, clock and
// strings of a JobEnv, and Outlook's application, class registry, library utilities and
// settings given by the caller (the JobEnv's own, or a benchmark's larger profile); it
// records its optional messages instead of showing them.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "src/contacts/contacts_addin.h"
#include "src/core/key_generator.h"
#include "src/host/mapi_utils.h"
#include "src/host/object_factory.h"
#include "src/host/outlook_application.h"
#include "src/outlook/library_factory.h"
#include "src/settings/reg_settings.h"
#include "tests/jobs/job_test_env.h"

namespace zintra::testing {

struct ShownMessage {
  int32_t dialog;
  std::string message, caption;
};

class TestContactsAddin : public ContactsAddin {
 public:
  TestContactsAddin(JobEnv& jobs, Application& outlook, ObjectFactory& factory,
                    std::shared_ptr<MapiUtils> utils, RegSettings& settings)
      : jobs_(jobs),
        outlook_(outlook),
        factory_(factory),
        utils_(std::move(utils)),
        settings_(settings) {}

  const RegSettings& Settings() override { return settings_; }
  std::shared_ptr<JobQueue> GetJobQueue() override { return jobs_.queue; }
  std::shared_ptr<Namespace> Session() override { return outlook_.Session(); }
  std::shared_ptr<MapiUtils> LibraryUtils() override { return utils_; }
  std::shared_ptr<AutomationObject> CreateLibraryObject(int32_t kind) override {
    return factory_.CreateObject(kLibraryProgIdPrefix + LibraryClassName(kind));
  }
  bool Quitting() override { return quitting; }
  void SetCheckLinger(std::shared_ptr<ICheckLinger> obj) override { lingers.push_back(obj); }
  std::string GenerateKey() override { return keys_.GenerateKey(); }
  bool OptionalMsgBox(int32_t DialogIdx, const std::string& Message,
                      const std::string& Caption) override {
    shown.push_back({DialogIdx, Message, Caption});
    return true;
  }
  const StringTable& Strings() override { return jobs_.strings; }
  JobEngineLog& Log() override { return jobs_.log; }
  double Now() override { return jobs_.clock.Now(); }

  bool quitting = false;
  std::vector<ShownMessage> shown;
  std::vector<std::shared_ptr<ICheckLinger>> lingers;

 private:
  JobEnv& jobs_;
  Application& outlook_;
  ObjectFactory& factory_;
  std::shared_ptr<MapiUtils> utils_;
  RegSettings& settings_;
  KeyGenerator keys_;
};

}  // namespace zintra::testing
