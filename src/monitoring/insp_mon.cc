#include "src/monitoring/insp_mon.h"

#include "src/core/z_error.h"

namespace zintra {

bool InspMon::HasCloseEvent(ItemClass item_class) {
  switch (item_class) {
    case ItemClass::kAppointment:
    case ItemClass::kContact:
    case ItemClass::kDistList:
    case ItemClass::kDocument:
    case ItemClass::kJournal:
    case ItemClass::kMail:
    case ItemClass::kMeeting:
    case ItemClass::kRemote:
    case ItemClass::kPost:
    case ItemClass::kReport:
    case ItemClass::kTask:
    case ItemClass::kTaskRequestAccept:
    case ItemClass::kTaskRequestDecline:
    case ItemClass::kTaskRequest:
    case ItemClass::kTaskRequestUpdate:
      return true;
    default:
      // Notes report no reliable Close; sharing items are not among the watched kinds.
      return false;
  }
}

std::shared_ptr<Subclasser> InspMon::CreateSubclasser(ObjectFactory& objects) {
  return std::dynamic_pointer_cast<Subclasser>(objects.CreateObject(kSubclasserProgId));
}

void InspMon::SetInspector(const std::shared_ptr<zintra::Inspector>& inspector) {
  closed_ = false;
  Unhook();
  if (!inspector) return;
  inspector_ = inspector;
  inspector_close_ = inspector_->CloseEvent.Connect([this] { MyInspector_Close(); });
  HookItem();
}

InspMon::~InspMon() {
  if (note_hwnd_ != 0 && subclasser_) subclasser_->DetachMessage(this, note_hwnd_, kWmShowWindow);
}

void InspMon::HookItem() {
  std::shared_ptr<Item> item = inspector_->CurrentItem();
  if (item && item->Class() == ItemClass::kNote && subclasser_) {
    HookNoteWindow();
    return;
  }
  if (!item || !HasCloseEvent(item->Class())) return;
  item_ = std::move(item);
  item_close_ = item_->CloseEvent.Connect([this](bool& Cancel) { Item_Close(Cancel); });
}

void InspMon::HookNoteWindow() {
  WindowHandle hwnd = 0;
  try {
    hwnd = inspector_->Hwnd();
  } catch (const ZError&) {
    hwnd = 0;
  }
  if (hwnd == 0) throw ZError(kErrInvalidCall, kErrTextNoNoteWindow, "InspMon");
  subclasser_->AttachMessage(this, hwnd, kWmShowWindow);
  note_hwnd_ = hwnd;
}

int32_t InspMon::MsgResponse(WindowHandle /*hwnd*/, int32_t message) {
  return message == kWmShowWindow ? kSubclassPreProcess : kSubclassPostProcess;
}

int32_t InspMon::WindowProc(WindowHandle /*hwnd*/, int32_t message, int32_t wParam,
                            int32_t /*lParam*/) {
  if (message == kWmShowWindow && wParam == 0) CloseNotification();
  return 0;
}

void InspMon::Unhook() {
  if (note_hwnd_ != 0 && subclasser_) subclasser_->DetachMessage(this, note_hwnd_, kWmShowWindow);
  note_hwnd_ = 0;
  item_close_.Disconnect();
  inspector_close_.Disconnect();
  item_.reset();
  inspector_.reset();
}

void InspMon::MyInspector_Close() { CloseNotification(); }

void InspMon::Item_Close(bool& /*Cancel*/) {
  // Never cancels: the monitor only observes the close.
  CloseNotification();
}

void InspMon::CloseNotification() {
  if (closed_) return;
  closed_ = true;
  // A handler may drop the last reference to this monitor.
  std::shared_ptr<InspMon> keep = weak_from_this().lock();
  std::shared_ptr<zintra::Inspector> closing = inspector_;
  InspectorClosed.Raise();
  // A handler that set a new inspector started a new cycle; leave that one alone.
  if (closed_ && inspector_ == closing) Unhook();
}

}  // namespace zintra
