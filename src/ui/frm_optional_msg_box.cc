#include "src/ui/frm_optional_msg_box.h"

#include <utility>

namespace zintra {

frmOptionalMsgBox::frmOptionalMsgBox(std::unique_ptr<OptionalMsgBoxView> view, int32_t dialog)
    : view_(std::move(view)),
      dialog_(dialog),
      cmd_ok_click_(view_->cmdOk_Click.Connect([this] { cmdOk_Click(); })) {}

void frmOptionalMsgBox::Display(const std::string& Message, const std::string& Caption,
                                const std::string& chkDontShowCaption,
                                const std::string& cmdOKCaption, bool HideOptDefault,
                                WindowHandle OwnerForm, bool bring_to_front) {
  content_.lblMsg = Message;
  content_.caption = Caption;
  content_.chkDontShow = chkDontShowCaption;
  content_.cmdOk = cmdOKCaption;
  content_.chkDontShow_value = HideOptDefault ? 1 : 0;
  content_.dialog = dialog_;
  view_->Load(content_);
  if (bring_to_front) view_->SetForegroundWindow();
  view_->ShowModal(OwnerForm);
}

// Hiding rather than unloading ends the modal loop but keeps the check box readable.
void frmOptionalMsgBox::cmdOk_Click() { view_->Hide(); }

}  // namespace zintra
