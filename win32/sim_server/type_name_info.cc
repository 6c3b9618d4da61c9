#include "win32/sim_server/type_name_info.h"

#include "win32/com/bstr.h"

namespace zintra::win32 {

ITypeInfo* TypeNameInfo::Create(const std::string& name) { return new TypeNameInfo(name); }

STDMETHODIMP TypeNameInfo::QueryInterface(REFIID iid, void** out) {
  if (!out) return E_POINTER;
  if (IsEqualIID(iid, IID_IUnknown) || IsEqualIID(iid, IID_ITypeInfo)) {
    *out = static_cast<ITypeInfo*>(this);
    AddRef();
    return S_OK;
  }
  *out = nullptr;
  return E_NOINTERFACE;
}

STDMETHODIMP_(ULONG) TypeNameInfo::Release() {
  ULONG left = --refs_;
  if (left == 0) delete this;
  return left;
}

STDMETHODIMP TypeNameInfo::GetDocumentation(MEMBERID id, BSTR* name, BSTR* doc, DWORD* help_context,
                                            BSTR* help_file) {
  if (id != MEMBERID_NIL) return TYPE_E_ELEMENTNOTFOUND;
  if (name) *name = Bstr(name_).Detach();
  if (doc) *doc = nullptr;
  if (help_context) *help_context = 0;
  if (help_file) *help_file = nullptr;
  return S_OK;
}

}  // namespace zintra::win32
