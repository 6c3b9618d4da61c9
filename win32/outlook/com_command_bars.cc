#include "win32/outlook/com_command_bars.h"

#include "win32/com/outlook_events.h"
#include "win32/outlook/adapter_cache.h"
#include "win32/outlook/wrap.h"

namespace zintra::win32 {

namespace ev = outlook_events;

namespace {

// FindControl's criteria: 0 and "" mean any, and are left out as Office expects.
std::vector<Variant> Criteria(int32_t type, int32_t id, const std::string& tag) {
  return {type ? Arg(Value(type)) : Missing(), id ? Arg(Value(id)) : Missing(),
          tag.empty() ? Missing() : Arg(Value(tag))};
}

}  // namespace

ComCommandBarControl::ComCommandBarControl(const ComPtr<IDispatch>& object)
    : ComAdapter(DispatchClient(object, "CommandBarControl")),
      events_(
          client_, ev::kCommandBarButtonEvents,
          [this](DISPID id, const EventArgs& args) { OnEvent(id, args); },
          "CommandBarButton.Click") {
  events_.Watch(Click);
}

void ComCommandBarControl::OnEvent(DISPID id, const EventArgs& args) {
  if (id != ev::kButtonClick) return;
  bool cancel_default = args.Count() > 1 && args.BoolAt(1);
  Click.Raise(Wrap<CommandBarControl>(args.ObjectAt(0)), cancel_default);
  // CancelDefault passed by value cannot reach the caller; that is no error.
  if (args.Count() > 1 && args.IsByRef(1)) args.SetBoolAt(1, cancel_default);
}

std::shared_ptr<CommandBar> ComCommandBarControl::Parent() {
  return Wrap<CommandBar>(ObjectMember("Parent"));
}

std::shared_ptr<CommandBarControl> ComCommandBarControls::Item(int32_t index) {
  return Wrap<CommandBarControl>(ObjectMember("Item", {Arg(Value(index))}));
}

std::shared_ptr<CommandBarControl> ComCommandBarControls::Add(int32_t type, int32_t id,
                                                              int32_t before, bool temporary) {
  // Add(Type, Id, Parameter, Before, Temporary); Before left out appends.
  return Wrap<CommandBarControl>(
      client_.Call("Add", {Arg(Value(type)), Arg(Value(id)), Missing(),
                           before ? Arg(Value(before)) : Missing(), Arg(Value(temporary))}));
}

std::shared_ptr<CommandBarControls> ComCommandBar::Controls() {
  return Wrap<CommandBarControls>(ObjectMember("Controls"));
}

std::shared_ptr<CommandBarControl> ComCommandBar::FindControl(int32_t type, int32_t id,
                                                              const std::string& tag,
                                                              bool visible_only, bool recursive) {
  std::vector<Variant> args = Criteria(type, id, tag);
  args.push_back(Arg(Value(visible_only)));
  args.push_back(Arg(Value(recursive)));
  return Wrap<CommandBarControl>(client_.Call("FindControl", std::move(args)));
}

std::shared_ptr<AutomationObject> ComCommandBar::Parent() {
  return WrapAny(ObjectMember("Parent"));
}

std::shared_ptr<CommandBar> ComCommandBars::Item(int32_t index) {
  return Wrap<CommandBar>(ObjectMember("Item", {Arg(Value(index))}));
}

std::shared_ptr<CommandBar> ComCommandBars::Item(const std::string& name) {
  return Wrap<CommandBar>(ObjectMember("Item", {Arg(Value(name))}));
}

std::shared_ptr<CommandBar> ComCommandBars::Add(const std::string& name, int32_t position,
                                                bool temporary) {
  // Add(Name, Position, MenuBar, Temporary).
  return Wrap<CommandBar>(client_.Call(
      "Add", {Arg(Value(name)), Arg(Value(position)), Missing(), Arg(Value(temporary))}));
}

std::shared_ptr<CommandBarControl> ComCommandBars::FindControl(int32_t type, int32_t id,
                                                               const std::string& tag,
                                                               bool visible_only) {
  std::vector<Variant> args = Criteria(type, id, tag);
  args.push_back(Arg(Value(visible_only)));
  return Wrap<CommandBarControl>(client_.Call("FindControl", std::move(args)));
}

template <>
std::shared_ptr<CommandBars> Wrap<CommandBars>(const ComPtr<IDispatch>& o) {
  return AdapterCache::Get<CommandBars, ComCommandBars>(o);
}
template <>
std::shared_ptr<CommandBar> Wrap<CommandBar>(const ComPtr<IDispatch>& o) {
  return AdapterCache::Get<CommandBar, ComCommandBar>(o);
}
template <>
std::shared_ptr<CommandBarControls> Wrap<CommandBarControls>(const ComPtr<IDispatch>& o) {
  return AdapterCache::Get<CommandBarControls, ComCommandBarControls>(o);
}
template <>
std::shared_ptr<CommandBarControl> Wrap<CommandBarControl>(const ComPtr<IDispatch>& o) {
  return AdapterCache::Get<CommandBarControl, ComCommandBarControl>(o);
}

}  // namespace zintra::win32
