// ProductIcon: the icon shown in the notification area, drawn at run time (the product's
// "Z" on blue, at the system's small-icon size) so that the host needs no resource file.
// Owns the icon and destroys it with the object; falls back to the system's application
// icon (shared, never destroyed) when drawing fails.
#pragma once

#include "win32/com/windows_api.h"

namespace zintra::win32 {

class ProductIcon {
 public:
  ProductIcon();
  ~ProductIcon();
  ProductIcon(const ProductIcon&) = delete;
  ProductIcon& operator=(const ProductIcon&) = delete;

  HICON get() const;

 private:
  HICON icon_ = nullptr;  // owned; null when drawing failed
};

}  // namespace zintra::win32
