#include "win32/outlook/com_item.h"

#include "win32/com/outlook_events.h"
#include "win32/outlook/adapter_cache.h"
#include "win32/outlook/wrap.h"

namespace zintra::win32 {

std::string ItemTypeName(ItemClass item_class) { return ItemClassTypeName(item_class); }

namespace {

// The kind decides the type name, so every item of a kind shares one DISPID table;
// Class itself has one number on every kind of item.
ItemClass ClassOf(const ComPtr<IDispatch>& object) {
  DispatchClient probe(object, "Item");
  return static_cast<ItemClass>(probe.GetValue("Class").ToLong());
}

// Kinds this system does not know by name still get a DISPID table of their own.
std::string CacheName(ItemClass item_class) {
  std::string name = ItemTypeName(item_class);
  if (name == "Object") name = "Item" + std::to_string(static_cast<int32_t>(item_class));
  return name;
}

}  // namespace

std::string ComItem::TypeName() const {
  std::string name = ItemTypeName(class_);
  return name == "Object" ? TypeNameOf(Object().Get()) : name;
}

ComItem::ComItem(const ComPtr<IDispatch>& object) : ComItem(object, ClassOf(object)) {}

ComItem::ComItem(const ComPtr<IDispatch>& object, ItemClass item_class)
    : ComAdapter(DispatchClient(object, CacheName(item_class))),
      class_(item_class),
      events_(
          client_, outlook_events::kItemEvents10,
          [this](DISPID id, const EventArgs& args) { OnEvent(id, args); }, "Item.Close") {
  events_.Watch(CloseEvent);
}

void ComItem::OnEvent(DISPID id, const EventArgs& args) {
  if (id != outlook_events::kItemClose) return;
  bool cancel = args.Count() > 0 && args.BoolAt(0);
  CloseEvent.Raise(cancel);
  // Some callers pass Cancel by value: the close cannot be refused then, and that is
  // no error of the handler's.
  if (args.Count() > 0 && args.IsByRef(0)) args.SetBoolAt(0, cancel);
}

std::shared_ptr<zintra::Folder> ComItem::Parent() {
  // An item's parent is a folder; anything else (an attachment's item) reads as none.
  return std::dynamic_pointer_cast<zintra::Folder>(WrapAny(ObjectMember("Parent")));
}

std::shared_ptr<zintra::UserProperties> ComItem::UserProperties() {
  return Wrap<zintra::UserProperties>(ObjectMember("UserProperties"));
}
std::shared_ptr<zintra::Links> ComItem::Links() {
  return Wrap<zintra::Links>(ObjectMember("Links"));
}
std::shared_ptr<zintra::Recipients> ComItem::Recipients() {
  return Wrap<zintra::Recipients>(ObjectMember("Recipients"));
}
std::shared_ptr<zintra::Attachments> ComItem::Attachments() {
  return Wrap<zintra::Attachments>(ObjectMember("Attachments"));
}

std::shared_ptr<Item> ComItem::Copy() { return Wrap<Item>(client_.Call("Copy")); }

std::shared_ptr<Item> ComItem::Move(const std::shared_ptr<zintra::Folder>& folder) {
  return Wrap<Item>(client_.Call("Move", {ObjectArg(folder, "Item.Move")}));
}

std::shared_ptr<Inspector> ComItem::GetInspector() {
  return Wrap<Inspector>(ObjectMember("GetInspector"));
}

std::shared_ptr<MapiObject> ComItem::MAPIOBJECT() {
  return MapiObjectOf(client_.Get("MAPIOBJECT"));
}

template <>
std::shared_ptr<Item> Wrap<Item>(const ComPtr<IDispatch>& object) {
  return AdapterCache::Get<Item, ComItem>(object);
}

}  // namespace zintra::win32
