// OptionsPageControl: the COM class ZintraControls.OutlookPropertiesPage, the add-in's
// page in Outlook's Options dialog. An ActiveX control (IOleObject, in-place activation,
// IOleControl, IPersistStreamInit) whose window is an OptionsPageView, and Outlook's
// PropertyPage: Dirty turns True at the user's first edit, which it tells the page site
// (PropertyPageSite.OnStatusChange); Apply checks every field, and on bad input shows
// the message and saves nothing (answering E_FAIL, so Outlook keeps its dialog open);
// otherwise it saves the settings (RegSettings::Save) and asks the running add-in to
// take them. The add-in hands itself over with the late-bound Initialize(AddinApp)
// before Outlook hosts the page: the object it passes answers SettingsSaved (re-read and
// apply the saved settings) and ScanAll(StopWhenFound).
//
// The page site is the client site itself when it answers PropertyPageSite, else the
// Parent of the control's extended control (as a form container gives it). The folders
// offered come from the site's Session. Apartment-threaded: called on Outlook's thread.
#pragma once

#include <memory>

#include "src/resources/string_table.h"
#include "src/settings/reg_settings.h"
#include "win32/addin/dll_module.h"
#include "win32/addin/late_bound_object.h"
#include "win32/com/com_ptr.h"
#include "win32/controls/options_page_view.h"
#include "win32/controls/property_page_com.h"
#include "win32/ports/win32_file_system.h"
#include "win32/ports/win32_platform.h"
#include "win32/ports/win32_registry.h"

