// TrayView: the hidden form that owns the notification icon. The shell delivers
// the icon's messages to it as mouse moves whose X coordinate, in the form's scale,
// carries the message number; the host raises MouseMove with that X unchanged.
#pragma once

#include <cstdint>

#include "src/core/event.h"
#include "src/host/popup_menu.h"
#include "src/host/window.h"

namespace zintra {

class TrayView {
 public:
  virtual ~TrayView() = default;
  virtual WindowHandle hWnd() const = 0;
  // Form units per screen pixel along X (twips: 15 at 96 dpi).
  virtual float ScaleXPerPixel() const = 0;
  // The form's own icon, shown in the notification area.
  virtual int32_t IconHandle() const = 0;
  virtual PopupMenu& Menu() = 0;

  Event<float> MouseMove;
};

}  // namespace zintra
