#include "src/core/value.h"

#include <cmath>
#include <cstdlib>
#include <limits>

#include "src/core/date.h"
#include "src/core/text.h"
#include "src/core/z_error.h"

namespace zintra {
namespace {

// The text of a Double as VB prints it: up to 15 significant digits, no trailing zeros.
std::string DoubleText(double d) {
  if (d == std::floor(d) && std::fabs(d) < 1e15) {
    return std::to_string(static_cast<long long>(d));
  }
  char buf[64];
  std::snprintf(buf, sizeof buf, "%.15g", d);
  return buf;
}

double ParseNumber(const std::string& s) {
  std::string t = text::Trim(s);
  if (text::EqualsNoCase(t, "True")) return -1;
  if (text::EqualsNoCase(t, "False")) return 0;
  if (t.empty()) throw ZError(kErrTypeMismatch);
  char* end = nullptr;
  double d = std::strtod(t.c_str(), &end);
  if (end == t.c_str() || *end != '\0') throw ZError(kErrTypeMismatch);
  return d;
}

}  // namespace

bool Value::IsNumeric() const {
  switch (Type()) {
    case ValueType::kBoolean:
    case ValueType::kInteger:
    case ValueType::kLong:
    case ValueType::kDouble:
    case ValueType::kDate:
      return true;
    default:
      return false;
  }
}

std::string Value::ToString() const {
  switch (Type()) {
    case ValueType::kEmpty:
      return {};
    case ValueType::kBoolean:
      return std::get<bool>(data_) ? "True" : "False";
    case ValueType::kInteger:
      return std::to_string(std::get<int16_t>(data_));
    case ValueType::kLong:
      return std::to_string(std::get<int32_t>(data_));
    case ValueType::kDouble:
      return DoubleText(std::get<double>(data_));
    case ValueType::kDate:
      return FormatDate(std::get<DateTag>(data_).serial, "General Date");
    case ValueType::kString:
      return std::get<std::string>(data_);
    default:
      throw ZError(kErrTypeMismatch);
  }
}

double Value::ToDouble() const {
  switch (Type()) {
    case ValueType::kEmpty:
      return 0;
    case ValueType::kBoolean:
      return std::get<bool>(data_) ? -1 : 0;
    case ValueType::kInteger:
      return std::get<int16_t>(data_);
    case ValueType::kLong:
      return std::get<int32_t>(data_);
    case ValueType::kDouble:
      return std::get<double>(data_);
    case ValueType::kDate:
      return std::get<DateTag>(data_).serial;
    case ValueType::kString:
      return ParseNumber(std::get<std::string>(data_));
    default:
      throw ZError(kErrTypeMismatch);
  }
}

int32_t Value::ToLong() const {
  double d = std::nearbyint(ToDouble());  // round half to even, as CLng does
  if (!(d >= std::numeric_limits<int32_t>::min() && d <= std::numeric_limits<int32_t>::max())) {
    throw ZError(kErrOverflow);
  }
  return static_cast<int32_t>(d);
}

int16_t Value::ToInteger() const {
  int32_t l = ToLong();
  if (l < std::numeric_limits<int16_t>::min() || l > std::numeric_limits<int16_t>::max()) {
    throw ZError(kErrOverflow);
  }
  return static_cast<int16_t>(l);
}

bool Value::ToBool() const { return ToDouble() != 0; }

double Value::ToDate() const {
  if (Type() == ValueType::kString) throw ZError(kErrTypeMismatch);
  return ToDouble();
}

const Value::StringArray& Value::ToStringArray() const {
  if (Type() != ValueType::kStringArray) throw ZError(kErrTypeMismatch);
  return std::get<StringArray>(data_);
}

const Value::Binary& Value::ToBinary() const {
  if (Type() != ValueType::kBinary) throw ZError(kErrTypeMismatch);
  return std::get<Binary>(data_);
}

}  // namespace zintra
