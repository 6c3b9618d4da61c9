#include "win32/ports/modal_dialog.h"

#include <utility>

#include "win32/ports/failure_log.h"

namespace zintra::win32 {

ModalDialog::ModalDialog(std::function<void()> on_ok)
    : on_ok_(std::move(on_ok)),
      window_(
          [this](UINT message, WPARAM wparam, LPARAM, LRESULT* result) {
            if (message == WM_COMMAND && LOWORD(wparam) == IDOK) {
              // A copy: the handler may release the view, and this dialog with it.
              if (const auto ok_handler = on_ok_) ok_handler();
              *result = 0;
              return true;
            }
            if ((message == WM_COMMAND && LOWORD(wparam) == IDCANCEL) || message == WM_CLOSE) {
              Hide();
              *result = 0;
              return true;
            }
            return false;
          },
          MessageWindow::Kind::kDialog) {}

ModalDialog::~ModalDialog() { *running_ = false; }

void ModalDialog::SetClientSize(int width, int height) {
  RECT frame{0, 0, width, height};
  AdjustWindowRectEx(&frame, static_cast<DWORD>(GetWindowLongPtrA(hwnd(), GWL_STYLE)), FALSE,
                     static_cast<DWORD>(GetWindowLongPtrA(hwnd(), GWL_EXSTYLE)));
  SetWindowPos(hwnd(), nullptr, 0, 0, frame.right - frame.left, frame.bottom - frame.top,
               SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void ModalDialog::Center(HWND owner) {
  RECT area{};
  if (owner == nullptr || !GetWindowRect(owner, &area)) {
    SystemParametersInfoA(SPI_GETWORKAREA, 0, &area, 0);
  }
  RECT own{};
  GetWindowRect(hwnd(), &own);
  const int width = own.right - own.left, height = own.bottom - own.top;
  SetWindowPos(hwnd(), nullptr, area.left + (area.right - area.left - width) / 2,
               area.top + (area.bottom - area.top - height) / 2, 0, 0,
               SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void ModalDialog::Hide() {
  *running_ = false;
  ShowWindow(hwnd(), SW_HIDE);
  PostMessageA(hwnd(), WM_NULL, 0, 0);  // wakes the loop
}

void ModalDialog::ShowModal(HWND owner) {
  if (*running_) return;
  std::shared_ptr<bool> running = running_;
  *running = true;
  const HWND dialog = hwnd();
  SetWindowLongPtrA(dialog, GWLP_HWNDPARENT, reinterpret_cast<LONG_PTR>(owner));
  Center(owner);
  const bool disable_owner = owner != nullptr && IsWindowEnabled(owner);
  if (disable_owner) EnableWindow(owner, FALSE);
  ShowWindow(dialog, SW_SHOW);
  MSG msg{};
  while (*running) {
    const BOOL got = GetMessageA(&msg, nullptr, 0, 0);
    if (got == 0) {
      PostQuitMessage(static_cast<int>(msg.wParam));
      break;
    }
    if (got == -1) {
      ReportFailure("Dialog", "GetMessage failed with error " + std::to_string(GetLastError()));
      break;
    }
    // The dialog may be gone (its owner released it from a handler): plain dispatch then.
    if (!*running || !IsWindow(dialog) || !IsDialogMessageA(dialog, &msg)) {
      TranslateMessage(&msg);
      DispatchMessageA(&msg);
    }
  }
  *running = false;
  if (disable_owner) {
    EnableWindow(owner, TRUE);
    SetActiveWindow(owner);
  }
}

}  // namespace zintra::win32
