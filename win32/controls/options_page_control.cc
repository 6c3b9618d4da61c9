#include "win32/controls/options_page_control.h"

#include <ocidl.h>
#include <olectl.h>

#include <string>

#include "src/core/z_error.h"
#include "src/settings/mod_registry.h"
#include "win32/addin/dispatch_table.h"
#include "win32/com/bstr.h"
#include "win32/com/com_error.h"
#include "win32/com/dispatch_client.h"
#include "win32/com/unicode.h"
#include "win32/com/variant.h"
#include "win32/controls/profile_folders.h"

namespace zintra::win32 {
namespace {

constexpr DISPID kDispidInitialize = 1;

const DispatchTable& PageControlMembers() {
  static const DispatchTable table{{L"Initialize", kDispidInitialize},
                                   {L"GetPageInfo", kDispidGetPageInfo},
                                   {L"Dirty", kDispidDirty},
                                   {L"Apply", kDispidApply}};
  return table;
}

constexpr int32_t kStrProduct = 2;
constexpr int32_t kStrNotSaved = 2748;

}  // namespace

OptionsPageControl::OptionsPageControl()
    : LateBoundObject(PageControlMembers()),
      strings_(StringTable::ForUserInterface(platform_)),
      settings_(registry_, files_, platform_) {}

OptionsPageControl::~OptionsPageControl() { view_.reset(); }

HRESULT OptionsPageControl::Create(REFIID iid, void** out) {
  auto* control = new OptionsPageControl();
  HRESULT hr = control->QueryInterface(iid, out);
  control->Release();
  return hr;
}

void* OptionsPageControl::OtherInterface(REFIID iid) {
  if (iid == kIidPropertyPage) return static_cast<PropertyPageCom*>(this);
  if (iid == IID_IOleObject) return static_cast<IOleObject*>(this);
  if (iid == IID_IOleInPlaceObject || iid == IID_IOleWindow) {
    return static_cast<IOleInPlaceObject*>(this);
  }
  if (iid == IID_IOleInPlaceActiveObject) return static_cast<IOleInPlaceActiveObject*>(this);
  if (iid == IID_IOleControl) return static_cast<IOleControl*>(this);
  if (iid == IID_IPersistStreamInit || iid == IID_IPersist) {
    return static_cast<IPersistStreamInit*>(this);
  }
  return nullptr;
}

HRESULT OptionsPageControl::Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* params,
                                   VARIANT* result, EXCEPINFO* excepinfo, UINT* /*arg_error*/) {
  return GuardCall("OutlookPropertiesPage.Invoke", excepinfo, [&]() -> HRESULT {
    DispatchTable::Args args(params);
    if (HRESULT hr = args.CheckNoNamedArgs(); FAILED(hr)) return hr;
    switch (id) {
      case kDispidInitialize: {
        if (!(flags & DISPATCH_METHOD)) return DISP_E_MEMBERNOTFOUND;
        const VARIANT* app = args.At(0);
        if (!app) return DISP_E_BADPARAMCOUNT;
        addin_ = ObjectOf(*app);
        return S_OK;
      }
      case kDispidDirty: {
        if (!(flags & DISPATCH_PROPERTYGET)) return DISP_E_MEMBERNOTFOUND;
        if (result) {
          VariantInit(result);
          result->vt = VT_BOOL;
          result->boolVal = dirty_ ? VARIANT_TRUE : VARIANT_FALSE;
        }
        return S_OK;
      }
      case kDispidApply:
        if (!(flags & DISPATCH_METHOD)) return DISP_E_MEMBERNOTFOUND;
        return Apply();
      case kDispidGetPageInfo: {
        // Two by-reference out arguments: no help file, context 0.
        if (!(flags & DISPATCH_METHOD)) return DISP_E_MEMBERNOTFOUND;
        if (args.Count() != 2) return DISP_E_BADPARAMCOUNT;
        for (UINT i = 0; i < 2; ++i) {
          VARIANT* arg = &params->rgvarg[1 - i];
          if (arg->vt == (VT_BSTR | VT_BYREF) && i == 0) {
            SysFreeString(*arg->pbstrVal);
            *arg->pbstrVal = SysAllocString(L"");
          } else if (arg->vt == (VT_I4 | VT_BYREF) && i == 1) {
            *arg->plVal = 0;
          } else if (arg->vt == (VT_VARIANT | VT_BYREF)) {
            VariantClear(arg->pvarVal);
            if (i == 0) {
              arg->pvarVal->vt = VT_BSTR;
              arg->pvarVal->bstrVal = SysAllocString(L"");
            } else {
              arg->pvarVal->vt = VT_I4;
              arg->pvarVal->lVal = 0;
            }
          }
        }
        return S_OK;
      }
      default:
        return DISP_E_MEMBERNOTFOUND;
    }
  });
}

HRESULT OptionsPageControl::GetPageInfo(BSTR* HelpFile, LONG* HelpContext) {
  if (HelpFile) *HelpFile = SysAllocString(L"");
  if (HelpContext) *HelpContext = 0;
  return S_OK;
}

