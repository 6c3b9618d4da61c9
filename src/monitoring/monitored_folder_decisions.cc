// MonitoredFolder: its decisions about the folder and about new items, stated to the
// host's decision log. A host without a log costs one comparison; a property that
// cannot be read leaves its field empty.
#include "src/core/z_error.h"
#include "src/host/outlook_folder.h"
#include "src/host/outlook_item.h"
#include "src/monitoring/monitored_folder.h"
#include "src/monitoring/monitoring_addin.h"

namespace zintra {

void MonitoredFolder::Decide(DecisionKind kind, const std::string& reason,
                             const std::shared_ptr<Item>& item) {
  std::shared_ptr<MonitoringAddin> app = app_.lock();
  if (!app || &app->Decisions() == &NoDecisionLog() || !folder_) return;
  Decision d{.kind = kind, .reason = reason};
  if (kind == DecisionKind::kFolderMonitored) {
    d.reason = IsIncomingFolder_ && IsOutgoingFolder_ ? "incoming and outgoing"
               : IsIncomingFolder_                    ? "incoming"
               : IsOutgoingFolder_                    ? "outgoing"
                                                      : "neither incoming nor outgoing";
  }
  try {
    d.folder_name = folder_->Name();
    d.folder_id = folder_->EntryID();
    d.store_id = folder_->StoreID();
    if (item) {
      d.entry_id = item->EntryID();
      d.subject = item->Class() == ItemClass::kContact ? item->FullName() : item->Subject();
    }
  } catch (const ZError&) {
  }
  app->Decisions().Record(d);
}

}  // namespace zintra
