#include "hosts/toolbars/window_toolbar_helper.h"

#include <algorithm>

#include "hosts/toolbars/declared_button.h"
#include "src/core/text.h"
#include "src/core/z_error.h"

namespace zintra::hosts {

namespace {

bool KindValid(int32_t kind) {
  return kind == kToolbarKindExplorer || kind == kToolbarKindInspector;
}

// Windows are numbered across the process, so no two windows' buttons share a tag, even
// when a second helper serves them.
int64_t NextWindowNumber() {
  static int64_t last = 0;
  return ++last;
}

}  // namespace

WindowToolbarHelper::~WindowToolbarHelper() {
  new_explorer_.Disconnect();
  new_inspector_.Disconnect();
  explorers_.reset();
  inspectors_.reset();
  closed_.clear();
  for (auto& record : windows_) {
    record->connections.clear();
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

void WindowToolbarHelper::Initialize(const std::shared_ptr<Application>& application,
                                     const std::string& name) {
  if (initialized_) throw ZError(kErrInvalidCall, "ToolbarHelper already initialized");
  if (!application) throw ZError(kErrObjectNotSet, "Object variable not set");
  initialized_ = true;
  application_ = application;
  name_ = name;
  // Held for their NewExplorer / NewInspector, which live as long as the collections.
  explorers_ = application->Explorers();
  inspectors_ = application->Inspectors();
  auto& explorers = explorers_;
  auto& inspectors = inspectors_;
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

void WindowToolbarHelper::DeclareBar(int32_t kind, const std::string& bar_name) {
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

void WindowToolbarHelper::DeclareButton(int32_t kind, const std::string& bar_name,
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

std::shared_ptr<CommandBar> WindowToolbarHelper::BarIn(const OutlookWindow* window,
                                                       const std::string& bar_name) const {
  for (const auto& record : windows_) {
    if (record->identity != window) continue;
    for (const auto& made : record->bars) {
      if (text::EqualsNoCase(made.name, bar_name)) return made.bar;
    }
  }
  return nullptr;
}

void WindowToolbarHelper::AddWindow(const std::shared_ptr<OutlookWindow>& window, int32_t kind) {
  closed_.clear();
  if (!window || Find(window.get())) return;
  auto owned = std::make_unique<WindowRecord>();
  WindowRecord& record = *owned;
  record.kind = kind;
  record.window = window;
  record.identity = window.get();
  record.number = NextWindowNumber();
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

void WindowToolbarHelper::DropWindow(const OutlookWindow* identity) {
  auto it = std::find_if(windows_.begin(), windows_.end(),
                         [identity](const auto& r) { return r->identity == identity; });
  if (it == windows_.end()) return;
  // The window is raising its Close now: it is let go of at the next safe point, not
  // from inside its own event.
  (*it)->bars.clear();
  closed_.push_back(std::move(*it));
  windows_.erase(it);
}

void WindowToolbarHelper::MakeBar(WindowRecord& record, const BarDecl& decl) {
  const auto& window = record.window;
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

void WindowToolbarHelper::MakeButton(WindowRecord& record, MadeBar& bar, const ButtonDecl& decl) {
  const std::string tag =
      tags_per_window_ ? decl.tag + "#" + std::to_string(record.number) : decl.tag;
  std::shared_ptr<CommandBarControl> control;
  try {
    control = bar.bar->FindControl(0, 0, tag, false, false);
    if (!control) {
      control = bar.bar->Controls()->Add(kMsoControlButton, 1, 0, /*temporary=*/true);
      control->SetTag(tag);
    }
    control->SetStyle(decl.style);
    control->SetVisible(decl.visible);
  } catch (const ZError&) {
    return;
  }
  std::shared_ptr<CommandBarControl> shown = control;
  if (tags_per_window_) shown = std::make_shared<DeclaredButton>(control, decl.tag);
  const OutlookWindow* identity = record.identity;
  // The button the events carry, not the Ctrl of the click: that one has the window's tag.
  std::weak_ptr<CommandBarControl> weak_shown = shown;
  Connection click =
      control->Click.Connect([this, identity, weak_shown](
                                 std::shared_ptr<CommandBarControl> /*clicked*/, bool& /*cancel*/) {
        WindowRecord* live = Find(identity);
        if (!live) return;
        auto window = live->window;  // a handler may close it
        auto button = weak_shown.lock();
        if (button) ButtonClicked.Raise(button, window);
      });
  bar.buttons.push_back({shown, std::move(click)});
  ControlCreated.Raise(shown);
}

void WindowToolbarHelper::Update(const OutlookWindow* identity) {
  // A window that could not take a bar when it opened (an explorer's command bars may
  // not be ready at NewExplorer) is given it when it is activated.
  for (const auto& decl : std::vector<BarDecl>(bars_)) {
    WindowRecord* live = Find(identity);
    if (!live) return;
    const bool made = std::any_of(live->bars.begin(), live->bars.end(), [&](const MadeBar& m) {
      return text::EqualsNoCase(m.name, decl.name);
    });
    if (decl.kind == live->kind && !made) MakeBar(*live, decl);
  }
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

WindowToolbarHelper::WindowRecord* WindowToolbarHelper::Find(const OutlookWindow* identity) {
  for (auto& record : windows_) {
    if (record->identity == identity) return record.get();
  }
  return nullptr;
}

}  // namespace zintra::hosts