namespace zintra::win32 {

// {8126899C-11C0-49FE-BA19-AA4AAB4DAE1B}
inline constexpr CLSID kClsidOptionsPage = {
    0x8126899C, 0x11C0, 0x49FE, {0xBA, 0x19, 0xAA, 0x4A, 0xAB, 0x4D, 0xAE, 0x1B}};
inline constexpr wchar_t kOptionsPageProgIdW[] = L"ZintraControls.OutlookPropertiesPage";

#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"
#endif
class OptionsPageControl final
    : public LateBoundObject<OptionsPageControl, PropertyPageCom, IOleObject, IOleInPlaceObject,
                             IOleInPlaceActiveObject, IOleControl, IPersistStreamInit> {
 public:
  static HRESULT Create(REFIID iid, void** out);

  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* params,
                                   VARIANT* result, EXCEPINFO* excepinfo, UINT* arg_error) override;
  // PropertyPage
  HRESULT STDMETHODCALLTYPE GetPageInfo(BSTR* HelpFile, LONG* HelpContext) override;
  HRESULT STDMETHODCALLTYPE get_Dirty(VARIANT_BOOL* Dirty) override;
  HRESULT STDMETHODCALLTYPE Apply() override;
  // IOleObject
  HRESULT STDMETHODCALLTYPE SetClientSite(IOleClientSite* site) override;
  HRESULT STDMETHODCALLTYPE GetClientSite(IOleClientSite** site) override;
  HRESULT STDMETHODCALLTYPE SetHostNames(LPCOLESTR, LPCOLESTR) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE Close(DWORD) override;
  HRESULT STDMETHODCALLTYPE SetMoniker(DWORD, IMoniker*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetMoniker(DWORD, DWORD, IMoniker**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE InitFromData(IDataObject*, BOOL, DWORD) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetClipboardData(DWORD, IDataObject**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE DoVerb(LONG verb, LPMSG, IOleClientSite* site, LONG, HWND parent,
                                   LPCRECT position) override;
  HRESULT STDMETHODCALLTYPE EnumVerbs(IEnumOLEVERB**) override { return OLEOBJ_E_NOVERBS; }
  HRESULT STDMETHODCALLTYPE Update() override { return S_OK; }
  HRESULT STDMETHODCALLTYPE IsUpToDate() override { return S_OK; }
  HRESULT STDMETHODCALLTYPE GetUserClassID(CLSID* clsid) override;
  HRESULT STDMETHODCALLTYPE GetUserType(DWORD, LPOLESTR*) override { return OLE_S_USEREG; }
  HRESULT STDMETHODCALLTYPE SetExtent(DWORD aspect, SIZEL* size) override;
  HRESULT STDMETHODCALLTYPE GetExtent(DWORD aspect, SIZEL* size) override;
  HRESULT STDMETHODCALLTYPE Advise(IAdviseSink*, DWORD*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Unadvise(DWORD) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE EnumAdvise(IEnumSTATDATA**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetMiscStatus(DWORD, DWORD* status) override;
  HRESULT STDMETHODCALLTYPE SetColorScheme(LOGPALETTE*) override { return E_NOTIMPL; }
  // IOleWindow (both in-place interfaces)
  HRESULT STDMETHODCALLTYPE GetWindow(HWND* window) override;
  HRESULT STDMETHODCALLTYPE ContextSensitiveHelp(BOOL) override { return E_NOTIMPL; }
  // IOleInPlaceObject
  HRESULT STDMETHODCALLTYPE InPlaceDeactivate() override;
  HRESULT STDMETHODCALLTYPE UIDeactivate() override { return S_OK; }
  HRESULT STDMETHODCALLTYPE SetObjectRects(LPCRECT position, LPCRECT) override;
  HRESULT STDMETHODCALLTYPE ReactivateAndUndo() override { return E_NOTIMPL; }
  // IOleInPlaceActiveObject
  HRESULT STDMETHODCALLTYPE TranslateAccelerator(LPMSG message) override;
  HRESULT STDMETHODCALLTYPE OnFrameWindowActivate(BOOL) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE OnDocWindowActivate(BOOL) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE ResizeBorder(LPCRECT, IOleInPlaceUIWindow*, BOOL) override {
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE EnableModeless(BOOL) override { return S_OK; }
  // IOleControl
  HRESULT STDMETHODCALLTYPE GetControlInfo(CONTROLINFO*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE OnMnemonic(MSG*) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE OnAmbientPropertyChange(DISPID) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE FreezeEvents(BOOL) override { return S_OK; }
  // IPersistStreamInit (the page keeps nothing in its container's stream)
  HRESULT STDMETHODCALLTYPE GetClassID(CLSID* clsid) override { return GetUserClassID(clsid); }
  HRESULT STDMETHODCALLTYPE IsDirty() override { return S_FALSE; }
  HRESULT STDMETHODCALLTYPE Load(LPSTREAM) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE Save(LPSTREAM, BOOL) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE GetSizeMax(ULARGE_INTEGER* size) override;
  HRESULT STDMETHODCALLTYPE InitNew() override { return S_OK; }

 private:
  friend LateBoundObject;

  OptionsPageControl();
  ~OptionsPageControl();

  void* OtherInterface(REFIID iid);

  // Creates the view in `parent`; reads the settings and the profile's folders first.
  HRESULT Activate(HWND parent, const RECT& position);
  void Edited();
  void FindPageSite();
  void Message(const std::string& text) const;
  bool Confirm(const std::string& text) const;
  // Asks the add-in (when one handed itself over) to call `member` with `args`.
  void TellAddin(const wchar_t* member, std::vector<VARIANT> args) const;

  ModuleObjectCount count_;
  Win32Registry registry_;
  Win32FileSystem files_;
  Win32Platform platform_;
  StringTable strings_;
  RegSettings settings_;
  std::unique_ptr<OptionsPageView> view_;
  ComPtr<IOleClientSite> client_site_;
  ComPtr<IOleInPlaceSite> in_place_site_;
  ComPtr<IDispatch> page_site_;
  ComPtr<IDispatch> addin_;
  SIZEL extent_{11906, 11112};  // HIMETRIC, about 450 by 420 pixels
  bool dirty_ = false;
};
#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif

}  // namespace zintra::win32
