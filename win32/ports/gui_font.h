// The font of the forms' controls: the system's message font, created once per process
// and released when the module unloads. Never null (falls back to the stock GUI font).
#pragma once

#include "win32/com/windows_api.h"

namespace zintra::win32 {

HFONT GuiFont();

// Creates a child control of `parent` in the forms' font; throws ZError on failure.
HWND CreateControl(HWND parent, const char* window_class, const char* text, DWORD style,
                   int control_id);

// Twips per screen pixel along X (15 at 96 dpi), as forms measure themselves.
float TwipsPerPixelX();

}  // namespace zintra::win32
