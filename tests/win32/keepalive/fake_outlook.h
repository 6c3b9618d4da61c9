// FakeOutlook: an Application object that counts the strong connections other
// processes hold on it (IExternalConnection, which COM's stub manager calls as a
// client takes and drops references), the way Outlook knows it may not end yet. It
// can publish itself in the running object table under Outlook.Application's class id,
// as Outlook does. Used on one apartment-threaded thread.
#pragma once

#include "win32/com/windows_api.h"

namespace zintra::win32::testing {

#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"
#endif
class FakeOutlook final : public IDispatch, public IExternalConnection {
 public:
  FakeOutlook() = default;
  // Revokes the publication; the object must have no outside references left.
  ~FakeOutlook();

  // RegisterActiveObject, weakly: the table alone does not hold Outlook open.
  HRESULT Publish();
  void Revoke();
  // Strong connections from other processes now.
  DWORD Held() const { return strong_; }

  STDMETHODIMP QueryInterface(REFIID iid, void** out) override;
  STDMETHODIMP_(ULONG) AddRef() override { return ++refs_; }
  STDMETHODIMP_(ULONG) Release() override { return --refs_; }  // owned by its creator
  STDMETHODIMP GetTypeInfoCount(UINT* count) override;
  STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return DISP_E_BADINDEX; }
  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
    return DISP_E_UNKNOWNNAME;
  }
  STDMETHODIMP Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                      UINT*) override {
    return DISP_E_MEMBERNOTFOUND;
  }
  STDMETHODIMP_(DWORD) AddConnection(DWORD type, DWORD) override;
  STDMETHODIMP_(DWORD) ReleaseConnection(DWORD type, DWORD, BOOL) override;

 private:
  ULONG refs_ = 1;
  DWORD strong_ = 0;
  DWORD cookie_ = 0;
};
#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif

// Outlook.Application, as Outlook's type library declares it.
inline constexpr CLSID kOutlookApplicationClsid = {
    0x0006F03A, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};

}  // namespace zintra::win32::testing
