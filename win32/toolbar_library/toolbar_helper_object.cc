#include "win32/toolbar_library/toolbar_helper_object.h"

#include <olectl.h>

#include <string>
#include <utility>

#include "hosts/toolbars/declared_button.h"
#include "src/core/z_error.h"
#include "win32/addin/dispatch_table.h"
#include "win32/com/com_error.h"
#include "win32/com/variant.h"
#include "win32/outlook/com_adapter.h"
#include "win32/outlook/wrap.h"
#include "win32/toolbar_library/button_view.h"

namespace zintra::win32 {

namespace id = toolbar_helper_dispid;

namespace {

const DispatchTable& ToolbarHelperMembers() {
  static const DispatchTable table{{L"Initialize", id::kInitialize},
                                   {L"DeclareBar", id::kDeclareBar},
                                   {L"DeclareButton", id::kDeclareButton}};
  return table;
}

// The automation object behind one of Outlook's objects as the adapters hand it out.
ComPtr<IDispatch> ObjectBehind(const AutomationObject* object) {
  ComAdapter* adapter = AdapterOf(object);
  return adapter ? adapter->Object() : ComPtr<IDispatch>();
}

// A button as the events carry it: the button in the window, showing its declared tag.
ComPtr<IDispatch> ButtonObject(const std::shared_ptr<CommandBarControl>& control) {
  if (auto declared = std::dynamic_pointer_cast<hosts::DeclaredButton>(control)) {
    ComPtr<IDispatch> button = ObjectBehind(declared->Button().get());
    return button ? ButtonView::Create(button, declared->Tag()) : button;
  }
  return ObjectBehind(control.get());
}

const VARIANT& Required(const DispatchTable::Args& args, UINT index) {
  const VARIANT* v = args.At(index);
  if (!v || v->vt == VT_ERROR) {
    throw ZError(kErrWrongArgumentCount, "Wrong number of arguments or invalid property assignment",
                 "ToolbarHelper");
  }
  return *v;
}

}  // namespace

HRESULT ToolbarHelperObject::Create(REFIID iid, void** out) {
  ToolbarHelperObject* object = new ToolbarHelperObject();
  HRESULT hr = object->QueryInterface(iid, out);
  object->Release();
  return hr;
}

ToolbarHelperObject::ToolbarHelperObject()
    : LateBoundObject(ToolbarHelperMembers()),
      events_(this, kToolbarHelperEventsIid),
      helper_(std::make_shared<hosts::WindowToolbarHelper>(/*tags_per_window=*/true)) {
  connections_.push_back(helper_->BarCreated.Connect([this](std::shared_ptr<CommandBar> bar) {
    Fire(id::kBarCreated, {ObjectBehind(bar.get())});
  }));
  connections_.push_back(
      helper_->ControlCreated.Connect([this](std::shared_ptr<CommandBarControl> control) {
        Fire(id::kControlCreated, {ButtonObject(control)});
      }));
  connections_.push_back(helper_->UpdateBar.Connect([this](std::shared_ptr<CommandBar> bar) {
    Fire(id::kUpdateBar, {ObjectBehind(bar.get())});
  }));
  connections_.push_back(
      helper_->UpdateControl.Connect([this](std::shared_ptr<CommandBarControl> control) {
        Fire(id::kUpdateControl, {ButtonObject(control)});
      }));
  connections_.push_back(helper_->ButtonClicked.Connect(
      [this](std::shared_ptr<CommandBarControl> control, std::shared_ptr<OutlookWindow> window) {
        Fire(id::kButtonClicked, {ButtonObject(control), ObjectBehind(window.get())});
      }));
}

ToolbarHelperObject::~ToolbarHelperObject() {
  connections_.clear();
  events_.Clear();
  // Deletes the bars from the windows still open, releasing Outlook's objects while
  // this DLL is surely loaded.
  helper_.reset();
}

void* ToolbarHelperObject::OtherInterface(REFIID iid) {
  return iid == IID_IConnectionPointContainer ? static_cast<IConnectionPointContainer*>(this)
                                              : nullptr;
}

HRESULT ToolbarHelperObject::Invoke(DISPID dispid, REFIID /*iid*/, LCID /*lcid*/, WORD flags,
                                    DISPPARAMS* params, VARIANT* result, EXCEPINFO* excepinfo,
                                    UINT* /*arg_error*/) {
  if (result) VariantInit(result);
  if (dispid < id::kInitialize || dispid > id::kDeclareButton) return DISP_E_MEMBERNOTFOUND;
  if ((flags & DISPATCH_METHOD) == 0) return DISP_E_MEMBERNOTFOUND;
  DispatchTable::Args args(params);
  if (HRESULT hr = args.CheckNoNamedArgs(); FAILED(hr)) return hr;
  const UINT expected = dispid == id::kInitialize ? 2 : dispid == id::kDeclareBar ? 2 : 5;
  if (args.Count() != expected) return DISP_E_BADPARAMCOUNT;
  ComPtr<ToolbarHelperObject> self(this);  // a handler of an event may release us
  return GuardCall("ToolbarHelper", excepinfo, [&] { return Call(dispid, params); });
}

HRESULT ToolbarHelperObject::Call(DISPID dispid, const DISPPARAMS* params) {
  DispatchTable::Args args(params);
  switch (dispid) {
    case id::kInitialize: {
      ComPtr<IDispatch> application = ObjectOf(Required(args, 0));
      if (!application) {
        throw ZError(kErrObjectNotSet, "Object variable not set", "ToolbarHelper.Initialize");
      }
      helper_->Initialize(Wrap<Application>(application), ValueOf(Required(args, 1)).ToString());
      return S_OK;
    }
    case id::kDeclareBar:
      helper_->DeclareBar(ValueOf(Required(args, 0)).ToLong(),
                          ValueOf(Required(args, 1)).ToString());
      return S_OK;
    default:
      helper_->DeclareButton(
          ValueOf(Required(args, 0)).ToLong(), ValueOf(Required(args, 1)).ToString(),
          ValueOf(Required(args, 2)).ToString(), ValueOf(Required(args, 3)).ToLong(),
          ValueOf(Required(args, 4)).ToBool());
      return S_OK;
  }
}

HRESULT ToolbarHelperObject::EnumConnectionPoints(IEnumConnectionPoints** out) {
  if (out) *out = nullptr;
  return E_NOTIMPL;
}

HRESULT ToolbarHelperObject::FindConnectionPoint(REFIID iid, IConnectionPoint** out) {
  if (!out) return E_POINTER;
  if (iid != kToolbarHelperEventsIid) {
    *out = nullptr;
    return CONNECT_E_NOCONNECTION;
  }
  *out = &events_;
  events_.AddRef();
  return S_OK;
}

void ToolbarHelperObject::Fire(DISPID dispid, std::vector<ComPtr<IDispatch>> args) {
  if (events_.Count() == 0) return;
  ComPtr<ToolbarHelperObject> self(this);  // a sink may drop the last other reference
  // COM passes arguments last first.
  std::vector<VARIANT> reversed(args.size());
  for (size_t i = 0; i < args.size(); ++i) {
    VARIANT& v = reversed[args.size() - 1 - i];
    VariantInit(&v);
    v.vt = VT_DISPATCH;
    v.pdispVal = args[i].Get();
  }
  DISPPARAMS params{reversed.data(), nullptr, static_cast<UINT>(reversed.size()), 0};
  for (const auto& sink : events_.Sinks()) {
    EXCEPINFO info{};
    UINT arg_error = 0;
    sink->Invoke(dispid, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &params, nullptr, &info,
                 &arg_error);
    SysFreeString(info.bstrSource);
    SysFreeString(info.bstrDescription);
    SysFreeString(info.bstrHelpFile);
  }
}

}  // namespace zintra::win32
