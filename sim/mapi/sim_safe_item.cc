#include "sim/mapi/sim_safe_item.h"

#include "sim/mapi/sim_rdo.h"
#include "sim/outlook/message_props.h"
#include "sim/outlook/sim_item.h"
#include "src/core/z_error.h"

namespace zintra::sim {

HostCall SimSafeItem::Hit(std::string_view member) const {
  HostCall call = profile_->Faults().Check(member, FaultKey());
  if (!record_) throw ZError(kErrObjectNotSet, "Object variable or With block variable not set");
  Profile::CheckAlive(*record_);
  return call;
}

void SimSafeItem::SetItem(const std::shared_ptr<zintra::Item>& item) {
  HostCall host_call = profile_->Faults().Check("SafeItem.SetItem", FaultKey());
  auto record = RecordOf(item);
  if (!record) throw ZError(kMapiInvalidParameter, "The object is not an Outlook item");
  item_ = item;
  record_ = std::move(record);
}

std::shared_ptr<zintra::Item> SimSafeItem::Item() {
  HostCall host_call = Hit("SafeItem.Item");
  return item_;
}

std::shared_ptr<AddressEntry> SimSafeItem::Sender() {
  HostCall host_call = Hit("SafeItem.Sender");
  if (!KindHasSentReceived(record_->item_class)) {
    throw ZError(kErrNoSuchMember, "Object doesn't support this property or method");
  }
  return SenderOf(profile_, *record_);
}

std::shared_ptr<zintra::Recipients> SimSafeItem::Recipients() {
  HostCall host_call = Hit("SafeItem.Recipients");
  if (!KindHasRecipients(record_->item_class)) {
    throw ZError(kErrNoSuchMember, "Object doesn't support this property or method");
  }
  return std::make_shared<SimRecipients>(profile_, record_);
}

std::string SimSafeItem::Body() {
  HostCall host_call = Hit("SafeItem.Body");
  return MessageProps::Text(*record_, kPrBody);
}

Value SimSafeItem::Fields(int32_t prop_tag) {
  HostCall host_call = Hit("SafeItem.Fields");
  return MessageProps::Get(*record_, prop_tag);
}

void SimSafeItem::SetFields(int32_t prop_tag, const Value& value) {
  HostCall host_call = Hit("SafeItem.SetFields");
  record_->props.Set(prop_tag, value);
}

std::shared_ptr<RdoMessage> SimSafeItem::CopyTo(const std::shared_ptr<AutomationObject>& folder) {
  HostCall host_call = Hit("SafeItem.CopyTo");
  auto target = FolderRecordOf(folder);
  if (!target) throw ZError(kMapiInvalidParameter, "The destination is not a folder");
  return std::make_shared<SimRdoMessage>(profile_, profile_->CopyMessage(record_, target));
}

void SimSafeInspector::SetItem(const std::shared_ptr<Inspector>& inspector) {
  HostCall host_call = profile_->Faults().Check("SafeInspector.SetItem", profile_);
  if (!inspector) throw ZError(kErrObjectNotSet, "Object variable or With block variable not set");
  inspector_ = inspector;
}

std::shared_ptr<Inspector> SimSafeInspector::Item() {
  HostCall host_call = profile_->Faults().Check("SafeInspector.Item", profile_);
  return inspector_;
}

int32_t SimSafeInspector::Hwnd() {
  HostCall host_call = profile_->Faults().Check("SafeInspector.Hwnd", profile_);
  if (!inspector_) throw ZError(kErrObjectNotSet, "Object variable or With block variable not set");
  return inspector_->Hwnd();
}

}  // namespace zintra::sim
