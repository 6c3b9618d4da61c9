#include "win32/addin/connect_object.h"

#include <utility>
#include <vector>

#include "src/addin/connect.h"
#include "src/addin/zintra_addin_app.h"
#include "win32/addin/addin_host.h"
#include "win32/addin/word_letter_handler_object.h"
#include "win32/com/com_error.h"
#include "win32/com/dispatch_client.h"
#include "win32/com/variant.h"

namespace zintra::win32 {

namespace {

const DispatchTable& ConnectMembers() {
  static const DispatchTable table{{L"OnConnection", kDispIdOnConnection},
                                   {L"OnDisconnection", kDispIdOnDisconnection},
                                   {L"OnAddInsUpdate", kDispIdOnAddInsUpdate},
                                   {L"OnStartupComplete", kDispIdOnStartupComplete},
                                   {L"OnBeginShutdown", kDispIdOnBeginShutdown}};
  return table;
}

// The add-in hosts of this process whose add-in has started. Outlook loads one; the
// newest is last.
std::vector<std::weak_ptr<AddinHost>>& RunningHosts() {
  static std::vector<std::weak_ptr<AddinHost>> hosts;
  return hosts;
}

void NoteRunning(const std::shared_ptr<AddinHost>& host) {
  std::shared_ptr<ZintraAddinApp> app = host->Connect().AddinApp();
  if (!app) return;
  host->NoteAddin(app);
  auto& hosts = RunningHosts();
  for (const auto& h : hosts) {
    if (h.lock() == host) return;
  }
  hosts.push_back(host);
}

// Outlook's `custom` array, as the add-in sees it: the elements of a one-dimensional
// array of VARIANTs (anything else, and any element that is not a plain value, reads
// as nothing, since no part of the add-in uses them).
std::vector<Value> CustomValues(SAFEARRAY** custom) {
  std::vector<Value> values;
  if (!custom || !*custom || SafeArrayGetDim(*custom) != 1) return values;
  VARTYPE type = VT_EMPTY;
  if (FAILED(SafeArrayGetVartype(*custom, &type)) || type != VT_VARIANT) return values;
  LONG lower = 0;
  LONG upper = -1;
  SafeArrayGetLBound(*custom, 1, &lower);
  SafeArrayGetUBound(*custom, 1, &upper);
  for (LONG i = lower; i <= upper; ++i) {
    Variant element;
    if (FAILED(SafeArrayGetElement(*custom, &i, element.Put()))) continue;
    try {
      values.push_back(element.ToValue());
    } catch (const ZError&) {
      values.emplace_back();
    }
  }
  return values;
}

int IntArg(const VARIANT* v) {
  Value value = v ? ValueOf(*v) : Value();
  return static_cast<int>(value.ToLong());
}

}  // namespace

ConnectObject::ConnectObject() : LateBoundObject(ConnectMembers()) {}

ConnectObject::~ConnectObject() {
  if (!host_) return;
  // Released by Outlook: an add-in still running is shut down as Outlook closing would.
  host_->EndConnection();
  if (host_->AddinPending()) {
    // The add-in waits for a job to return before it finishes shutting down; its
    // ports must live until then.
    AddinHost* raw = host_.get();
    DllModule::Instance().KeepUntilDone(std::move(host_), [raw] { return !raw->AddinPending(); });
  }
}

HRESULT ConnectObject::Create(REFIID iid, void** out) {
  ConnectObject* object = new ConnectObject();
  HRESULT hr = object->QueryInterface(iid, out);
  object->Release();
  return hr;
}

std::shared_ptr<AddinHost> ConnectObject::RunningHost() {
  auto& hosts = RunningHosts();
  std::shared_ptr<AddinHost> newest;
  for (auto it = hosts.begin(); it != hosts.end();) {
    std::shared_ptr<AddinHost> host = it->lock();
    if (!host || !host->RunningAddin()) {
      it = hosts.erase(it);
    } else {
      newest = std::move(host);
      ++it;
    }
  }
  return newest;
}

void* ConnectObject::OtherInterface(REFIID iid) {
  return iid == __uuidof(IDTExtensibility2Com) ? static_cast<IDTExtensibility2Com*>(this) : nullptr;
}

void ConnectObject::Destroy() {
  // The add-in's tear-down runs here when Outlook releases it without disconnecting.
  GuardCall("Connect.Release", nullptr, [this] {
    delete this;
    return S_OK;
  });
}

HRESULT ConnectObject::Invoke(DISPID id, REFIID /*iid*/, LCID /*lcid*/, WORD flags,
                              DISPPARAMS* params, VARIANT* result, EXCEPINFO* excepinfo,
                              UINT* /*arg_error*/) {
  if (result) VariantInit(result);
  if ((flags & DISPATCH_METHOD) == 0) return DISP_E_MEMBERNOTFOUND;
  DispatchTable::Args args(params);
  if (HRESULT hr = args.CheckNoNamedArgs(); FAILED(hr)) return hr;
  return GuardCall("Connect.Invoke", excepinfo, [&] { return InvokeMember(id, args); });
}

HRESULT ConnectObject::InvokeMember(DISPID id, const DispatchTable::Args& args) {
  UINT needed = id == kDispIdOnConnection ? 4 : id == kDispIdOnDisconnection ? 2 : 1;
  switch (id) {
    case kDispIdOnConnection:
    case kDispIdOnDisconnection:
    case kDispIdOnAddInsUpdate:
    case kDispIdOnStartupComplete:
    case kDispIdOnBeginShutdown:
      break;
    default:
      return DISP_E_MEMBERNOTFOUND;
  }
  if (args.Count() != needed) return DISP_E_BADPARAMCOUNT;
  switch (id) {
    case kDispIdOnConnection:
      return OnConnection(ObjectOf(*args.At(0)).Get(), IntArg(args.At(1)),
                          ObjectOf(*args.At(2)).Get(), args.ArrayRef(3));
    case kDispIdOnDisconnection:
      return OnDisconnection(IntArg(args.At(0)), args.ArrayRef(1));
    case kDispIdOnAddInsUpdate:
      return OnAddInsUpdate(args.ArrayRef(0));
    case kDispIdOnStartupComplete:
      return OnStartupComplete(args.ArrayRef(0));
    default:
      return OnBeginShutdown(args.ArrayRef(0));
  }
}

AddinHost& ConnectObject::Host() {
  if (!host_) host_ = std::make_shared<AddinHost>();
  return *host_;
}

HRESULT ConnectObject::OnConnection(IDispatch* Application, int ConnectMode, IDispatch* AddInInst,
                                    SAFEARRAY** custom) {
  return GuardCall("Connect.OnConnection", nullptr, [&]() -> HRESULT {
    AddinHost& host = Host();
    ComPtr<IDispatch> add_in_inst(AddInInst);
    std::vector<Value> values = CustomValues(custom);
    host.Connect().OnConnection(
        Application ? host.WrapApplication(ComPtr<IDispatch>(Application)) : nullptr, ConnectMode,
        add_in_inst ? host.WrapAddIn(add_in_inst) : nullptr, values);
    NoteRunning(host_);
    if (!Application) return E_INVALIDARG;  // logged by the add-in; Outlook is told too
    if (add_in_inst && host.Connect().HoldsOutlook()) PublishLetterHandler(add_in_inst);
    return S_OK;
  });
}

void ConnectObject::PublishLetterHandler(const ComPtr<IDispatch>& add_in_inst) {
  // Word's letter macro asks Outlook for COMAddIns("ZintraAddin.Connect").Object. Office
  // declares Object with a plain put (no put-ref), so it is assigned as a value. A host
  // whose add-in object cannot carry one loses only that route, so failures are logged.
  try {
    ComPtr<IDispatch> handler = WordLetterHandlerObject::CreateDispatch();
    DispatchClient(add_in_inst, "COMAddIn").Put("Object", Variant(handler));
  } catch (const ZError& e) {
    host_->Errors().LogWarning("The letter handler is not published: " + e.Description());
  }
}

HRESULT ConnectObject::OnDisconnection(int RemoveMode, SAFEARRAY** custom) {
  return GuardCall("Connect.OnDisconnection", nullptr, [&] {
    if (host_) {
      std::vector<Value> values = CustomValues(custom);
      host_->Connect().OnDisconnection(RemoveMode, values);
    }
    return S_OK;
  });
}

HRESULT ConnectObject::OnAddInsUpdate(SAFEARRAY** custom) {
  return GuardCall("Connect.OnAddInsUpdate", nullptr, [&] {
    if (host_) {
      std::vector<Value> values = CustomValues(custom);
      host_->Connect().OnAddInsUpdate(values);
    }
    return S_OK;
  });
}

HRESULT ConnectObject::OnStartupComplete(SAFEARRAY** custom) {
  return GuardCall("Connect.OnStartupComplete", nullptr, [&] {
    if (host_) {
      std::vector<Value> values = CustomValues(custom);
      host_->Connect().OnStartupComplete(values);
      NoteRunning(host_);
    }
    return S_OK;
  });
}

HRESULT ConnectObject::OnBeginShutdown(SAFEARRAY** custom) {
  return GuardCall("Connect.OnBeginShutdown", nullptr, [&] {
    if (host_) {
      std::vector<Value> values = CustomValues(custom);
      host_->Connect().OnBeginShutdown(values);
    }
    return S_OK;
  });
}

}  // namespace zintra::win32
