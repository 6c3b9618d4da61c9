// The MAPI library's table object ("TovuRedemption.TovuMAPITable") over its automation
// object. GetRows reads the library's answer — an array of rows, each an array of
// cells, or a two-dimensional array of rows by columns — into MapiRows; an Error value
// for the whole result, a row or a cell keeps its code.
#pragma once

#include "src/host/mapi_table.h"
#include "win32/outlook/com_adapter.h"

namespace zintra::win32 {

class ComMapiTable final : public MapiTable, public ComAdapter {
 public:
  explicit ComMapiTable(const ComPtr<IDispatch>& o)
      : ComAdapter(DispatchClient(o, "TovuMAPITable")) {}
  std::string TypeName() const override { return "TovuMAPITable"; }
  void SetItem(const std::shared_ptr<AutomationObject>& source) override;
  void SetColumns(const std::vector<int32_t>& prop_tags) override;
  std::vector<int32_t> Columns() const override;
  int32_t RowCount() override { return Long("RowCount"); }
  void GoToFirst() override { client_.Call("GoToFirst"); }
  MapiRows GetRows(int32_t count) override;
};

// The rows in a GetRows answer (exposed for tests).
MapiRows RowsOf(const VARIANT& answer);

}  // namespace zintra::win32
