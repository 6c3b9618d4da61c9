// frmOptionalMsgBox: an informational message with a "do not show again" check box
// and one button. Owns its view; the caller reads the check box after Display returns
// and then releases the form (unload).
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "src/core/event.h"
#include "src/host/dialog_views.h"

namespace zintra {

class frmOptionalMsgBox {
 public:
  // `dialog`: the caller's dialog number, handed to the view with the content.
  explicit frmOptionalMsgBox(std::unique_ptr<OptionalMsgBoxView> view, int32_t dialog = 0);
  frmOptionalMsgBox(const frmOptionalMsgBox&) = delete;
  frmOptionalMsgBox& operator=(const frmOptionalMsgBox&) = delete;

  // Fills the form and shows it modally (over `OwnerForm` when not 0); returns when
  // the form is hidden. With `bring_to_front` (the add-in's debug mode) the window is
  // brought to the front first.
  void Display(const std::string& Message, const std::string& Caption,
               const std::string& chkDontShowCaption, const std::string& cmdOKCaption,
               bool HideOptDefault, WindowHandle OwnerForm, bool bring_to_front);

  // 1 when the check box was left ticked, else 0.
  int32_t chkDontShow() const { return view_->chkDontShowValue(); }
  // What Display put into the controls.
  const OptionalMsgBoxContent& content() const { return content_; }

 private:
  void cmdOk_Click();

  std::unique_ptr<OptionalMsgBoxView> view_;
  int32_t dialog_;
  OptionalMsgBoxContent content_;
  Connection cmd_ok_click_;
};

}  // namespace zintra
