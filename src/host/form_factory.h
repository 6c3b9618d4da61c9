// FormFactory: creates the windows of the job engine's forms. Each call creates a
// fresh hidden window owned by the caller; releasing it destroys the window.
#pragma once

#include <memory>

#include "src/host/task_list_view.h"
#include "src/host/tray_view.h"
#include "src/host/window.h"

namespace zintra {

class FormFactory {
 public:
  virtual ~FormFactory() = default;
  virtual std::unique_ptr<TaskListView> CreateTaskListView() = 0;
  virtual std::unique_ptr<TrayView> CreateTrayView() = 0;
  virtual std::unique_ptr<FormView> CreateFormView() = 0;
};

}  // namespace zintra
