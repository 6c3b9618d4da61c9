// DispatchObject: a server-side automation object described by a table of members.
// It answers IDispatch by name (GetIDsOfNames, then Invoke as a method, a property
// get or a property put), IConnectionPointContainer with one connection point per
// declared source interface, and ITypeInfo just far enough for TypeName.
//
// Members get the DISPID their type library declares, or else 1, 2, ... in the order
// they are added; names compare without regard to letter case; DISPID_VALUE (0) calls
// the member declared as 0, else "Value" or "Item". A property takes the kind of
// assignment it declares: a put (`obj.X = v`) or a put-ref (`Set obj.X = v`); the other
// kind alone is refused with DISP_E_MEMBERNOTFOUND, as a type library's Invoke does.
// Every Invoke runs through GuardCall: a ZError thrown by the member (the simulated
// Outlook's failures) returns DISP_E_EXCEPTION carrying the same number, anything
// else E_UNEXPECTED; no exception leaves the object.
//
// Events: Fire calls Invoke(dispid) on every sink advised on the source interface,
// in the order advised, over a snapshot (a sink may unadvise while being called). A
// failing sink is counted, never passed on: Outlook ignores what its sinks return.
//
// Ownership: COM reference counting on Outlook's single thread. The object holds its
// target (the simulated object it serves) and the connections to the target's
// events; connection points hold their container and their sinks.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "src/core/event.h"
#include "src/host/automation_object.h"
#include "win32/com/com_ptr.h"
#include "win32/com/variant.h"
#include "win32/com/windows_api.h"
#include "win32/sim_server/dispatch_args.h"

namespace zintra::win32 {

class ConnectionPoint;

// {7E2B4C10-5A3D-4F1E-9C6B-2D8F0A1E3B57}: answered only by DispatchObject, so that an
// argument handed back to the host can be recognised as one of its own objects.
inline constexpr IID kIidDispatchObject = {
    0x7E2B4C10, 0x5A3D, 0x4F1E, {0x9C, 0x6B, 0x2D, 0x8F, 0x0A, 0x1E, 0x3B, 0x57}};

// COM objects are destroyed through Release, never through a base pointer.
#ifdef __GNUC__
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"
#endif
class DispatchObject final : public IDispatch,
                             public IConnectionPointContainer,
                             public IExternalConnection {
 public:
  using Getter = std::function<Variant(const DispatchArgs&)>;
  using Putter = std::function<void(const DispatchArgs&)>;
  // How a property is assigned: propput, propputref, or a server that takes either.
  enum class PutKind { kPut, kPutRef, kEither };

  // A new object (one reference, owned by the returned pointer) serving `target`
  // (may be null for an object with no simulated counterpart) under `type_name`.
  static ComPtr<DispatchObject> Create(std::string type_name,
                                       std::shared_ptr<AutomationObject> target);

  // Adds a member; `put` null makes it read-only (a put returns DISP_E_MEMBERNOTFOUND).
  void Member(const std::string& name, Getter get, Putter put = nullptr,
              PutKind kind = PutKind::kPut);
  // Adds a member under the DISPID its type library declares.
  void Member(DISPID id, const std::string& name, Getter get, Putter put = nullptr,
              PutKind kind = PutKind::kPut);
  // Declares a source interface the object raises events on.
  void Source(const IID& iid);
  // Keeps a connection to the target's events for the object's life.
  void Keep(Connection connection) { connections_.push_back(std::move(connection)); }

  // Raises event `dispid` of source `iid` on every sink; `args` in the natural
  // order (by-reference arguments are the caller's VT_BYREF variants).
  void Fire(const IID& iid, DISPID dispid, std::vector<Variant>& args);
  // Sinks advised on `iid` now.
  size_t SinkCount(const IID& iid) const;
  // Those sinks, each with a reference of its own (as a source raising an event holds
  // them).
  std::vector<ComPtr<IDispatch>> Sinks(const IID& iid) const;

  const std::string& TypeName() const { return type_name_; }
  const std::shared_ptr<AutomationObject>& Target() const { return target_; }
  IDispatch* AsDispatch() { return static_cast<IDispatch*>(this); }

  // The simulated object behind one of our objects, or nullptr for a foreign one.
  static std::shared_ptr<AutomationObject> TargetOf(IDispatch* object);
  // Strong connections other processes hold on this object now (COM's stub manager
  // reports them through IExternalConnection): what keeps Outlook from ending.
  DWORD ExternalConnections() const { return external_; }
  // The object serving `target` now, if any (no reference added).
  static DispatchObject* ServingNow(const AutomationObject* target);
  // Objects alive now, and sink calls that failed, in this process.
  static int64_t LiveCount();
  // "TypeName (references)" of every object alive now, for a report of what leaked.
  static std::vector<std::string> LiveObjects();
  static int64_t FailedSinkCalls();

  // IUnknown
  STDMETHODIMP QueryInterface(REFIID iid, void** out) override;
  STDMETHODIMP_(ULONG) AddRef() override;
  STDMETHODIMP_(ULONG) Release() override;
  // IDispatch
  STDMETHODIMP GetTypeInfoCount(UINT* count) override;
  STDMETHODIMP GetTypeInfo(UINT index, LCID lcid, ITypeInfo** info) override;
  STDMETHODIMP GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID lcid,
                             DISPID* ids) override;
  STDMETHODIMP Invoke(DISPID id, REFIID iid, LCID lcid, WORD flags, DISPPARAMS* params,
                      VARIANT* result, EXCEPINFO* excepinfo, UINT* arg_error) override;
  // IConnectionPointContainer
  STDMETHODIMP EnumConnectionPoints(IEnumConnectionPoints** out) override;
  STDMETHODIMP FindConnectionPoint(REFIID iid, IConnectionPoint** out) override;
  // IExternalConnection
  STDMETHODIMP_(DWORD) AddConnection(DWORD type, DWORD reserved) override;
  STDMETHODIMP_(DWORD) ReleaseConnection(DWORD type, DWORD reserved, BOOL last_release) override;

 private:
  struct Entry {
    DISPID id;
    std::string name;
    Getter get;
    Putter put;
    PutKind put_kind;
  };
  DispatchObject(std::string type_name, std::shared_ptr<AutomationObject> target);
  ~DispatchObject();
  ConnectionPoint* PointFor(const IID& iid) const;
  const Entry* EntryFor(DISPID id) const;
  HRESULT Call(DISPID id, WORD flags, DISPPARAMS* params, VARIANT* result);

  ULONG refs_ = 1;
  DWORD external_ = 0;
  std::string type_name_;
  std::shared_ptr<AutomationObject> target_;
  std::vector<Entry> members_;
  DISPID next_id_ = 1;
  std::vector<std::unique_ptr<ConnectionPoint>> points_;  // parts of this object
  std::vector<Connection> connections_;
};
#ifdef __GNUC__
#pragma GCC diagnostic pop
#endif

}  // namespace zintra::win32
