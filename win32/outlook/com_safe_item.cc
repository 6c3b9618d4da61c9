#include "win32/outlook/com_safe_item.h"

#include "win32/outlook/com_rdo_session.h"
#include "win32/outlook/wrap.h"

namespace zintra::win32 {

void ComSafeItem::SetItem(const std::shared_ptr<zintra::Item>& item) {
  client_.Put("Item", ObjectArg(item, class_name_ + ".Item"));
}

std::shared_ptr<zintra::Item> ComSafeItem::Item() {
  return Wrap<zintra::Item>(ObjectMember("Item"));
}

std::shared_ptr<AddressEntry> ComSafeItem::Sender() {
  return Wrap<AddressEntry>(ObjectMember("Sender"));
}

std::shared_ptr<zintra::Recipients> ComSafeItem::Recipients() {
  return Wrap<zintra::Recipients>(ObjectMember("Recipients"));
}

Value ComSafeItem::Fields(int32_t prop_tag) { return FieldOf(client_, prop_tag); }

void ComSafeItem::SetFields(int32_t prop_tag, const Value& value) {
  SetFieldOf(client_, prop_tag, value);
}

std::shared_ptr<RdoMessage> ComSafeItem::CopyTo(const std::shared_ptr<AutomationObject>& folder) {
  return Wrap<RdoMessage>(client_.Call("CopyTo", {ObjectArg(folder, class_name_ + ".CopyTo")}));
}

void ComSafeInspector::SetItem(const std::shared_ptr<Inspector>& inspector) {
  client_.Put("Item", ObjectArg(inspector, "TovuInspector.Item"));
}

std::shared_ptr<Inspector> ComSafeInspector::Item() {
  return Wrap<Inspector>(ObjectMember("Item"));
}

}  // namespace zintra::win32
