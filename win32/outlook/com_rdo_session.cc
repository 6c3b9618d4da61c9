#include "win32/outlook/com_rdo_session.h"

#include "win32/outlook/adapter_cache.h"
#include "win32/outlook/wrap.h"

namespace zintra::win32 {

namespace {

Variant RdoStoreArg(const std::string& store_id) {
  return store_id.empty() ? Missing() : Arg(Value(store_id));
}

}  // namespace

Value FieldOf(const DispatchClient& client, int32_t prop_tag) {
  return client.GetValue("Fields", {Arg(Value(prop_tag))});
}

void SetFieldOf(const DispatchClient& client, int32_t prop_tag, const Value& value) {
  client.Put("Fields", Variant(value), {Arg(Value(prop_tag))});
}

void SetMapiObjectOf(const DispatchClient& client, const std::shared_ptr<MapiObject>& object) {
  client.Put("MAPIOBJECT", ObjectArg(object, client.TypeName() + ".MAPIOBJECT"));
}

std::shared_ptr<RdoFolder> ComRdoMessage::Parent() {
  return Wrap<RdoFolder>(ObjectMember("Parent"));
}
Value ComRdoMessage::Fields(int32_t prop_tag) { return FieldOf(client_, prop_tag); }
void ComRdoMessage::SetFields(int32_t prop_tag, const Value& value) {
  SetFieldOf(client_, prop_tag, value);
}
std::shared_ptr<zintra::UserProperties> ComRdoMessage::UserProperties() {
  return Wrap<zintra::UserProperties>(ObjectMember("UserProperties"));
}
std::shared_ptr<zintra::Recipients> ComRdoMessage::Recipients() {
  return Wrap<zintra::Recipients>(ObjectMember("Recipients"));
}
std::shared_ptr<zintra::Attachments> ComRdoMessage::Attachments() {
  return Wrap<zintra::Attachments>(ObjectMember("Attachments"));
}
std::shared_ptr<AddressEntry> ComRdoMessage::Sender() {
  return Wrap<AddressEntry>(ObjectMember("Sender"));
}
std::shared_ptr<RdoMessage> ComRdoMessage::CopyTo(const std::shared_ptr<AutomationObject>& folder) {
  return Wrap<RdoMessage>(client_.Call("CopyTo", {ObjectArg(folder, "RDOMail.CopyTo")}));
}
std::shared_ptr<RdoMessage> ComRdoMessage::Move(const std::shared_ptr<AutomationObject>& folder) {
  return Wrap<RdoMessage>(client_.Call("Move", {ObjectArg(folder, "RDOMail.Move")}));
}
std::shared_ptr<MapiObject> ComRdoMessage::MAPIOBJECT() {
  return MapiObjectOf(client_.Get("MAPIOBJECT"));
}

void ComRdoFolder::SetMAPIOBJECT(const std::shared_ptr<MapiObject>& folder) {
  SetMapiObjectOf(client_, folder);
}
std::shared_ptr<MapiObject> ComRdoFolder::MAPIOBJECT() {
  return MapiObjectOf(client_.Get("MAPIOBJECT"));
}
std::shared_ptr<RdoFolder> ComRdoFolder::Parent() {
  return Wrap<RdoFolder>(ObjectMember("Parent"));
}
Value ComRdoFolder::Fields(int32_t prop_tag) { return FieldOf(client_, prop_tag); }
std::shared_ptr<RdoMessage> ComRdoFolder::AddItem(const std::string& message_class) {
  return Wrap<RdoMessage>(client_.Call("AddItem", {Arg(Value(message_class))}));
}

void ComRdoSession::SetMAPIOBJECT(const std::shared_ptr<MapiObject>& session) {
  SetMapiObjectOf(client_, session);
}
std::shared_ptr<MapiObject> ComRdoSession::MAPIOBJECT() {
  return MapiObjectOf(client_.Get("MAPIOBJECT"));
}
std::shared_ptr<AddressEntry> ComRdoSession::CurrentUser() {
  return Wrap<AddressEntry>(ObjectMember("CurrentUser"));
}
std::shared_ptr<RdoMessage> ComRdoSession::GetMessageFromID(const std::string& entry_id,
                                                            const std::string& store_id) {
  return Wrap<RdoMessage>(
      client_.Call("GetMessageFromID", {Arg(Value(entry_id)), RdoStoreArg(store_id)}));
}
std::shared_ptr<RdoFolder> ComRdoSession::GetFolderFromID(const std::string& entry_id,
                                                          const std::string& store_id) {
  return Wrap<RdoFolder>(
      client_.Call("GetFolderFromID", {Arg(Value(entry_id)), RdoStoreArg(store_id)}));
}
std::shared_ptr<RdoFolder> ComRdoSession::GetDefaultFolder(int32_t folder_type) {
  return Wrap<RdoFolder>(client_.Call("GetDefaultFolder", {Arg(Value(folder_type))}));
}
std::shared_ptr<zintra::AddressLists> ComRdoSession::AddressLists() {
  return Wrap<zintra::AddressLists>(ObjectMember("AddressLists"));
}

template <>
std::shared_ptr<RdoMessage> Wrap<RdoMessage>(const ComPtr<IDispatch>& o) {
  return AdapterCache::Get<RdoMessage, ComRdoMessage>(o);
}
template <>
std::shared_ptr<RdoFolder> Wrap<RdoFolder>(const ComPtr<IDispatch>& o) {
  return AdapterCache::Get<RdoFolder, ComRdoFolder>(o);
}
template <>
std::shared_ptr<RdoSession> Wrap<RdoSession>(const ComPtr<IDispatch>& o) {
  return AdapterCache::Get<RdoSession, ComRdoSession>(o);
}

}  // namespace zintra::win32
