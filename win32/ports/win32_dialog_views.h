// The two small modal forms as dialogs built in code: the optional message box (message,
// "don't show again" check box, OK) and the message form (a label and OK placed where the
// core's layout says). The core fills and places them; these views only draw and report
// OK (cmdOk_Click, raised inside ShowModal). Windows are created hidden and destroyed
// with the view.
#pragma once

#include <memory>

#include "src/host/dialog_views.h"
#include "win32/ports/modal_dialog.h"

namespace zintra::win32 {

class Win32OptionalMsgBoxView : public OptionalMsgBoxView {
 public:
  Win32OptionalMsgBoxView();

  void Load(const OptionalMsgBoxContent& content) override;
  void SetForegroundWindow() override;
  void ShowModal(WindowHandle owner) override;
  void Hide() override;
  int32_t chkDontShowValue() const override;

  HWND hwnd() const { return dialog_.hwnd(); }
  HWND CheckBox() const { return check_; }
  HWND OkButton() const { return ok_; }

 private:
  ModalDialog dialog_;
  HWND label_ = nullptr;
  HWND check_ = nullptr;
  HWND ok_ = nullptr;
};

class Win32MessageFormView : public MessageFormView {
 public:
  Win32MessageFormView();

  ViewSize MeasureText(const std::string& text, int32_t max_width) override;
  void Apply(const MessageFormLayout& layout) override;
  void ShowModal(WindowHandle owner) override;
  void Hide() override;

  HWND hwnd() const { return dialog_.hwnd(); }
  HWND Label() const { return label_; }
  HWND OkButton() const { return ok_; }

 private:
  ModalDialog dialog_;
  HWND label_ = nullptr;
  HWND ok_ = nullptr;
};

class Win32DialogViewFactory : public DialogViewFactory {
 public:
  std::unique_ptr<OptionalMsgBoxView> CreateOptionalMsgBoxView() override;
  std::unique_ptr<MessageFormView> CreateMessageFormView() override;
};

}  // namespace zintra::win32