HRESULT OptionsPageControl::get_Dirty(VARIANT_BOOL* Dirty) {
  if (!Dirty) return E_POINTER;
  *Dirty = dirty_ ? VARIANT_TRUE : VARIANT_FALSE;
  return S_OK;
}

HRESULT OptionsPageControl::Apply() {
  return GuardCall("OutlookPropertiesPage.Apply", nullptr, [&]() -> HRESULT {
    if (!view_ || !dirty_) return S_OK;
    RegSettings edited = settings_;
    std::optional<std::string> problem =
        view_->Collect(edited, [this](const std::string& text) { return Confirm(text); });
    if (problem) {
      if (!problem->empty()) Message(*problem);
      return E_FAIL;
    }
    // A product key that does not exist yet is created by the save; one that exists
    // but may not be written (a machine-wide install for a user without rights), or an
    // enterprise file that may not be written, would silently keep the old values.
    const HKey hive = edited.MultiUser ? kHKeyLocalMachine : kHKeyCurrentUser;
    if ((edited.UsingEnterpriseSettings || modRegistry::KeyExists(registry_, hive, kProductKey)) &&
        !edited.HasWriteAccess(kLocationDefault)) {
      Message(strings_.Load(kStrNotSaved));
      return E_FAIL;
    }
    edited.Save();
    settings_ = edited;
    dirty_ = false;
    TellAddin(L"SettingsSaved", {});
    return S_OK;
  });
}

HRESULT OptionsPageControl::SetClientSite(IOleClientSite* site) {
  client_site_ = ComPtr<IOleClientSite>(site);
  page_site_ = ComPtr<IDispatch>();
  in_place_site_ = ComPtr<IOleInPlaceSite>();
  if (site) FindPageSite();
  return S_OK;
}

HRESULT OptionsPageControl::GetClientSite(IOleClientSite** site) {
  if (!site) return E_POINTER;
  *site = client_site_.Get();
  if (*site) (*site)->AddRef();
  return S_OK;
}

void OptionsPageControl::FindPageSite() {
  ComPtr<IDispatch> site;
  if (SUCCEEDED(client_site_->QueryInterface(kIidPropertyPageSite,
                                             reinterpret_cast<void**>(site.Put())))) {
    page_site_ = site;
    return;
  }
  ComPtr<IOleControlSite> control_site;
  ComPtr<IDispatch> extended;
  if (SUCCEEDED(client_site_->QueryInterface(IID_IOleControlSite,
                                             reinterpret_cast<void**>(control_site.Put()))) &&
      SUCCEEDED(control_site->GetExtendedControl(extended.Put())) && extended) {
    try {
      page_site_ = DispatchClient(extended, "Extender").GetDispatch("Parent");
    } catch (const ZError&) {
      // A container without a page site: the page works, nobody hears of edits.
    }
  }
}

HRESULT OptionsPageControl::Close(DWORD) {
  InPlaceDeactivate();
  return S_OK;
}

HRESULT OptionsPageControl::DoVerb(LONG verb, LPMSG, IOleClientSite* site, LONG, HWND parent,
                                   LPCRECT position) {
  return GuardCall("OutlookPropertiesPage.DoVerb", nullptr, [&]() -> HRESULT {
    if (verb == OLEIVERB_HIDE) {
      if (view_ && view_->Window()) ShowWindow(view_->Window(), SW_HIDE);
      return S_OK;
    }
    if (verb != OLEIVERB_PRIMARY && verb != OLEIVERB_SHOW && verb != OLEIVERB_INPLACEACTIVATE &&
        verb != OLEIVERB_UIACTIVATE) {
      return OLEOBJ_S_INVALIDVERB;
    }
    if (view_) {
      ShowWindow(view_->Window(), SW_SHOW);
      return S_OK;
    }
    if (site && !client_site_) SetClientSite(site);
    RECT where = position ? *position : RECT{0, 0, 450, 420};
    HWND host = parent;
    if (client_site_ &&
        SUCCEEDED(client_site_->QueryInterface(IID_IOleInPlaceSite,
                                               reinterpret_cast<void**>(in_place_site_.Put()))) &&
        in_place_site_->CanInPlaceActivate() == S_OK) {
      in_place_site_->OnInPlaceActivate();
      HWND site_window = nullptr;
      if (SUCCEEDED(in_place_site_->GetWindow(&site_window)) && site_window) host = site_window;
      ComPtr<IOleInPlaceFrame> frame;
      ComPtr<IOleInPlaceUIWindow> document;
      RECT pos{}, clip{};
      OLEINPLACEFRAMEINFO info{};
      info.cb = sizeof(info);
      if (SUCCEEDED(
              in_place_site_->GetWindowContext(frame.Put(), document.Put(), &pos, &clip, &info))) {
        if (pos.right > pos.left) where = pos;
      }
    } else {
      in_place_site_ = ComPtr<IOleInPlaceSite>();
    }
    if (!host) return E_INVALIDARG;
    return Activate(host, where);
  });
}

