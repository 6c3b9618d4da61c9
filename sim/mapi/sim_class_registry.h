// SimClassRegistry: the simulated host's class registry (COM's CreateObject by ProgID).
// RegisterLibrary registers the MAPI library's seventeen classes under
// "TovuRedemption." + class name, creating objects over the given profile; other
// components (the keep-alive program, the options page) register their own. ProgIDs
// compare without regard to letter case. An unregistered ProgID throws 429.
// Fault key: nullptr ("ObjectFactory.CreateObject" applies to every ProgID).
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "sim/outlook/profile.h"
#include "src/host/object_factory.h"

namespace zintra::sim {

class SimClassRegistry : public ObjectFactory {
 public:
  using Creator = std::function<std::shared_ptr<AutomationObject>()>;

  explicit SimClassRegistry(Profile* profile) : profile_(profile) {}

  void Register(const std::string& prog_id, Creator creator);
  void Unregister(const std::string& prog_id);
  void RegisterLibrary();
  std::shared_ptr<AutomationObject> CreateObject(const std::string& prog_id) override;
  // ProgIDs asked for, in order (created or not).
  const std::vector<std::string>& Requests() const { return requests_; }

 private:
  Profile* profile_;
  std::unordered_map<std::string, Creator> classes_;
  std::vector<std::string> requests_;
};

}  // namespace zintra::sim
