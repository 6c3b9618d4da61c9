#include "win32/ports/win32_msg_box.h"

#include "win32/com/windows_api.h"
#include "win32/ports/failure_log.h"

namespace zintra::win32 {

int32_t DismissedAnswer(int32_t buttons) {
  switch (buttons & 0xF) {
    case kMsgBoxOKOnly:
      return kMsgBoxResultOK;
    case kMsgBoxAbortRetryIgnore:
      return kMsgBoxResultAbort;
    case kMsgBoxYesNo:
      return kMsgBoxResultNo;
    default:
      return kMsgBoxResultCancel;
  }
}

int32_t Win32MsgBox::Show(const std::string& prompt, int32_t buttons, const std::string& title) {
  const int answer =
      MessageBoxA(GetActiveWindow(), prompt.c_str(), title.c_str(), static_cast<UINT>(buttons));
  if (answer != 0) return answer;
  ReportFailure("MsgBox",
                "MessageBox failed with error " + std::to_string(GetLastError()) + ": " + prompt);
  return DismissedAnswer(buttons);
}

}  // namespace zintra::win32
