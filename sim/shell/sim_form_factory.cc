#include "sim/shell/sim_form_factory.h"

#include <utility>

namespace zintra::sim {
namespace {

// Clears the factory's pointer when the system releases the window.
template <typename View>
class Tracked : public View {
 public:
  template <typename... Args>
  Tracked(std::shared_ptr<SimFormFactory::Registry> registry, View* SimFormFactory::Registry::*slot,
          Args&&... args)
      : View(std::forward<Args>(args)...), registry_(std::move(registry)), slot_(slot) {
    (*registry_).*slot_ = this;
  }
  ~Tracked() override {
    if ((*registry_).*slot_ == this) (*registry_).*slot_ = nullptr;
  }

 private:
  std::shared_ptr<SimFormFactory::Registry> registry_;
  View* SimFormFactory::Registry::*slot_;
};

}  // namespace

SimFormFactory::SimFormFactory() : registry_(std::make_shared<Registry>()) {}
SimFormFactory::~SimFormFactory() = default;

std::unique_ptr<TaskListView> SimFormFactory::CreateTaskListView() {
  return std::make_unique<Tracked<SimTaskListView>>(registry_, &Registry::task_list, next_hwnd_++);
}

std::unique_ptr<TrayView> SimFormFactory::CreateTrayView() {
  ++registry_->trays_created;
  return std::make_unique<Tracked<SimTrayView>>(registry_, &Registry::tray, next_hwnd_++,
                                                tray_icon_);
}

std::unique_ptr<FormView> SimFormFactory::CreateFormView() {
  return std::make_unique<Tracked<SimFormView>>(registry_, &Registry::form, next_hwnd_++);
}

}  // namespace zintra::sim
