#include "sim/outlook/sim_command_bars.h"

#include <algorithm>

#include "sim/outlook/sim_item_parts.h"
#include "src/core/text.h"
#include "src/core/z_error.h"
#include "src/host/mapi_object.h"
#include "src/host/outlook_constants.h"

namespace zintra::sim {

namespace {

class SimCommandBarControls : public CommandBarControls, public SimKeyed {
 public:
  SimCommandBarControls(std::shared_ptr<CommandBarsState> state, std::shared_ptr<SimCommandBar> bar)
      : state_(std::move(state)), bar_(std::move(bar)) {}
  std::string TypeName() const override { return "CommandBarControls"; }
  const void* FaultKey() const override { return state_->window_key; }
  int32_t Count() const override {
    HostCall host_call =
        state_->profile->Faults().Check("CommandBarControls.Count", state_->window_key);
    return static_cast<int32_t>(bar_->ControlList().size());
  }
  std::shared_ptr<CommandBarControl> Item(int32_t index) override {
    HostCall host_call =
        state_->profile->Faults().Check("CommandBarControls.Item", state_->window_key);
    auto& list = bar_->ControlList();
    return list[CheckIndex(index, list.size())];
  }
  std::shared_ptr<CommandBarControl> Add(int32_t type, int32_t id, int32_t before,
                                         bool /*temporary*/) override {
    HostCall host_call =
        state_->profile->Faults().Check("CommandBarControls.Add", state_->window_key);
    auto control = std::make_shared<SimCommandBarControl>(state_, bar_, type, id, "");
    auto& list = bar_->ControlList();
    size_t at = before >= 1 && static_cast<size_t>(before) <= list.size()
                    ? static_cast<size_t>(before - 1)
                    : list.size();
    list.insert(list.begin() + static_cast<ptrdiff_t>(at), control);
    return control;
  }

