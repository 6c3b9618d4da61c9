// Window ports for the small forms the job engine shows (task list, tray icon
// owner, topmost helper). The host draws them; their behaviour lives in src/ui/.
// All calls come from the user-interface thread. Event members are raised by the
// host when the user acts; handlers may destroy the form's owner (the view itself
// stays valid until its owner releases it).
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "src/core/event.h"

namespace zintra {

// A window handle as the 32-bit platform stores it in its records.
using WindowHandle = int32_t;

inline constexpr WindowHandle kHwndTopmost = -1;
inline constexpr uint32_t kSwpNoSize = 0x1;
inline constexpr uint32_t kSwpNoMove = 0x2;
inline constexpr uint32_t kSwpFrameChanged = 0x20;
// Keeps a form where it is and as large as it is while changing its z-order.
inline constexpr uint32_t kSwpKeepOnTopFlags = kSwpNoSize | kSwpNoMove | kSwpFrameChanged;

// Window placement (user32's SetWindowPos). Fails by returning false.
class WindowManager {
 public:
  virtual ~WindowManager() = default;
  virtual bool SetWindowPos(WindowHandle hwnd, WindowHandle insert_after, int32_t x, int32_t y,
                            int32_t cx, int32_t cy, uint32_t flags) = 0;
};

// A plain form: a window that can be shown and hidden.
class FormView {
 public:
  virtual ~FormView() = default;
  virtual WindowHandle hWnd() const = 0;
  virtual bool Visible() const = 0;
  virtual void SetVisible(bool visible) = 0;
  virtual void SetCaption(const std::string& caption) = 0;
};

}  // namespace zintra
