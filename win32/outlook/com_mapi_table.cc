#include "win32/outlook/com_mapi_table.h"

#include "win32/com/com_error.h"

namespace zintra::win32 {
namespace {

const VARIANT& Deref(const VARIANT& v) {
  return v.vt == (VT_BYREF | VT_VARIANT) && v.pvarVal ? *v.pvarVal : v;
}

// An array's elements as owned Variants (any element type); one dimension only.
std::vector<Variant> Elements(const VARIANT& in) {
  const VARIANT& v = Deref(in);
  SAFEARRAY* sa = (v.vt & VT_BYREF) ? *v.pparray : v.parray;
  std::vector<Variant> out;
  if (!sa) return out;
  VARTYPE type = static_cast<VARTYPE>(v.vt & VT_TYPEMASK);
  LONG lower = 0, upper = -1;
  SafeArrayGetLBound(sa, 1, &lower);
  SafeArrayGetUBound(sa, 1, &upper);
  for (LONG i = lower; i <= upper; ++i) {
    Variant element;
    if (type == VT_VARIANT) {
      CheckHr(SafeArrayGetElement(sa, &i, element.Get()), "TovuMAPITable.GetRows");
    } else {
      // A typed array: the element lands in the variant's value field.
      CheckHr(SafeArrayGetElement(sa, &i, &element.Get()->lVal), "TovuMAPITable.GetRows");
      element.Get()->vt = type;
    }
    out.push_back(std::move(element));
  }
  return out;
}

MapiCell CellOf(const VARIANT& in) {
  const VARIANT& v = Deref(in);
  if (v.vt == VT_ERROR) return MapiCell{Value{}, v.scode != 0 ? v.scode : kMapiNotFound};
  return MapiCell{ValueOf(v), 0};
}

MapiRows TwoDimensional(SAFEARRAY* sa) {
  MapiRows rows;
  LONG row_low = 0, row_high = -1, col_low = 0, col_high = -1;
  SafeArrayGetLBound(sa, 1, &row_low);
  SafeArrayGetUBound(sa, 1, &row_high);
  SafeArrayGetLBound(sa, 2, &col_low);
  SafeArrayGetUBound(sa, 2, &col_high);
  for (LONG r = row_low; r <= row_high; ++r) {
    MapiRow row;
    for (LONG c = col_low; c <= col_high; ++c) {
      LONG at[2] = {r, c};
      Variant cell;
      CheckHr(SafeArrayGetElement(sa, at, cell.Get()), "TovuMAPITable.GetRows");
      row.cells.push_back(CellOf(*cell.Get()));
    }
    rows.rows.push_back(std::move(row));
  }
  return rows;
}

}  // namespace

MapiRows RowsOf(const VARIANT& in) {
  const VARIANT& v = Deref(in);
  MapiRows rows;
  if (v.vt == VT_ERROR) {
    rows.error = v.scode != 0 ? v.scode : kMapiCallFailed;
    return rows;
  }
  if (v.vt == VT_EMPTY || v.vt == VT_NULL) return rows;
  if (!(v.vt & VT_ARRAY)) throw ZError(kErrTypeMismatch, "Type mismatch: GetRows gave no rows");
  SAFEARRAY* sa = (v.vt & VT_BYREF) ? *v.pparray : v.parray;
  if (!sa) return rows;
  if (SafeArrayGetDim(sa) == 2 && (v.vt & VT_TYPEMASK) == VT_VARIANT) return TwoDimensional(sa);
  for (const Variant& element : Elements(v)) {
    const VARIANT& e = Deref(*element.Get());
    MapiRow row;
    if (e.vt == VT_ERROR) {
      row.error = e.scode != 0 ? e.scode : kMapiCallFailed;
    } else if (e.vt & VT_ARRAY) {
      for (const Variant& cell : Elements(e)) row.cells.push_back(CellOf(*cell.Get()));
    } else {
      row.cells.push_back(CellOf(e));  // a table of one column
    }
    rows.rows.push_back(std::move(row));
  }
  return rows;
}

void ComMapiTable::SetItem(const std::shared_ptr<AutomationObject>& source) {
  client_.Put("Item", ObjectArg(source, "TovuMAPITable.Item"));
}

void ComMapiTable::SetColumns(const std::vector<int32_t>& prop_tags) {
  SAFEARRAY* sa = SafeArrayCreateVector(VT_VARIANT, 0, static_cast<ULONG>(prop_tags.size()));
  if (!sa) throw ZError(7, "Out of memory", "TovuMAPITable.Columns");
  Variant columns;
  columns.Get()->vt = VT_ARRAY | VT_VARIANT;
  columns.Get()->parray = sa;  // owned by `columns` from here on
  for (LONG i = 0; i < static_cast<LONG>(prop_tags.size()); ++i) {
    Variant tag(Value(prop_tags[static_cast<size_t>(i)]));
    CheckHr(SafeArrayPutElement(sa, &i, tag.Get()), "TovuMAPITable.Columns");
  }
  client_.Put("Columns", columns);
}

std::vector<int32_t> ComMapiTable::Columns() const {
  Variant answer = client_.Get("Columns");
  std::vector<int32_t> tags;
  const VARIANT& v = Deref(*answer.Get());
  if (!(v.vt & VT_ARRAY)) {
    if (v.vt != VT_EMPTY && v.vt != VT_NULL) tags.push_back(ValueOf(v).ToLong());
    return tags;
  }
  for (const Variant& tag : Elements(v)) tags.push_back(tag.ToValue().ToLong());
  return tags;
}

MapiRows ComMapiTable::GetRows(int32_t count) {
  Variant answer = client_.Call("GetRows", {Arg(Value(count))});
  return RowsOf(*answer.Get());
}

}  // namespace zintra::win32
