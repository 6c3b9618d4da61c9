// Simulated Outlook windows. They belong to a SimOlApplication, which lists the open
// ones and carries out their built-in commands. A closed window's members throw
// kMapiObjectDeleted. Fault keys: the window object itself.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "sim/outlook/profile.h"
#include "sim/outlook/sim_command_bars.h"
#include "sim/outlook/sim_item.h"
#include "sim/outlook/sim_keys.h"
#include "src/host/outlook_window.h"

namespace zintra::sim {

class SimOlApplication;

class SimOlExplorer : public Explorer,
                      public SimKeyed,
                      public std::enable_shared_from_this<SimOlExplorer> {
 public:
  // folder may be null (a profile without stores): no current folder then.
  SimOlExplorer(SimOlApplication* app, Profile* profile, std::shared_ptr<FolderRecord> folder);
  std::string TypeName() const override { return "Explorer"; }
  const void* FaultKey() const override { return this; }

  std::string Caption() const override;
  std::shared_ptr<zintra::CommandBars> CommandBars() override;
  void Activate() override;
  void Close(int32_t save_mode) override;
  std::shared_ptr<zintra::Selection> Selection() override;
  std::shared_ptr<Folder> CurrentFolder() override;

  // The user selects items (in the current folder or anywhere): SelectionChange.
  void Select(const std::vector<std::shared_ptr<Item>>& items);
  // The user shows another folder.
  void ShowFolder(const std::shared_ptr<FolderRecord>& folder);
  const std::shared_ptr<CommandBarsState>& BarsState() const { return bars_; }
  bool closed() const { return closed_; }

 private:
  [[nodiscard]] HostCall Hit(std::string_view member) const;
  SimOlApplication* app_;
  Profile* profile_;
  std::shared_ptr<FolderRecord> folder_;
  std::vector<std::shared_ptr<MessageRecord>> selection_;
  std::shared_ptr<CommandBarsState> bars_;
  bool closed_ = false;
};

class SimOlInspector : public Inspector,
                       public SimKeyed,
                       public std::enable_shared_from_this<SimOlInspector> {
 public:
  SimOlInspector(SimOlApplication* app, Profile* profile, std::shared_ptr<SimItem> item,
                 int32_t hwnd);
  std::string TypeName() const override { return "Inspector"; }
  const void* FaultKey() const override { return this; }

  std::string Caption() const override;
  std::shared_ptr<zintra::CommandBars> CommandBars() override;
  void Activate() override;
  // save_mode 0 saves the item first, 1 discards. The item's Close (not for notes,
  // whose window reports no close) comes first and may cancel; then the inspector's
  // Close; a note's window is hidden (message 24 with wParam 0) instead.
  void Close(int32_t save_mode) override;
  std::shared_ptr<Item> CurrentItem() override;
  int32_t Hwnd() override;

  const std::shared_ptr<SimItem>& ShownItem() const { return item_; }
  const std::shared_ptr<CommandBarsState>& BarsState() const { return bars_; }
  bool closed() const { return closed_; }

 private:
  [[nodiscard]] HostCall Hit(std::string_view member) const;
  SimOlApplication* app_;
  Profile* profile_;
  std::shared_ptr<SimItem> item_;  // one object for the window's life, so its events last
  int32_t hwnd_;
  std::shared_ptr<CommandBarsState> bars_;
  bool closed_ = false;
};

}  // namespace zintra::sim
