// MapiTable (library kind 3): the contents table of a folder, read in chunks.
// SetItem takes the folder (an Outlook Folder, its Items, or a library folder);
// SetColumns the property tags of the columns, in order. GetRows(n) returns up to n
// rows from the current position and advances it; fewer (or none) at the end.
//
// A cell holds the property's value, or an error code when the message lacks the
// property (kMapiNotFound) or it cannot be read. A row whose message cannot be read at
// all is an error row. When the table itself fails (its folder was deleted, the
// connection died) GetRows returns a result whose error is set and no rows, as the
// library returns an Error value; a call before SetItem throws kMapiInvalidParameter.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "src/core/value.h"
#include "src/host/automation_object.h"

namespace zintra {

struct MapiCell {
  Value value;
  int32_t error = 0;  // non-zero: the cell is an error value
  bool IsError() const { return error != 0; }
};

struct MapiRow {
  std::vector<MapiCell> cells;
  int32_t error = 0;  // non-zero: the whole row is an error value
  bool IsError() const { return error != 0; }
};

struct MapiRows {
  std::vector<MapiRow> rows;
  int32_t error = 0;  // non-zero: the result is an Error value
  bool IsError() const { return error != 0; }
};

class MapiTable : public AutomationObject {
 public:
  virtual void SetItem(const std::shared_ptr<AutomationObject>& source) = 0;
  virtual void SetColumns(const std::vector<int32_t>& prop_tags) = 0;
  virtual std::vector<int32_t> Columns() const = 0;
  virtual int32_t RowCount() = 0;
  virtual void GoToFirst() = 0;
  virtual MapiRows GetRows(int32_t count) = 0;
};

}  // namespace zintra
