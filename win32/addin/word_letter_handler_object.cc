#include "win32/addin/word_letter_handler_object.h"

#include <memory>

#include "src/addin/addin_services.h"
#include "src/addin/zintra_addin_app.h"
#include "src/core/z_error.h"
#include "src/toolbars/word_letter_handler.h"
#include "win32/addin/addin_host.h"
#include "win32/addin/connect_object.h"
#include "win32/com/bstr.h"
#include "win32/com/com_error.h"
#include "win32/com/dispatch_client.h"
#include "win32/com/variant.h"

namespace zintra::win32 {

namespace {

const DispatchTable& LetterHandlerMembers() {
  static const DispatchTable table{{L"LogDocument", kDispIdLogDocument}};
  return table;
}

// The add-in's letter handler in Outlook's process, reached through Outlook's add-in
// list; throws when Outlook or the add-in is not running.
ComPtr<IDispatch> HandlerInOutlook() {
  CLSID clsid;
  CheckHr(CLSIDFromProgID(L"Outlook.Application", &clsid), "CreateObject(\"Outlook.Application\")");
  ComPtr<IUnknown> running;
  HRESULT hr = GetActiveObject(clsid, nullptr, running.Put());
  if (FAILED(hr)) {
    throw ZError(kErrCannotCreateObject, "Outlook is not running, so the letter cannot be logged",
                 "WordLetterHandler.LogDocument");
  }
  ComPtr<IDispatch> outlook = running.As<IDispatch>();
  if (!outlook) CheckHr(E_NOINTERFACE, "Outlook.Application");
  DispatchClient add_ins(DispatchClient(outlook, "Application").GetDispatch("COMAddIns"),
                         "COMAddIns");
  DispatchClient add_in(add_ins.Call("Item", {Arg(Value("ZintraAddin.Connect"))}).ToObject(),
                        "COMAddIn");
  ComPtr<IDispatch> handler = add_in.GetDispatch("Object");
  if (!handler) {
    throw ZError(kErrObjectNotSet,
                 "Zintra is not running in Outlook, so the letter cannot be logged",
                 "WordLetterHandler.LogDocument");
  }
  return handler;
}

}  // namespace

WordLetterHandlerObject::WordLetterHandlerObject() : LateBoundObject(LetterHandlerMembers()) {}

HRESULT WordLetterHandlerObject::Create(REFIID iid, void** out) {
  WordLetterHandlerObject* object = new WordLetterHandlerObject();
  HRESULT hr = object->QueryInterface(iid, out);
  object->Release();
  return hr;
}

ComPtr<IDispatch> WordLetterHandlerObject::CreateDispatch() {
  return ComPtr<IDispatch>::Attach(new WordLetterHandlerObject());
}

HRESULT WordLetterHandlerObject::Invoke(DISPID id, REFIID /*iid*/, LCID /*lcid*/, WORD flags,
                                        DISPPARAMS* params, VARIANT* result, EXCEPINFO* excepinfo,
                                        UINT* /*arg_error*/) {
  if (result) VariantInit(result);
  if (id != kDispIdLogDocument || (flags & DISPATCH_METHOD) == 0) return DISP_E_MEMBERNOTFOUND;
  DispatchTable::Args args(params);
  if (HRESULT hr = args.CheckNoNamedArgs(); FAILED(hr)) return hr;
  if (args.Count() != 1) return DISP_E_BADPARAMCOUNT;
  return GuardCall("WordLetterHandler.LogDocument", excepinfo, [&] {
    LogDocument(ObjectOf(*args.At(0)));
    return S_OK;
  });
}

void WordLetterHandlerObject::LogDocument(const ComPtr<IDispatch>& document) {
  if (!document)
    throw ZError(kErrObjectNotSet, "No document to log", "WordLetterHandler.LogDocument");
  std::shared_ptr<AddinHost> host = ConnectObject::RunningHost();
  if (!host) {
    // Not inside Outlook (Word's macro created this object in Word's process): hand the
    // document to the add-in's own handler there. Inside an Outlook whose add-in has
    // quit, that handler is this class again: the second round ends it.
    static thread_local bool forwarding = false;
    if (forwarding) {
      throw ZError(kErrObjectNotSet,
                   "Zintra is not running in Outlook, so the letter cannot be logged",
                   "WordLetterHandler.LogDocument");
    }
    forwarding = true;
    try {
      DispatchClient(HandlerInOutlook(), "WordLetterHandler").Call("LogDocument", {Arg(document)});
    } catch (...) {
      forwarding = false;
      throw;
    }
    forwarding = false;
    return;
  }
  std::shared_ptr<ZintraAddinApp> app = host->RunningAddin();
  std::shared_ptr<AddinServices> services = app && app->Toolbars() ? app->Services() : nullptr;
  if (!services) {
    throw ZError(kErrObjectNotSet,
                 "Zintra runs without its toolbar (NeverLoadToolbars), so letters are not logged",
                 "WordLetterHandler.LogDocument");
  }
  WordLetterHandler(services).LogDocument(host->WrapDocument(document));
}

}  // namespace zintra::win32
