#include "win32/ports/win32_popup_menu.h"

#include "src/core/z_error.h"
#include "win32/com/unique_handles.h"
#include "win32/ports/failure_log.h"

namespace zintra::win32 {
namespace {

constexpr int32_t kErrObjectAlreadyLoaded = 360;
constexpr int32_t kErrCannotUnload = 362;

}  // namespace

Win32PopupMenu::Win32PopupMenu(HWND owner) : owner_(owner) {
  items_[0] = Item{};  // element 0 of the control array, hidden until used
}

Win32PopupMenu::Item& Win32PopupMenu::Existing(int32_t index) {
  auto it = items_.find(index);
  if (it == items_.end()) {
    throw ZError(kErrNoSuchElement,
                 "Control array element '" + std::to_string(index) + "' doesn't exist",
                 "PopupMenu");
  }
  return it->second;
}

void Win32PopupMenu::LoadItem(int32_t index) {
  if (index < 0 || items_.count(index) != 0) {
    throw ZError(kErrObjectAlreadyLoaded, "Object already loaded", "PopupMenu");
  }
  items_[index] = Item{};
}

void Win32PopupMenu::UnloadItem(int32_t index) {
  Existing(index);
  if (index == 0) {
    throw ZError(kErrCannotUnload, "Can't unload controls created at design time", "PopupMenu");
  }
  items_.erase(index);
}

void Win32PopupMenu::SetCaption(int32_t index, const std::string& caption) {
  Existing(index).caption = caption;
}

void Win32PopupMenu::SetVisible(int32_t index, bool visible) { Existing(index).visible = visible; }

void Win32PopupMenu::SetEnabled(int32_t index, bool enabled) { Existing(index).enabled = enabled; }

HMENU Win32PopupMenu::Build(int32_t default_index) const {
  HMENU menu = CreatePopupMenu();
  if (menu == nullptr) return nullptr;
  for (const auto& [index, item] : items_) {
    if (!item.visible) continue;
    const UINT id = static_cast<UINT>(index + 1);
    if (item.caption == "-") {
      AppendMenuA(menu, MF_SEPARATOR, 0, nullptr);
      continue;
    }
    AppendMenuA(menu, MF_STRING | (item.enabled ? MF_ENABLED : MF_GRAYED), id,
                item.caption.c_str());
  }
  if (default_index >= 0 && items_.count(default_index) != 0 && items_.at(default_index).visible) {
    SetMenuDefaultItem(menu, static_cast<UINT>(default_index + 1), FALSE);
  }
  return menu;
}

void Win32PopupMenu::Popup(int32_t default_index) {
  UniqueHMenu menu(Build(default_index));
  if (menu.get() == nullptr) {
    ReportFailure("PopupMenu",
                  "CreatePopupMenu failed with error " + std::to_string(GetLastError()));
    return;
  }
  POINT at{};
  GetCursorPos(&at);
  // Without the owner in the foreground the menu would stay open after a click elsewhere.
  SetForegroundWindow(owner_);
  const int chosen = static_cast<int>(TrackPopupMenu(
      menu.get(), TPM_RIGHTBUTTON | TPM_RETURNCMD | TPM_NONOTIFY, at.x, at.y, 0, owner_, nullptr));
  // Lets the owner's thread switch away properly after a tray menu.
  PostMessageA(owner_, WM_NULL, 0, 0);
  if (chosen > 0 && items_.count(chosen - 1) != 0) Click.Raise(chosen - 1);
}

}  // namespace zintra::win32
