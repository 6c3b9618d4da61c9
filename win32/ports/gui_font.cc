#include "win32/ports/gui_font.h"

#include "win32/com/unique_handles.h"
#include "win32/ports/message_window.h"

namespace zintra::win32 {
namespace {

class FontHolder {
 public:
  FontHolder() {
    NONCLIENTMETRICSA metrics{};
    metrics.cbSize = sizeof(metrics);
    if (SystemParametersInfoA(SPI_GETNONCLIENTMETRICS, sizeof(metrics), &metrics, 0)) {
      font_.reset(CreateFontIndirectA(&metrics.lfMessageFont));
    }
  }

  HFONT get() const {
    return static_cast<HFONT>(font_ ? font_.get() : GetStockObject(DEFAULT_GUI_FONT));
  }

 private:
  UniqueGdiObject font_;
};

}  // namespace

HFONT GuiFont() {
  static FontHolder font;
  return font.get();
}

HWND CreateControl(HWND parent, const char* window_class, const char* text, DWORD style,
                   int control_id) {
  HWND control = CreateWindowExA(0, window_class, text, WS_CHILD | WS_VISIBLE | style, 0, 0, 0, 0,
                                 parent, reinterpret_cast<HMENU>(static_cast<INT_PTR>(control_id)),
                                 ThisModule(), nullptr);
  if (control == nullptr) ThrowLastError("Cannot create a control", "Forms");
  SendMessageA(control, WM_SETFONT, reinterpret_cast<WPARAM>(GuiFont()), FALSE);
  return control;
}

float TwipsPerPixelX() {
  HDC screen = GetDC(nullptr);
  if (screen == nullptr) return 15.0f;
  const int dpi = GetDeviceCaps(screen, LOGPIXELSX);
  ReleaseDC(nullptr, screen);
  return dpi > 0 ? 1440.0f / static_cast<float>(dpi) : 15.0f;
}

}  // namespace zintra::win32
