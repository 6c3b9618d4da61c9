#include "win32/ports/product_icon.h"

namespace zintra::win32 {

ProductIcon::ProductIcon() {
  const int size = GetSystemMetrics(SM_CXSMICON) > 0 ? GetSystemMetrics(SM_CXSMICON) : 16;
  HDC screen = GetDC(nullptr);
  if (screen == nullptr) return;
  UniqueMemoryDc dc(CreateCompatibleDC(screen));
  UniqueGdiObject color(CreateCompatibleBitmap(screen, size, size));
  UniqueGdiObject mask(CreateBitmap(size, size, 1, 1, nullptr));
  ReleaseDC(nullptr, screen);
  if (!dc || !color || !mask) return;
  // The mask is all black: every pixel of the colour bitmap is shown.
  HGDIOBJ old = SelectObject(dc.get(), mask.get());
  PatBlt(dc.get(), 0, 0, size, size, BLACKNESS);
  SelectObject(dc.get(), color.get());
  UniqueGdiObject blue(CreateSolidBrush(RGB(0x1F, 0x4E, 0x9A)));
  RECT all{0, 0, size, size};
  FillRect(dc.get(), &all, static_cast<HBRUSH>(blue.get()));
  // The "Z": top bar, diagonal, bottom bar.
  UniqueGdiObject pen(CreatePen(PS_SOLID, size >= 24 ? 3 : 2, RGB(0xFF, 0xFF, 0xFF)));
  HGDIOBJ old_pen = SelectObject(dc.get(), pen.get());
  const int lo = size / 4, hi = size - size / 4 - 1;
  POINT z[] = {{lo, lo}, {hi, lo}, {lo, hi}, {hi, hi}};
  Polyline(dc.get(), z, 4);
  SelectObject(dc.get(), old_pen);
  SelectObject(dc.get(), old);
  dc.reset();

  ICONINFO info{};
  info.fIcon = TRUE;
  info.hbmMask = static_cast<HBITMAP>(mask.get());
  info.hbmColor = static_cast<HBITMAP>(color.get());
  icon_.reset(CreateIconIndirect(&info));  // copies the bitmaps
}

HICON ProductIcon::get() const {
  return icon_ ? icon_.get() : LoadIconA(nullptr, reinterpret_cast<LPCSTR>(IDI_APPLICATION));
}

}  // namespace zintra::win32
