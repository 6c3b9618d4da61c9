#include "win32/ports/win32_task_list_view.h"

#include <algorithm>

#include "src/core/z_error.h"
#include "win32/ports/gui_font.h"
#include "win32/ports/handles.h"

#include <commctrl.h>

namespace zintra::win32 {
namespace {

constexpr int kAbortId = 101;
constexpr int kMinimizeId = 102;
constexpr int kProgressId = 103;
constexpr int32_t kErrKeyNotUnique = 35602;

// Layout in pixels.
constexpr int kListMargin = 8;
constexpr int kWidth = 380;
constexpr int kRowHeight = 22;
constexpr int kRowBarWidth = 90;
constexpr int kBarHeight = 16;
constexpr int kListButtonHeight = 24;
constexpr int kListButtonWidth = 110;

void EnsureCommonControls() {
  static const bool done = [] {
    INITCOMMONCONTROLSEX controls{sizeof(INITCOMMONCONTROLSEX), ICC_PROGRESS_CLASS};
    return InitCommonControlsEx(&controls) != FALSE;
  }();
  (void)done;
}

}  // namespace

Win32TaskListView::Win32TaskListView()
    : window_([this](UINT message, WPARAM wparam, LPARAM lparam,
                     LRESULT* result) { return OnMessage(message, wparam, lparam, result); },
              MessageWindow::Kind::kForm) {
  EnsureCommonControls();
  SetWindowLongPtrA(window_.hwnd(), GWL_EXSTYLE,
                    GetWindowLongPtrA(window_.hwnd(), GWL_EXSTYLE) | WS_EX_TOOLWINDOW);
  progress_ = CreateControl(window_.hwnd(), PROGRESS_CLASSA, "", 0, kProgressId);
  SendMessageA(progress_, PBM_SETRANGE32, 0, kProgressMax);
  abort_ = CreateControl(window_.hwnd(), "BUTTON", "Abort", BS_PUSHBUTTON | WS_TABSTOP, kAbortId);
  minimize_ = CreateControl(window_.hwnd(), "BUTTON", "_", BS_PUSHBUTTON | WS_TABSTOP, kMinimizeId);
  Layout();
}

WindowHandle Win32TaskListView::hWnd() const { return ToWindowHandle(window_.hwnd()); }

bool Win32TaskListView::Visible() const { return IsWindowVisible(window_.hwnd()) != FALSE; }

void Win32TaskListView::SetVisible(bool visible) {
  ShowWindow(window_.hwnd(), visible ? SW_SHOWNOACTIVATE : SW_HIDE);
}

void Win32TaskListView::SetCaption(const std::string& caption) {
  SetWindowTextA(window_.hwnd(), caption.c_str());
}

void Win32TaskListView::SetAbortCaption(const std::string& caption) {
  SetWindowTextA(abort_, caption.c_str());
}

Win32TaskListView::Row* Win32TaskListView::Find(const std::string& key) {
  auto it = std::find_if(rows_.begin(), rows_.end(), [&](const Row& r) { return r.key == key; });
  return it == rows_.end() ? nullptr : &*it;
}

void Win32TaskListView::AddRow(const std::string& key, const std::string& description,
                               int32_t icon_index) {
  if (Find(key) != nullptr) {
    throw ZError(kErrKeyNotUnique, "Key is not unique in collection", "TaskList");
  }
  rows_.push_back(Row{key, description, icon_index, 0});
  Layout();
}

void Win32TaskListView::SetRowProgress(const std::string& key, int32_t percent) {
  Row* row = Find(key);
  if (row == nullptr) return;
  row->percent = std::clamp(percent, 0, 100);
  InvalidateRect(window_.hwnd(), nullptr, TRUE);
}

void Win32TaskListView::RemoveRow(const std::string& key) {
  const size_t before = rows_.size();
  std::erase_if(rows_, [&](const Row& r) { return r.key == key; });
  if (rows_.size() != before) Layout();
}

void Win32TaskListView::SetProgress(int32_t value) {
  SendMessageA(progress_, PBM_SETPOS, static_cast<WPARAM>(std::clamp(value, 0, kProgressMax)), 0);
}

int32_t Win32TaskListView::Progress() const {
  return static_cast<int32_t>(SendMessageA(progress_, PBM_GETPOS, 0, 0));
}

// Rows on top, then the overall bar, then the buttons; the window fits them.
void Win32TaskListView::Layout() {
  const int rows_bottom = kListMargin + static_cast<int>(rows_.size()) * kRowHeight;
  const int bar_top = rows_bottom + kListMargin;
  const int buttons_top = bar_top + kBarHeight + kListMargin;
  const int inner_width = kWidth - 2 * kListMargin;
  MoveWindow(progress_, kListMargin, bar_top, inner_width, kBarHeight, TRUE);
  MoveWindow(abort_, kWidth - kListMargin - kListButtonWidth, buttons_top, kListButtonWidth,
             kListButtonHeight, TRUE);
  MoveWindow(minimize_, kListMargin, buttons_top, kListButtonHeight + 8, kListButtonHeight, TRUE);
  RECT frame{0, 0, kWidth, buttons_top + kListButtonHeight + kListMargin};
  AdjustWindowRectEx(&frame, static_cast<DWORD>(GetWindowLongPtrA(window_.hwnd(), GWL_STYLE)),
                     FALSE, static_cast<DWORD>(GetWindowLongPtrA(window_.hwnd(), GWL_EXSTYLE)));
  SetWindowPos(window_.hwnd(), nullptr, 0, 0, frame.right - frame.left, frame.bottom - frame.top,
               SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
  InvalidateRect(window_.hwnd(), nullptr, TRUE);
}

void Win32TaskListView::Paint() {
  PAINTSTRUCT paint{};
  HDC dc = BeginPaint(window_.hwnd(), &paint);
  if (dc == nullptr) return;
  HGDIOBJ old_font = SelectObject(dc, GuiFont());
  SetBkMode(dc, TRANSPARENT);
  SetTextColor(dc, GetSysColor(COLOR_BTNTEXT));
  int top = kListMargin;
  for (const Row& row : rows_) {
    RECT text{kListMargin, top, kWidth - 2 * kListMargin - kRowBarWidth, top + kRowHeight};
    DrawTextA(dc, row.description.c_str(), -1, &text,
              DT_SINGLELINE | DT_VCENTER | DT_END_ELLIPSIS | DT_NOPREFIX);
    RECT bar{kWidth - kListMargin - kRowBarWidth, top + 5, kWidth - kListMargin,
             top + kRowHeight - 5};
    FrameRect(dc, &bar, GetSysColorBrush(COLOR_BTNSHADOW));
    RECT filled{bar.left + 1, bar.top + 1,
                bar.left + 1 + (bar.right - bar.left - 2) * row.percent / 100, bar.bottom - 1};
    if (filled.right > filled.left) FillRect(dc, &filled, GetSysColorBrush(COLOR_HIGHLIGHT));
    top += kRowHeight;
  }
  SelectObject(dc, old_font);
  EndPaint(window_.hwnd(), &paint);
}

bool Win32TaskListView::OnMessage(UINT message, WPARAM wparam, LPARAM, LRESULT* result) {
  switch (message) {
    case WM_PAINT:
      Paint();
      *result = 0;
      return true;
    case WM_COMMAND:
      if (HIWORD(wparam) != BN_CLICKED) return false;
      if (LOWORD(wparam) == kAbortId) {
        AbortClick.Raise();
      } else if (LOWORD(wparam) == kMinimizeId) {
        MinimizeClick.Raise();
      } else {
        return false;
      }
      *result = 0;
      return true;
    case WM_CLOSE:
      // No close box: the job engine decides when the list goes away.
      *result = 0;
      return true;
    default:
      return false;
  }
}

}  // namespace zintra::win32
