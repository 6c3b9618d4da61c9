// WordLetterHandlerObject: the public class ZintraAddin.WordLetterHandler that the macro
// of "Zintra Letter.dot" calls late-bound: LogDocument(Document) files the Word document
// through the running add-in's WordLetterHandler.
//
// Where the add-in is: inside Outlook's process (the object the add-in publishes as its
// COMAddIn's Object, or one created there), the add-in of this process is used. Created
// anywhere else (Word's process loads this DLL when the macro calls CreateObject), the
// call goes to the running Outlook (GetActiveObject "Outlook.Application"), to
// COMAddIns("ZintraAddin.Connect").Object, which is this class in Outlook's process.
//
// Failures: the filing itself reports its own errors (logged, text 1901); when no
// running add-in can be reached, or it runs without its toolbar part, Invoke answers
// DISP_E_EXCEPTION with the reason. Nothing is thrown across the boundary.
#pragma once

#include "win32/addin/dispatch_table.h"
#include "win32/addin/dll_module.h"
#include "win32/addin/late_bound_object.h"
#include "win32/com/com_ptr.h"
#include "win32/com/windows_api.h"

namespace zintra::win32 {

inline constexpr DISPID kDispIdLogDocument = 1;

// COM interfaces have no virtual destructor; objects delete themselves in Release.
#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"
#endif
class WordLetterHandlerObject final : public LateBoundObject<WordLetterHandlerObject, IDispatch> {
 public:
  // The class factory's creator.
  static HRESULT Create(REFIID iid, void** out);
  static ComPtr<IDispatch> CreateDispatch();

  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID iid, LCID lcid, WORD flags, DISPPARAMS* params,
                                   VARIANT* result, EXCEPINFO* excepinfo, UINT* arg_error) override;

  // Files `document` (a Word Document); throws ZError when no add-in can be reached.
  void LogDocument(const ComPtr<IDispatch>& document);

 private:
  friend LateBoundObject;

  WordLetterHandlerObject();
  ~WordLetterHandlerObject() = default;

  ModuleObjectCount count_;
};
#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif

}  // namespace zintra::win32
