#include "win32/ports/win32_window_manager.h"

#include "win32/com/windows_api.h"
#include "win32/ports/handles.h"

namespace zintra::win32 {

bool Win32WindowManager::SetWindowPos(WindowHandle hwnd, WindowHandle insert_after, int32_t x,
                                      int32_t y, int32_t cx, int32_t cy, uint32_t flags) {
  // kHwndTopmost (-1) is HWND_TOPMOST once sign-extended.
  return ::SetWindowPos(ToHwnd(hwnd), ToHwnd(insert_after), x, y, cx, cy, flags) != FALSE;
}

}  // namespace zintra::win32
