// Variant: owns one VARIANT (VariantClear on destruction), and the conversions between
// the core's Value and automation's VARIANT. Objects travel as VT_DISPATCH and are read
// with ObjectOf; a Value never holds one.
#pragma once

#include <utility>

#include "src/core/value.h"
#include "win32/com/com_ptr.h"
#include "win32/com/windows_api.h"

namespace zintra::win32 {

Value ValueOf(const VARIANT& v);
ComPtr<IDispatch> ObjectOf(const VARIANT& v);

class Variant {
 public:
  Variant() { VariantInit(&v_); }
  explicit Variant(const Value& value);
  // VT_DISPATCH holding its own reference; a null object is VT_DISPATCH nullptr (Nothing).
  explicit Variant(const ComPtr<IDispatch>& object);
  Variant(const Variant& other);
  Variant& operator=(const Variant& other);
  Variant(Variant&& other) noexcept;
  Variant& operator=(Variant&& other) noexcept;
  ~Variant() { VariantClear(&v_); }

  // Adopts `v` (the caller's VARIANT is left VT_EMPTY).
  static Variant Take(VARIANT* v);

  VARIANT* Get() { return &v_; }
  const VARIANT* Get() const { return &v_; }
  // For an out-parameter: clears what is held first.
  VARIANT* Put() {
    VariantClear(&v_);
    return &v_;
  }
  VARTYPE Type() const { return v_.vt; }

  Value ToValue() const { return ValueOf(v_); }
  ComPtr<IDispatch> ToObject() const { return ObjectOf(v_); }

 private:
  VARIANT v_;
};

// The Value a VARIANT holds (by-reference variants are followed). Integers of other
// widths become Long where they fit and Double otherwise; VT_NULL and VT_ERROR (a
// missing argument) read as Empty; arrays of strings or variants of strings become a
// string array; arrays of bytes become binary. An object or an array of anything else
// throws ZError 13.
Value ValueOf(const VARIANT& v);
// The object a VARIANT holds: VT_DISPATCH, or VT_UNKNOWN that answers IDispatch; Empty,
// Null and a null object read as nullptr. Anything else throws ZError 13.
ComPtr<IDispatch> ObjectOf(const VARIANT& v);
// Writes `value` into `out` (cleared first).
void ToVariant(const Value& value, VARIANT* out);

}  // namespace zintra::win32
