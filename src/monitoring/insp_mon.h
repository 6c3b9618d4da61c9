// InspMon: watches one Outlook inspector and raises InspectorClosed exactly once,
// whichever way the inspector closes: its own Close event, the Close event of the
// item it shows (for every item kind that has one), or, for a note (whose window
// reports neither reliably), the hiding of the note's window seen through the
// subclassing service (message 24 with wParam 0). Later close signals of the same
// inspector are ignored. After the handlers of InspectorClosed have run, the monitor
// lets go of the inspector and its item, unless a handler set a new inspector.
//
// Ownership: create with std::make_shared; the monitor keeps itself alive while it
// raises, so a handler may release it. It holds the inspector and its item until it
// unhooks. SetInspector raises the inspector's errors (a closed inspector throws
// kMapiObjectDeleted) to the caller, and for a note whose window handle cannot be had
// (or is 0) the error "Unable to get hWnd for Note window". Without a subclassing
// service (SetSubclasser) a note is watched through the inspector's Close only. The
// service is borrowed; the monitor detaches from it when it unhooks or dies. Called on
// Outlook's thread only.
#pragma once

#include <memory>

#include "src/core/event.h"
#include "src/host/object_factory.h"
#include "src/host/outlook_constants.h"
#include "src/host/outlook_item.h"
#include "src/host/outlook_window.h"
#include "src/host/subclasser.h"

namespace zintra {

inline constexpr char kErrTextNoNoteWindow[] = "Unable to get hWnd for Note window";

class InspMon : public ISubclass, public std::enable_shared_from_this<InspMon> {
 public:
  InspMon() = default;
  ~InspMon() override;
  InspMon(const InspMon&) = delete;
  InspMon& operator=(const InspMon&) = delete;

  // The subclassing service that reports a note window's hiding; set before the
  // inspector. nullptr: notes are watched through the inspector's Close only.
  void SetSubclasser(std::shared_ptr<Subclasser> subclasser) {
    subclasser_ = std::move(subclasser);
  }

  // The subclassing service by its ProgID; nullptr, after logging nothing, when the
  // factory has no such class (the caller logs what the factory raised).
  static std::shared_ptr<Subclasser> CreateSubclasser(ObjectFactory& objects);

  // Inspector (let): clears the closed flag; a non-null inspector is kept and its
  // item hooked. nullptr unhooks.
  void SetInspector(const std::shared_ptr<zintra::Inspector>& inspector);
  // Inspector (get).
  std::shared_ptr<zintra::Inspector> Inspector() const { return inspector_; }
  bool Closed() const { return closed_; }
  // True when the shown item's own Close event is watched as well as the inspector's
  // (false for a note, a kind outside the watched list, or no item).
  bool WatchesItem() const { return item_ != nullptr; }
  // The note window subclassed for message 24 (0 when none).
  WindowHandle NoteWindow() const { return note_hwnd_; }

  // Raised once per inspector.
  Event<> InspectorClosed;

  // The close signals.
  void MyInspector_Close();
  void Item_Close(bool& Cancel);

  // ISubclass: message 24 is answered kSubclassPreProcess; its hiding (wParam 0) is a
  // close signal. Always returns 0.
  int32_t MsgResponse(WindowHandle hwnd, int32_t message) override;
  int32_t WindowProc(WindowHandle hwnd, int32_t message, int32_t wParam, int32_t lParam) override;

  // Whether an item of this kind raises a Close event that the monitor listens to.
  static bool HasCloseEvent(ItemClass item_class);

 private:
  void HookItem();
  void HookNoteWindow();
  void Unhook();
  void CloseNotification();

  std::shared_ptr<zintra::Inspector> inspector_;
  std::shared_ptr<Item> item_;
  Connection inspector_close_;
  Connection item_close_;
  bool closed_ = false;
  std::shared_ptr<Subclasser> subclasser_;
  WindowHandle note_hwnd_ = 0;
};

}  // namespace zintra
