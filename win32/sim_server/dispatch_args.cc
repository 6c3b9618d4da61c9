#include "win32/sim_server/dispatch_args.h"

#include "src/core/z_error.h"
#include "win32/com/variant.h"
#include "win32/sim_server/dispatch_object.h"

namespace zintra::win32 {
namespace {

[[noreturn]] void NotOptional() { throw ZError(kErrArgumentNotOptional, "Argument not optional"); }

}  // namespace

DispatchArgs::DispatchArgs(const DISPPARAMS* params, bool is_put) : params_(params) {
  count_ = params->cArgs;
  if (is_put && params->cArgs > 0) {
    // The put value is the named DISPID_PROPERTYPUT argument, which COM puts first.
    for (UINT i = 0; i < params->cNamedArgs; ++i) {
      if (params->rgdispidNamedArgs[i] == DISPID_PROPERTYPUT) {
        put_ = &params->rgvarg[i];
        first_ = 1;
        count_ = params->cArgs - 1;
        return;
      }
    }
    // Without the named argument the value is still the last one given.
    put_ = &params->rgvarg[0];
    first_ = 1;
    count_ = params->cArgs - 1;
  }
}

const VARIANT& DispatchArgs::Raw(size_t index) const {
  if (index >= count_) NotOptional();
  return params_->rgvarg[first_ + (count_ - 1 - index)];
}

bool DispatchArgs::Has(size_t index) const {
  if (index >= count_) return false;
  const VARIANT& v = Raw(index);
  return !(v.vt == VT_ERROR && v.scode == DISP_E_PARAMNOTFOUND);
}

Value DispatchArgs::Get(size_t index) const {
  if (!Has(index)) NotOptional();
  return ValueOf(Raw(index));
}

std::string DispatchArgs::Text(size_t index, const std::string& fallback) const {
  return Has(index) ? Get(index).ToString() : fallback;
}

int32_t DispatchArgs::Long(size_t index, int32_t fallback) const {
  return Has(index) ? Get(index).ToLong() : fallback;
}

bool DispatchArgs::Bool(size_t index, bool fallback) const {
  return Has(index) ? Get(index).ToBool() : fallback;
}

std::shared_ptr<AutomationObject> DispatchArgs::Object(size_t index) const {
  if (!Has(index)) return nullptr;
  return ObjectIn(Raw(index));
}

std::shared_ptr<AutomationObject> DispatchArgs::PutObject() const { return ObjectIn(PutValue()); }

Value DispatchArgs::PutAsValue() const { return ValueOf(PutValue()); }

std::shared_ptr<AutomationObject> DispatchArgs::ObjectIn(const VARIANT& v) {
  ComPtr<IDispatch> object = ObjectOf(v);
  if (!object) return nullptr;
  if (auto ours = DispatchObject::TargetOf(object.Get())) return ours;
  return std::make_shared<ForeignObject>(std::move(object));
}

const VARIANT& DispatchArgs::PutValue() const {
  if (!put_) NotOptional();
  return *put_;
}

void DispatchArgs::ThrowMismatch(size_t index) const {
  throw ZError(kErrTypeMismatch,
               "Type mismatch (argument " + std::to_string(index + 1) + " is another object)");
}

}  // namespace zintra::win32
