#include "src/ui/frm_sys_tray.h"

#include <cmath>
#include <utility>

#include "src/core/z_error.h"

namespace zintra {

frmSysTray::frmSysTray(std::unique_ptr<TrayView> view, Shell& shell, const std::string& tip,
                       int32_t icon)
    : view_(std::move(view)), shell_(shell) {
  record_.cbSize = NotifyIconData::kRecordSize;
  record_.hWnd = view_->hWnd();
  record_.uID = kSysTrayIconId;
  record_.uFlags = kNifMessage | kNifIcon | kNifTip;
  record_.uCallbackMessage = kWmMouseMove;
  record_.hIcon = icon;
  record_.szTip.fill(' ');
  const std::string with_zero = tip + '\0';
  for (size_t i = 0; i < record_.szTip.size() && i < with_zero.size(); ++i) {
    record_.szTip[i] = with_zero[i];
  }
  shell_.NotifyIcon(kNimAdd, record_);
  loaded_ = true;
  mouse_move_ = view_->MouseMove.Connect([this](float x) { Form_MouseMove(x); });
  menu_click_ = view_->Menu().Click.Connect([this](int32_t index) { mnuSysTray_Click(index); });
}

frmSysTray::~frmSysTray() { Unload(); }

void frmSysTray::Unload() {
  if (!loaded_) return;
  loaded_ = false;
  mouse_move_.Disconnect();
  menu_click_.Disconnect();
  shell_.NotifyIcon(kNimDelete, record_);
}

std::string frmSysTray::ToolTip() const {
  std::string tip;
  for (char c : record_.szTip) {
    if (c == '\0') break;
    tip += c;
  }
  return tip;
}

void frmSysTray::SetToolTip(const std::string& text) {
  if (text == ToolTip()) return;
  // The field is fixed-width: text and its zero are cut at 64 characters and the rest
  // is padded with spaces, so a tip of 64 characters or more has no terminating zero.
  record_.szTip.fill(' ');
  const std::string with_zero = text + '\0';
  for (size_t i = 0; i < record_.szTip.size() && i < with_zero.size(); ++i) {
    record_.szTip[i] = with_zero[i];
  }
  Modify(kNifTip);
}

void frmSysTray::SetIconHandle(int32_t handle) {
  if (handle == record_.hIcon) return;
  record_.hIcon = handle;
  Modify(kNifIcon);
}

void frmSysTray::Modify(uint32_t flags) {
  record_.uFlags = flags;
  if (loaded_) shell_.NotifyIcon(kNimModify, record_);
}

int32_t frmSysTray::AddMenuItem(const std::string& caption, const std::string& key,
                                bool is_default) {
  PopupMenu& menu = view_->Menu();
  int32_t index = 0;
  if (element0_used_) {
    index = items_.empty() ? 1 : items_.rbegin()->first + 1;
    menu.LoadItem(index);
  } else {
    element0_used_ = true;
  }
  items_[index] = key;
  menu.SetCaption(index, caption);
  menu.SetVisible(index, true);
  if (is_default) default_index_ = index;
  return index;
}

void frmSysTray::EnableMenuItem(int32_t index, bool enabled) {
  if (!HasMenuItem(index)) throw ZError(kErrNoSuchElement);
  view_->Menu().SetEnabled(index, enabled);
}

void frmSysTray::SetMenuCaption(int32_t index, const std::string& caption) {
  if (!HasMenuItem(index)) throw ZError(kErrNoSuchElement);
  view_->Menu().SetCaption(index, caption);
}

void frmSysTray::RemoveMenuItem(int32_t index) {
  if (!HasMenuItem(index)) throw ZError(kErrNoSuchElement);
  if (index == 0) {
    view_->Menu().SetVisible(0, false);
    element0_used_ = false;
  } else {
    view_->Menu().UnloadItem(index);
  }
  items_.erase(index);
  if (default_index_ == index) default_index_ = -1;
}

const std::string& frmSysTray::MenuKey(int32_t index) const {
  auto it = items_.find(index);
  if (it == items_.end()) throw ZError(kErrNoSuchElement);
  return it->second;
}

void frmSysTray::ShowMenu() { view_->Menu().Popup(default_index_ < 0 ? -1 : default_index_); }

void frmSysTray::Form_MouseMove(float x) {
  const float scale = view_->ScaleXPerPixel();
  if (!(scale > 0)) return;
  const long message = std::lround(x / scale);
  switch (message) {
    case kWmMouseMove:
      SysTrayMouseMove.Raise();
      break;
    case kWmLButtonUp:
      SysTrayMouseDown.Raise(kVbLeftButton);
      break;
    case kWmLButtonDblClk:
      SysTrayDoubleClick.Raise(kVbLeftButton);
      break;
    case kWmRButtonDown:
      SysTrayMouseDown.Raise(kVbRightButton);
      break;
    case kWmRButtonUp:
      SysTrayMouseUp.Raise(kVbRightButton);
      break;
    case kWmRButtonDblClk:
      SysTrayDoubleClick.Raise(kVbRightButton);
      break;
    default:  // 513 (left button down) and anything outside 512-518
      break;
  }
}

void frmSysTray::mnuSysTray_Click(int32_t index) {
  auto it = items_.find(index);
  if (it == items_.end()) return;
  const std::string key = it->second;  // a handler may remove the item
  MenuClick.Raise(index, key);
}

}  // namespace zintra
