// Safe items and the safe inspector of the MAPI library over the simulated profile.
// Fault keys: the wrapped item's record (the Profile before SetItem).
#pragma once

#include <memory>
#include <string>

#include "sim/outlook/profile.h"
#include "sim/outlook/sim_keys.h"
#include "src/host/mapi_safe_item.h"

namespace zintra::sim {

class SimSafeItem : public SafeItem, public SimKeyed {
 public:
  // class_name: "TovuMailItem", "TovuContactItem", ... (the library kind's class).
  SimSafeItem(Profile* profile, std::string class_name)
      : profile_(profile), class_name_(std::move(class_name)) {}
  std::string TypeName() const override { return class_name_; }
  const void* FaultKey() const override {
    return record_ ? static_cast<const void*>(record_.get()) : profile_;
  }

  void SetItem(const std::shared_ptr<zintra::Item>& item) override;
  std::shared_ptr<zintra::Item> Item() override;
  std::shared_ptr<AddressEntry> Sender() override;
  std::shared_ptr<zintra::Recipients> Recipients() override;
  std::string Body() override;
  Value Fields(int32_t prop_tag) override;
  void SetFields(int32_t prop_tag, const Value& value) override;
  std::shared_ptr<RdoMessage> CopyTo(const std::shared_ptr<AutomationObject>& folder) override;

 private:
  [[nodiscard]] HostCall Hit(std::string_view member) const;
  Profile* profile_;
  std::string class_name_;
  std::shared_ptr<zintra::Item> item_;
  std::shared_ptr<MessageRecord> record_;
};

class SimSafeInspector : public SafeInspector {
 public:
  explicit SimSafeInspector(Profile* profile) : profile_(profile) {}
  std::string TypeName() const override { return "TovuInspector"; }
  void SetItem(const std::shared_ptr<Inspector>& inspector) override;
  std::shared_ptr<Inspector> Item() override;
  int32_t Hwnd() override;

 private:
  Profile* profile_;
  std::shared_ptr<Inspector> inspector_;
};

}  // namespace zintra::sim
