// frmTemp: a small form kept above every other window, used as a parent that
// cannot end up hidden behind Outlook. Owns its view; borrows the window manager.
#pragma once

#include <memory>

#include "src/host/window.h"

namespace zintra {

class frmTemp {
 public:
  // Form load: places the form on top (HWND_TOPMOST, no move, no size).
  frmTemp(std::unique_ptr<FormView> view, WindowManager& windows);
  WindowHandle hWnd() const { return view_->hWnd(); }
  FormView& view() { return *view_; }

 private:
  std::unique_ptr<FormView> view_;
};

}  // namespace zintra
