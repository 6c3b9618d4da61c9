// Win32WindowManager: window placement through user32's SetWindowPos.
#pragma once

#include "src/host/window.h"

namespace zintra::win32 {

class Win32WindowManager : public WindowManager {
 public:
  bool SetWindowPos(WindowHandle hwnd, WindowHandle insert_after, int32_t x, int32_t y, int32_t cx,
                    int32_t cy, uint32_t flags) override;
};

}  // namespace zintra::win32
