// Win32PopupMenu: the tray form's pop-up menu as a user32 menu built afresh for each
// showing from the items' captions, visibility and state. Item i is command i + 1. The
// menu is tracked over `owner`, which is brought to the foreground first so that the
// menu closes when the user clicks elsewhere. Click is raised after the menu has closed.
// Loading an element that exists throws ZError 360, unloading element 0 ZError 362, and
// naming an element that does not exist ZError 340, as the run time's control arrays do.
#pragma once

#include <map>
#include <string>

#include "src/host/popup_menu.h"
#include "win32/com/windows_api.h"

namespace zintra::win32 {

class Win32PopupMenu : public PopupMenu {
 public:
  explicit Win32PopupMenu(HWND owner);

  void LoadItem(int32_t index) override;
  void UnloadItem(int32_t index) override;
  void SetCaption(int32_t index, const std::string& caption) override;
  void SetVisible(int32_t index, bool visible) override;
  void SetEnabled(int32_t index, bool enabled) override;
  void Popup(int32_t default_index) override;

  struct Item {
    std::string caption;
    bool visible = false;  // a loaded element shows once made visible
    bool enabled = true;
  };
  const std::map<int32_t, Item>& Items() const { return items_; }

  // Builds the menu as Popup shows it; the caller owns (DestroyMenu) the result.
  HMENU Build(int32_t default_index) const;

 private:
  Item& Existing(int32_t index);

  HWND owner_;
  std::map<int32_t, Item> items_;
};

}  // namespace zintra::win32
