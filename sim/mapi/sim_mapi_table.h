// SimMapiTable: a folder's contents table over the simulated profile. The position is
// an index into the folder's messages in the order stored, so a table read while the
// folder changes behaves as MAPI's does (rows added go to the end). Fault key: the
// folder record once SetItem was called ("MapiTable.GetRows").
#pragma once

#include <memory>
#include <vector>

#include "sim/outlook/profile.h"
#include "sim/outlook/sim_keys.h"
#include "src/host/mapi_table.h"

namespace zintra::sim {

class SimMapiTable : public MapiTable, public SimKeyed {
 public:
  explicit SimMapiTable(Profile* profile) : profile_(profile) {}
  std::string TypeName() const override { return "TovuMAPITable"; }
  const void* FaultKey() const override {
    return folder_ ? static_cast<const void*>(folder_.get()) : profile_;
  }

  void SetItem(const std::shared_ptr<AutomationObject>& source) override;
  void SetColumns(const std::vector<int32_t>& prop_tags) override;
  std::vector<int32_t> Columns() const override;
  int32_t RowCount() override;
  void GoToFirst() override;
  MapiRows GetRows(int32_t count) override;

 private:
  [[nodiscard]] HostCall Hit(std::string_view member) const;
  Profile* profile_;
  std::shared_ptr<FolderRecord> folder_;
  std::vector<int32_t> columns_{static_cast<int32_t>(0x0FFF0102)};
  size_t position_ = 0;
};

}  // namespace zintra::sim
