// CommandBars of an Outlook window (explorer or inspector): the menu bar, the
// built-in toolbars and any bar an add-in adds. Indexes are 1-based; a name or index
// that is not there throws ZError 5.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "src/core/event.h"
#include "src/host/automation_object.h"

namespace zintra {

class CommandBar;

class CommandBarControl : public AutomationObject {
 public:
  virtual int32_t Id() const = 0;    // built-in command id; 1 for a custom button
  virtual int32_t Type() const = 0;  // MsoControlType
  virtual std::string Tag() const = 0;
  virtual void SetTag(const std::string& tag) = 0;
  virtual std::string Caption() const = 0;
  virtual void SetCaption(const std::string& caption) = 0;
  virtual bool Visible() const = 0;
  virtual void SetVisible(bool visible) = 0;
  virtual int32_t Style() const = 0;  // MsoButtonStyle
  virtual void SetStyle(int32_t style) = 0;
  virtual bool Enabled() const = 0;
  virtual void SetEnabled(bool enabled) = 0;
  // Runs the control's command (a built-in command acts on the window's selection).
  virtual void Execute() = 0;
  virtual void Delete() = 0;
  virtual std::shared_ptr<CommandBar> Parent() = 0;

  // A button was clicked by the user; handlers may set CancelDefault.
  Event<std::shared_ptr<CommandBarControl>, bool&> Click;
};

class CommandBarControls : public AutomationObject {
 public:
  virtual int32_t Count() const = 0;
  virtual std::shared_ptr<CommandBarControl> Item(int32_t index) = 0;
  // id 1 makes a custom control; before 0 appends.
  virtual std::shared_ptr<CommandBarControl> Add(int32_t type, int32_t id = 1, int32_t before = 0,
                                                 bool temporary = true) = 0;
};

class CommandBar : public AutomationObject {
 public:
  virtual std::string Name() const = 0;
  virtual int32_t Position() const = 0;  // MsoBarPosition
  virtual void SetPosition(int32_t position) = 0;
  virtual bool Visible() const = 0;
  virtual void SetVisible(bool visible) = 0;
  virtual std::shared_ptr<CommandBarControls> Controls() = 0;
  // The first control, searching submenus too when recursive, that matches every
  // criterion given (type 0, id 0, tag "" mean any); nullptr when none does.
  virtual std::shared_ptr<CommandBarControl> FindControl(int32_t type, int32_t id,
                                                         const std::string& tag, bool visible_only,
                                                         bool recursive) = 0;
  virtual void Delete() = 0;
  // The window (Explorer or Inspector) the bar belongs to.
  virtual std::shared_ptr<AutomationObject> Parent() = 0;
};

class CommandBars : public AutomationObject {
 public:
  virtual int32_t Count() const = 0;
  virtual std::shared_ptr<CommandBar> Item(int32_t index) = 0;
  // "Menu Bar", "Standard", or an added bar's name, without regard to letter case.
  virtual std::shared_ptr<CommandBar> Item(const std::string& name) = 0;
  // A name in use throws 5.
  virtual std::shared_ptr<CommandBar> Add(const std::string& name, int32_t position,
                                          bool temporary) = 0;
  virtual std::shared_ptr<CommandBarControl> FindControl(int32_t type, int32_t id,
                                                         const std::string& tag,
                                                         bool visible_only) = 0;
};

}  // namespace zintra
