#include "src/ui/optional_messages.h"

#include "src/errors/cached_error.h"
#include "src/errors/error_handling.h"
#include "src/resources/string_table.h"
#include "src/settings/reg_settings.h"
#include "src/ui/frm_message.h"
#include "src/ui/frm_optional_msg_box.h"

namespace zintra {
namespace {
constexpr char kOptionalMessagesModule[] = "ZintraUtils";
}  // namespace

OptionalMessages::OptionalMessages(RegSettings& settings, DialogViewFactory& views,
                                   const StringTable& strings, ErrorHandling& errors)
    : settings_(settings), views_(views), strings_(strings), errors_(errors) {}

bool OptionalMessages::OptionalMsgBox(int32_t DialogIdx, const std::string& Message,
                                      const std::string& Caption, WindowHandle OwnerForm) {
  bool suppressed = false;
  try {
    suppressed = settings_.DialogSuppressed(DialogIdx);
  } catch (...) {
    // An unreadable flag counts as not suppressed: the message is shown.
    CachedError rec;
    rec.SetToCurrentException(kOptionalMessagesModule, "OptionalMsgBox");
    rec.Log(errors_);
  }
  if (suppressed) return false;
  try {
    frmOptionalMsgBox form(views_.CreateOptionalMsgBoxView(), DialogIdx);
    form.Display(Message, Caption, strings_.Load(kStringDontShowAgain), strings_.Load(kStringOK),
                 false, OwnerForm, errors_.DebugMode());
    if (form.chkDontShow() == 1) settings_.DialogSuppressed(DialogIdx, true);
  } catch (...) {
    CachedError rec;
    rec.SetToCurrentException(kOptionalMessagesModule, "OptionalMsgBox");
    rec.Log(errors_);
  }
  return true;
}

void OptionalMessages::ShowMessage(const std::string& caption, const std::string& message,
                                   WindowHandle OwnerForm) {
  try {
    frmMessage form(views_.CreateMessageFormView(), strings_.Load(kStringOK));
    form.Initialize(caption, message);
    form.Show(OwnerForm);
  } catch (...) {
    CachedError rec;
    rec.SetToCurrentException("frmMessage", "Show");
    rec.Log(errors_);
  }
}

}  // namespace zintra
