// SimOlApplication: Outlook's Application over a simulated Profile, plus the controls a
// test uses to act as the user or as Outlook (open and close windows, select items,
// send mail, deliver new mail, open the Options dialog, quit).
//
// Ownership: the test owns the SimOlApplication and the Profile; the Profile must
// outlive it. The application registers itself as the profile's inspector opener
// and unregisters on destruction. Fault key: the Profile ("Application.<Member>").
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "sim/outlook/profile.h"
#include "sim/outlook/sim_keys.h"
#include "sim/outlook/sim_ol_windows.h"
#include "src/host/outlook_application.h"

namespace zintra::sim {

class SimPropertyPages : public PropertyPages {
 public:
  std::string TypeName() const override { return "PropertyPages"; }
  int32_t Count() const override { return static_cast<int32_t>(pages_.size()); }
  std::shared_ptr<AutomationObject> Item(int32_t index) override;
  void Add(const std::shared_ptr<AutomationObject>& page, const std::string& title) override;
  const std::vector<std::string>& Titles() const { return titles_; }

 private:
  std::vector<std::shared_ptr<AutomationObject>> pages_;
  std::vector<std::string> titles_;
};

class SimOlApplication : public Application, public SimKeyed {
 public:
  explicit SimOlApplication(Profile* profile);
  ~SimOlApplication() override;
  SimOlApplication(const SimOlApplication&) = delete;
  SimOlApplication& operator=(const SimOlApplication&) = delete;

  std::string TypeName() const override { return "Application"; }
  const void* FaultKey() const override { return profile_; }

  std::shared_ptr<zintra::Explorers> Explorers() override;
  std::shared_ptr<zintra::Inspectors> Inspectors() override;
  std::string Version() const override;
  std::string ProductCode() const override;
  std::shared_ptr<Namespace> Session() override;
  std::shared_ptr<Explorer> ActiveExplorer() override;
  std::shared_ptr<Inspector> ActiveInspector() override;
  std::shared_ptr<Item> CreateItem(int32_t item_type) override;

  Profile& profile() { return *profile_; }

  // --- the user and Outlook ---
  // Opens an explorer on the folder (NewExplorer), which becomes the active window.
  std::shared_ptr<SimOlExplorer> OpenExplorer(const std::shared_ptr<FolderRecord>& folder);
  // Opens an inspector on the item (NewInspector), or activates the one showing it.
  std::shared_ptr<SimOlInspector> OpenInspector(const std::shared_ptr<Item>& item);
  // Sends an item: ItemSend (a handler may cancel; then false), else it is stamped
  // with SentOn and stored in Sent Items.
  bool Send(const std::shared_ptr<Item>& item);
  // Stores the item in the Inbox as newly arrived mail, then raises NewMail here and
  // in the MAPI library.
  void Deliver(const std::shared_ptr<Item>& item);
  // The Options dialog opens (OptionsPagesAdd); returns the pages added.
  std::shared_ptr<SimPropertyPages> ShowOptions();
  // A folder's Properties dialog opens (Namespace OptionsPagesAdd).
  std::shared_ptr<SimPropertyPages> ShowFolderProperties(const std::shared_ptr<Folder>& folder);
  // Outlook exits: every inspector, then every explorer closes, then Quit.
  void QuitOutlook();

  // Window messages the simulated windows post (hwnd, message, wParam): a note's
  // window being hidden sends (hwnd, 24, 0). The subclassing service listens here.
  Event<int32_t, int32_t, int32_t> WindowMessage;
  // Built-in commands executed, in order (id, window).
  const std::vector<int32_t>& ExecutedCommands() const { return executed_; }
  // Raised once a closed window has left the Explorers or Inspectors list (after its
  // Close events), so the process can tell when its last window has gone.
  Event<> WindowRemoved;
  // The open windows, oldest first (no fault checks: the test's own view).
  std::vector<std::shared_ptr<SimOlExplorer>> OpenExplorers() const;
  std::vector<std::shared_ptr<SimOlInspector>> OpenInspectors() const;

  // Used by the windows.
  void WindowActivated(AutomationObject* window);
  void WindowClosed(AutomationObject* window);
  void ExecuteCommand(int32_t id, const std::shared_ptr<AutomationObject>& window);
  int32_t NextHwnd() { return next_hwnd_ += 4; }

 private:
  class ExplorerList;
  class InspectorList;
  [[nodiscard]] HostCall Hit(std::string_view member) const {
    return profile_->Faults().Check(member, profile_);
  }

  Profile* profile_;
  std::shared_ptr<ExplorerList> explorers_;
  std::shared_ptr<InspectorList> inspectors_;
  AutomationObject* active_ = nullptr;
  std::vector<int32_t> executed_;
  int32_t next_hwnd_ = 0x10000;
};

}  // namespace zintra::sim
