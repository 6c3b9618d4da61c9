// The command bars of Outlook's windows over Office's automation objects. A control's
// Click (Ctrl, CancelDefault&) is advised while it has handlers; CancelDefault written
// by a handler goes back to Office.
#pragma once

#include "src/host/command_bars.h"
#include "win32/outlook/com_adapter.h"
#include "win32/outlook/lazy_advise.h"

namespace zintra::win32 {

class ComCommandBarControl final : public CommandBarControl, public ComAdapter {
 public:
  explicit ComCommandBarControl(const ComPtr<IDispatch>& object);
  std::string TypeName() const override { return "CommandBarButton"; }
  int32_t Id() const override { return Long("Id"); }
  int32_t Type() const override { return Long("Type"); }
  std::string Tag() const override { return Text("Tag"); }
  void SetTag(const std::string& v) override { Write("Tag", Value(v)); }
  std::string Caption() const override { return Text("Caption"); }
  void SetCaption(const std::string& v) override { Write("Caption", Value(v)); }
  bool Visible() const override { return Bool("Visible"); }
  void SetVisible(bool v) override { Write("Visible", Value(v)); }
  int32_t Style() const override { return Long("Style"); }
  void SetStyle(int32_t v) override { Write("Style", Value(v)); }
  bool Enabled() const override { return Bool("Enabled"); }
  void SetEnabled(bool v) override { Write("Enabled", Value(v)); }
  void Execute() override { client_.Call("Execute"); }
  void Delete() override { client_.Call("Delete"); }
  std::shared_ptr<CommandBar> Parent() override;

 private:
  void OnEvent(DISPID id, const EventArgs& args);
  LazyAdvise events_;
};

class ComCommandBarControls final : public CommandBarControls, public ComAdapter {
 public:
  explicit ComCommandBarControls(const ComPtr<IDispatch>& o)
      : ComAdapter(DispatchClient(o, "CommandBarControls")) {}
  std::string TypeName() const override { return "CommandBarControls"; }
  int32_t Count() const override { return Long("Count"); }
  std::shared_ptr<CommandBarControl> Item(int32_t index) override;
  std::shared_ptr<CommandBarControl> Add(int32_t type, int32_t id, int32_t before,
                                         bool temporary) override;
};

class ComCommandBar final : public CommandBar, public ComAdapter {
 public:
  explicit ComCommandBar(const ComPtr<IDispatch>& o)
      : ComAdapter(DispatchClient(o, "CommandBar")) {}
  std::string TypeName() const override { return "CommandBar"; }
  std::string Name() const override { return Text("Name"); }
  int32_t Position() const override { return Long("Position"); }
  void SetPosition(int32_t v) override { Write("Position", Value(v)); }
  bool Visible() const override { return Bool("Visible"); }
  void SetVisible(bool v) override { Write("Visible", Value(v)); }
  std::shared_ptr<CommandBarControls> Controls() override;
  std::shared_ptr<CommandBarControl> FindControl(int32_t type, int32_t id, const std::string& tag,
                                                 bool visible_only, bool recursive) override;
  void Delete() override { client_.Call("Delete"); }
  std::shared_ptr<AutomationObject> Parent() override;
};

class ComCommandBars final : public CommandBars, public ComAdapter {
 public:
  explicit ComCommandBars(const ComPtr<IDispatch>& o)
      : ComAdapter(DispatchClient(o, "CommandBars")) {}
  std::string TypeName() const override { return "CommandBars"; }
  int32_t Count() const override { return Long("Count"); }
  std::shared_ptr<CommandBar> Item(int32_t index) override;
  std::shared_ptr<CommandBar> Item(const std::string& name) override;
  std::shared_ptr<CommandBar> Add(const std::string& name, int32_t position,
                                  bool temporary) override;
  std::shared_ptr<CommandBarControl> FindControl(int32_t type, int32_t id, const std::string& tag,
                                                 bool visible_only) override;
};

}  // namespace zintra::win32
