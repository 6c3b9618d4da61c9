#include "win32/ports/win32_message_pump.h"

#include "win32/com/windows_api.h"

namespace zintra::win32 {

void Win32MessagePump::DoEvents() {
  MSG msg{};
  for (int count = 0; count < kMaxMessages; ++count) {
    if (!PeekMessageA(&msg, nullptr, 0, 0, PM_REMOVE)) return;
    if (msg.message == WM_QUIT) {
      PostQuitMessage(static_cast<int>(msg.wParam));
      return;
    }
    TranslateMessage(&msg);
    DispatchMessageA(&msg);
  }
}

}  // namespace zintra::win32
