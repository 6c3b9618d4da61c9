// The DLL's entry points: DllMain and the five functions COM and regsvr32 call
// (in_process_exports.cc, run by InProcessServer): the classes served here and their
// registration.
//
//   regsvr32 ZintraAddin.dll                 per user (DllRegisterServer)
//   regsvr32 /n /i:machine ZintraAddin.dll   per machine (DllInstall only)
//   regsvr32 /u ZintraAddin.dll              removes the per-user registration
//   regsvr32 /u /n /i:machine ZintraAddin.dll removes the per-machine registration
#include "win32/addin/connect_object.h"
#include "win32/addin/dll_module.h"
#include "win32/addin/idt_extensibility2_com.h"
#include "win32/addin/in_process_server.h"
#include "win32/addin/server_registration.h"
#include "win32/addin/word_letter_handler_object.h"
#include "win32/ports/win32_file_system.h"
#include "win32/ports/win32_platform.h"
#include "win32/ports/win32_registry.h"

using zintra::win32::ConnectObject;
using zintra::win32::DllModule;
using zintra::win32::InProcessServer;
using zintra::win32::RegistrationScope;
using zintra::win32::ServerRegistration;
using zintra::win32::WordLetterHandlerObject;

namespace {

HRESULT Register(bool per_machine, bool install) {
  zintra::win32::Win32Registry registry;
  zintra::win32::Win32FileSystem files;
  zintra::win32::Win32Platform platform;
  ServerRegistration registration(
      per_machine ? RegistrationScope::kMachine : RegistrationScope::kUser, registry, files,
      platform);
  return install ? registration.Register(DllModule::Instance().Path()) : registration.Unregister();
}

}  // namespace

const InProcessServer& zintra::win32::ThisServer() {
  static const InProcessServer server(
      {{&zintra::win32::kClsidConnect, &ConnectObject::Create},
       {&zintra::win32::kClsidWordLetterHandler, &WordLetterHandlerObject::Create}},
      &Register);
  return server;
}
