#include "win32/outlook/com_item_parts.h"

#include "win32/outlook/adapter_cache.h"
#include "win32/outlook/wrap.h"

namespace zintra::win32 {

namespace {

Variant Index(int32_t index) { return Arg(Value(index)); }

}  // namespace

std::shared_ptr<UserProperty> ComUserProperties::Item(int32_t index) {
  return Wrap<UserProperty>(ObjectMember("Item", {Index(index)}));
}

std::shared_ptr<UserProperty> ComUserProperties::Find(std::string_view name) {
  return Wrap<UserProperty>(client_.Call("Find", {Arg(Value(std::string(name)))}));
}

std::shared_ptr<UserProperty> ComUserProperties::Add(std::string_view name, int32_t type,
                                                     bool add_to_folder_fields) {
  return Wrap<UserProperty>(client_.Call(
      "Add", {Arg(Value(std::string(name))), Arg(Value(type)), Arg(Value(add_to_folder_fields))}));
}

std::shared_ptr<zintra::Item> ComLink::Item() { return Wrap<zintra::Item>(ObjectMember("Item")); }

std::shared_ptr<zintra::Link> ComLinks::Item(int32_t index) {
  return Wrap<zintra::Link>(ObjectMember("Item", {Index(index)}));
}

std::shared_ptr<zintra::Link> ComLinks::Add(const std::shared_ptr<zintra::Item>& item) {
  return Wrap<zintra::Link>(client_.Call("Add", {ObjectArg(item, "Links.Add")}));
}

std::shared_ptr<zintra::AddressEntry> ComRecipient::AddressEntry() {
  return Wrap<zintra::AddressEntry>(ObjectMember("AddressEntry"));
}

std::shared_ptr<Recipient> ComRecipients::Item(int32_t index) {
  return Wrap<Recipient>(ObjectMember("Item", {Index(index)}));
}

std::shared_ptr<Recipient> ComRecipients::Add(const std::string& name) {
  return Wrap<Recipient>(client_.Call("Add", {Arg(Value(name))}));
}

std::shared_ptr<Attachment> ComAttachments::Item(int32_t index) {
  return Wrap<Attachment>(ObjectMember("Item", {Index(index)}));
}

std::shared_ptr<Attachment> ComAttachments::Add(const std::string& source, int32_t type,
                                                int32_t position, const std::string& display_name) {
  // Position 0 and an empty name mean "not given": Outlook places the attachment and
  // names it after its file itself.
  std::vector<Variant> args{Arg(Value(source)), Arg(Value(type)),
                            position ? Arg(Value(position)) : Missing()};
  if (!display_name.empty()) args.push_back(Arg(Value(display_name)));
  return Wrap<Attachment>(client_.Call("Add", std::move(args)));
}

template <>
std::shared_ptr<UserProperties> Wrap<UserProperties>(const ComPtr<IDispatch>& o) {
  return AdapterCache::Get<UserProperties, ComUserProperties>(o);
}
template <>
std::shared_ptr<UserProperty> Wrap<UserProperty>(const ComPtr<IDispatch>& o) {
  return AdapterCache::Get<UserProperty, ComUserProperty>(o);
}
template <>
std::shared_ptr<Links> Wrap<Links>(const ComPtr<IDispatch>& o) {
  return AdapterCache::Get<Links, ComLinks>(o);
}
template <>
std::shared_ptr<Link> Wrap<Link>(const ComPtr<IDispatch>& o) {
  return AdapterCache::Get<Link, ComLink>(o);
}
template <>
std::shared_ptr<Recipients> Wrap<Recipients>(const ComPtr<IDispatch>& o) {
  return AdapterCache::Get<Recipients, ComRecipients>(o);
}
template <>
std::shared_ptr<Recipient> Wrap<Recipient>(const ComPtr<IDispatch>& o) {
  return AdapterCache::Get<Recipient, ComRecipient>(o);
}
template <>
std::shared_ptr<Attachments> Wrap<Attachments>(const ComPtr<IDispatch>& o) {
  return AdapterCache::Get<Attachments, ComAttachments>(o);
}
template <>
std::shared_ptr<Attachment> Wrap<Attachment>(const ComPtr<IDispatch>& o) {
  return AdapterCache::Get<Attachment, ComAttachment>(o);
}

}  // namespace zintra::win32
