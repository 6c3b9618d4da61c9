#include "win32/ports/win32_tray_view.h"

#include "win32/ports/gui_font.h"
#include "win32/ports/handles.h"

namespace zintra::win32 {

Win32TrayView::Win32TrayView()
    : scale_(TwipsPerPixelX()),
      window_(
          [this](UINT message, WPARAM, LPARAM lparam, LRESULT* result) {
            if (message != WM_MOUSEMOVE) return false;
            MouseMove.Raise(static_cast<float>(LOWORD(lparam)) * scale_);
            *result = 0;
            return true;
          },
          MessageWindow::Kind::kHiddenTopLevel),
      menu_(window_.hwnd()) {}

WindowHandle Win32TrayView::hWnd() const { return ToWindowHandle(window_.hwnd()); }

int32_t Win32TrayView::IconHandle() const { return ToIconHandle(icon_.get()); }

}  // namespace zintra::win32
