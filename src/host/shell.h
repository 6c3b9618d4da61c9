// Shell: the notification-area icon call (shell32's Shell_NotifyIconA) with its
// 88-byte ANSI record. NotifyIcon returns false when the shell refuses; it never
// throws. The record is copied by the call.
#pragma once

#include <array>
#include <cstdint>

#include "src/host/window.h"

namespace zintra {

inline constexpr uint32_t kNimAdd = 0;
inline constexpr uint32_t kNimModify = 1;
inline constexpr uint32_t kNimDelete = 2;

inline constexpr uint32_t kNifMessage = 1;
inline constexpr uint32_t kNifIcon = 2;
inline constexpr uint32_t kNifTip = 4;

// NOTIFYICONDATAA as the oldest shells know it: six 32-bit fields, then the tip.
struct NotifyIconData {
  static constexpr size_t kTipSize = 64;
  static constexpr uint32_t kRecordSize = 88;

  uint32_t cbSize = 0;
  WindowHandle hWnd = 0;
  uint32_t uID = 0;
  uint32_t uFlags = 0;
  uint32_t uCallbackMessage = 0;
  int32_t hIcon = 0;
  std::array<char, kTipSize> szTip{};

  // The record as the platform lays it out: little-endian fields, 88 bytes.
  std::array<uint8_t, kRecordSize> Bytes() const {
    std::array<uint8_t, kRecordSize> out{};
    const uint32_t fields[] = {cbSize,           static_cast<uint32_t>(hWnd), uID, uFlags,
                               uCallbackMessage, static_cast<uint32_t>(hIcon)};
    size_t at = 0;
    for (uint32_t field : fields) {
      for (int shift = 0; shift < 32; shift += 8) out[at++] = static_cast<uint8_t>(field >> shift);
    }
    for (char c : szTip) out[at++] = static_cast<uint8_t>(c);
    return out;
  }
};

class Shell {
 public:
  virtual ~Shell() = default;
  virtual bool NotifyIcon(uint32_t message, const NotifyIconData& data) = 0;
};

}  // namespace zintra
