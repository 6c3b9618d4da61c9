// SimMapiUtils: the MAPI library's utility object over the simulated profile. See
// src/host/mapi_utils.h. Fault key: the record behind the MAPI object handed in
// ("MapiUtils.HrGetOneProp" on one item), or the Profile for calls without one.
#pragma once

#include <memory>

#include "sim/outlook/profile.h"
#include "sim/outlook/sim_keys.h"
#include "sim/outlook/sim_mapi_object.h"
#include "src/host/mapi_utils.h"

namespace zintra::sim {

class SimMapiUtils : public MapiUtils, public SimKeyed {
 public:
  explicit SimMapiUtils(Profile* profile);
  std::string TypeName() const override { return "TovuMAPIUtils"; }
  const void* FaultKey() const override { return profile_; }

  void SetMAPIOBJECT(const std::shared_ptr<MapiObject>& session) override;
  int32_t GetIDsFromNames(const std::shared_ptr<MapiObject>& object, const std::string& guid,
                          const Value& name, bool create) override;
  Value HrGetOneProp(const std::shared_ptr<MapiObject>& object, int32_t prop_tag) override;
  void HrSetOneProp(const std::shared_ptr<MapiObject>& object, int32_t prop_tag, const Value& value,
                    bool save) override;
  void HrDeleteOneProp(const std::shared_ptr<MapiObject>& object, int32_t prop_tag,
                       bool save) override;
  bool CompareIDs(const std::string& entry_id1, const std::string& entry_id2) override;
  void Cleanup() override;

 private:
  // The simulated object, checked alive; throws kMapiInvalidParameter for a foreign one.
  const SimMapiObject& Resolve(const std::shared_ptr<MapiObject>& object, std::string_view member);
  Profile* profile_;
  Connection new_mail_;
};

}  // namespace zintra::sim
