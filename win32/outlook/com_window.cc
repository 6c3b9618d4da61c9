#include "win32/outlook/com_window.h"

#include "win32/com/outlook_events.h"
#include "win32/outlook/adapter_cache.h"
#include "win32/outlook/wrap.h"

namespace zintra::win32 {

namespace ev = outlook_events;

template <typename Port>
ComWindow<Port>::ComWindow(const ComPtr<IDispatch>& object, const char* type_name,
                           const IID& source, DISPID close_id)
    : ComAdapter(DispatchClient(object, type_name)),
      events_(
          client_, source, [this](DISPID id, const EventArgs& args) { OnEvent(id, args); },
          std::string(type_name) + " events"),
      close_id_(close_id) {
  events_.Watch(this->ActivateEvent);
  events_.Watch(this->Deactivate);
  events_.Watch(this->CloseEvent);
}

template <typename Port>
std::shared_ptr<zintra::CommandBars> ComWindow<Port>::CommandBars() {
  return Wrap<zintra::CommandBars>(ObjectMember("CommandBars"));
}

template <typename Port>
void ComWindow<Port>::Close(int32_t save_mode) {
  client_.Call("Close", {Arg(Value(save_mode))});
}

template <typename Port>
void ComWindow<Port>::OnEvent(DISPID id, const EventArgs& args) {
  if (id == ev::kWindowActivate) {
    this->ActivateEvent.Raise();
  } else if (id == ev::kWindowDeactivate) {
    this->Deactivate.Raise();
  } else if (id == close_id_) {
    this->CloseEvent.Raise();
  } else {
    OnOther(id, args);
  }
}

template class ComWindow<Explorer>;
template class ComWindow<Inspector>;

ComExplorer::ComExplorer(const ComPtr<IDispatch>& object)
    : ComWindow(object, "Explorer", ev::kExplorerEvents10, ev::kExplorerClose) {
  events_.Watch(SelectionChange);
}

void ComExplorer::OnOther(DISPID id, const EventArgs&) {
  if (id == ev::kExplorerSelectionChange) SelectionChange.Raise();
}

std::shared_ptr<zintra::Selection> ComExplorer::Selection() {
  return Wrap<zintra::Selection>(ObjectMember("Selection"));
}

std::shared_ptr<Folder> ComExplorer::CurrentFolder() {
  return Wrap<Folder>(ObjectMember("CurrentFolder"));
}

ComInspector::ComInspector(const ComPtr<IDispatch>& object)
    : ComWindow(object, "Inspector", ev::kInspectorEvents10, ev::kInspectorClose) {}

std::shared_ptr<Item> ComInspector::CurrentItem() {
  return Wrap<Item>(ObjectMember("CurrentItem"));
}

int32_t ComInspector::Hwnd() {
  // Outlook's inspector shows its window through IOleWindow; a server without it may
  // still name the handle as a member.
  if (ComPtr<IOleWindow> window = Object().As<IOleWindow>()) {
    HWND hwnd = nullptr;
    if (SUCCEEDED(window->GetWindow(&hwnd))) {
      return static_cast<int32_t>(reinterpret_cast<intptr_t>(hwnd));
    }
    return 0;
  }
  return Long("Hwnd");
}

std::shared_ptr<zintra::Item> ComSelection::Item(int32_t index) {
  return Wrap<zintra::Item>(ObjectMember("Item", {Arg(Value(index))}));
}

ComExplorers::ComExplorers(const ComPtr<IDispatch>& object)
    : ComAdapter(DispatchClient(object, "Explorers")),
      events_(
          client_, ev::kExplorersEvents,
          [this](DISPID id, const EventArgs& args) {
            if (id == ev::kNewExplorer) NewExplorer.Raise(Wrap<Explorer>(args.ObjectAt(0)));
          },
          "Explorers events") {
  events_.Watch(NewExplorer);
}

std::shared_ptr<Explorer> ComExplorers::Item(int32_t index) {
  return Wrap<Explorer>(ObjectMember("Item", {Arg(Value(index))}));
}

ComInspectors::ComInspectors(const ComPtr<IDispatch>& object)
    : ComAdapter(DispatchClient(object, "Inspectors")),
      events_(
          client_, ev::kInspectorsEvents,
          [this](DISPID id, const EventArgs& args) {
            if (id == ev::kNewInspector) {
              NewInspector.Raise(Wrap<Inspector>(args.ObjectAt(0)));
            }
          },
          "Inspectors events") {
  events_.Watch(NewInspector);
}

std::shared_ptr<Inspector> ComInspectors::Item(int32_t index) {
  return Wrap<Inspector>(ObjectMember("Item", {Arg(Value(index))}));
}

template <>
std::shared_ptr<Explorer> Wrap<Explorer>(const ComPtr<IDispatch>& o) {
  return AdapterCache::Get<Explorer, ComExplorer>(o);
}
template <>
std::shared_ptr<Inspector> Wrap<Inspector>(const ComPtr<IDispatch>& o) {
  return AdapterCache::Get<Inspector, ComInspector>(o);
}
template <>
std::shared_ptr<Selection> Wrap<Selection>(const ComPtr<IDispatch>& o) {
  return AdapterCache::Get<Selection, ComSelection>(o);
}
template <>
std::shared_ptr<Explorers> Wrap<Explorers>(const ComPtr<IDispatch>& o) {
  return AdapterCache::Get<Explorers, ComExplorers>(o);
}
template <>
std::shared_ptr<Inspectors> Wrap<Inspectors>(const ComPtr<IDispatch>& o) {
  return AdapterCache::Get<Inspectors, ComInspectors>(o);
}

}  // namespace zintra::win32
