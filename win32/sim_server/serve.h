// Serve: the automation object that shows a simulated object to a COM caller, with
// Outlook's member names (and the MAPI library's, as the host ports name them) and
// its events on connection points. Each call makes a new DispatchObject over the
// same simulated object, as Outlook hands out new wrappers; the simulated object
// lives as long as any wrapper does. nullptr is served as Nothing; a ForeignObject
// (something the caller handed in) as its own IDispatch.
//
// Values: texts as BSTR, numbers as Long, dates as VT_DATE, Booleans as VT_BOOL,
// binary as an array of bytes. A MAPI table's rows (GetRows) are an array of rows,
// each an array of cells; a cell or row the library cannot read, and a failed
// result, is VT_ERROR with the MAPI error code.
#pragma once

#include <memory>

#include "src/host/automation_object.h"
#include "win32/com/com_ptr.h"
#include "win32/com/variant.h"

namespace zintra::win32 {

ComPtr<IDispatch> Serve(const std::shared_ptr<AutomationObject>& object);
inline Variant ServeVariant(const std::shared_ptr<AutomationObject>& object) {
  return Variant(Serve(object));
}

}  // namespace zintra::win32
