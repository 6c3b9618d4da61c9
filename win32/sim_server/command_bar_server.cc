// Members of the command bars of Outlook's windows.
#include <algorithm>
#include <string>
#include <vector>

#include "src/core/z_error.h"
#include "win32/sim_server/outlook_declarations.h"
#include "win32/sim_server/server_members.h"

namespace zintra::win32 {

namespace {

// Office refuses a call with more arguments than the member declares.
void TakesAtMost(const DispatchArgs& a, size_t declared) {
  if (a.Count() > declared) {
    throw ZError(static_cast<int32_t>(DISP_E_BADPARAMCOUNT), "Invalid number of parameters.");
  }
}

// The buttons served now, each with its control, for the clicks Office shares by tag.
struct ServedButton {
  DispatchObject* object;
  std::shared_ptr<CommandBarControl> control;
};
std::vector<ServedButton>& ServedButtons() {
  static std::vector<ServedButton> served;
  return served;
}

// A deleted control has no tag.
std::string TagOf(const std::shared_ptr<CommandBarControl>& control) {
  try {
    return control->Tag();
  } catch (const ZError&) {
    return {};
  }
}

// Only buttons declare Style; a control whose kind cannot be read is served as one.
bool IsButton(const std::shared_ptr<CommandBarControl>& p) {
  try {
    return p->Type() == kMsoControlButton;
  } catch (const ZError&) {
    return true;
  }
}

}  // namespace

void AddCommandBars(DispatchObject& d, const std::shared_ptr<CommandBars>& p) {
  d.Member("Count", [p](const DispatchArgs&) { return Ret(p->Count()); });
  d.Member("Item", [p](const DispatchArgs& a) {
    Value key = a.Get(0);
    if (key.Type() == ValueType::kString) return ServeVariant(p->Item(key.ToString()));
    return ServeVariant(p->Item(key.ToLong()));
  });
  d.Member("Add", [p](const DispatchArgs& a) {
    TakesAtMost(a, declared::command_bars::kAddParameters);
    return ServeVariant(p->Add(a.Text(0), a.Long(1, kMsoBarTop),
                               a.Bool(declared::command_bars::kAddTemporary, false)));
  });
  d.Member("FindControl", [p](const DispatchArgs& a) {
    TakesAtMost(a, declared::command_bars::kFindControlParameters);
    return ServeVariant(
        p->FindControl(a.Long(0, 0), a.Long(1, 0), a.Text(2, ""), a.Bool(3, false)));
  });
}

void AddCommandBar(DispatchObject& d, const std::shared_ptr<CommandBar>& p) {
  d.Member("Name", [p](const DispatchArgs&) { return Ret(p->Name()); });
  d.Member(
      "Position", [p](const DispatchArgs&) { return Ret(p->Position()); },
      [p](const DispatchArgs& a) { p->SetPosition(a.PutAsValue().ToLong()); });
  d.Member(
      "Visible", [p](const DispatchArgs&) { return Ret(p->Visible()); },
      [p](const DispatchArgs& a) { p->SetVisible(a.PutAsValue().ToBool()); });
  d.Member("Controls", [p](const DispatchArgs&) { return ServeVariant(p->Controls()); });
  d.Member("FindControl", [p](const DispatchArgs& a) {
    TakesAtMost(a, declared::command_bar::kFindControlParameters);
    return ServeVariant(p->FindControl(a.Long(0, 0), a.Long(1, 0), a.Text(2, ""), a.Bool(3, false),
                                       a.Bool(4, false)));
  });
  d.Member("Delete", [p](const DispatchArgs&) {
    p->Delete();
    return Nothing();
  });
  d.Member("Parent", [p](const DispatchArgs&) { return ServeVariant(p->Parent()); });
}

void AddCommandBarControls(DispatchObject& d, const std::shared_ptr<CommandBarControls>& p) {
  d.Member("Count", [p](const DispatchArgs&) { return Ret(p->Count()); });
  d.Member("Item", [p](const DispatchArgs& a) { return ServeVariant(p->Item(a.Long(0))); });
  d.Member("Add", [p](const DispatchArgs& a) {
    TakesAtMost(a, declared::command_bar_controls::kAddParameters);
    return ServeVariant(
        p->Add(a.Long(0, kMsoControlButton), a.Long(1, 1), a.Long(3, 0), a.Bool(4, false)));
  });
}

void AddCommandBarControl(DispatchObject& d, const std::shared_ptr<CommandBarControl>& p) {
  using Control = CommandBarControl;
  d.Member("Id", [p](const DispatchArgs&) { return Ret(p->Id()); });
  d.Member("Type", [p](const DispatchArgs&) { return Ret(p->Type()); });
  d.Member(
      "Tag", [p](const DispatchArgs&) { return Ret(p->Tag()); },
      [p](const DispatchArgs& a) { p->SetTag(a.PutAsValue().ToString()); });
  d.Member(
      "Caption", [p](const DispatchArgs&) { return Ret(p->Caption()); },
      [p](const DispatchArgs& a) { p->SetCaption(a.PutAsValue().ToString()); });
  d.Member(
      "Visible", [p](const DispatchArgs&) { return Ret(p->Visible()); },
      [p](const DispatchArgs& a) { p->SetVisible(a.PutAsValue().ToBool()); });
  if (IsButton(p)) {
    d.Member(
        "Style", [p](const DispatchArgs&) { return Ret(p->Style()); },
        [p](const DispatchArgs& a) { p->SetStyle(a.PutAsValue().ToLong()); });
  }
  d.Member(
      "Enabled", [p](const DispatchArgs&) { return Ret(p->Enabled()); },
      [p](const DispatchArgs& a) { p->SetEnabled(a.PutAsValue().ToBool()); });
  d.Member("Execute", [p](const DispatchArgs&) {
    p->Execute();
    return Nothing();
  });
  d.Member("Delete", [p](const DispatchArgs&) {
    p->Delete();
    return Nothing();
  });
  d.Member("Parent", [p](const DispatchArgs&) { return ServeVariant(p->Parent()); });
  DispatchObject* raw = &d;
  d.Source(declared::command_bar_button_events::kIid);
  ServedButtons().push_back({raw, p});
  d.Keep(Connection([raw] {
    auto& served = ServedButtons();
    served.erase(std::remove_if(served.begin(), served.end(),
                                [raw](const ServedButton& b) { return b.object == raw; }),
                 served.end());
  }));
  d.Keep(p->Click.Connect([](std::shared_ptr<Control> control, bool& cancel_default) {
    // Office raises the click on every button that carries the clicked one's tag.
    std::vector<ComPtr<DispatchObject>> targets;
    const std::string tag = TagOf(control);
    for (const ServedButton& b : ServedButtons()) {
      if (b.control == control || (!tag.empty() && TagOf(b.control) == tag)) {
        targets.emplace_back(b.object);
      }
    }
    VARIANT_BOOL flag = cancel_default ? VARIANT_TRUE : VARIANT_FALSE;
    for (const auto& target : targets) {
      std::vector<Variant> args;
      args.push_back(ServeVariant(control));
      args.push_back(ByRefBool(&flag));
      target->Fire(declared::command_bar_button_events::kIid,
                   declared::command_bar_button_events::kClick, args);
    }
    cancel_default = flag != VARIANT_FALSE;
  }));
}

}  // namespace zintra::win32
