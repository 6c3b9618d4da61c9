// TypeNameInfo: the smallest ITypeInfo that tells a caller what an object is.
// GetDocumentation(MEMBERID_NIL) gives the interface's name ("MailItem",
// "MAPIFolder"), which is how a late-bound caller's TypeName reads it; every other
// member answers E_NOTIMPL. Reference counted; owns its name.
#pragma once

#include <string>

#include "win32/com/windows_api.h"

namespace zintra::win32 {

// COM objects are destroyed through Release, never through a base pointer.
#ifdef __GNUC__
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"
#endif
class TypeNameInfo final : public ITypeInfo {
 public:
  // A new object with one reference, for the caller.
  static ITypeInfo* Create(const std::string& name);

  STDMETHODIMP QueryInterface(REFIID iid, void** out) override;
  STDMETHODIMP_(ULONG) AddRef() override { return ++refs_; }
  STDMETHODIMP_(ULONG) Release() override;

  STDMETHODIMP GetDocumentation(MEMBERID id, BSTR* name, BSTR* doc, DWORD* help_context,
                                BSTR* help_file) override;
  STDMETHODIMP GetTypeAttr(TYPEATTR**) override { return E_NOTIMPL; }
  STDMETHODIMP GetTypeComp(ITypeComp**) override { return E_NOTIMPL; }
  STDMETHODIMP GetFuncDesc(UINT, FUNCDESC**) override { return E_NOTIMPL; }
  STDMETHODIMP GetVarDesc(UINT, VARDESC**) override { return E_NOTIMPL; }
  STDMETHODIMP GetNames(MEMBERID, BSTR*, UINT, UINT*) override { return E_NOTIMPL; }
  STDMETHODIMP GetRefTypeOfImplType(UINT, HREFTYPE*) override { return E_NOTIMPL; }
  STDMETHODIMP GetImplTypeFlags(UINT, INT*) override { return E_NOTIMPL; }
  STDMETHODIMP GetIDsOfNames(LPOLESTR*, UINT, MEMBERID*) override { return E_NOTIMPL; }
  STDMETHODIMP Invoke(PVOID, MEMBERID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override {
    return E_NOTIMPL;
  }
  STDMETHODIMP GetDllEntry(MEMBERID, INVOKEKIND, BSTR*, BSTR*, WORD*) override { return E_NOTIMPL; }
  STDMETHODIMP GetRefTypeInfo(HREFTYPE, ITypeInfo**) override { return E_NOTIMPL; }
  STDMETHODIMP AddressOfMember(MEMBERID, INVOKEKIND, PVOID*) override { return E_NOTIMPL; }
  STDMETHODIMP CreateInstance(IUnknown*, REFIID, PVOID*) override { return E_NOTIMPL; }
  STDMETHODIMP GetMops(MEMBERID, BSTR*) override { return E_NOTIMPL; }
  STDMETHODIMP GetContainingTypeLib(ITypeLib**, UINT*) override { return E_NOTIMPL; }
  STDMETHODIMP_(void) ReleaseTypeAttr(TYPEATTR*) override {}
  STDMETHODIMP_(void) ReleaseFuncDesc(FUNCDESC*) override {}
  STDMETHODIMP_(void) ReleaseVarDesc(VARDESC*) override {}

 private:
  explicit TypeNameInfo(std::string name) : name_(std::move(name)) {}
  ~TypeNameInfo() = default;
  ULONG refs_ = 1;
  std::string name_;
};
#ifdef __GNUC__
#pragma GCC diagnostic pop
#endif

}  // namespace zintra::win32
