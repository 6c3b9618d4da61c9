// DispatchArgs: the arguments of one IDispatch::Invoke, in the caller's order (COM
// passes them reversed), with the value of a property put kept apart. Readers convert
// as late binding does; a missing argument that has no default throws 449, an object
// argument of the wrong kind throws 13.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "src/core/value.h"
#include "src/host/automation_object.h"
#include "win32/com/com_ptr.h"
#include "win32/com/windows_api.h"

namespace zintra::win32 {

inline constexpr int32_t kErrArgumentNotOptional = 449;

class DispatchArgs {
 public:
  // Borrows `params` for the call; `is_put` takes the named DISPID_PROPERTYPUT
  // argument as the value being put.
  DispatchArgs(const DISPPARAMS* params, bool is_put);

  size_t Count() const { return count_; }
  // Given and not a skipped optional argument (VT_ERROR DISP_E_PARAMNOTFOUND).
  bool Has(size_t index) const;
  const VARIANT& Raw(size_t index) const;

  Value Get(size_t index) const;
  std::string Text(size_t index) const { return Get(index).ToString(); }
  std::string Text(size_t index, const std::string& fallback) const;
  int32_t Long(size_t index) const { return Get(index).ToLong(); }
  int32_t Long(size_t index, int32_t fallback) const;
  bool Bool(size_t index, bool fallback) const;

  // The object in `v`: ours unwrapped to the simulated object; a foreign IDispatch
  // wrapped (ForeignObject); Nothing as nullptr.
  static std::shared_ptr<AutomationObject> ObjectIn(const VARIANT& v);
  // The object argument: ours unwrapped to the simulated object; a foreign IDispatch
  // wrapped (ForeignObject); Nothing as nullptr.
  std::shared_ptr<AutomationObject> Object(size_t index) const;
  template <typename T>
  std::shared_ptr<T> ObjectAs(size_t index) const {
    auto object = Object(index);
    if (!object) return nullptr;
    auto typed = std::dynamic_pointer_cast<T>(object);
    if (!typed) ThrowMismatch(index);
    return typed;
  }

  // The value of a property put; throws 449 when the call carries none.
  const VARIANT& PutValue() const;
  Value PutAsValue() const;
  // The object being put (Set x.Item = ...), as Object reads arguments.
  std::shared_ptr<AutomationObject> PutObject() const;
  template <typename T>
  std::shared_ptr<T> PutObjectAs() const {
    auto object = PutObject();
    if (!object) return nullptr;
    auto typed = std::dynamic_pointer_cast<T>(object);
    if (!typed) ThrowMismatch(count_);
    return typed;
  }

 private:
  [[noreturn]] void ThrowMismatch(size_t index) const;
  const DISPPARAMS* params_;
  size_t first_ = 0;  // index in rgvarg of the last positional argument
  size_t count_ = 0;
  const VARIANT* put_ = nullptr;
};

// An object the caller handed in that is not one of ours (an options page, a sink):
// kept as its IDispatch so that it can be handed back out unchanged.
class ForeignObject : public AutomationObject {
 public:
  explicit ForeignObject(ComPtr<IDispatch> object) : object_(std::move(object)) {}
  std::string TypeName() const override { return "Object"; }
  const ComPtr<IDispatch>& Dispatch() const { return object_; }

 private:
  ComPtr<IDispatch> object_;
};

}  // namespace zintra::win32
