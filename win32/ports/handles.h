// Conversions between the platform's handles and the 32-bit numbers the system's records
// keep (window and icon handles are 32-bit significant on 64-bit Windows too, so the
// round trip through a sign-extended int32 is exact).
#pragma once

#include <cstdint>

#include "src/host/window.h"
#include "win32/com/windows_api.h"

namespace zintra::win32 {

inline WindowHandle ToWindowHandle(HWND hwnd) {
  return static_cast<WindowHandle>(reinterpret_cast<intptr_t>(hwnd));
}
inline HWND ToHwnd(WindowHandle handle) {
  return reinterpret_cast<HWND>(static_cast<intptr_t>(handle));
}
inline int32_t ToIconHandle(HICON icon) {
  return static_cast<int32_t>(reinterpret_cast<intptr_t>(icon));
}
inline HICON ToHicon(int32_t handle) {
  return reinterpret_cast<HICON>(static_cast<intptr_t>(handle));
}

}  // namespace zintra::win32
