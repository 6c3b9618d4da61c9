// The entry points of ZintraControls.ocx: DllMain and the functions COM and regsvr32
// call (in_process_exports.cc, run by InProcessServer): the classes served here and
// their registration.
//
//   regsvr32 ZintraControls.ocx                 per user
//   regsvr32 /n /i:machine ZintraControls.ocx   per machine
//   regsvr32 /u [/n /i:machine] ZintraControls.ocx
#include "win32/addin/dll_module.h"
#include "win32/addin/in_process_server.h"
#include "win32/controls/control_registration.h"
#include "win32/controls/options_page_control.h"

using zintra::win32::DllModule;
using zintra::win32::InProcessServer;

namespace {

HRESULT Register(bool per_machine, bool install) {
  HKEY hive = per_machine ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER;
  return install ? zintra::win32::RegisterOptionsPage(hive, DllModule::Instance().Path())
                 : zintra::win32::UnregisterOptionsPage(hive);
}

}  // namespace

const InProcessServer& zintra::win32::ThisServer() {
  static const InProcessServer server(
      {{&zintra::win32::kClsidOptionsPage, &zintra::win32::OptionsPageControl::Create}}, &Register);
  return server;
}
