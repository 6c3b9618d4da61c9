// The MAPI library's utility object ("TovuRedemption.TovuMAPIUtils") over its automation
// object. Its NewMail event is advised while it has handlers, on the object's default
// source interface (or the shared number in outlook_events.h when it names none).
#pragma once

#include "src/host/mapi_utils.h"
#include "win32/outlook/com_adapter.h"
#include "win32/outlook/lazy_advise.h"

namespace zintra::win32 {

class ComMapiUtils final : public MapiUtils, public ComAdapter {
 public:
  explicit ComMapiUtils(const ComPtr<IDispatch>& object);
  std::string TypeName() const override { return "TovuMAPIUtils"; }
  void SetMAPIOBJECT(const std::shared_ptr<MapiObject>& session) override;
  int32_t GetIDsFromNames(const std::shared_ptr<MapiObject>& object, const std::string& guid,
                          const Value& name, bool create) override;
  Value HrGetOneProp(const std::shared_ptr<MapiObject>& object, int32_t prop_tag) override;
  void HrSetOneProp(const std::shared_ptr<MapiObject>& object, int32_t prop_tag, const Value& value,
                    bool save) override;
  void HrDeleteOneProp(const std::shared_ptr<MapiObject>& object, int32_t prop_tag,
                       bool save) override;
  bool CompareIDs(const std::string& entry_id1, const std::string& entry_id2) override;
  void Cleanup() override { client_.Call("Cleanup"); }

 private:
  LazyAdvise events_;
};

}  // namespace zintra::win32
