// ModalDialog: a dialog window built in code and shown modally. ShowModal disables the
// owner, shows the window and runs a message loop (with dialog keyboard handling: Enter
// presses OK, Escape closes) until Hide is called (from a handler of OK, or from outside)
// or the user closes the window; then the owner is enabled again. OK (control id IDOK)
// calls `on_ok`; closing does not. A quit request met in the loop ends it and is put back
// for the host's own loop. Exceptions of on_ok are reported and the dialog stays open.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "win32/ports/message_window.h"

namespace zintra::win32 {

class ModalDialog {
 public:
  explicit ModalDialog(std::function<void()> on_ok);
  ~ModalDialog();
  ModalDialog(const ModalDialog&) = delete;
  ModalDialog& operator=(const ModalDialog&) = delete;

  HWND hwnd() const { return window_.hwnd(); }
  void ShowModal(HWND owner);
  void Hide();
  bool Showing() const { return *running_; }
  // Sets the inner size of the window, keeping its frame.
  void SetClientSize(int width, int height);
  // Puts the window in the middle of its owner (or of the screen).
  void Center(HWND owner);

 private:
  std::function<void()> on_ok_;
  // Shared with a running loop, which outlives this object when a handler destroys it.
  std::shared_ptr<bool> running_ = std::make_shared<bool>(false);
  MessageWindow window_;
};

}  // namespace zintra::win32
