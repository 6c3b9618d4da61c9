#include "sim/shell/sim_views.h"

#include <algorithm>
#include <utility>

#include "src/core/z_error.h"

namespace zintra::sim {

void SimFormView::SetVisible(bool visible) {
  if (visible == visible_) return;
  visible_ = visible;
  visibility_changes_.push_back(visible);
}

void SimTaskListView::AddRow(const std::string& key, const std::string& description, int32_t icon) {
  if (FindRow(key) != nullptr) throw ZError(35602, "Key is not unique in collection");
  rows_.push_back({key, description, icon, 0});
}

void SimTaskListView::SetRowProgress(const std::string& key, int32_t percent) {
  for (auto& row : rows_) {
    if (row.key == key) row.percent = percent;
  }
}

void SimTaskListView::RemoveRow(const std::string& key) {
  rows_.erase(
      std::remove_if(rows_.begin(), rows_.end(), [&](const Row& r) { return r.key == key; }),
      rows_.end());
}

const SimTaskListView::Row* SimTaskListView::FindRow(const std::string& key) const {
  for (const auto& row : rows_) {
    if (row.key == key) return &row;
  }
  return nullptr;
}

SimPopupMenu::Item& SimPopupMenu::At(int32_t index) {
  auto it = items_.find(index);
  if (it == items_.end()) throw ZError(kErrNoSuchElement);
  return it->second;
}

const SimPopupMenu::Item& SimPopupMenu::item(int32_t index) const {
  auto it = items_.find(index);
  if (it == items_.end()) throw ZError(kErrNoSuchElement);
  return it->second;
}

void SimPopupMenu::LoadItem(int32_t index) {
  if (index < 0 || items_.count(index) != 0) throw ZError(360, "Object already loaded");
  items_[index] = Item{};
}

void SimPopupMenu::UnloadItem(int32_t index) {
  At(index);
  if (index == 0) throw ZError(362, "Can't unload controls created at design time");
  items_.erase(index);
}

void SimPopupMenu::SetCaption(int32_t index, const std::string& caption) {
  At(index).caption = caption;
}
void SimPopupMenu::SetVisible(int32_t index, bool visible) { At(index).visible = visible; }
void SimPopupMenu::SetEnabled(int32_t index, bool enabled) { At(index).enabled = enabled; }

void SimPopupMenu::Popup(int32_t default_index) {
  popups_.push_back(default_index);
  auto choice = std::exchange(choice_, std::nullopt);
  if (!choice) return;
  auto it = items_.find(*choice);
  // Only a visible, enabled item can be picked.
  if (it != items_.end() && it->second.visible && it->second.enabled) Click.Raise(*choice);
}

}  // namespace zintra::sim
