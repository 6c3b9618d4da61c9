// ToolbarHelperObject: the class Quillbar.ToolbarHelper that Quillbar.dll serves. Late
// bound, no type library:
//
//   Initialize(Application, Name)                   DISPID 1
//   DeclareBar(Kind, BarName)                       DISPID 2
//   DeclareButton(Kind, BarName, Tag, Style, Visible)  DISPID 3
//
// and one source interface (kToolbarHelperEventsIid) with BarCreated(Bar) 1,
// ControlCreated(Control) 2, UpdateBar(Bar) 3, UpdateControl(Control) 4 and
// ButtonClicked(Control, Window) 5. The windows are served by a WindowToolbarHelper
// over Outlook's own objects (win32/outlook), with a tag of their own for each window's
// buttons; the events carry Office's bars and windows as they are, and each button as a
// ButtonView whose Tag reads the declared tag.
//
// Ownership: COM reference counting. The last Release deletes the bars and buttons
// made in the windows still open and stops every event. Errors go back to the caller
// as DISP_E_EXCEPTION with the run-time error's number and text (GuardCall).
#pragma once

#include <memory>
#include <vector>

#include "hosts/toolbars/window_toolbar_helper.h"
#include "win32/addin/dll_module.h"
#include "win32/addin/late_bound_object.h"
#include "win32/com/connection_point.h"
#include "win32/com/windows_api.h"

namespace zintra::win32 {

// {7D2A4C61-93B5-4E0F-A8D3-5C1E6B9F2A47}
inline constexpr CLSID kClsidToolbarHelper = {
    0x7D2A4C61, 0x93B5, 0x4E0F, {0xA8, 0xD3, 0x5C, 0x1E, 0x6B, 0x9F, 0x2A, 0x47}};
// {3C5E7A90-2B4D-4F61-8E17-9A0B1C2D3E4F}
inline constexpr IID kToolbarHelperEventsIid = {
    0x3C5E7A90, 0x2B4D, 0x4F61, {0x8E, 0x17, 0x9A, 0x0B, 0x1C, 0x2D, 0x3E, 0x4F}};

namespace toolbar_helper_dispid {
inline constexpr DISPID kInitialize = 1;
inline constexpr DISPID kDeclareBar = 2;
inline constexpr DISPID kDeclareButton = 3;
inline constexpr DISPID kBarCreated = 1;
inline constexpr DISPID kControlCreated = 2;
inline constexpr DISPID kUpdateBar = 3;
inline constexpr DISPID kUpdateControl = 4;
inline constexpr DISPID kButtonClicked = 5;
}  // namespace toolbar_helper_dispid

// COM interfaces have no virtual destructor; objects delete themselves in Release.
#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"
#endif
class ToolbarHelperObject final
    : public LateBoundObject<ToolbarHelperObject, IDispatch, IConnectionPointContainer> {
 public:
  // The class factory's creator.
  static HRESULT Create(REFIID iid, void** out);

  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID iid, LCID lcid, WORD flags, DISPPARAMS* params,
                                   VARIANT* result, EXCEPINFO* excepinfo, UINT* arg_error) override;
  // IConnectionPointContainer
  HRESULT STDMETHODCALLTYPE EnumConnectionPoints(IEnumConnectionPoints** out) override;
  HRESULT STDMETHODCALLTYPE FindConnectionPoint(REFIID iid, IConnectionPoint** out) override;

 private:
  friend LateBoundObject;

  ToolbarHelperObject();
  ~ToolbarHelperObject();

  void* OtherInterface(REFIID iid);

  HRESULT Call(DISPID id, const DISPPARAMS* params);
  // Raises one event on every advised sink; a sink's failure is its own affair.
  void Fire(DISPID id, std::vector<ComPtr<IDispatch>> args);

  ModuleObjectCount count_;
  ConnectionPoint events_;
  std::shared_ptr<hosts::WindowToolbarHelper> helper_;
  std::vector<Connection> connections_;
};
#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif

}  // namespace zintra::win32
