// Win32MsgBox: MsgBox as user32's MessageBoxA, owned by the thread's active window (so
// it stays in front of Outlook). When the platform cannot show a box at all (no desktop,
// out of resources) the failure is reported and the answer is the one closing the box
// would give: Cancel where there is one, No for Yes/No, Abort for Abort/Retry/Ignore.
#pragma once

#include "src/host/msg_box.h"

namespace zintra::win32 {

class Win32MsgBox : public MsgBox {
 public:
  int32_t Show(const std::string& prompt, int32_t buttons, const std::string& title) override;
};

// The answer of a box with `buttons` that was dismissed without a choice.
int32_t DismissedAnswer(int32_t buttons);

}  // namespace zintra::win32
