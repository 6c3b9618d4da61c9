#include "win32/sim_server/dispatch_object.h"

#include <unordered_map>
#include <utility>

#include "src/core/text.h"
#include "src/core/z_error.h"
#include "win32/com/com_error.h"
#include "win32/com/connection_point.h"
#include "win32/com/unicode.h"
#include "win32/sim_server/type_name_info.h"

namespace zintra::win32 {
namespace {

int64_t live_objects = 0;
int64_t failed_sink_calls = 0;

// Which object serves each target: Outlook's thread only, so no lock.
std::unordered_map<const AutomationObject*, DispatchObject*>& Serving() {
  static std::unordered_map<const AutomationObject*, DispatchObject*> serving;
  return serving;
}

}  // namespace

ComPtr<DispatchObject> DispatchObject::Create(std::string type_name,
                                              std::shared_ptr<AutomationObject> target) {
  return ComPtr<DispatchObject>::Attach(
      new DispatchObject(std::move(type_name), std::move(target)));
}

DispatchObject::DispatchObject(std::string type_name, std::shared_ptr<AutomationObject> target)
    : type_name_(std::move(type_name)), target_(std::move(target)) {
  ++live_objects;
  if (target_) Serving().emplace(target_.get(), this);
}

DispatchObject::~DispatchObject() {
  if (target_) {
    auto it = Serving().find(target_.get());
    if (it != Serving().end() && it->second == this) Serving().erase(it);
  }
  connections_.clear();
  for (auto& point : points_) point->Clear();
  --live_objects;
}

DispatchObject* DispatchObject::ServingNow(const AutomationObject* target) {
  auto it = Serving().find(target);
  return it == Serving().end() ? nullptr : it->second;
}

int64_t DispatchObject::LiveCount() { return live_objects; }

std::vector<std::string> DispatchObject::LiveObjects() {
  std::vector<std::string> out;
  for (const auto& [target, object] : Serving()) {
    out.push_back(object->type_name_ + " (" + std::to_string(object->refs_) + ")");
  }
  return out;
}
int64_t DispatchObject::FailedSinkCalls() { return failed_sink_calls; }

void DispatchObject::Member(const std::string& name, Getter get, Putter put, PutKind kind) {
  Member(next_id_, name, std::move(get), std::move(put), kind);
}

void DispatchObject::Member(DISPID id, const std::string& name, Getter get, Putter put,
                            PutKind kind) {
  members_.push_back({id, name, std::move(get), std::move(put), kind});
  if (id >= next_id_) next_id_ = id + 1;
}

const DispatchObject::Entry* DispatchObject::EntryFor(DISPID id) const {
  for (const Entry& entry : members_) {
    if (entry.id == id) return &entry;
  }
  return nullptr;
}

void DispatchObject::Source(const IID& iid) {
  if (!PointFor(iid)) points_.push_back(std::make_unique<ConnectionPoint>(this, iid));
}

ConnectionPoint* DispatchObject::PointFor(const IID& iid) const {
  for (const auto& point : points_) {
    if (IsEqualIID(point->Iid(), iid)) return point.get();
  }
  return nullptr;
}

size_t DispatchObject::SinkCount(const IID& iid) const {
  ConnectionPoint* point = PointFor(iid);
  return point ? point->Count() : 0;
}

std::vector<ComPtr<IDispatch>> DispatchObject::Sinks(const IID& iid) const {
  ConnectionPoint* point = PointFor(iid);
  return point ? point->Sinks() : std::vector<ComPtr<IDispatch>>{};
}

void DispatchObject::Fire(const IID& iid, DISPID dispid, std::vector<Variant>& args) {
  ConnectionPoint* point = PointFor(iid);
  if (!point || point->Count() == 0) return;
  ComPtr<DispatchObject> self(this);  // a sink may drop the last other reference
  // COM passes arguments last first; the VARIANTs stay owned by `args`.
  std::vector<VARIANT> reversed;
  reversed.reserve(args.size());
  for (auto it = args.rbegin(); it != args.rend(); ++it) reversed.push_back(*it->Get());
  DISPPARAMS params{reversed.empty() ? nullptr : reversed.data(), nullptr,
                    static_cast<UINT>(reversed.size()), 0};
  for (const auto& sink : point->Sinks()) {
    EXCEPINFO info{};
    UINT arg_error = 0;
    HRESULT hr = sink->Invoke(dispid, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &params,
                              nullptr, &info, &arg_error);
    if (FAILED(hr)) ++failed_sink_calls;
    SysFreeString(info.bstrSource);
    SysFreeString(info.bstrDescription);
    SysFreeString(info.bstrHelpFile);
  }
}

std::shared_ptr<AutomationObject> DispatchObject::TargetOf(IDispatch* object) {
  if (!object) return nullptr;
  DispatchObject* ours = nullptr;
  if (FAILED(object->QueryInterface(kIidDispatchObject, reinterpret_cast<void**>(&ours))) ||
      !ours) {
    return nullptr;
  }
  auto target = ours->target_;
  ours->Release();
  return target;
}

STDMETHODIMP DispatchObject::QueryInterface(REFIID iid, void** out) {
  if (!out) return E_POINTER;
  if (IsEqualIID(iid, IID_IUnknown) || IsEqualIID(iid, IID_IDispatch)) {
    *out = static_cast<IDispatch*>(this);
  } else if (IsEqualIID(iid, IID_IConnectionPointContainer)) {
    *out = static_cast<IConnectionPointContainer*>(this);
  } else if (IsEqualIID(iid, IID_IExternalConnection)) {
    *out = static_cast<IExternalConnection*>(this);
  } else if (IsEqualIID(iid, kIidDispatchObject)) {
    *out = this;
  } else {
    *out = nullptr;
    return E_NOINTERFACE;
  }
  AddRef();
  return S_OK;
}

STDMETHODIMP_(ULONG) DispatchObject::AddRef() { return ++refs_; }

STDMETHODIMP_(DWORD) DispatchObject::AddConnection(DWORD type, DWORD) {
  if (type & EXTCONN_STRONG) ++external_;
  return external_;
}

STDMETHODIMP_(DWORD) DispatchObject::ReleaseConnection(DWORD type, DWORD, BOOL) {
  if ((type & EXTCONN_STRONG) && external_ > 0) --external_;
  return external_;
}

STDMETHODIMP_(ULONG) DispatchObject::Release() {
  ULONG left = --refs_;
  if (left == 0) delete this;
  return left;
}

STDMETHODIMP DispatchObject::GetTypeInfoCount(UINT* count) {
  if (!count) return E_POINTER;
  *count = 1;
  return S_OK;
}

STDMETHODIMP DispatchObject::GetTypeInfo(UINT index, LCID, ITypeInfo** info) {
  if (!info) return E_POINTER;
  *info = nullptr;
  if (index != 0) return DISP_E_BADINDEX;
  *info = TypeNameInfo::Create(type_name_);
  return S_OK;
}

STDMETHODIMP DispatchObject::GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) {
  if (!names || !ids) return E_POINTER;
  for (UINT i = 0; i < count; ++i) ids[i] = DISPID_UNKNOWN;
  if (count == 0) return S_OK;
  const std::string wanted = text::LCase(Narrow(names[0] ? names[0] : L""));
  for (const Entry& entry : members_) {
    if (text::LCase(entry.name) == wanted) {
      ids[0] = entry.id;
      // Named arguments are not supported: their names stay unknown.
      return count == 1 ? S_OK : DISP_E_UNKNOWNNAME;
    }
  }
  return DISP_E_UNKNOWNNAME;
}

