// Outlook's windows over their automation objects: ComExplorer and ComInspector (with
// their Activate, Deactivate, Close and SelectionChange events on one connection each,
// advised while any has handlers), the Explorers and Inspectors collections with their
// NewExplorer / NewInspector events, and an explorer's Selection.
#pragma once

#include "src/host/outlook_folder.h"
#include "src/host/outlook_item.h"
#include "src/host/outlook_window.h"
#include "win32/outlook/com_adapter.h"
#include "win32/outlook/lazy_advise.h"

namespace zintra::win32 {

// The members and events explorers and inspectors share; `Port` is Explorer or Inspector.
template <typename Port>
class ComWindow : public Port, public ComAdapter {
 public:
  ComWindow(const ComPtr<IDispatch>& object, const char* type_name, const IID& source,
            DISPID close_id);
  std::string TypeName() const override { return client_.TypeName(); }
  std::string Caption() const override { return Text("Caption"); }
  std::shared_ptr<zintra::CommandBars> CommandBars() override;
  void Activate() override { client_.Call("Activate"); }
  void Close(int32_t save_mode) override;

 protected:
  virtual void OnOther(DISPID, const EventArgs&) {}
  LazyAdvise events_;

 private:
  void OnEvent(DISPID id, const EventArgs& args);
  DISPID close_id_;
};

class ComExplorer final : public ComWindow<Explorer> {
 public:
  explicit ComExplorer(const ComPtr<IDispatch>& object);
  std::shared_ptr<zintra::Selection> Selection() override;
  std::shared_ptr<Folder> CurrentFolder() override;
  // Outlook's Explorer.Close takes no save mode: there is nothing to save.
  void Close(int32_t) override { client_.Call("Close"); }

 private:
  void OnOther(DISPID id, const EventArgs& args) override;
};

class ComInspector final : public ComWindow<Inspector> {
 public:
  explicit ComInspector(const ComPtr<IDispatch>& object);
  std::shared_ptr<Item> CurrentItem() override;
  int32_t Hwnd() override;
};

class ComSelection final : public Selection, public ComAdapter {
 public:
  explicit ComSelection(const ComPtr<IDispatch>& o) : ComAdapter(DispatchClient(o, "Selection")) {}
  std::string TypeName() const override { return "Selection"; }
  int32_t Count() const override { return Long("Count"); }
  std::shared_ptr<zintra::Item> Item(int32_t index) override;
};

class ComExplorers final : public Explorers, public ComAdapter {
 public:
  explicit ComExplorers(const ComPtr<IDispatch>& object);
  std::string TypeName() const override { return "Explorers"; }
  int32_t Count() const override { return Long("Count"); }
  std::shared_ptr<Explorer> Item(int32_t index) override;

 private:
  LazyAdvise events_;
};

class ComInspectors final : public Inspectors, public ComAdapter {
 public:
  explicit ComInspectors(const ComPtr<IDispatch>& object);
  std::string TypeName() const override { return "Inspectors"; }
  int32_t Count() const override { return Long("Count"); }
  std::shared_ptr<Inspector> Item(int32_t index) override;

 private:
  LazyAdvise events_;
};

}  // namespace zintra::win32
