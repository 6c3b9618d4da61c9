#include "sim/outlook/property_bag.h"

#include "src/core/z_error.h"
#include "src/host/mapi_object.h"

namespace zintra::sim {

namespace {

bool IsText(uint16_t type) { return type == kPtString8 || type == kPtUnicode; }

bool Compatible(uint16_t stored, uint16_t wanted) {
  return wanted == kPtUnspecified || stored == wanted || (IsText(stored) && IsText(wanted));
}

}  // namespace

const Property* PropertyBag::Find(uint16_t id) const {
  for (const Property& p : props_) {
    if (p.id == id) return &p;
  }
  return nullptr;
}

const Value* PropertyBag::Get(int32_t tag) const {
  const Property* p = Find(PropId(tag));
  if (p == nullptr || !Compatible(p->type, PropType(tag))) return nullptr;
  return &p->value;
}

Value PropertyBag::Coerce(uint16_t type, const Value& value) {
  switch (type) {
    case kPtString8:
    case kPtUnicode:
      return Value(value.ToString());
    case kPtLong:
      return Value(value.ToLong());
    case kPtDouble:
      return Value(value.ToDouble());
    case kPtBoolean:
      return Value(value.ToBool());
    case kPtSystime:
      return Value::Date(value.ToDate());
    case kPtMvString8:
      if (value.Type() == ValueType::kStringArray) return value;
      if (value.IsEmpty()) return Value(Value::StringArray{});
      throw ZError(kErrTypeMismatch);
    case kPtBinary:
      if (value.Type() == ValueType::kBinary) return value;
      throw ZError(kErrTypeMismatch);
    default:
      return value;
  }
}

void PropertyBag::Set(int32_t tag, const Value& value) {
  uint16_t id = PropId(tag);
  uint16_t type = PropType(tag);
  Value stored = Coerce(type, value);
  for (Property& p : props_) {
    if (p.id == id) {
      p.type = type;
      p.value = std::move(stored);
      return;
    }
  }
  props_.push_back(Property{id, type, std::move(stored)});
}

bool PropertyBag::Remove(uint16_t id) {
  for (auto it = props_.begin(); it != props_.end(); ++it) {
    if (it->id == id) {
      props_.erase(it);
      return true;
    }
  }
  return false;
}

}  // namespace zintra::sim