HRESULT OptionsPageControl::Activate(HWND parent, const RECT& position) {
  try {
    settings_.Read(false, false, false);
  } catch (const ZError& e) {
    Message(e.Description());  // a stored value out of range: the rest shows as read
  }
  ComPtr<IDispatch> session;
  if (page_site_) {
    try {
      session = DispatchClient(page_site_, "PropertyPageSite").GetDispatch("Session");
    } catch (const ZError&) {
      // No folders to offer; the other settings can still be edited.
    }
  }
  OptionsPageView::Callbacks callbacks;
  callbacks.edited = [this] { Edited(); };
  if (addin_) {
    callbacks.scan_all = [this] {
      VARIANT stop_when_found;
      VariantInit(&stop_when_found);
      stop_when_found.vt = VT_BOOL;
      stop_when_found.boolVal = VARIANT_FALSE;
      TellAddin(L"ScanAll", {stop_when_found});
    };
  }
  view_ = std::make_unique<OptionsPageView>(strings_, ReadProfileFolders(session), callbacks);
  if (!view_->Create(parent, position)) {
    view_.reset();
    return HRESULT_FROM_WIN32(GetLastError());
  }
  view_->Show(settings_);
  return S_OK;
}

void OptionsPageControl::Edited() {
  if (dirty_) return;
  dirty_ = true;
  if (!page_site_) return;
  DISPPARAMS none{};
  page_site_->Invoke(kDispidOnStatusChange, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &none,
                     nullptr, nullptr, nullptr);
}

void OptionsPageControl::TellAddin(const wchar_t* member, std::vector<VARIANT> args) const {
  if (!addin_) return;
  DISPID id = DISPID_UNKNOWN;
  LPOLESTR name = const_cast<LPOLESTR>(member);
  if (FAILED(addin_->GetIDsOfNames(IID_NULL, &name, 1, LOCALE_USER_DEFAULT, &id))) return;
  DISPPARAMS params{args.data(), nullptr, static_cast<UINT>(args.size()), 0};
  HRESULT hr = addin_->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &params, nullptr,
                              nullptr, nullptr);
  if (FAILED(hr)) Message(strings_.Load(kStrNotSaved));
}

void OptionsPageControl::Message(const std::string& text) const {
  HWND owner = view_ && view_->Window() ? GetAncestor(view_->Window(), GA_ROOT) : nullptr;
  MessageBoxW(owner, Widen(text).c_str(), Widen(strings_.Load(kStrProduct)).c_str(),
              MB_OK | MB_ICONEXCLAMATION);
}

bool OptionsPageControl::Confirm(const std::string& text) const {
  HWND owner = view_ && view_->Window() ? GetAncestor(view_->Window(), GA_ROOT) : nullptr;
  return MessageBoxW(owner, Widen(text).c_str(), Widen(strings_.Load(kStrProduct)).c_str(),
                     MB_OKCANCEL | MB_ICONQUESTION) == IDOK;
}

HRESULT OptionsPageControl::GetUserClassID(CLSID* clsid) {
  if (!clsid) return E_POINTER;
  *clsid = kClsidOptionsPage;
  return S_OK;
}

HRESULT OptionsPageControl::SetExtent(DWORD aspect, SIZEL* size) {
  if (aspect != DVASPECT_CONTENT) return DV_E_DVASPECT;
  if (!size) return E_POINTER;
  extent_ = *size;
  return S_OK;
}

HRESULT OptionsPageControl::GetExtent(DWORD aspect, SIZEL* size) {
  if (aspect != DVASPECT_CONTENT) return DV_E_DVASPECT;
  if (!size) return E_POINTER;
  *size = extent_;
  return S_OK;
}

HRESULT OptionsPageControl::GetMiscStatus(DWORD, DWORD* status) {
  if (!status) return E_POINTER;
  *status = OLEMISC_RECOMPOSEONRESIZE | OLEMISC_CANTLINKINSIDE | OLEMISC_INSIDEOUT |
            OLEMISC_ACTIVATEWHENVISIBLE | OLEMISC_SETCLIENTSITEFIRST;
  return S_OK;
}

HRESULT OptionsPageControl::GetWindow(HWND* window) {
  if (!window) return E_POINTER;
  *window = view_ ? view_->Window() : nullptr;
  return *window ? S_OK : E_FAIL;
}

HRESULT OptionsPageControl::InPlaceDeactivate() {
  if (!view_) return S_OK;
  view_.reset();
  if (in_place_site_) in_place_site_->OnInPlaceDeactivate();
  in_place_site_ = ComPtr<IOleInPlaceSite>();
  return S_OK;
}

HRESULT OptionsPageControl::SetObjectRects(LPCRECT position, LPCRECT) {
  if (view_ && position) view_->Move(*position);
  return S_OK;
}

HRESULT OptionsPageControl::TranslateAccelerator(LPMSG message) {
  return view_ && message && view_->TranslateDialogMessage(message) ? S_OK : S_FALSE;
}

HRESULT OptionsPageControl::GetSizeMax(ULARGE_INTEGER* size) {
  if (!size) return E_POINTER;
  size->QuadPart = 0;
  return S_OK;
}

}  // namespace zintra::win32
