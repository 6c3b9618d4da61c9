// The MAPI library's safe items (kinds 5, 6, 8-14) and safe inspector (kind 15) over
// their automation objects. The wrapped Outlook item (or inspector) is set with a
// property put of Item, as the library expects.
#pragma once

#include "src/host/mapi_safe_item.h"
#include "win32/outlook/com_adapter.h"

namespace zintra::win32 {

class ComSafeItem final : public SafeItem, public ComAdapter {
 public:
  ComSafeItem(const ComPtr<IDispatch>& o, std::string class_name)
      : ComAdapter(DispatchClient(o, class_name)), class_name_(std::move(class_name)) {}
  std::string TypeName() const override { return class_name_; }
  void SetItem(const std::shared_ptr<zintra::Item>& item) override;
  std::shared_ptr<zintra::Item> Item() override;
  std::shared_ptr<AddressEntry> Sender() override;
  std::shared_ptr<zintra::Recipients> Recipients() override;
  std::string Body() override { return Text("Body"); }
  Value Fields(int32_t prop_tag) override;
  void SetFields(int32_t prop_tag, const Value& value) override;
  std::shared_ptr<RdoMessage> CopyTo(const std::shared_ptr<AutomationObject>& folder) override;

 private:
  std::string class_name_;
};

class ComSafeInspector final : public SafeInspector, public ComAdapter {
 public:
  explicit ComSafeInspector(const ComPtr<IDispatch>& o)
      : ComAdapter(DispatchClient(o, "TovuInspector")) {}
  std::string TypeName() const override { return "TovuInspector"; }
  void SetItem(const std::shared_ptr<Inspector>& inspector) override;
  std::shared_ptr<Inspector> Item() override;
  int32_t Hwnd() override { return Long("Hwnd"); }
};

}  // namespace zintra::win32
