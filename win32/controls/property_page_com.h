// Outlook's PropertyPage interface, as its type library declares it
// ({0006307E-0000-0000-C000-000000000046}, derived from IDispatch): GetPageInfo at
// DISPID 0x2100, the read-only Dirty at 0x2101, Apply at 0x2102, in this vtable order.
// PropertyPageSite ({0006307F-...}) is called late-bound: OnStatusChange at 0x2100.
#pragma once

#include "win32/com/windows_api.h"

namespace zintra::win32 {

inline constexpr DISPID kDispidGetPageInfo = 0x2100;
inline constexpr DISPID kDispidDirty = 0x2101;
inline constexpr DISPID kDispidApply = 0x2102;
inline constexpr DISPID kDispidOnStatusChange = 0x2100;

inline constexpr IID kIidPropertyPage = {
    0x0006307E, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};
inline constexpr IID kIidPropertyPageSite = {
    0x0006307F, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};

#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"
#endif
struct PropertyPageCom : public IDispatch {
  virtual HRESULT STDMETHODCALLTYPE GetPageInfo(BSTR* HelpFile, LONG* HelpContext) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Dirty(VARIANT_BOOL* Dirty) = 0;
  virtual HRESULT STDMETHODCALLTYPE Apply() = 0;
};
#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif

}  // namespace zintra::win32
