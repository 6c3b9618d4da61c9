// SimFormFactory: creates the simulated forms' windows with fresh window handles
// and lets a test reach the latest live window of each kind (nullptr once the
// system released it).
#pragma once

#include <memory>

#include "sim/shell/sim_views.h"
#include "src/host/form_factory.h"

namespace zintra::sim {

class SimFormFactory : public FormFactory {
 public:
  SimFormFactory();
  ~SimFormFactory() override;

  std::unique_ptr<TaskListView> CreateTaskListView() override;
  std::unique_ptr<TrayView> CreateTrayView() override;
  std::unique_ptr<FormView> CreateFormView() override;

  SimTaskListView* task_list() const { return registry_->task_list; }
  SimTrayView* tray() const { return registry_->tray; }
  SimFormView* form() const { return registry_->form; }
  int trays_created() const { return registry_->trays_created; }
  void set_tray_icon(int32_t icon) { tray_icon_ = icon; }

  struct Registry {
    SimTaskListView* task_list = nullptr;
    SimTrayView* tray = nullptr;
    SimFormView* form = nullptr;
    int trays_created = 0;
  };

 private:
  std::shared_ptr<Registry> registry_;
  WindowHandle next_hwnd_ = 0x1000;
  int32_t tray_icon_ = 0x7001;
};

}  // namespace zintra::sim
