// ZintraKeepAlive.exe: the program that keeps Outlook running while the add-in finishes
// a job after Outlook's last window closed. COM starts it; /RegServer and /UnregServer
// register it. Exit codes: 0 done, 1 failed (the reason on standard error when there is
// one), 2 not a command it knows.
#include <string>
#include <vector>

#include "win32/com/windows_api.h"
// after windows.h
#include <shellapi.h>
#include "win32/keepalive/keep_alive_command.h"
#include "win32/keepalive/keep_alive_ids.h"
#include "win32/keepalive/keep_alive_registration.h"
#include "win32/keepalive/keep_alive_server.h"

namespace {

using zintra::win32::KeepAliveCommand;

std::vector<std::wstring> Arguments() {
  std::vector<std::wstring> args;
  int count = 0;
  LPWSTR* argv = CommandLineToArgvW(GetCommandLineW(), &count);
  if (!argv) return args;
  for (int i = 1; i < count; ++i) args.emplace_back(argv[i]);
  LocalFree(argv);
  return args;
}

std::wstring OwnPath() {
  std::wstring path(MAX_PATH, L'\0');
  while (true) {
    DWORD n = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
    if (n == 0) return {};
    if (n < path.size()) {
      path.resize(n);
      return path;
    }
    path.resize(path.size() * 2);
  }
}

// A line on standard error, when the program was started with one (a console or a
// redirection); a program without a console shows nothing.
void Tell(const std::string& line) {
  HANDLE err = GetStdHandle(STD_ERROR_HANDLE);
  if (err == nullptr || err == INVALID_HANDLE_VALUE) return;
  std::string text = line + "\r\n";
  DWORD written = 0;
  WriteFile(err, text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
}

int Registration(const KeepAliveCommand& command) {
  zintra::win32::KeepAliveRegistration registration(command.per_machine);
  const bool registering = command.action == KeepAliveCommand::Action::kRegister;
  HRESULT hr = registering ? registration.Register(OwnPath()) : registration.Unregister();
  if (SUCCEEDED(hr)) return 0;
  Tell(std::string("ZintraKeepAlive: could not ") + (registering ? "register" : "unregister") +
       (hr == E_ACCESSDENIED ? " (access denied: per machine needs an administrator)"
                             : " (the registry could not be written)"));
  return 1;
}

int Serve() {
  if (FAILED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) return 1;
  zintra::win32::KeepAliveServer server(zintra::win32::KeepAliveServer::Timing{});
  auto ending = server.Run();
  CoUninitialize();
  return ending == zintra::win32::KeepAliveServer::Ending::kFailed ? 1 : 0;
}

}  // namespace

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR, int) {
  KeepAliveCommand command = KeepAliveCommand::Parse(Arguments());
  switch (command.action) {
    case KeepAliveCommand::Action::kServe:
      return Serve();
    case KeepAliveCommand::Action::kRegister:
    case KeepAliveCommand::Action::kUnregister:
      return Registration(command);
    case KeepAliveCommand::Action::kUsage:
      break;
  }
  Tell("usage: ZintraKeepAlive.exe /RegServer [/Machine] | /UnregServer [/Machine]");
  MessageBoxW(nullptr,
              L"ZintraKeepAlive keeps Outlook running while the Zintra add-in finishes its "
              L"work at shut-down. Outlook's add-in starts it; it is not run by hand.\n\n"
              L"Register: ZintraKeepAlive.exe /RegServer [/Machine]\n"
              L"Remove: ZintraKeepAlive.exe /UnregServer [/Machine]",
              L"Zintra", MB_OK | MB_ICONINFORMATION);
  return 2;
}
