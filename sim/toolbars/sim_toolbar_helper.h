// SimToolbarHelper: the toolbar library over any Application port. It keeps one record
// per open explorer and inspector: the window's bars made from the declarations of its
// kind and the buttons on them. New windows (NewExplorer / NewInspector) get every
// declared bar and button; a closed window's record is dropped; activating a window
// or changing an explorer's selection raises UpdateBar and UpdateControl for its bars;
// a click on a declared button raises ButtonClicked with the window.
//
// Ownership: hold it through std::shared_ptr (SimToolbarLibrary makes them). The
// destructor deletes the bars it made from the windows still open. It keeps the
// application and the windows only weakly; Outlook's objects outlive it or not, as
// they please. A window whose command bars fail is left without bars.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "src/host/outlook_application.h"
#include "src/host/toolbar_library.h"

namespace zintra::sim {

class SimToolbarHelper : public ToolbarHelper {
 public:
  SimToolbarHelper() = default;
  ~SimToolbarHelper() override;
  SimToolbarHelper(const SimToolbarHelper&) = delete;
  SimToolbarHelper& operator=(const SimToolbarHelper&) = delete;

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
    std::shared_ptr<CommandBarControl> control;
    Connection click;
  };
  struct MadeBar {
    std::string name;
    std::shared_ptr<CommandBar> bar;
    std::vector<MadeButton> buttons;
  };
  struct WindowRecord {
    int32_t kind;
    std::weak_ptr<OutlookWindow> window;
    const OutlookWindow* identity;
    std::vector<MadeBar> bars;
    std::vector<Connection> connections;
  };

  void AddWindow(const std::shared_ptr<OutlookWindow>& window, int32_t kind);
  void DropWindow(const OutlookWindow* identity);
  void MakeBar(WindowRecord& record, const BarDecl& decl);
  void MakeButton(WindowRecord& record, MadeBar& bar, const ButtonDecl& decl);
  void Update(const OutlookWindow* identity);
  WindowRecord* Find(const OutlookWindow* identity);

  std::weak_ptr<Application> application_;
  std::string name_;
  bool initialized_ = false;
  std::vector<BarDecl> bars_;
  std::vector<ButtonDecl> buttons_;
  // unique_ptr: handlers find their record by identity, and records move on erase.
  std::vector<std::unique_ptr<WindowRecord>> windows_;
  Connection new_explorer_;
  Connection new_inspector_;
};

// The ToolbarLibrary port; counts the helpers it made, for tests.
class SimToolbarLibrary : public ToolbarLibrary {
 public:
  std::shared_ptr<ToolbarHelper> CreateToolbarHelper() override;

  // When set, CreateToolbarHelper throws 429 as an unregistered library does.
  bool unavailable = false;
  int32_t created() const { return created_; }
  // The last helper made, while it lives.
  std::shared_ptr<SimToolbarHelper> Last() const { return last_.lock(); }

 private:
  int32_t created_ = 0;
  std::weak_ptr<SimToolbarHelper> last_;
};

}  // namespace zintra::sim
