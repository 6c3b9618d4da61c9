#include "sim/toolbars/sim_toolbar_helper.h"

#include <algorithm>

#include "src/core/text.h"
#include "src/core/z_error.h"

namespace zintra::sim {

namespace {

bool KindValid(int32_t kind) {
  return kind == kToolbarKindExplorer || kind == kToolbarKindInspector;
}

}  // namespace

SimToolbarHelper::~SimToolbarHelper() {
  new_explorer_.Disconnect();
  new_inspector_.Disconnect();
  for (auto& record : windows_) {
    record->connections.clear();
    if (record->window.expired()) continue;
    for (auto& made : record->bars) {
      made.buttons.clear();
      try {
        made.bar->Delete();
      } catch (const ZError&) {
        // The window closed under us: its bars went with it.
      }
    }
  }
}

void SimToolbarHelper::Initialize(const std::shared_ptr<Application>& application,
                                  const std::string& name) {
  if (initialized_) throw ZError(kErrInvalidCall, "ToolbarHelper already initialized");
  if (!application) throw ZError(kErrObjectNotSet, "Object variable not set");
  initialized_ = true;
  application_ = application;
  name_ = name;
  auto explorers = application->Explorers();
  auto inspectors = application->Inspectors();
  new_explorer_ = explorers->NewExplorer.Connect(
      [this](std::shared_ptr<Explorer> window) { AddWindow(window, kToolbarKindExplorer); });
  new_inspector_ = inspectors->NewInspector.Connect(
      [this](std::shared_ptr<Inspector> window) { AddWindow(window, kToolbarKindInspector); });
  for (int32_t i = 1; i <= explorers->Count(); ++i) {
    AddWindow(explorers->Item(i), kToolbarKindExplorer);
  }
  for (int32_t i = 1; i <= inspectors->Count(); ++i) {
    AddWindow(inspectors->Item(i), kToolbarKindInspector);
  }
}

void SimToolbarHelper::DeclareBar(int32_t kind, const std::string& bar_name) {
  if (!KindValid(kind) || bar_name.empty()) {
    throw ZError(kErrInvalidCall, "Invalid procedure call or argument");
  }
  for (const auto& decl : bars_) {
    if (decl.kind == kind && text::EqualsNoCase(decl.name, bar_name)) return;
  }
  bars_.push_back({kind, bar_name});
  const BarDecl decl = bars_.back();
  // Index loop: a handler of BarCreated may open or close windows.
  for (size_t i = 0; i < windows_.size(); ++i) {
    if (windows_[i]->kind == kind) MakeBar(*windows_[i], decl);
  }
}

void SimToolbarHelper::DeclareButton(int32_t kind, const std::string& bar_name,
                                     const std::string& tag, int32_t style, bool visible) {
  bool declared = std::any_of(bars_.begin(), bars_.end(), [&](const BarDecl& d) {
    return d.kind == kind && text::EqualsNoCase(d.name, bar_name);
  });
  if (!KindValid(kind) || !declared || tag.empty()) {
    throw ZError(kErrInvalidCall, "Invalid procedure call or argument");
  }
  buttons_.push_back({kind, bar_name, tag, style, visible});
  const ButtonDecl decl = buttons_.back();
  std::vector<const OutlookWindow*> targets;
  for (const auto& record : windows_) {
    if (record->kind == kind) targets.push_back(record->identity);
  }
  // A window is looked up afresh for each button: a ControlCreated handler may close one.
  for (const OutlookWindow* identity : targets) {
    WindowRecord* record = Find(identity);
    if (!record) continue;
    for (auto& made : record->bars) {
      if (text::EqualsNoCase(made.name, bar_name)) {
        MakeButton(*record, made, decl);
        break;
      }
    }
  }
}

std::shared_ptr<CommandBar> SimToolbarHelper::BarIn(const OutlookWindow* window,
                                                    const std::string& bar_name) const {
  for (const auto& record : windows_) {
    if (record->identity != window) continue;
    for (const auto& made : record->bars) {
      if (text::EqualsNoCase(made.name, bar_name)) return made.bar;
    }
  }
  return nullptr;
}

void SimToolbarHelper::AddWindow(const std::shared_ptr<OutlookWindow>& window, int32_t kind) {
  if (!window || Find(window.get())) return;
  auto owned = std::make_unique<WindowRecord>();
  WindowRecord& record = *owned;
  record.kind = kind;
  record.window = window;
  record.identity = window.get();
  const OutlookWindow* identity = window.get();
  record.connections.push_back(
      window->CloseEvent.Connect([this, identity] { DropWindow(identity); }));
  record.connections.push_back(
      window->ActivateEvent.Connect([this, identity] { Update(identity); }));
  if (auto explorer = std::dynamic_pointer_cast<Explorer>(window)) {
    record.connections.push_back(
        explorer->SelectionChange.Connect([this, identity] { Update(identity); }));
  }
  windows_.push_back(std::move(owned));
  const std::vector<BarDecl> decls = bars_;
  for (const auto& decl : decls) {
    WindowRecord* live = Find(identity);
    if (!live) return;  // closed by a handler
    if (decl.kind == kind) MakeBar(*live, decl);
  }
}

void SimToolbarHelper::DropWindow(const OutlookWindow* identity) {
  windows_.erase(std::remove_if(windows_.begin(), windows_.end(),
                                [identity](const auto& r) { return r->identity == identity; }),
                 windows_.end());
}

void SimToolbarHelper::MakeBar(WindowRecord& record, const BarDecl& decl) {
  auto window = record.window.lock();
  if (!window) return;
  std::shared_ptr<CommandBar> bar;
  try {
    auto bars = window->CommandBars();
    if (!bars) return;  // a window model without command bars
    try {
      // A bar of that name left in the window (by an earlier helper) is taken over.
      bar = bars->Item(decl.name);
    } catch (const ZError&) {
      bar = bars->Add(decl.name, kMsoBarTop, /*temporary=*/true);
    }
  } catch (const ZError&) {
    return;
  }
  record.bars.push_back({decl.name, bar, {}});
  const OutlookWindow* identity = record.identity;
  const std::string name = decl.name;
  BarCreated.Raise(bar);
  for (const auto& button : std::vector<ButtonDecl>(buttons_)) {
    if (button.kind != decl.kind || !text::EqualsNoCase(button.bar_name, name)) continue;
    WindowRecord* live = Find(identity);
    if (!live) return;
    for (auto& made : live->bars) {
      if (made.bar == bar) {
        MakeButton(*live, made, button);
        break;
      }
    }
  }
}

void SimToolbarHelper::MakeButton(WindowRecord& record, MadeBar& bar, const ButtonDecl& decl) {
  std::shared_ptr<CommandBarControl> control;
  try {
    control = bar.bar->FindControl(0, 0, decl.tag, false, false);
    if (!control) {
      control = bar.bar->Controls()->Add(kMsoControlButton, 1, 0, /*temporary=*/true);
      control->SetTag(decl.tag);
    }
    control->SetStyle(decl.style);
    control->SetVisible(decl.visible);
  } catch (const ZError&) {
    return;
  }
  const OutlookWindow* identity = record.identity;
  Connection click = control->Click.Connect(
      [this, identity](std::shared_ptr<CommandBarControl> clicked, bool& /*cancel*/) {
        WindowRecord* live = Find(identity);
        if (!live) return;
        auto window = live->window.lock();
        if (window) ButtonClicked.Raise(clicked, window);
      });
  bar.buttons.push_back({control, std::move(click)});
  ControlCreated.Raise(control);
}

void SimToolbarHelper::Update(const OutlookWindow* identity) {
  WindowRecord* record = Find(identity);
  if (!record) return;
  std::vector<std::shared_ptr<CommandBar>> bars;
  std::vector<std::shared_ptr<CommandBarControl>> controls;
  for (const auto& made : record->bars) {
    bars.push_back(made.bar);
    for (const auto& b : made.buttons) controls.push_back(b.control);
  }
  for (const auto& bar : bars) UpdateBar.Raise(bar);
  for (const auto& control : controls) UpdateControl.Raise(control);
}

SimToolbarHelper::WindowRecord* SimToolbarHelper::Find(const OutlookWindow* identity) {
  for (auto& record : windows_) {
    if (record->identity == identity) return record.get();
  }
  return nullptr;
}

std::shared_ptr<ToolbarHelper> SimToolbarLibrary::CreateToolbarHelper() {
  if (unavailable) throw ZError(429, "ActiveX component can't create object");
  auto helper = std::make_shared<SimToolbarHelper>();
  ++created_;
  last_ = helper;
  return helper;
}

}  // namespace zintra::sim
