// DispatchTable: the late-bound face of the DLL's own classes: a fixed table of member
// names and DISPIDs for IDispatch::GetIDsOfNames (names compared without regard to
// case, as VB does), and Args, the arguments of one IDispatch::Invoke in the order the
// member declares them (DISPPARAMS holds them last first). The classes have no type
// library: GetTypeInfoCount answers 0.
#pragma once

#include <initializer_list>
#include <string_view>
#include <vector>

#include "win32/com/windows_api.h"

namespace zintra::win32 {

class DispatchTable {
 public:
  struct Member {
    std::wstring_view name;
    DISPID id;
  };

  DispatchTable(std::initializer_list<Member> members) : members_(members) {}

  // IDispatch::GetIDsOfNames: ids[0] for the member, DISPID_UNKNOWN for named
  // arguments (none are supported); DISP_E_UNKNOWNNAME when any name is unknown.
  HRESULT GetIDsOfNames(LPOLESTR* names, UINT count, DISPID* ids) const;

  class Args {
   public:
    explicit Args(const DISPPARAMS* params) : params_(params) {}
    UINT Count() const { return params_ ? params_->cArgs : 0; }
    // Argument `index` (from 0, in declaration order) with a by-reference VARIANT
    // followed; nullptr past the end.
    const VARIANT* At(UINT index) const;
    // The SAFEARRAY** of a by-reference array argument, nullptr otherwise.
    SAFEARRAY** ArrayRef(UINT index) const;
    // Named arguments are not supported: DISP_E_NONAMEDARGS when present.
    HRESULT CheckNoNamedArgs() const;

   private:
    const DISPPARAMS* params_;
  };

 private:
  std::vector<Member> members_;
};

}  // namespace zintra::win32
