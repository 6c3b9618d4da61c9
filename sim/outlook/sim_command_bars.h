// The command bars of a simulated window: "Menu Bar" (with the built-in commands the
// add-in executes: 1978 new message to contact, 5418 link items, 5433 new appointment
// with contact, under the "Actions" menu), "Standard", and any bar added. Executing a
// control calls the window's command handler with the control's id, so the
// application can carry the command out. Fault keys: the window.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "sim/outlook/profile.h"
#include "sim/outlook/sim_keys.h"
#include "src/host/command_bars.h"

namespace zintra::sim {

class SimCommandBar;

// Data shared by the bars of one window, owned by the window: bars and controls hold
// it weakly, so that they die with their window (their members then throw
// kMapiObjectDeleted) and no cycle keeps them alive.
struct CommandBarsState {
  Profile* profile = nullptr;
  const void* window_key = nullptr;
  std::weak_ptr<AutomationObject> window;
  std::function<void(int32_t id)> execute;  // runs a built-in command
  std::vector<std::shared_ptr<SimCommandBar>> bars;
};

class SimCommandBarControl : public CommandBarControl,
                             public SimKeyed,
                             public std::enable_shared_from_this<SimCommandBarControl> {
 public:
  SimCommandBarControl(const std::shared_ptr<CommandBarsState>& state,
                       std::weak_ptr<SimCommandBar> bar, int32_t type, int32_t id,
                       std::string caption);
  std::string TypeName() const override { return "CommandBarControl"; }
  const void* FaultKey() const override { return key_; }
  int32_t Id() const override;
  int32_t Type() const override;
  std::string Tag() const override;
  void SetTag(const std::string& tag) override;
  std::string Caption() const override;
  void SetCaption(const std::string& caption) override;
  bool Visible() const override;
  void SetVisible(bool visible) override;
  int32_t Style() const override;
  void SetStyle(int32_t style) override;
  bool Enabled() const override;
  void SetEnabled(bool enabled) override;
  void Execute() override;
  void Delete() override;
  std::shared_ptr<CommandBar> Parent() override;

  // The user clicks the control: Click, then the built-in command unless cancelled.
  void ClickByUser();
  // Submenu entries of a popup control.
  std::vector<std::shared_ptr<SimCommandBarControl>>& Children() { return children_; }
  bool deleted() const { return deleted_; }

 private:
  // The bars' state through `state` when asked for.
  [[nodiscard]] HostCall Hit(std::string_view member,
                             std::shared_ptr<CommandBarsState>* state = nullptr) const;
  Profile* profile_;
  const void* key_;
  std::weak_ptr<CommandBarsState> state_;
  std::weak_ptr<SimCommandBar> bar_;
  int32_t type_;
  int32_t id_;
  std::string caption_;
  std::string tag_;
  bool visible_ = true;
  bool enabled_ = true;
  int32_t style_ = 0;
  bool deleted_ = false;
  std::vector<std::shared_ptr<SimCommandBarControl>> children_;
};

class SimCommandBar : public CommandBar,
                      public SimKeyed,
                      public std::enable_shared_from_this<SimCommandBar> {
 public:
  SimCommandBar(const std::shared_ptr<CommandBarsState>& state, std::string name, int32_t position);
  std::string TypeName() const override { return "CommandBar"; }
  const void* FaultKey() const override { return key_; }
  std::string Name() const override;
  int32_t Position() const override;
  void SetPosition(int32_t position) override;
  bool Visible() const override;
  void SetVisible(bool visible) override;
  std::shared_ptr<CommandBarControls> Controls() override;
  std::shared_ptr<CommandBarControl> FindControl(int32_t type, int32_t id, const std::string& tag,
                                                 bool visible_only, bool recursive) override;
  void Delete() override;
  std::shared_ptr<AutomationObject> Parent() override;

  std::vector<std::shared_ptr<SimCommandBarControl>>& ControlList() { return controls_; }
  bool deleted() const { return deleted_; }

 private:
  // The bars' state through `state` when asked for.
  [[nodiscard]] HostCall Hit(std::string_view member,
                             std::shared_ptr<CommandBarsState>* state = nullptr) const;
  Profile* profile_;
  const void* key_;
  std::weak_ptr<CommandBarsState> state_;
  std::string name_;
  int32_t position_;
  bool visible_ = true;
  bool deleted_ = false;
  std::vector<std::shared_ptr<SimCommandBarControl>> controls_;
};

class SimCommandBars : public CommandBars, public SimKeyed {
 public:
  explicit SimCommandBars(std::shared_ptr<CommandBarsState> state);
  // The built-in bars of a new window.
  static std::shared_ptr<CommandBarsState> MakeState(Profile* profile, const void* window_key,
                                                     std::function<void(int32_t)> execute);
  std::string TypeName() const override { return "CommandBars"; }
  const void* FaultKey() const override { return state_->window_key; }
  int32_t Count() const override;
  std::shared_ptr<CommandBar> Item(int32_t index) override;
  std::shared_ptr<CommandBar> Item(const std::string& name) override;
  std::shared_ptr<CommandBar> Add(const std::string& name, int32_t position,
                                  bool temporary) override;
  std::shared_ptr<CommandBarControl> FindControl(int32_t type, int32_t id, const std::string& tag,
                                                 bool visible_only) override;

 private:
  std::shared_ptr<CommandBarsState> state_;
};

// Built-in command ids the simulated windows carry out.
inline constexpr int32_t kCmdNewMessageToContact = 1978;
inline constexpr int32_t kCmdLinkItems = 5418;
inline constexpr int32_t kCmdNewAppointmentWithContact = 5433;

}  // namespace zintra::sim
