// Quillbar.dll's entry points: DllMain and the functions COM and regsvr32 call
// (in_process_exports.cc, run by InProcessServer): the classes served here and their
// registration.
//
//   regsvr32 Quillbar.dll                   per user (DllRegisterServer)
//   regsvr32 /n /i:machine Quillbar.dll     per machine (DllInstall only)
//   regsvr32 /u Quillbar.dll                removes the per-user registration
//   regsvr32 /u /n /i:machine Quillbar.dll  removes the per-machine registration
#include "win32/addin/dll_module.h"
#include "win32/addin/in_process_server.h"
#include "win32/toolbar_library/toolbar_helper_object.h"
#include "win32/toolbar_library/toolbar_registration.h"

using zintra::win32::DllModule;
using zintra::win32::InProcessServer;
using zintra::win32::ToolbarHelperObject;
using zintra::win32::ToolbarRegistration;

namespace {

HRESULT Register(bool per_machine, bool install) {
  ToolbarRegistration registration(per_machine ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER);
  return install ? registration.Register(DllModule::Instance().Path()) : registration.Unregister();
}

}  // namespace

const InProcessServer& zintra::win32::ThisServer() {
  static const InProcessServer server(
      {{&zintra::win32::kClsidToolbarHelper, &ToolbarHelperObject::Create}}, &Register);
  return server;
}
