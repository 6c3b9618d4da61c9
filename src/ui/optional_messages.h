// OptionalMessages: the add-in's optional messages (ZintraUtils.OptionalMsgBox). Each
// caller passes its own fixed dialog number; once the user ticks "Do not show this
// message again" under it, that number shows nothing until the suppressions are reset.
// The flag lives in the settings, always per user. Borrows everything it is given.
#pragma once

#include <cstdint>
#include <string>

#include "src/host/dialog_views.h"
#include "src/host/window.h"

namespace zintra {

class ErrorHandling;
class RegSettings;
class StringTable;

inline constexpr int32_t kStringOK = 500;
inline constexpr int32_t kStringDontShowAgain = 504;

class OptionalMessages {
 public:
  OptionalMessages(RegSettings& settings, DialogViewFactory& views, const StringTable& strings,
                   ErrorHandling& errors);

  // Shows `Message` under `Caption` unless dialog `DialogIdx` is suppressed; a tick in
  // the check box suppresses it from then on. Returns whether the message was shown.
  // Never throws: a failure is logged and the message counts as shown.
  bool OptionalMsgBox(int32_t DialogIdx, const std::string& Message, const std::string& Caption,
                      WindowHandle OwnerForm = 0);

  // frmMessage for a longer text: shows it with one OK button.
  void ShowMessage(const std::string& caption, const std::string& message,
                   WindowHandle OwnerForm = 0);

 private:
  RegSettings& settings_;
  DialogViewFactory& views_;
  const StringTable& strings_;
  ErrorHandling& errors_;
};

}  // namespace zintra
