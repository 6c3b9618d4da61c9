// ProductIcon: the icon shown in the notification area, drawn at run time (the product's
// "Z" on blue, at the system's small-icon size) so that the host needs no resource file.
// Owns the icon and destroys it with the object; falls back to the system's application
// icon (shared, never destroyed) when drawing fails.
#pragma once

#include "win32/com/unique_handles.h"
#include "win32/com/windows_api.h"

namespace zintra::win32 {

class ProductIcon {
 public:
  ProductIcon();

  HICON get() const;

 private:
  UniqueHIcon icon_;  // null when drawing failed
};

}  // namespace zintra::win32
