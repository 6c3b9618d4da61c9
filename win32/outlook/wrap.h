// Wrap: the adapter for the port a caller expects, over an object the server returned.
// Nothing wraps as nullptr. Wrap<Item> reads the item's Class to know its kind;
// WrapAny picks the port by Outlook's Class number (a folder's Parent may be the
// namespace; a bar's Parent an explorer or an inspector) and falls back to a plain
// late-bound ComObject for an object without one.
#pragma once

#include <memory>

#include "src/host/command_bars.h"
#include "src/host/mapi_address.h"
#include "src/host/mapi_session.h"
#include "src/host/outlook_application.h"
#include "win32/com/com_ptr.h"
#include "win32/com/variant.h"

namespace zintra::win32 {

template <typename Port>
std::shared_ptr<Port> Wrap(const ComPtr<IDispatch>& object);

template <typename Port>
std::shared_ptr<Port> Wrap(const Variant& v) {
  return Wrap<Port>(v.ToObject());
}

std::shared_ptr<AutomationObject> WrapAny(const ComPtr<IDispatch>& object);

// Outlook's object model.
template <>
std::shared_ptr<Application> Wrap<Application>(const ComPtr<IDispatch>&);
template <>
std::shared_ptr<Namespace> Wrap<Namespace>(const ComPtr<IDispatch>&);
template <>
std::shared_ptr<PropertyPages> Wrap<PropertyPages>(const ComPtr<IDispatch>&);
template <>
std::shared_ptr<Folder> Wrap<Folder>(const ComPtr<IDispatch>&);
template <>
std::shared_ptr<Folders> Wrap<Folders>(const ComPtr<IDispatch>&);
template <>
std::shared_ptr<Items> Wrap<Items>(const ComPtr<IDispatch>&);
template <>
std::shared_ptr<Item> Wrap<Item>(const ComPtr<IDispatch>&);
template <>
std::shared_ptr<UserProperties> Wrap<UserProperties>(const ComPtr<IDispatch>&);
template <>
std::shared_ptr<UserProperty> Wrap<UserProperty>(const ComPtr<IDispatch>&);
template <>
std::shared_ptr<Links> Wrap<Links>(const ComPtr<IDispatch>&);
template <>
std::shared_ptr<Link> Wrap<Link>(const ComPtr<IDispatch>&);
template <>
std::shared_ptr<Recipients> Wrap<Recipients>(const ComPtr<IDispatch>&);
template <>
std::shared_ptr<Recipient> Wrap<Recipient>(const ComPtr<IDispatch>&);
template <>
std::shared_ptr<Attachments> Wrap<Attachments>(const ComPtr<IDispatch>&);
template <>
std::shared_ptr<Attachment> Wrap<Attachment>(const ComPtr<IDispatch>&);
template <>
std::shared_ptr<Explorers> Wrap<Explorers>(const ComPtr<IDispatch>&);
template <>
std::shared_ptr<Inspectors> Wrap<Inspectors>(const ComPtr<IDispatch>&);
template <>
std::shared_ptr<Explorer> Wrap<Explorer>(const ComPtr<IDispatch>&);
template <>
std::shared_ptr<Inspector> Wrap<Inspector>(const ComPtr<IDispatch>&);
template <>
std::shared_ptr<Selection> Wrap<Selection>(const ComPtr<IDispatch>&);
template <>
std::shared_ptr<CommandBars> Wrap<CommandBars>(const ComPtr<IDispatch>&);
template <>
std::shared_ptr<CommandBar> Wrap<CommandBar>(const ComPtr<IDispatch>&);
template <>
std::shared_ptr<CommandBarControls> Wrap<CommandBarControls>(const ComPtr<IDispatch>&);
template <>
std::shared_ptr<CommandBarControl> Wrap<CommandBarControl>(const ComPtr<IDispatch>&);
// The MAPI library.
template <>
std::shared_ptr<AddressEntry> Wrap<AddressEntry>(const ComPtr<IDispatch>&);
template <>
std::shared_ptr<AddressList> Wrap<AddressList>(const ComPtr<IDispatch>&);
template <>
std::shared_ptr<AddressLists> Wrap<AddressLists>(const ComPtr<IDispatch>&);
template <>
std::shared_ptr<RdoMessage> Wrap<RdoMessage>(const ComPtr<IDispatch>&);
template <>
std::shared_ptr<RdoFolder> Wrap<RdoFolder>(const ComPtr<IDispatch>&);
template <>
std::shared_ptr<RdoSession> Wrap<RdoSession>(const ComPtr<IDispatch>&);

}  // namespace zintra::win32
