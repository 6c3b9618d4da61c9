#include "src/monitoring/insp_mon.h"

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

void InspMon::SetInspector(const std::shared_ptr<zintra::Inspector>& inspector) {
  closed_ = false;
  Unhook();
  if (!inspector) return;
  inspector_ = inspector;
  inspector_close_ = inspector_->CloseEvent.Connect([this] { MyInspector_Close(); });
  HookItem();
}

void InspMon::HookItem() {
  std::shared_ptr<Item> item = inspector_->CurrentItem();
  if (!item || !HasCloseEvent(item->Class())) return;
  item_ = std::move(item);
  item_close_ = item_->CloseEvent.Connect([this](bool& Cancel) { Item_Close(Cancel); });
}

void InspMon::Unhook() {
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
