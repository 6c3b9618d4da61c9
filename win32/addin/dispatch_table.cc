#include "win32/addin/dispatch_table.h"

#include <cwctype>

namespace zintra::win32 {

namespace {

bool SameName(std::wstring_view a, const wchar_t* b) {
  size_t i = 0;
  for (; i < a.size(); ++i) {
    if (b[i] == L'\0' || std::towlower(a[i]) != std::towlower(b[i])) return false;
  }
  return b[i] == L'\0';
}

}  // namespace

HRESULT DispatchTable::GetIDsOfNames(LPOLESTR* names, UINT count, DISPID* ids) const {
  if (!names || !ids) return E_POINTER;
  if (count == 0) return S_OK;
  HRESULT result = S_OK;
  ids[0] = DISPID_UNKNOWN;
  for (const Member& m : members_) {
    if (names[0] && SameName(m.name, names[0])) ids[0] = m.id;
  }
  if (ids[0] == DISPID_UNKNOWN) result = DISP_E_UNKNOWNNAME;
  for (UINT i = 1; i < count; ++i) {
    ids[i] = DISPID_UNKNOWN;
    result = DISP_E_UNKNOWNNAME;
  }
  return result;
}

const VARIANT* DispatchTable::Args::At(UINT index) const {
  if (index >= Count()) return nullptr;
  const VARIANT* v = &params_->rgvarg[Count() - 1 - index];
  if (v->vt == (VT_BYREF | VT_VARIANT) && v->pvarVal) v = v->pvarVal;
  return v;
}

SAFEARRAY** DispatchTable::Args::ArrayRef(UINT index) const {
  const VARIANT* v = At(index);
  if (!v || (v->vt & VT_ARRAY) == 0 || (v->vt & VT_BYREF) == 0) return nullptr;
  return v->pparray;
}

HRESULT DispatchTable::Args::CheckNoNamedArgs() const {
  return params_ && params_->cNamedArgs > 0 ? DISP_E_NONAMEDARGS : S_OK;
}

}  // namespace zintra::win32
