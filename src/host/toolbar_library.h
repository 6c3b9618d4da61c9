// The toolbar library: a separate component that keeps an add-in's command bars in
// every Outlook window. The add-in declares bars and buttons per window kind once; the
// library creates them in every open window of that kind and in each window opened
// later, and reports back through the five events of ToolbarHelper.
//
// Ownership: the add-in holds the ToolbarHelper. Releasing the last reference removes
// the bars and buttons it created from every open window and stops all events.
// Everything runs on Outlook's user-interface thread; events are raised synchronously
// inside the call or the window event that causes them (a declaration made while
// windows are open raises BarCreated / ControlCreated before it returns).
//
// Failures: CreateToolbarHelper throws 429 when the library is not installed. A
// declaration of a kind other than 0 or 1, or of a button on a bar not declared for
// that kind, throws 5. A window whose bars cannot be made is skipped silently (the
// library's own affair); the add-in's handlers must not throw.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "src/core/event.h"
#include "src/host/automation_object.h"
#include "src/host/command_bars.h"
#include "src/host/outlook_constants.h"
#include "src/host/outlook_window.h"

namespace zintra {

class Application;

// Window kinds the library knows.
inline constexpr int32_t kToolbarKindExplorer = 0;
inline constexpr int32_t kToolbarKindInspector = 1;

// MsoButtonStyle values (control types and bar positions are in outlook_constants.h).
inline constexpr int32_t kMsoButtonCaption = 2;
inline constexpr int32_t kMsoButtonIconAndCaption = 3;

class ToolbarHelper : public AutomationObject {
 public:
  // Starts serving the windows of `application`. `name` identifies the add-in's bars
  // (the bar name the add-in declares). A second call throws 5.
  virtual void Initialize(const std::shared_ptr<Application>& application,
                          const std::string& name) = 0;
  // A bar named `bar_name` in every window of `kind`.
  virtual void DeclareBar(int32_t kind, const std::string& bar_name) = 0;
  // A custom button identified by `tag` on the bar `bar_name` of every window of
  // `kind`, after the buttons declared before it. `style` is an MsoButtonStyle.
  virtual void DeclareButton(int32_t kind, const std::string& bar_name, const std::string& tag,
                             int32_t style, bool visible) = 0;

  // A declared bar was made in a window (its Parent is the window).
  Event<std::shared_ptr<CommandBar>> BarCreated;
  // A declared button was made on a bar, tag set, caption still empty.
  Event<std::shared_ptr<CommandBarControl>> ControlCreated;
  // A window's bar should be brought up to date (the window was activated or its
  // selection changed).
  Event<std::shared_ptr<CommandBar>> UpdateBar;
  // As UpdateBar, once for each declared button on that bar.
  Event<std::shared_ptr<CommandBarControl>> UpdateControl;
  // The user clicked a declared button in `window` (an Explorer or an Inspector).
  Event<std::shared_ptr<CommandBarControl>, std::shared_ptr<OutlookWindow>> ButtonClicked;
};

// The port: creates helpers ("Quillbar.ToolbarHelper" on Windows).
class ToolbarLibrary {
 public:
  virtual ~ToolbarLibrary() = default;
  virtual std::shared_ptr<ToolbarHelper> CreateToolbarHelper() = 0;
};

}  // namespace zintra
