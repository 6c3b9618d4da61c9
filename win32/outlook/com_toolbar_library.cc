#include "win32/outlook/com_toolbar_library.h"

#include "win32/com/outlook_events.h"
#include "win32/outlook/com_object_factory.h"
#include "win32/outlook/wrap.h"

namespace zintra::win32 {

namespace ev = outlook_events;

ComToolbarHelper::ComToolbarHelper(const ComPtr<IDispatch>& object)
    : ComAdapter(DispatchClient(object, "ToolbarHelper")),
      events_(
          client_, DefaultSourceOf(object.Get(), ev::kToolbarHelperEvents),
          [this](DISPID id, const EventArgs& args) { OnEvent(id, args); }, "ToolbarHelper events") {
  events_.Watch(BarCreated);
  events_.Watch(ControlCreated);
  events_.Watch(UpdateBar);
  events_.Watch(UpdateControl);
  events_.Watch(ButtonClicked);
}

void ComToolbarHelper::OnEvent(DISPID id, const EventArgs& args) {
  switch (id) {
    case ev::kBarCreated:
      BarCreated.Raise(Wrap<CommandBar>(args.ObjectAt(0)));
      break;
    case ev::kControlCreated:
      ControlCreated.Raise(Wrap<CommandBarControl>(args.ObjectAt(0)));
      break;
    case ev::kUpdateBar:
      UpdateBar.Raise(Wrap<CommandBar>(args.ObjectAt(0)));
      break;
    case ev::kUpdateControl:
      UpdateControl.Raise(Wrap<CommandBarControl>(args.ObjectAt(0)));
      break;
    case ev::kButtonClicked:
      ButtonClicked.Raise(Wrap<CommandBarControl>(args.ObjectAt(0)),
                          std::dynamic_pointer_cast<OutlookWindow>(WrapAny(args.ObjectAt(1))));
      break;
    default:
      break;
  }
}

void ComToolbarHelper::Initialize(const std::shared_ptr<Application>& application,
                                  const std::string& name) {
  client_.Call("Initialize",
               {ObjectArg(application, "ToolbarHelper.Initialize"), Arg(Value(name))});
}

void ComToolbarHelper::DeclareBar(int32_t kind, const std::string& bar_name) {
  client_.Call("DeclareBar", {Arg(Value(kind)), Arg(Value(bar_name))});
}

void ComToolbarHelper::DeclareButton(int32_t kind, const std::string& bar_name,
                                     const std::string& tag, int32_t style, bool visible) {
  client_.Call("DeclareButton", {Arg(Value(kind)), Arg(Value(bar_name)), Arg(Value(tag)),
                                 Arg(Value(style)), Arg(Value(visible))});
}

std::shared_ptr<ToolbarHelper> ComToolbarLibrary::CreateToolbarHelper() {
  return std::make_shared<ComToolbarHelper>(ComObjectFactory::CreateDispatch(kToolbarHelperProgId));
}

}  // namespace zintra::win32
