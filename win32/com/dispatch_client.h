// DispatchClient: late-bound calls on one IDispatch by member name, as VB's late binding
// makes them. Arguments are Variants in the order the member declares them; a by-reference
// argument is a Variant made with ByRef(target), and the callee's writes land in target.
//
// A member's DISPID is looked up once per (type name, member) and shared by every client
// of that type name: a type name promises one fixed DISPID table, as a dual interface
// does. A client without a type name caches per client only.
//
// Failures throw ZError through ThrowComError, with "<TypeName>.<Member>" as the call's
// name: 438 for a member the object lacks, the server's own number for an error it raised.
// Calling any member on a client without an object throws 91.
#pragma once

#include <initializer_list>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "src/core/value.h"
#include "win32/com/com_ptr.h"
#include "win32/com/variant.h"
#include "win32/com/windows_api.h"

namespace zintra::win32 {

// A VT_BYREF | VT_VARIANT argument pointing at `target`; `target` must outlive the call.
Variant ByRef(Variant& target);

class DispatchClient {
 public:
  DispatchClient() = default;
  DispatchClient(ComPtr<IDispatch> object, std::string type_name);

  const ComPtr<IDispatch>& Object() const { return object_; }
  const std::string& TypeName() const { return type_name_; }
  explicit operator bool() const { return static_cast<bool>(object_); }

  // A property read (or a method call with a result): DISPATCH_PROPERTYGET | METHOD.
  Variant Get(std::string_view name, std::vector<Variant> args = {}) const;
  // A method call; its result (Empty for a Sub).
  Variant Call(std::string_view name, std::vector<Variant> args = {}) const;
  // Property assignment (`obj.Name = value`), optionally indexed by `args`.
  void Put(std::string_view name, const Variant& value, std::vector<Variant> args = {}) const;
  // Object assignment (`Set obj.Name = value`).
  void PutRef(std::string_view name, const Variant& value) const;

  // Conveniences over Get for the common result shapes.
  Value GetValue(std::string_view name, std::vector<Variant> args = {}) const {
    return Get(name, std::move(args)).ToValue();
  }
  ComPtr<IDispatch> GetDispatch(std::string_view name, std::vector<Variant> args = {}) const {
    return Get(name, std::move(args)).ToObject();
  }

  // The member's DISPID; throws 438 when the object has no such member.
  DISPID IdOf(std::string_view name) const;
  // True when the object knows the member (GetIDsOfNames succeeds); never throws.
  bool Has(std::string_view name) const;

 private:
  Variant Invoke(std::string_view name, WORD flags, std::vector<Variant>& args,
                 const Variant* assigned) const;
  std::string What(std::string_view name) const;

  ComPtr<IDispatch> object_;
  std::string type_name_;
  mutable std::map<std::string, DISPID, std::less<>> own_ids_;  // when type_name_ is empty
};

// Builds an argument list from C++ values: Value-convertible things and objects.
inline Variant Arg(const Value& v) { return Variant(v); }
inline Variant Arg(const ComPtr<IDispatch>& object) { return Variant(object); }
// An omitted optional argument (VT_ERROR DISP_E_PARAMNOTFOUND), as VB passes one.
Variant Missing();

}  // namespace zintra::win32
