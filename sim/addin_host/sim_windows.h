// Outlook's windows in the simulated process: explorers over a folder and inspectors
// over an item, and the Explorers / Inspectors collections that list the open ones.
// Close raises the window's Close event (an inspector's item raises its own Close
// first) while the window is still listed, then removes it from its collection; a
// closed window's members throw kMapiObjectDeleted. Outlook's thread only.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "src/host/outlook_folder.h"
#include "src/host/outlook_item.h"
#include "src/host/outlook_window.h"

namespace zintra::sim {

class SimSelection : public Selection {
 public:
  std::string TypeName() const override { return "Selection"; }
  int32_t Count() const override { return static_cast<int32_t>(items.size()); }
  std::shared_ptr<zintra::Item> Item(int32_t index) override;
  std::vector<std::shared_ptr<zintra::Item>> items;
};

// What the simulated windows share: their list and the open/closed state.
class SimWindowBase {
 public:
  bool IsOpen() const { return open_; }
  int32_t hwnd() const { return hwnd_; }

 protected:
  void CheckOpen() const;
  bool open_ = true;
  int32_t hwnd_ = 0;
  std::string caption_;
};

class SimExplorer : public Explorer, public SimWindowBase {
 public:
  SimExplorer(std::shared_ptr<Folder> folder, int32_t hwnd,
              std::function<void(SimExplorer&)> close);
  std::string TypeName() const override { return "Explorer"; }
  std::string Caption() const override;
  std::shared_ptr<zintra::CommandBars> CommandBars() override;
  void Activate() override;
  void Close(int32_t save_mode) override;
  std::shared_ptr<zintra::Selection> Selection() override;
  std::shared_ptr<Folder> CurrentFolder() override;

  SimSelection& selection() { return *selection_; }
  void MarkClosed() { open_ = false; }

 private:
  std::shared_ptr<Folder> folder_;
  std::shared_ptr<SimSelection> selection_ = std::make_shared<SimSelection>();
  std::function<void(SimExplorer&)> close_;
};

class SimInspector : public Inspector, public SimWindowBase {
 public:
  SimInspector(std::shared_ptr<zintra::Item> item, int32_t hwnd,
               std::function<void(SimInspector&)> close);
  std::string TypeName() const override { return "Inspector"; }
  std::string Caption() const override;
  std::shared_ptr<zintra::CommandBars> CommandBars() override;
  void Activate() override;
  void Close(int32_t save_mode) override;
  std::shared_ptr<zintra::Item> CurrentItem() override;
  int32_t Hwnd() override;

  void MarkClosed() { open_ = false; }

 private:
  std::shared_ptr<zintra::Item> item_;
  std::function<void(SimInspector&)> close_;
};

class SimExplorers : public Explorers {
 public:
  std::string TypeName() const override { return "Explorers"; }
  int32_t Count() const override { return static_cast<int32_t>(open.size()); }
  // 1-based; an index out of range throws ZError 5 (kErrInvalidCall) as Outlook does.
  std::shared_ptr<Explorer> Item(int32_t index) override;
  std::vector<std::shared_ptr<SimExplorer>> open;
};

class SimInspectors : public Inspectors {
 public:
  std::string TypeName() const override { return "Inspectors"; }
  int32_t Count() const override { return static_cast<int32_t>(open.size()); }
  std::shared_ptr<Inspector> Item(int32_t index) override;
  std::vector<std::shared_ptr<SimInspector>> open;
};

}  // namespace zintra::sim
