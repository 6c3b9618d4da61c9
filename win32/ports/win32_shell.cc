#include "win32/ports/win32_shell.h"

#include <algorithm>

#include "win32/com/windows_api.h"
#include "win32/ports/handles.h"

#include <shellapi.h>

namespace zintra::win32 {

bool Win32Shell::NotifyIcon(uint32_t message, const NotifyIconData& data) {
  NOTIFYICONDATAA record{};
  record.cbSize = NOTIFYICONDATAA_V1_SIZE;
  record.hWnd = ToHwnd(data.hWnd);
  record.uID = data.uID;
  record.uFlags = data.uFlags & (NIF_MESSAGE | NIF_ICON | NIF_TIP);
  record.uCallbackMessage = data.uCallbackMessage;
  record.hIcon = ToHicon(data.hIcon);
  // The version-1 tip holds 64 characters with its zero, as the system's record does.
  const size_t tip = std::min<size_t>(NotifyIconData::kTipSize - 1, sizeof(record.szTip) - 1);
  std::copy_n(data.szTip.begin(), tip, record.szTip);
  record.szTip[tip] = '\0';
  return Shell_NotifyIconA(message, &record) != FALSE;
}

}  // namespace zintra::win32
