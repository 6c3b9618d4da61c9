// Win32FormFactory: the job engine's forms as Win32 windows (hidden until shown), on the
// calling thread. Throws ZError when the platform cannot create a window.
#pragma once

#include "src/host/form_factory.h"

namespace zintra::win32 {

class Win32FormFactory : public FormFactory {
 public:
  std::unique_ptr<TaskListView> CreateTaskListView() override;
  std::unique_ptr<TrayView> CreateTrayView() override;
  std::unique_ptr<FormView> CreateFormView() override;
};

}  // namespace zintra::win32
