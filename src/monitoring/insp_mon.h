// InspMon: watches one Outlook inspector and raises InspectorClosed exactly once,
// whichever way the inspector closes: its own Close event or the Close event of the
// item it shows (for every item kind that has one). Later close signals of the same
// inspector are ignored. After the handlers of InspectorClosed have run, the monitor
// lets go of the inspector and its item, unless a handler set a new inspector.
//
// Ownership: create with std::make_shared; the monitor keeps itself alive while it
// raises, so a handler may release it. It holds the inspector and its item until it
// unhooks. SetInspector raises the inspector's errors (a closed inspector throws
// kMapiObjectDeleted) to the caller. Called on Outlook's thread only.
#pragma once

#include <memory>

#include "src/core/event.h"
#include "src/host/outlook_constants.h"
#include "src/host/outlook_item.h"
#include "src/host/outlook_window.h"

namespace zintra {

class InspMon : public std::enable_shared_from_this<InspMon> {
 public:
  InspMon() = default;
  InspMon(const InspMon&) = delete;
  InspMon& operator=(const InspMon&) = delete;

  // Inspector (let): clears the closed flag; a non-null inspector is kept and its
  // item hooked. nullptr unhooks.
  void SetInspector(const std::shared_ptr<zintra::Inspector>& inspector);
  // Inspector (get).
  std::shared_ptr<zintra::Inspector> Inspector() const { return inspector_; }
  bool Closed() const { return closed_; }
  // True when the shown item's own Close event is watched as well as the inspector's
  // (false for a note, a kind outside the watched list, or no item).
  bool WatchesItem() const { return item_ != nullptr; }

  // Raised once per inspector.
  Event<> InspectorClosed;

  // The close signals.
  void MyInspector_Close();
  void Item_Close(bool& Cancel);

  // Whether an item of this kind raises a Close event that the monitor listens to.
  static bool HasCloseEvent(ItemClass item_class);

 private:
  void HookItem();
  void Unhook();
  void CloseNotification();

  std::shared_ptr<zintra::Inspector> inspector_;
  std::shared_ptr<Item> item_;
  Connection inspector_close_;
  Connection item_close_;
  bool closed_ = false;
};

}  // namespace zintra
