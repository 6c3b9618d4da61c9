// WindowToolbarHelper: the toolbar library over any Application port (the simulated
// Outlook's, or Outlook's own through COM in Quillbar.dll). It keeps one record per open
// explorer and inspector: the window's bars made from the declarations of its kind and
// the buttons on them. New windows (NewExplorer / NewInspector) get every declared bar
// and button; a closed window's record is dropped; activating a window or changing an
// explorer's selection raises UpdateBar and UpdateControl for its bars (making first any
// declared bar the window could not take before); a click on a declared button raises
// ButtonClicked with the window.
//
// Tags per window: Office raises a button's Click on every button that carries the same
// Tag, in every window. With `tags_per_window` each window's buttons get their declared
// tag and a window number ("Zintra_Note#3"), so a click reaches the clicked window only;
// the events then carry a view of the button whose Tag reads the declared tag, which is
// the identity the add-in knows (DeclaredButton). Without it the declared tag is the
// button's Tag, as the simulated Outlook's scenarios expect.
//
// Ownership: hold it through std::shared_ptr. The destructor deletes the bars it made
// from the windows still open. It keeps the application weakly and each open window
// until it closes. A window whose command bars fail is left without bars.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "src/host/outlook_application.h"
#include "src/host/toolbar_library.h"

namespace zintra::hosts {

class WindowToolbarHelper : public ToolbarHelper {
 public:
  explicit WindowToolbarHelper(bool tags_per_window = false) : tags_per_window_(tags_per_window) {}
  ~WindowToolbarHelper() override;
  WindowToolbarHelper(const WindowToolbarHelper&) = delete;
  WindowToolbarHelper& operator=(const WindowToolbarHelper&) = delete;

  std::string TypeName() const override { return "ToolbarHelper"; }
  void Initialize(const std::shared_ptr<Application>& application,
                  const std::string& name) override;
  void DeclareBar(int32_t kind, const std::string& bar_name) override;
  void DeclareButton(int32_t kind, const std::string& bar_name, const std::string& tag,
                     int32_t style, bool visible) override;

  // --- for tests ---
  const std::string& name() const { return name_; }
  int32_t WindowCount() const { return static_cast<int32_t>(windows_.size()); }
  // The bar this helper made in `window`, nullptr when none.
  std::shared_ptr<CommandBar> BarIn(const OutlookWindow* window, const std::string& bar_name) const;

 private:
  struct BarDecl {
    int32_t kind;
    std::string name;
  };
  struct ButtonDecl {
    int32_t kind;
    std::string bar_name;
    std::string tag;
    int32_t style;
    bool visible;
  };
  struct MadeButton {
    std::shared_ptr<CommandBarControl> control;  // as the events carry it
    Connection click;
  };
  struct MadeBar {
    std::string name;
    std::shared_ptr<CommandBar> bar;
    std::vector<MadeButton> buttons;
  };
  struct WindowRecord {
    int32_t kind;
    // Held until the window closes: Outlook's windows reach us through objects that
    // live only while someone holds them, and their events with them.
    std::shared_ptr<OutlookWindow> window;
    const OutlookWindow* identity;
    int64_t number;  // this window's number in its buttons' tags
    std::vector<MadeBar> bars;
    std::vector<Connection> connections;
  };

  void AddWindow(const std::shared_ptr<OutlookWindow>& window, int32_t kind);
  void DropWindow(const OutlookWindow* identity);
  void MakeBar(WindowRecord& record, const BarDecl& decl);
  void MakeButton(WindowRecord& record, MadeBar& bar, const ButtonDecl& decl);
  void Update(const OutlookWindow* identity);
  WindowRecord* Find(const OutlookWindow* identity);

  const bool tags_per_window_;
  std::weak_ptr<Application> application_;
  std::string name_;
  bool initialized_ = false;
  std::vector<BarDecl> bars_;
  std::vector<ButtonDecl> buttons_;
  // unique_ptr: handlers find their record by identity, and records move on erase.
  std::vector<std::unique_ptr<WindowRecord>> windows_;
  std::vector<std::unique_ptr<WindowRecord>> closed_;  // closed since the last window opened
  std::shared_ptr<Explorers> explorers_;
  std::shared_ptr<Inspectors> inspectors_;
  Connection new_explorer_;
  Connection new_inspector_;
};

}  // namespace zintra::hosts
