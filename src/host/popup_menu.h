// PopupMenu: a form's pop-up menu holding a control array of items numbered from
// 0. Item 0 exists from the start (hidden until used); LoadItem adds the item with
// the next free index, UnloadItem removes one (item 0 cannot be unloaded: hide it).
// Calls naming an item that does not exist throw ZError 340 (control array element
// does not exist). Click is raised with the item's index when the user picks one.
#pragma once

#include <cstdint>
#include <string>

#include "src/core/event.h"

namespace zintra {

inline constexpr int32_t kErrNoSuchElement = 340;

class PopupMenu {
 public:
  virtual ~PopupMenu() = default;
  virtual void LoadItem(int32_t index) = 0;
  virtual void UnloadItem(int32_t index) = 0;
  virtual void SetCaption(int32_t index, const std::string& caption) = 0;
  virtual void SetVisible(int32_t index, bool visible) = 0;
  virtual void SetEnabled(int32_t index, bool enabled) = 0;
  // Pops the menu up at the cursor, tracking the right button; the item
  // `default_index` is shown in bold unless it is negative. Returns when the menu
  // closes (after raising Click for a chosen item).
  virtual void Popup(int32_t default_index) = 0;

  Event<int32_t> Click;
};

}  // namespace zintra
