// Win32Shell: the notification-area icon through shell32's Shell_NotifyIconA. The
// system's record keeps 88 as its size (the 32-bit layout); the call passes the version-1
// size of this target's own structure, so the shell reads the record as the oldest
// shells did. Returns false when the shell refuses (no notification area, no desktop).
#pragma once

#include "src/host/shell.h"

namespace zintra::win32 {

class Win32Shell : public Shell {
 public:
  bool NotifyIcon(uint32_t message, const NotifyIconData& data) override;
};

}  // namespace zintra::win32
