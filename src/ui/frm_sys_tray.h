// frmSysTray: owns one notification-area icon and its pop-up menu, and turns the
// icon's mouse messages into events. The icon is added when the form is created
// and deleted when it is unloaded (or destroyed). Shell failures are not reported:
// the record keeps the new values either way.
//
// Mouse messages arrive as mouse moves whose X, converted to pixels, is the message
// number (512-518). The left button reports its "down" on release and never an
// "up"; the right button reports both. This asymmetry is intended.
//
// Owns its view; borrows the shell, which must outlive it. Menu members given an
// index that is not a loaded item throw ZError 340.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>

#include "src/core/event.h"
#include "src/host/shell.h"
#include "src/host/tray_view.h"

namespace zintra {

inline constexpr int32_t kVbLeftButton = 1;
inline constexpr int32_t kVbRightButton = 2;
inline constexpr uint32_t kWmMouseMove = 512;
inline constexpr uint32_t kWmLButtonDown = 513;
inline constexpr uint32_t kWmLButtonUp = 514;
inline constexpr uint32_t kWmLButtonDblClk = 515;
inline constexpr uint32_t kWmRButtonDown = 516;
inline constexpr uint32_t kWmRButtonUp = 517;
inline constexpr uint32_t kWmRButtonDblClk = 518;
inline constexpr uint32_t kSysTrayIconId = 1;

class frmSysTray {
 public:
  // Form load: fills the record (size 88, flags message|icon|tip, callback 512,
  // `tip`, `icon`) and adds the icon.
  frmSysTray(std::unique_ptr<TrayView> view, Shell& shell, const std::string& tip, int32_t icon);
  ~frmSysTray();
  frmSysTray(const frmSysTray&) = delete;
  frmSysTray& operator=(const frmSysTray&) = delete;

  // The tip up to its first zero character (all 64 characters when there is none).
  std::string ToolTip() const;
  // When `text` differs from ToolTip(): the first 64 characters of text + zero
  // character go into the record and the shell is told (tip flag only).
  void SetToolTip(const std::string& text);
  int32_t IconHandle() const { return record_.hIcon; }
  void SetIconHandle(int32_t handle);

  // The first call reuses menu item 0; later ones load an item after the last.
  // Returns the item's index.
  int32_t AddMenuItem(const std::string& caption, const std::string& key, bool is_default);
  void EnableMenuItem(int32_t index, bool enabled);
  void SetMenuCaption(int32_t index, const std::string& caption);
  // Unloads the item; item 0, which cannot be unloaded, is hidden and becomes free
  // for the next AddMenuItem.
  void RemoveMenuItem(int32_t index);
  int32_t DefaultMenuIndex() const { return default_index_; }
  void SetDefaultMenuIndex(int32_t index) { default_index_ = index; }
  // Pops the menu up at the cursor, the default item in bold unless the index is negative.
  void ShowMenu();
  // The key an item was added with.
  const std::string& MenuKey(int32_t index) const;
  bool HasMenuItem(int32_t index) const { return items_.count(index) != 0; }

  // Form unload: deletes the icon. Later calls do nothing.
  void Unload();
  bool Loaded() const { return loaded_; }

  // Input from the view.
  void Form_MouseMove(float x);
  void mnuSysTray_Click(int32_t index);

  const NotifyIconData& Record() const { return record_; }

  Event<int32_t> SysTrayMouseDown;  // button
  Event<int32_t> SysTrayMouseUp;    // button
  Event<> SysTrayMouseMove;
  Event<int32_t> SysTrayDoubleClick;             // button
  Event<int32_t, const std::string&> MenuClick;  // index, key

 private:
  void Modify(uint32_t flags);

  std::unique_ptr<TrayView> view_;
  Shell& shell_;
  NotifyIconData record_;
  bool loaded_ = false;
  bool element0_used_ = false;
  std::map<int32_t, std::string> items_;  // loaded (or used) items and their keys
  int32_t default_index_ = -1;
  Connection mouse_move_;
  Connection menu_click_;
};

}  // namespace zintra
