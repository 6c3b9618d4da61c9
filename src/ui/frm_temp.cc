#include "src/ui/frm_temp.h"

#include <utility>

namespace zintra {

frmTemp::frmTemp(std::unique_ptr<FormView> view, WindowManager& windows) : view_(std::move(view)) {
  windows.SetWindowPos(view_->hWnd(), kHwndTopmost, 0, 0, 0, 0, kSwpKeepOnTopFlags);
}

}  // namespace zintra
