#include "win32/outlook/com_folder.h"

#include "win32/com/outlook_events.h"
#include "win32/outlook/adapter_cache.h"
#include "win32/outlook/wrap.h"

namespace zintra::win32 {

namespace ev = outlook_events;

std::shared_ptr<AutomationObject> ComFolder::Parent() { return WrapAny(ObjectMember("Parent")); }

std::shared_ptr<zintra::Folders> ComFolder::Folders() {
  return Wrap<zintra::Folders>(ObjectMember("Folders"));
}

std::shared_ptr<zintra::Items> ComFolder::Items() {
  return Wrap<zintra::Items>(ObjectMember("Items"));
}

std::shared_ptr<MapiObject> ComFolder::MAPIOBJECT() {
  return MapiObjectOf(client_.Get("MAPIOBJECT"));
}

std::shared_ptr<Folder> ComFolders::Item(int32_t index) {
  return Wrap<Folder>(ObjectMember("Item", {Arg(Value(index))}));
}

std::shared_ptr<Folder> ComFolders::Item(const std::string& name) {
  return Wrap<Folder>(ObjectMember("Item", {Arg(Value(name))}));
}

std::shared_ptr<Folder> ComFolders::Add(const std::string& name, int32_t type) {
  return Wrap<Folder>(client_.Call("Add", {Arg(Value(name)), Arg(Value(type))}));
}

ComItems::ComItems(const ComPtr<IDispatch>& object)
    : ComAdapter(DispatchClient(object, "Items")),
      events_(
          client_, ev::kItemsEvents,
          [this](DISPID id, const EventArgs& args) { OnEvent(id, args); }, "Items events") {
  events_.Watch(ItemAdd);
  events_.Watch(ItemChange);
  events_.Watch(ItemRemove);
}

void ComItems::OnEvent(DISPID id, const EventArgs& args) {
  switch (id) {
    case ev::kItemAdd:
      ItemAdd.Raise(Wrap<zintra::Item>(args.ObjectAt(0)));
      break;
    case ev::kItemChange:
      ItemChange.Raise(Wrap<zintra::Item>(args.ObjectAt(0)));
      break;
    case ev::kItemRemove:
      ItemRemove.Raise();
      break;
    default:
      break;
  }
}

std::shared_ptr<zintra::Item> ComItems::Item(int32_t index) {
  return Wrap<zintra::Item>(ObjectMember("Item", {Arg(Value(index))}));
}

void ComItems::Sort(const std::string& property, bool descending) {
  client_.Call("Sort", {Arg(Value(property)), Arg(Value(descending))});
}

std::shared_ptr<zintra::Item> ComItems::Walk(std::string_view member) {
  return Wrap<zintra::Item>(client_.Call(member));
}

std::shared_ptr<zintra::Item> ComItems::Find(const std::string& filter) {
  return Wrap<zintra::Item>(client_.Call("Find", {Arg(Value(filter))}));
}

std::shared_ptr<zintra::Item> ComItems::Add(int32_t item_type) {
  return Wrap<zintra::Item>(client_.Call("Add", {Arg(Value(item_type))}));
}

template <>
std::shared_ptr<Folder> Wrap<Folder>(const ComPtr<IDispatch>& object) {
  return AdapterCache::Get<Folder, ComFolder>(object);
}
template <>
std::shared_ptr<Folders> Wrap<Folders>(const ComPtr<IDispatch>& object) {
  return AdapterCache::Get<Folders, ComFolders>(object);
}
template <>
std::shared_ptr<Items> Wrap<Items>(const ComPtr<IDispatch>& object) {
  return AdapterCache::Get<Items, ComItems>(object);
}

}  // namespace zintra::win32
