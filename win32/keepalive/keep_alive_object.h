// KeepAliveObject: "ZintraKeepAlive.KeepAlive", the one object a keep-alive process
// serves. Its only member, Initialize([Application]), takes a reference on Outlook's
// Application: the one handed in, else the one Outlook publishes in the running object
// table. Outlook does not end while another process holds its Application, so it stays
// alive until the add-in, its shut-down done, releases this object; the process then
// ends (KeepAliveServer).
//
// IDispatch by name: "Initialize" (any letter case) is DISPID 1, called as a method or a
// property get; every other name is DISP_E_UNKNOWNNAME. A failure to find Outlook
// answers DISP_E_EXCEPTION with the reason in EXCEPINFO, so the caller can log it. A
// second Initialize changes nothing.
#pragma once

#include <functional>
#include <utility>

#include "win32/addin/late_bound_object.h"
#include "win32/com/com_ptr.h"
#include "win32/com/windows_api.h"

namespace zintra::win32 {

#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"
#endif
class KeepAliveObject final : public LateBoundObject<KeepAliveObject, IDispatch> {
 public:
  static constexpr DISPID kDispIdInitialize = 1;

  // `on_hold` is called when the object starts holding Outlook; `on_release` when the
  // last reference goes, before the object is deleted.
  KeepAliveObject(std::function<void()> on_hold, std::function<void()> on_release);

  bool Holding() const { return static_cast<bool>(outlook_); }
  const ComPtr<IDispatch>& Outlook() const { return outlook_; }
  // Drops the reference on Outlook (Outlook has ended: the proxy is dead).
  void LetGo() { outlook_.Reset(); }

  STDMETHODIMP Invoke(DISPID id, REFIID iid, LCID lcid, WORD flags, DISPPARAMS* params,
                      VARIANT* result, EXCEPINFO* excepinfo, UINT* arg_error) override;

 private:
  friend LateBoundObject;
  ~KeepAliveObject() = default;
  void Destroy();
  HRESULT Initialize(DISPPARAMS* params, EXCEPINFO* excepinfo);

  std::function<void()> on_hold_;
  std::function<void()> on_release_;
  ComPtr<IDispatch> outlook_;
};
#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif

}  // namespace zintra::win32
