// KeepAliveCommand: what the keep-alive program's command line asks for. Switches start
// with "/" or "-" and ignore letter case:
//   -Embedding (or -Automation) COM starts the program to serve its class (KeepAliveServer)
//   /RegServer [/Machine]       register the class, per user or (/Machine) per machine
//   /UnregServer [/Machine]     remove that registration
// Anything else, or nothing, is a usage error (the program shows what it is for).
#pragma once

#include <string>
#include <vector>

namespace zintra::win32 {

struct KeepAliveCommand {
  enum class Action { kServe, kRegister, kUnregister, kUsage };
  Action action = Action::kUsage;
  bool per_machine = false;

  // `args` without the program's own name.
  static KeepAliveCommand Parse(const std::vector<std::wstring>& args);
};

}  // namespace zintra::win32
