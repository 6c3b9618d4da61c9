// Value: a VB Variant restricted to the kinds the system stores and passes around.
// Value{} is Empty. Conversions follow the run time: a number's text is its decimal
// form, a non-zero number is True, True is -1 as a number, Empty is 0 or "".
// A conversion that cannot succeed throws ZError 13 (type mismatch) or 6 (overflow).
#pragma once

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

namespace zintra {

enum class ValueType {
  kEmpty,
  kBoolean,
  kInteger,
  kLong,
  kDouble,
  kDate,
  kString,
  kStringArray,
  kBinary
};

struct DateTag {
  double serial;
  bool operator==(const DateTag&) const = default;
};

class Value {
 public:
  using Binary = std::vector<uint8_t>;
  using StringArray = std::vector<std::string>;

  Value() = default;
  Value(bool b) : data_(b) {}
  Value(int16_t i) : data_(i) {}
  Value(int32_t i) : data_(i) {}
  Value(double d) : data_(d) {}
  Value(std::string s) : data_(std::move(s)) {}
  Value(const char* s) : data_(std::string(s)) {}
  Value(StringArray a) : data_(std::move(a)) {}
  Value(Binary b) : data_(std::move(b)) {}
  static Value Date(double serial) {
    Value v;
    v.data_ = DateTag{serial};
    return v;
  }

  ValueType Type() const { return static_cast<ValueType>(data_.index()); }
  bool IsEmpty() const { return Type() == ValueType::kEmpty; }
  bool IsNumeric() const;  // Boolean, Integer, Long, Double, Date

  std::string ToString() const;  // CStr
  int32_t ToLong() const;        // CLng: banker's rounding, overflow 6
  int16_t ToInteger() const;     // CInt
  double ToDouble() const;       // CDbl
  bool ToBool() const;           // CBool: non-zero is True; "True"/"False" or a number
  double ToDate() const;         // the serial
  const StringArray& ToStringArray() const;
  const Binary& ToBinary() const;

  bool operator==(const Value& other) const = default;

 private:
  std::variant<std::monostate, bool, int16_t, int32_t, double, DateTag, std::string, StringArray,
               Binary>
      data_;
};

}  // namespace zintra
