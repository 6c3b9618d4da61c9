#include "win32/com/variant.h"

#include <cmath>
#include <limits>

#include "src/core/z_error.h"
#include "win32/com/bstr.h"

namespace zintra::win32 {
namespace {

Value Integral(double d) {
  if (d >= std::numeric_limits<int32_t>::min() && d <= std::numeric_limits<int32_t>::max()) {
    return Value(static_cast<int32_t>(d));
  }
  return Value(d);
}

[[noreturn]] void Mismatch(VARTYPE vt) {
  throw ZError(kErrTypeMismatch, "Type mismatch (variant type " + std::to_string(vt) + ")");
}

Value ArrayValue(const VARIANT& v) {
  SAFEARRAY* sa = (v.vt & VT_BYREF) ? *v.pparray : v.parray;
  VARTYPE element = static_cast<VARTYPE>(v.vt & VT_TYPEMASK);
  if (!sa) return Value{};
  if (SafeArrayGetDim(sa) != 1) Mismatch(v.vt);
  LONG lower = 0, upper = -1;
  SafeArrayGetLBound(sa, 1, &lower);
  SafeArrayGetUBound(sa, 1, &upper);
  if (element == VT_UI1 || element == VT_I1) {
    Value::Binary bytes(static_cast<size_t>(upper - lower + 1));
    void* data = nullptr;
    if (!bytes.empty() && SUCCEEDED(SafeArrayAccessData(sa, &data))) {
      memcpy(bytes.data(), data, bytes.size());
      SafeArrayUnaccessData(sa);
    }
    return Value(std::move(bytes));
  }
  Value::StringArray strings;
  for (LONG i = lower; i <= upper; ++i) {
    if (element == VT_BSTR) {
      BSTR b = nullptr;
      SafeArrayGetElement(sa, &i, &b);
      strings.push_back(Bstr::Attach(b).ToUtf8());
    } else if (element == VT_VARIANT) {
      Variant item;
      SafeArrayGetElement(sa, &i, item.Get());
      strings.push_back(item.ToValue().ToString());
    } else {
      Mismatch(v.vt);
    }
  }
  return Value(std::move(strings));
}

}  // namespace

Variant::Variant(const Value& value) {
  VariantInit(&v_);
  ToVariant(value, &v_);
}

Variant::Variant(const ComPtr<IDispatch>& object) {
  VariantInit(&v_);
  v_.vt = VT_DISPATCH;
  v_.pdispVal = object.Get();
  if (v_.pdispVal) v_.pdispVal->AddRef();
}

Variant::Variant(const Variant& other) {
  VariantInit(&v_);
  VariantCopy(&v_, const_cast<VARIANT*>(&other.v_));
}

Variant& Variant::operator=(const Variant& other) {
  if (this != &other) {
    VariantClear(&v_);
    VariantCopy(&v_, const_cast<VARIANT*>(&other.v_));
  }
  return *this;
}

Variant::Variant(Variant&& other) noexcept : v_(other.v_) { VariantInit(&other.v_); }

Variant& Variant::operator=(Variant&& other) noexcept {
  if (this != &other) {
    VariantClear(&v_);
    v_ = other.v_;
    VariantInit(&other.v_);
  }
  return *this;
}

Variant Variant::Take(VARIANT* v) {
  Variant result;
  result.v_ = *v;
  VariantInit(v);
  return result;
}

Value ValueOf(const VARIANT& in) {
  if (in.vt == (VT_BYREF | VT_VARIANT)) return ValueOf(*in.pvarVal);
  if (in.vt & VT_ARRAY) return ArrayValue(in);
  bool ref = (in.vt & VT_BYREF) != 0;
  switch (in.vt & VT_TYPEMASK) {
    case VT_EMPTY:
    case VT_NULL:
    case VT_ERROR:
      return Value{};
    case VT_BOOL:
      return Value((ref ? *in.pboolVal : in.boolVal) != VARIANT_FALSE);
    case VT_I2:
      return Value(static_cast<int16_t>(ref ? *in.piVal : in.iVal));
    case VT_I4:
      return Value(static_cast<int32_t>(ref ? *in.plVal : in.lVal));
    case VT_INT:
      return Value(static_cast<int32_t>(ref ? *in.pintVal : in.intVal));
    case VT_UI1:
      return Value(static_cast<int32_t>(ref ? *in.pbVal : in.bVal));
    case VT_I1:
      return Value(static_cast<int32_t>(ref ? *in.pcVal : in.cVal));
    case VT_UI2:
      return Value(static_cast<int32_t>(ref ? *in.puiVal : in.uiVal));
    case VT_UI4:
      return Integral(static_cast<double>(ref ? *in.pulVal : in.ulVal));
    case VT_UINT:
      return Integral(static_cast<double>(ref ? *in.puintVal : in.uintVal));
    case VT_I8:
      return Integral(static_cast<double>(ref ? *in.pllVal : in.llVal));
    case VT_UI8:
      return Integral(static_cast<double>(ref ? *in.pullVal : in.ullVal));
    case VT_R4:
      return Value(static_cast<double>(ref ? *in.pfltVal : in.fltVal));
    case VT_R8:
      return Value(ref ? *in.pdblVal : in.dblVal);
    case VT_CY:
      return Value(static_cast<double>((ref ? *in.pcyVal : in.cyVal).int64) / 10000.0);
    case VT_DATE:
      return Value::Date(ref ? *in.pdate : in.date);
    case VT_BSTR:
      return Value(Bstr::ToUtf8(ref ? *in.pbstrVal : in.bstrVal));
    default:
      Mismatch(in.vt);
  }
}

ComPtr<IDispatch> ObjectOf(const VARIANT& in) {
  if (in.vt == (VT_BYREF | VT_VARIANT)) return ObjectOf(*in.pvarVal);
  switch (in.vt) {
    case VT_EMPTY:
    case VT_NULL:
      return {};
    case VT_DISPATCH:
      return ComPtr<IDispatch>(in.pdispVal);
    case VT_DISPATCH | VT_BYREF:
      return ComPtr<IDispatch>(*in.ppdispVal);
    case VT_UNKNOWN:
    case VT_UNKNOWN | VT_BYREF: {
      IUnknown* unknown = (in.vt & VT_BYREF) ? *in.ppunkVal : in.punkVal;
      if (!unknown) return {};
      ComPtr<IDispatch> result;
      if (FAILED(unknown->QueryInterface(IID_IDispatch, reinterpret_cast<void**>(result.Put())))) {
        Mismatch(in.vt);
      }
      return result;
    }
    default:
      Mismatch(in.vt);
  }
}

void ToVariant(const Value& value, VARIANT* out) {
  VariantClear(out);
  switch (value.Type()) {
    case ValueType::kEmpty:
      out->vt = VT_EMPTY;
      break;
    case ValueType::kBoolean:
      out->vt = VT_BOOL;
      out->boolVal = value.ToBool() ? VARIANT_TRUE : VARIANT_FALSE;
      break;
    case ValueType::kInteger:
      out->vt = VT_I2;
      out->iVal = value.ToInteger();
      break;
    case ValueType::kLong:
      out->vt = VT_I4;
      out->lVal = value.ToLong();
      break;
    case ValueType::kDouble:
      out->vt = VT_R8;
      out->dblVal = value.ToDouble();
      break;
    case ValueType::kDate:
      out->vt = VT_DATE;
      out->date = value.ToDate();
      break;
    case ValueType::kString:
      out->vt = VT_BSTR;
      out->bstrVal = Bstr(value.ToString()).Detach();
      break;
    case ValueType::kStringArray: {
      const auto& strings = value.ToStringArray();
      SAFEARRAY* sa = SafeArrayCreateVector(VT_BSTR, 0, static_cast<ULONG>(strings.size()));
      for (LONG i = 0; i < static_cast<LONG>(strings.size()); ++i) {
        Bstr b(strings[static_cast<size_t>(i)]);
        SafeArrayPutElement(sa, &i, b.Get());  // copies the string
      }
      out->vt = VT_ARRAY | VT_BSTR;
      out->parray = sa;
      break;
    }
    case ValueType::kBinary: {
      const auto& bytes = value.ToBinary();
      SAFEARRAY* sa = SafeArrayCreateVector(VT_UI1, 0, static_cast<ULONG>(bytes.size()));
      void* data = nullptr;
      if (!bytes.empty() && SUCCEEDED(SafeArrayAccessData(sa, &data))) {
        memcpy(data, bytes.data(), bytes.size());
        SafeArrayUnaccessData(sa);
      }
      out->vt = VT_ARRAY | VT_UI1;
      out->parray = sa;
      break;
    }
  }
}

}  // namespace zintra::win32
