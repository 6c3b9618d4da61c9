#include "win32/ports/win32_form_view.h"

#include "win32/ports/handles.h"

namespace zintra::win32 {

Win32FormView::Win32FormView(MessageWindow::Kind kind)
    : window_([](UINT, WPARAM, LPARAM, LRESULT*) { return false; }, kind) {}

WindowHandle Win32FormView::hWnd() const { return ToWindowHandle(window_.hwnd()); }

bool Win32FormView::Visible() const { return IsWindowVisible(window_.hwnd()) != FALSE; }

void Win32FormView::SetVisible(bool visible) {
  ShowWindow(window_.hwnd(), visible ? SW_SHOWNOACTIVATE : SW_HIDE);
}

void Win32FormView::SetCaption(const std::string& caption) {
  SetWindowTextA(window_.hwnd(), caption.c_str());
}

}  // namespace zintra::win32
