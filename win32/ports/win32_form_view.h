// Win32FormView: a plain form as a captioned top-level window, created hidden and
// destroyed with the object. Shown without taking the focus from Outlook.
#pragma once

#include <string>

#include "src/host/window.h"
#include "win32/ports/message_window.h"

namespace zintra::win32 {

class Win32FormView : public FormView {
 public:
  explicit Win32FormView(MessageWindow::Kind kind = MessageWindow::Kind::kForm);

  WindowHandle hWnd() const override;
  bool Visible() const override;
  void SetVisible(bool visible) override;
  void SetCaption(const std::string& caption) override;

 private:
  MessageWindow window_;
};

}  // namespace zintra::win32