STDMETHODIMP DispatchObject::Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* params,
                                    VARIANT* result, EXCEPINFO* excepinfo, UINT* arg_error) {
  if (arg_error) *arg_error = 0;
  if (result) VariantInit(result);
  ComPtr<DispatchObject> self(this);  // the member may release the caller's reference
  return GuardCall(type_name_, excepinfo, [&]() -> HRESULT {
    try {
      return Call(id, flags, params, result);
    } catch (const ZError& e) {
      // A call with more arguments than the member declares is refused by IDispatch
      // itself, as Office's objects refuse it, not as an exception of the member's.
      if (e.Number() == static_cast<int32_t>(DISP_E_BADPARAMCOUNT)) return DISP_E_BADPARAMCOUNT;
      throw;
    }
  });
}

HRESULT DispatchObject::Call(DISPID id, WORD flags, DISPPARAMS* params, VARIANT* result) {
  const Entry* found = EntryFor(id);
  if (!found && id == DISPID_VALUE) {
    // The default member, when none is declared as 0: a collection's Item, else an
    // object's Value.
    for (const char* name : {"value", "item"}) {
      for (const Entry& entry : members_) {
        if (text::LCase(entry.name) == name) found = &entry;
      }
    }
  }
  if (!found) return DISP_E_MEMBERNOTFOUND;
  const Entry& entry = *found;
  DISPPARAMS none{nullptr, nullptr, 0, 0};
  if (!params) params = &none;
  if (flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) {
    // A caller may offer both kinds at once (VBScript does); one the member declares
    // must be among them.
    const WORD declared = entry.put_kind == PutKind::kPut ? DISPATCH_PROPERTYPUT
                          : entry.put_kind == PutKind::kPutRef
                              ? DISPATCH_PROPERTYPUTREF
                              : DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF;
    if (!entry.put || (flags & declared) == 0) return DISP_E_MEMBERNOTFOUND;
    DispatchArgs args(params, true);
    entry.put(args);
    return S_OK;
  }
  if (!entry.get) return DISP_E_MEMBERNOTFOUND;
  DispatchArgs args(params, false);
  Variant value = entry.get(args);
  if (result) {
    *result = *value.Get();  // the result takes over what `value` owned
    VariantInit(value.Get());
  }
  return S_OK;
}

STDMETHODIMP DispatchObject::EnumConnectionPoints(IEnumConnectionPoints** out) {
  if (out) *out = nullptr;
  return E_NOTIMPL;
}

STDMETHODIMP DispatchObject::FindConnectionPoint(REFIID iid, IConnectionPoint** out) {
  if (!out) return E_POINTER;
  ConnectionPoint* point = PointFor(iid);
  if (!point) {
    *out = nullptr;
    return CONNECT_E_NOCONNECTION;
  }
  *out = point;
  point->AddRef();
  return S_OK;
}

}  // namespace zintra::win32
