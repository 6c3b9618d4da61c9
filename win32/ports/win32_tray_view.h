// Win32TrayView: the hidden window that owns the notification icon and its pop-up menu.
// The shell reports the icon's mouse messages as the record's callback message (a mouse
// move) with the real mouse message in lParam; the view raises MouseMove with that number
// in twips, as the run time's form reported it. The icon is the product's, drawn at run
// time and destroyed with the view.
#pragma once

#include "src/host/tray_view.h"
#include "win32/ports/message_window.h"
#include "win32/ports/product_icon.h"
#include "win32/ports/win32_popup_menu.h"

namespace zintra::win32 {

class Win32TrayView : public TrayView {
 public:
  Win32TrayView();

  WindowHandle hWnd() const override;
  float ScaleXPerPixel() const override { return scale_; }
  int32_t IconHandle() const override;
  PopupMenu& Menu() override { return menu_; }

 private:
  float scale_;
  ProductIcon icon_;
  MessageWindow window_;
  Win32PopupMenu menu_;
};

}  // namespace zintra::win32
