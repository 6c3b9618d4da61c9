// OptionsPageLink: what the add-in hands the options page control (a separate file,
// ZintraControls.ocx, with its own copy of the settings code) when Outlook's Options
// dialog opens: a late-bound object through which the page reaches the running add-in.
//
//   SettingsSaved()            the page has saved new settings: the add-in reads them
//                              from the registry as stored and takes them as its own
//                              (ZintraAddinApp::SetRegSettings: saved, the loader
//                              rewritten when MultiUser changed, the log moved, and
//                              every part told of the change)
//   ScanAll(StopWhenFound)     the complete folder search of the monitoring part
//
// The add-in is held weakly: once it has quit, both calls do nothing. Failures inside
// the add-in are logged there; a call on an object whose add-in is gone succeeds.
// Called on Outlook's thread.
#pragma once

#include <memory>

#include "win32/addin/dll_module.h"
#include "win32/addin/late_bound_object.h"
#include "win32/com/com_ptr.h"
#include "win32/com/windows_api.h"

namespace zintra {
class ZintraAddinApp;
}

namespace zintra::win32 {

#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"
#endif
class OptionsPageLink final : public LateBoundObject<OptionsPageLink, IDispatch> {
 public:
  static ComPtr<IDispatch> Create(const std::shared_ptr<ZintraAddinApp>& app);

  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID iid, LCID lcid, WORD flags, DISPPARAMS* params,
                                   VARIANT* result, EXCEPINFO* excepinfo, UINT* arg_error) override;

 private:
  friend LateBoundObject;

  explicit OptionsPageLink(std::weak_ptr<ZintraAddinApp> app);
  ~OptionsPageLink() = default;

  void SettingsSaved();
  void ScanAll(bool stop_when_found);

  ModuleObjectCount count_;
  std::weak_ptr<ZintraAddinApp> app_;
};
#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif

}  // namespace zintra::win32
