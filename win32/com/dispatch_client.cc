#include "win32/com/dispatch_client.h"

#include <algorithm>
#include <mutex>

#include "src/core/z_error.h"
#include "win32/com/bstr.h"
#include "win32/com/com_error.h"
#include "win32/com/unicode.h"

namespace zintra::win32 {
namespace {

// DISPIDs shared by every client of one type name. Outlook's objects live on one
// thread, but the cache is guarded anyway: the keep-alive program may call from another.
struct SharedIds {
  std::mutex mutex;
  std::map<std::string, DISPID, std::less<>> ids;  // "type\nmember" (member lower-cased)
};

SharedIds& Shared() {
  static SharedIds* shared = new SharedIds;  // never destroyed: used during shutdown
  return *shared;
}

std::string Lower(std::string_view s) {
  std::string out(s);
  std::transform(out.begin(), out.end(), out.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return out;
}

// Frees the strings a failed Invoke filled in, after they have been read.
struct ExcepInfo {
  EXCEPINFO info{};
  ~ExcepInfo() {
    SysFreeString(info.bstrSource);
    SysFreeString(info.bstrDescription);
    SysFreeString(info.bstrHelpFile);
  }
  EXCEPINFO* Filled() {
    if (info.pfnDeferredFillIn) info.pfnDeferredFillIn(&info);
    return &info;
  }
};

}  // namespace

Variant ByRef(Variant& target) {
  Variant ref;
  VARIANT* v = ref.Get();
  v->vt = VT_BYREF | VT_VARIANT;
  v->pvarVal = target.Get();
  return ref;  // VariantClear leaves a by-reference target alone
}

Variant Missing() {
  Variant missing;
  missing.Get()->vt = VT_ERROR;
  missing.Get()->scode = DISP_E_PARAMNOTFOUND;
  return missing;
}

DispatchClient::DispatchClient(ComPtr<IDispatch> object, std::string type_name)
    : object_(std::move(object)), type_name_(std::move(type_name)) {}

std::string DispatchClient::What(std::string_view name) const {
  return (type_name_.empty() ? std::string("Object") : type_name_) + "." + std::string(name);
}

bool DispatchClient::Has(std::string_view name) const {
  try {
    IdOf(name);
    return true;
  } catch (const ZError&) {
    return false;
  }
}

DISPID DispatchClient::IdOf(std::string_view name) const {
  if (!object_)
    throw ZError(kErrObjectNotSet, ZError::StandardDescription(kErrObjectNotSet), What(name));
  std::string member = Lower(name);
  std::string key = type_name_ + "\n" + member;
  if (type_name_.empty()) {
    if (auto it = own_ids_.find(member); it != own_ids_.end()) return it->second;
  } else {
    SharedIds& shared = Shared();
    std::lock_guard lock(shared.mutex);
    if (auto it = shared.ids.find(key); it != shared.ids.end()) return it->second;
  }
  std::wstring wide = Widen(name);
  LPOLESTR names[] = {wide.data()};
  DISPID id = DISPID_UNKNOWN;
  HRESULT hr = object_->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id);
  if (FAILED(hr)) ThrowComError(hr, nullptr, What(name));
  if (type_name_.empty()) {
    own_ids_.emplace(std::move(member), id);
  } else {
    SharedIds& shared = Shared();
    std::lock_guard lock(shared.mutex);
    shared.ids.emplace(std::move(key), id);
  }
  return id;
}

Variant DispatchClient::Invoke(std::string_view name, WORD flags, std::vector<Variant>& args,
                               const Variant* assigned) const {
  DISPID id = IdOf(name);
  // DISPPARAMS takes the arguments last first; the assigned value of a put goes first
  // of all, as the named DISPID_PROPERTYPUT argument.
  std::vector<VARIANT> raw;
  raw.reserve(args.size() + 1);
  if (assigned) raw.push_back(*assigned->Get());
  for (auto it = args.rbegin(); it != args.rend(); ++it) raw.push_back(*it->Get());
  DISPID put_id = DISPID_PROPERTYPUT;
  DISPPARAMS params{};
  params.rgvarg = raw.empty() ? nullptr : raw.data();
  params.cArgs = static_cast<UINT>(raw.size());
  if (assigned) {
    params.rgdispidNamedArgs = &put_id;
    params.cNamedArgs = 1;
  }
  Variant result;
  ExcepInfo info;
  UINT bad_arg = 0;
  // The shallow copies in `raw` stay owned by `args` and `assigned`.
  HRESULT hr = object_->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &params,
                               assigned ? nullptr : result.Put(), &info.info, &bad_arg);
  if (FAILED(hr)) ThrowComError(hr, hr == DISP_E_EXCEPTION ? info.Filled() : nullptr, What(name));
  return result;
}

Variant DispatchClient::Get(std::string_view name, std::vector<Variant> args) const {
  return Invoke(name, DISPATCH_PROPERTYGET | DISPATCH_METHOD, args, nullptr);
}

Variant DispatchClient::Call(std::string_view name, std::vector<Variant> args) const {
  return Invoke(name, DISPATCH_METHOD | DISPATCH_PROPERTYGET, args, nullptr);
}

void DispatchClient::Put(std::string_view name, const Variant& value,
                         std::vector<Variant> args) const {
  Invoke(name, DISPATCH_PROPERTYPUT, args, &value);
}

void DispatchClient::PutRef(std::string_view name, const Variant& value) const {
  std::vector<Variant> none;
  Invoke(name, DISPATCH_PROPERTYPUTREF, none, &value);
}

}  // namespace zintra::win32
