#include "win32/outlook/com_application.h"

#include "win32/com/outlook_events.h"
#include "win32/outlook/adapter_cache.h"
#include "win32/outlook/wrap.h"

namespace zintra::win32 {

namespace ev = outlook_events;

namespace {

// An omitted store identifier searches every store.
Variant StoreArg(const std::string& store_id) {
  return store_id.empty() ? Missing() : Arg(Value(store_id));
}

}  // namespace

std::shared_ptr<AutomationObject> ComPropertyPages::Item(int32_t index) {
  return WrapAny(ObjectMember("Item", {Arg(Value(index))}));
}

void ComPropertyPages::Add(const std::shared_ptr<AutomationObject>& page,
                           const std::string& title) {
  client_.Call("Add", {ObjectArg(page, "PropertyPages.Add"), Arg(Value(title))});
}

ComNamespace::ComNamespace(const ComPtr<IDispatch>& object)
    : ComAdapter(DispatchClient(object, "NameSpace")),
      events_(
          client_, ev::kNameSpaceEvents,
          [this](DISPID id, const EventArgs& args) {
            if (id != ev::kNameSpaceOptionsPagesAdd) return;
            OptionsPagesAdd.Raise(Wrap<PropertyPages>(args.ObjectAt(0)),
                                  Wrap<Folder>(args.ObjectAt(1)));
          },
          "NameSpace events") {
  events_.Watch(OptionsPagesAdd);
}

std::shared_ptr<Folder> ComNamespace::GetDefaultFolder(int32_t folder_type) {
  return Wrap<Folder>(client_.Call("GetDefaultFolder", {Arg(Value(folder_type))}));
}

std::shared_ptr<Item> ComNamespace::GetItemFromID(const std::string& entry_id,
                                                  const std::string& store_id) {
  return Wrap<Item>(client_.Call("GetItemFromID", {Arg(Value(entry_id)), StoreArg(store_id)}));
}

std::shared_ptr<Folder> ComNamespace::GetFolderFromID(const std::string& entry_id,
                                                      const std::string& store_id) {
  return Wrap<Folder>(client_.Call("GetFolderFromID", {Arg(Value(entry_id)), StoreArg(store_id)}));
}

std::shared_ptr<zintra::Folders> ComNamespace::Folders() {
  return Wrap<zintra::Folders>(ObjectMember("Folders"));
}

std::shared_ptr<Recipient> ComNamespace::CurrentUser() {
  return Wrap<Recipient>(ObjectMember("CurrentUser"));
}

std::shared_ptr<MapiObject> ComNamespace::MAPIOBJECT() {
  return MapiObjectOf(client_.Get("MAPIOBJECT"));
}

ComApplication::ComApplication(const ComPtr<IDispatch>& object)
    : ComAdapter(DispatchClient(object, "Application")),
      events_(
          client_, ev::kApplicationEvents11,
          [this](DISPID id, const EventArgs& args) { OnEvent(id, args); }, "Application events") {
  events_.Watch(Quit);
  events_.Watch(ItemSend);
  events_.Watch(NewMail);
  events_.Watch(OptionsPagesAdd);
}

void ComApplication::OnEvent(DISPID id, const EventArgs& args) {
  switch (id) {
    case ev::kItemSend: {
      bool cancel = args.BoolAt(1);
      ItemSend.Raise(Wrap<Item>(args.ObjectAt(0)), cancel);
      // A caller that passes Cancel by value cannot be refused; that is no error.
      if (args.IsByRef(1)) args.SetBoolAt(1, cancel);
      break;
    }
    case ev::kNewMail:
      NewMail.Raise();
      break;
    case ev::kOptionsPagesAdd:
      OptionsPagesAdd.Raise(Wrap<PropertyPages>(args.ObjectAt(0)));
      break;
    case ev::kQuit:
      Quit.Raise();
      break;
    default:
      break;
  }
}

std::shared_ptr<zintra::Explorers> ComApplication::Explorers() {
  return Wrap<zintra::Explorers>(ObjectMember("Explorers"));
}

std::shared_ptr<zintra::Inspectors> ComApplication::Inspectors() {
  return Wrap<zintra::Inspectors>(ObjectMember("Inspectors"));
}

std::shared_ptr<Namespace> ComApplication::Session() {
  return Wrap<Namespace>(client_.Call("GetNamespace", {Arg(Value("MAPI"))}));
}

std::shared_ptr<Explorer> ComApplication::ActiveExplorer() {
  return Wrap<Explorer>(client_.Call("ActiveExplorer"));
}

std::shared_ptr<Inspector> ComApplication::ActiveInspector() {
  return Wrap<Inspector>(client_.Call("ActiveInspector"));
}

std::shared_ptr<Item> ComApplication::CreateItem(int32_t item_type) {
  return Wrap<Item>(client_.Call("CreateItem", {Arg(Value(item_type))}));
}

template <>
std::shared_ptr<Application> Wrap<Application>(const ComPtr<IDispatch>& o) {
  return AdapterCache::Get<Application, ComApplication>(o);
}
template <>
std::shared_ptr<Namespace> Wrap<Namespace>(const ComPtr<IDispatch>& o) {
  return AdapterCache::Get<Namespace, ComNamespace>(o);
}
template <>
std::shared_ptr<PropertyPages> Wrap<PropertyPages>(const ComPtr<IDispatch>& o) {
  return AdapterCache::Get<PropertyPages, ComPropertyPages>(o);
}

}  // namespace zintra::win32
