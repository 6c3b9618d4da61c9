// ConnectObject: the COM class ZintraAddin.Connect that Outlook's loader creates. It
// implements IDTExtensibility2 (through its vtable and late-bound through IDispatch)
// and forwards each call to the host-neutral Connect of the add-in host it composes on
// the first OnConnection (AddinHost: the Windows ports, error handling, string table and
// the add-in's parts). OnConnection also publishes the add-in's WordLetterHandler as
// the COMAddIn's Object, so that Word's letter macro reaches the running add-in through
// Outlook.
//
// Failures: every method runs through GuardCall, so nothing is thrown at Outlook. A
// null Application answers E_INVALIDARG (after the add-in has logged it); a host that
// cannot be composed answers the HRESULT of its error and leaves the object inert but
// usable. Errors inside the add-in are logged by Connect and do not fail the call.
//
// Lifetime: created by the class factory with one reference; the add-in host lives as
// long as this object, except when the add-in's shut-down still waits for a job: then
// the host is parked in DllModule until the add-in has finished. Called on Outlook's
// user-interface thread (the class is apartment-threaded).
#pragma once

#include <memory>

#include "win32/addin/dispatch_table.h"
#include "win32/addin/dll_module.h"
#include "win32/addin/idt_extensibility2_com.h"
#include "win32/addin/late_bound_object.h"
#include "win32/com/com_ptr.h"

namespace zintra::win32 {

class AddinHost;

// COM interfaces have no virtual destructor; objects delete themselves in Release.
#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"
#endif
class ConnectObject final : public LateBoundObject<ConnectObject, IDTExtensibility2Com> {
 public:
  // The class factory's creator.
  static HRESULT Create(REFIID iid, void** out);
  // The host of the add-in running in this process (the most recently started one
  // whose add-in is not quitting), or nullptr.
  static std::shared_ptr<AddinHost> RunningHost();

  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID iid, LCID lcid, WORD flags, DISPPARAMS* params,
                                   VARIANT* result, EXCEPINFO* excepinfo, UINT* arg_error) override;
  // IDTExtensibility2
  HRESULT STDMETHODCALLTYPE OnConnection(IDispatch* Application, int ConnectMode,
                                         IDispatch* AddInInst, SAFEARRAY** custom) override;
  HRESULT STDMETHODCALLTYPE OnDisconnection(int RemoveMode, SAFEARRAY** custom) override;
  HRESULT STDMETHODCALLTYPE OnAddInsUpdate(SAFEARRAY** custom) override;
  HRESULT STDMETHODCALLTYPE OnStartupComplete(SAFEARRAY** custom) override;
  HRESULT STDMETHODCALLTYPE OnBeginShutdown(SAFEARRAY** custom) override;

 private:
  friend LateBoundObject;

  ConnectObject();
  ~ConnectObject();

  void* OtherInterface(REFIID iid);
  void Destroy();

  // Composes the add-in host on first use; throws what the composition throws.
  AddinHost& Host();
  void PublishLetterHandler(const ComPtr<IDispatch>& add_in_inst);
  HRESULT InvokeMember(DISPID id, const DispatchTable::Args& args);

  ModuleObjectCount count_;
  std::shared_ptr<AddinHost> host_;
};
#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif

}  // namespace zintra::win32
