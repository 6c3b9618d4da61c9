#include "sim/mapi/sim_mapi_table.h"

#include "sim/outlook/message_props.h"
#include "sim/outlook/sim_item.h"
#include "src/core/z_error.h"
#include "src/host/mapi_object.h"

namespace zintra::sim {

HostCall SimMapiTable::Hit(std::string_view member) const {
  HostCall call = profile_->Faults().Check(member, FaultKey());
  if (!folder_) throw ZError(kMapiInvalidParameter, "The table has no folder");
  return call;
}

void SimMapiTable::SetItem(const std::shared_ptr<AutomationObject>& source) {
  HostCall host_call = profile_->Faults().Check("MapiTable.SetItem", profile_);
  auto folder = FolderRecordOf(source);
  if (!folder) throw ZError(kMapiInvalidParameter, "The table source is not a folder");
  Profile::CheckAlive(*folder);
  folder_ = std::move(folder);
  position_ = 0;
}

void SimMapiTable::SetColumns(const std::vector<int32_t>& prop_tags) {
  HostCall host_call = profile_->Faults().Check("MapiTable.SetColumns", FaultKey());
  if (prop_tags.empty()) throw ZError(kMapiInvalidParameter, "No columns given");
  columns_ = prop_tags;
}

std::vector<int32_t> SimMapiTable::Columns() const { return columns_; }

int32_t SimMapiTable::RowCount() {
  HostCall host_call = Hit("MapiTable.RowCount");
  Profile::CheckAlive(*folder_);
  return static_cast<int32_t>(folder_->messages.size());
}

void SimMapiTable::GoToFirst() {
  HostCall host_call = Hit("MapiTable.GoToFirst");
  position_ = 0;
}

MapiRows SimMapiTable::GetRows(int32_t count) {
  HostCall host_call = Hit("MapiTable.GetRows");
  MapiRows result;
  if (folder_->deleted) {
    result.error = kMapiObjectDeleted;
    return result;
  }
  const auto& messages = folder_->messages;
  while (count-- > 0 && position_ < messages.size()) {
    const MessageRecord& m = *messages[position_++];
    MapiRow row;
    if (m.unreadable) {
      row.error = kMapiCallFailed;
      result.rows.push_back(std::move(row));
      continue;
    }
    row.cells.reserve(columns_.size());
    for (int32_t tag : columns_) {
      Value v = MessageProps::Get(m, tag);
      if (v.IsEmpty()) {
        row.cells.push_back(MapiCell{{}, kMapiNotFound});
      } else {
        row.cells.push_back(MapiCell{std::move(v), 0});
      }
    }
    result.rows.push_back(std::move(row));
  }
  return result;
}

}  // namespace zintra::sim
