#include "win32/ports/product_icon.h"

namespace zintra::win32 {
namespace {

// Owns a GDI object (bitmap, brush, pen) until the end of the scope.
class GdiObject {
 public:
  explicit GdiObject(HGDIOBJ object) : object_(object) {}
  ~GdiObject() {
    if (object_ != nullptr) DeleteObject(object_);
  }
  GdiObject(const GdiObject&) = delete;
  GdiObject& operator=(const GdiObject&) = delete;
  HGDIOBJ get() const { return object_; }

 private:
  HGDIOBJ object_;
};

}  // namespace

ProductIcon::ProductIcon() {
  const int size = GetSystemMetrics(SM_CXSMICON) > 0 ? GetSystemMetrics(SM_CXSMICON) : 16;
  HDC screen = GetDC(nullptr);
  if (screen == nullptr) return;
  HDC dc = CreateCompatibleDC(screen);
  GdiObject color(CreateCompatibleBitmap(screen, size, size));
  GdiObject mask(CreateBitmap(size, size, 1, 1, nullptr));
  ReleaseDC(nullptr, screen);
  if (dc == nullptr || color.get() == nullptr || mask.get() == nullptr) {
    if (dc != nullptr) DeleteDC(dc);
    return;
  }
  // The mask is all black: every pixel of the colour bitmap is shown.
  HGDIOBJ old = SelectObject(dc, mask.get());
  PatBlt(dc, 0, 0, size, size, BLACKNESS);
  SelectObject(dc, color.get());
  GdiObject blue(CreateSolidBrush(RGB(0x1F, 0x4E, 0x9A)));
  RECT all{0, 0, size, size};
  FillRect(dc, &all, static_cast<HBRUSH>(blue.get()));
  // The "Z": top bar, diagonal, bottom bar.
  GdiObject pen(CreatePen(PS_SOLID, size >= 24 ? 3 : 2, RGB(0xFF, 0xFF, 0xFF)));
  HGDIOBJ old_pen = SelectObject(dc, pen.get());
  const int lo = size / 4, hi = size - size / 4 - 1;
  POINT z[] = {{lo, lo}, {hi, lo}, {lo, hi}, {hi, hi}};
  Polyline(dc, z, 4);
  SelectObject(dc, old_pen);
  SelectObject(dc, old);
  DeleteDC(dc);

  ICONINFO info{};
  info.fIcon = TRUE;
  info.hbmMask = static_cast<HBITMAP>(mask.get());
  info.hbmColor = static_cast<HBITMAP>(color.get());
  icon_ = CreateIconIndirect(&info);  // copies the bitmaps
}

ProductIcon::~ProductIcon() {
  if (icon_ != nullptr) DestroyIcon(icon_);
}

HICON ProductIcon::get() const {
  return icon_ != nullptr ? icon_ : LoadIconA(nullptr, reinterpret_cast<LPCSTR>(IDI_APPLICATION));
}

}  // namespace zintra::win32