 private:
  std::shared_ptr<CommandBarsState> state_;
  std::shared_ptr<SimCommandBar> bar_;
};

std::shared_ptr<SimCommandBarControl> Search(
    const std::vector<std::shared_ptr<SimCommandBarControl>>& list, int32_t type, int32_t id,
    const std::string& tag, bool visible_only, bool recursive) {
  for (const auto& c : list) {
    bool match = (type == 0 || c->Type() == type) && (id == 0 || c->Id() == id) &&
                 (tag.empty() || c->Tag() == tag) && (!visible_only || c->Visible());
    if (match) return c;
    if (recursive) {
      if (auto found = Search(c->Children(), type, id, tag, visible_only, true)) return found;
    }
  }
  return nullptr;
}

}  // namespace

// --- control ---

SimCommandBarControl::SimCommandBarControl(const std::shared_ptr<CommandBarsState>& state,
                                           std::weak_ptr<SimCommandBar> bar, int32_t type,
                                           int32_t id, std::string caption)
    : profile_(state->profile),
      key_(state->window_key),
      state_(state),
      bar_(std::move(bar)),
      type_(type),
      id_(id),
      caption_(std::move(caption)) {}

HostCall SimCommandBarControl::Hit(std::string_view member,
                                   std::shared_ptr<CommandBarsState>* state) const {
  HostCall call = profile_->Faults().Check(member, key_);
  auto locked = state_.lock();
  if (deleted_ || !locked) throw ZError(kMapiObjectDeleted, "The control has been deleted");
  if (state != nullptr) *state = std::move(locked);
  return call;
}

int32_t SimCommandBarControl::Id() const {
  HostCall host_call = Hit("CommandBarControl.Id");
  return id_;
}
int32_t SimCommandBarControl::Type() const {
  HostCall host_call = Hit("CommandBarControl.Type");
  return type_;
}
std::string SimCommandBarControl::Tag() const {
  HostCall host_call = Hit("CommandBarControl.Tag");
  return tag_;
}
void SimCommandBarControl::SetTag(const std::string& tag) {
  HostCall host_call = Hit("CommandBarControl.SetTag");
  tag_ = tag;
}
std::string SimCommandBarControl::Caption() const {
  HostCall host_call = Hit("CommandBarControl.Caption");
  return caption_;
}
void SimCommandBarControl::SetCaption(const std::string& caption) {
  HostCall host_call = Hit("CommandBarControl.SetCaption");
  caption_ = caption;
}
bool SimCommandBarControl::Visible() const {
  HostCall host_call = Hit("CommandBarControl.Visible");
  return visible_;
}
void SimCommandBarControl::SetVisible(bool visible) {
  HostCall host_call = Hit("CommandBarControl.SetVisible");
  visible_ = visible;
}
int32_t SimCommandBarControl::Style() const {
  HostCall host_call = Hit("CommandBarControl.Style");
  return style_;
}
void SimCommandBarControl::SetStyle(int32_t style) {
  HostCall host_call = Hit("CommandBarControl.SetStyle");
  style_ = style;
}
bool SimCommandBarControl::Enabled() const {
  HostCall host_call = Hit("CommandBarControl.Enabled");
  return enabled_;
}
void SimCommandBarControl::SetEnabled(bool enabled) {
  HostCall host_call = Hit("CommandBarControl.SetEnabled");
  enabled_ = enabled;
}

void SimCommandBarControl::Execute() {
  std::shared_ptr<CommandBarsState> state;
  HostCall host_call = Hit("CommandBarControl.Execute", &state);
  if (!enabled_) throw ZError(kMapiCallFailed, "The command is not available");
  if (id_ != 1 && state->execute) {
    state->execute(id_);
  } else {
    bool cancel = false;
    const auto callback = profile_->Faults().Callback();
    Click.Raise(shared_from_this(), cancel);
  }
}

void SimCommandBarControl::ClickByUser() {
  std::shared_ptr<CommandBarsState> state;
  HostCall host_call = Hit("CommandBarControl.Click", &state);
  bool cancel = false;
  {
    const auto callback = profile_->Faults().Callback();
    Click.Raise(shared_from_this(), cancel);
  }
  if (!cancel && id_ != 1 && state->execute) state->execute(id_);
}

void SimCommandBarControl::Delete() {
  HostCall host_call = Hit("CommandBarControl.Delete");
  deleted_ = true;
  if (auto bar = bar_.lock()) {
    auto& list = bar->ControlList();
    list.erase(std::remove(list.begin(), list.end(), shared_from_this()), list.end());
  }
}

std::shared_ptr<CommandBar> SimCommandBarControl::Parent() {
  HostCall host_call = Hit("CommandBarControl.Parent");
  return bar_.lock();
}

// --- bar ---

SimCommandBar::SimCommandBar(const std::shared_ptr<CommandBarsState>& state, std::string name,
                             int32_t position)
    : profile_(state->profile),
      key_(state->window_key),
      state_(state),
      name_(std::move(name)),
      position_(position) {}

HostCall SimCommandBar::Hit(std::string_view member,
                            std::shared_ptr<CommandBarsState>* state) const {
  HostCall call = profile_->Faults().Check(member, key_);
  auto locked = state_.lock();
  if (deleted_ || !locked) throw ZError(kMapiObjectDeleted, "The command bar has been deleted");
  if (state != nullptr) *state = std::move(locked);
  return call;
}

std::string SimCommandBar::Name() const {
  HostCall host_call = Hit("CommandBar.Name");
  return name_;
}
int32_t SimCommandBar::Position() const {
  HostCall host_call = Hit("CommandBar.Position");
  return position_;
}
void SimCommandBar::SetPosition(int32_t position) {
  HostCall host_call = Hit("CommandBar.SetPosition");
  position_ = position;
}
bool SimCommandBar::Visible() const {
  HostCall host_call = Hit("CommandBar.Visible");
  return visible_;
}
void SimCommandBar::SetVisible(bool visible) {
  HostCall host_call = Hit("CommandBar.SetVisible");
  visible_ = visible;
}

std::shared_ptr<CommandBarControls> SimCommandBar::Controls() {
  std::shared_ptr<CommandBarsState> state;
  HostCall host_call = Hit("CommandBar.Controls", &state);
  return std::make_shared<SimCommandBarControls>(std::move(state), shared_from_this());
}

std::shared_ptr<CommandBarControl> SimCommandBar::FindControl(int32_t type, int32_t id,
                                                              const std::string& tag,
                                                              bool visible_only, bool recursive) {
  HostCall host_call = Hit("CommandBar.FindControl");
  return Search(controls_, type, id, tag, visible_only, recursive);
}

void SimCommandBar::Delete() {
  std::shared_ptr<CommandBarsState> state;
  HostCall host_call = Hit("CommandBar.Delete", &state);
  deleted_ = true;
  auto& bars = state->bars;
  bars.erase(std::remove(bars.begin(), bars.end(), shared_from_this()), bars.end());
}

std::shared_ptr<AutomationObject> SimCommandBar::Parent() {
  std::shared_ptr<CommandBarsState> state;
  HostCall host_call = Hit("CommandBar.Parent", &state);
  return state->window.lock();
}

// --- bars ---

SimCommandBars::SimCommandBars(std::shared_ptr<CommandBarsState> state)
    : state_(std::move(state)) {}

std::shared_ptr<CommandBarsState> SimCommandBars::MakeState(Profile* profile,
                                                            const void* window_key,
                                                            std::function<void(int32_t)> execute) {
  auto state = std::make_shared<CommandBarsState>();
  state->profile = profile;
  state->window_key = window_key;
  state->execute = std::move(execute);
  auto menu = std::make_shared<SimCommandBar>(state, "Menu Bar", kMsoBarTop);
  auto actions =
      std::make_shared<SimCommandBarControl>(state, menu, kMsoControlPopup, 30131, "&Actions");
  for (auto [id, caption] :
       {std::pair{kCmdNewMessageToContact, "New &Message to Contact"},
        std::pair{kCmdLinkItems, "Lin&k Items..."},
        std::pair{kCmdNewAppointmentWithContact, "New A&ppointment with Contact"}}) {
    actions->Children().push_back(
        std::make_shared<SimCommandBarControl>(state, menu, kMsoControlButton, id, caption));
  }
  menu->ControlList().push_back(actions);
  state->bars.push_back(menu);
  state->bars.push_back(std::make_shared<SimCommandBar>(state, "Standard", kMsoBarTop));
  return state;
}

int32_t SimCommandBars::Count() const {
  HostCall host_call = state_->profile->Faults().Check("CommandBars.Count", state_->window_key);
  return static_cast<int32_t>(state_->bars.size());
}

std::shared_ptr<CommandBar> SimCommandBars::Item(int32_t index) {
  HostCall host_call = state_->profile->Faults().Check("CommandBars.Item", state_->window_key);
  return state_->bars[CheckIndex(index, state_->bars.size())];
}

std::shared_ptr<CommandBar> SimCommandBars::Item(const std::string& name) {
  HostCall host_call = state_->profile->Faults().Check("CommandBars.Item", state_->window_key);
  for (const auto& bar : state_->bars) {
    if (text::EqualsNoCase(bar->Name(), name)) return bar;
  }
  throw ZError(kErrInvalidCall, "Invalid procedure call or argument");
}

std::shared_ptr<CommandBar> SimCommandBars::Add(const std::string& name, int32_t position,
                                                bool /*temporary*/) {
  HostCall host_call = state_->profile->Faults().Check("CommandBars.Add", state_->window_key);
  for (const auto& bar : state_->bars) {
    if (text::EqualsNoCase(bar->Name(), name))
      throw ZError(kErrInvalidCall, "Invalid procedure call or argument");
  }
  auto bar = std::make_shared<SimCommandBar>(state_, name, position);
  state_->bars.push_back(bar);
  return bar;
}

std::shared_ptr<CommandBarControl> SimCommandBars::FindControl(int32_t type, int32_t id,
                                                               const std::string& tag,
                                                               bool visible_only) {
  HostCall host_call =
      state_->profile->Faults().Check("CommandBars.FindControl", state_->window_key);
  for (const auto& bar : state_->bars) {
    if (auto found = Search(bar->ControlList(), type, id, tag, visible_only, true)) return found;
  }
  return nullptr;
}

}  // namespace zintra::sim
