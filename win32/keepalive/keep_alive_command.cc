#include "win32/keepalive/keep_alive_command.h"

#include <cwctype>

namespace zintra::win32 {
namespace {

// The switch's name in lower case, or "" when `arg` is not a switch.
std::wstring SwitchName(const std::wstring& arg) {
  if (arg.size() < 2 || (arg[0] != L'/' && arg[0] != L'-')) return {};
  std::wstring name = arg.substr(1);
  for (wchar_t& c : name) c = static_cast<wchar_t>(std::towlower(c));
  return name;
}

}  // namespace

KeepAliveCommand KeepAliveCommand::Parse(const std::vector<std::wstring>& args) {
  KeepAliveCommand command;
  KeepAliveCommand usage;
  bool machine = false;
  for (const std::wstring& arg : args) {
    std::wstring name = SwitchName(arg);
    Action action;
    if (name == L"embedding" || name == L"automation") {
      action = Action::kServe;
    } else if (name == L"regserver") {
      action = Action::kRegister;
    } else if (name == L"unregserver") {
      action = Action::kUnregister;
    } else if (name == L"machine") {
      machine = true;
      continue;
    } else {
      return usage;
    }
    if (command.action != Action::kUsage && command.action != action) return usage;
    command.action = action;
  }
  if (machine && command.action != Action::kRegister && command.action != Action::kUnregister) {
    return usage;
  }
  command.per_machine = machine;
  return command;
}

}  // namespace zintra::win32
