#include "sim/shell/recording_shell.h"

namespace zintra::sim {

bool RecordingShell::NotifyIcon(uint32_t message, const NotifyIconData& data) {
  calls_.push_back({message, data});
  if (fail_always_) return false;
  if (fail_next_ > 0) {
    --fail_next_;
    return false;
  }
  if (data.cbSize != NotifyIconData::kRecordSize) return false;
  const auto id = std::make_pair(data.hWnd, data.uID);
  auto it = icons_.find(id);
  switch (message) {
    case kNimAdd:
      if (it != icons_.end()) return false;
      icons_[id] = data;
      return true;
    case kNimModify:
      if (it == icons_.end()) return false;
      if (data.uFlags & kNifMessage) it->second.uCallbackMessage = data.uCallbackMessage;
      if (data.uFlags & kNifIcon) it->second.hIcon = data.hIcon;
      if (data.uFlags & kNifTip) it->second.szTip = data.szTip;
      return true;
    case kNimDelete:
      if (it == icons_.end()) return false;
      icons_.erase(it);
      return true;
    default:
      return false;
  }
}

}  // namespace zintra::sim
