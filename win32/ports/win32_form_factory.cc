#include "win32/ports/win32_form_factory.h"

#include "win32/ports/win32_form_view.h"
#include "win32/ports/win32_task_list_view.h"
#include "win32/ports/win32_tray_view.h"

namespace zintra::win32 {

std::unique_ptr<TaskListView> Win32FormFactory::CreateTaskListView() {
  return std::make_unique<Win32TaskListView>();
}

std::unique_ptr<TrayView> Win32FormFactory::CreateTrayView() {
  return std::make_unique<Win32TrayView>();
}

std::unique_ptr<FormView> Win32FormFactory::CreateFormView() {
  return std::make_unique<Win32FormView>();
}

}  // namespace zintra::win32
