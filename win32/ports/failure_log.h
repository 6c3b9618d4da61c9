// FailureLog: where the Windows host reports failures it must not let escape (an
// exception thrown by a handler inside a window procedure or timer callback, a platform
// call that failed where nobody can be told). The composition root installs a sink that
// writes them to the add-in's log; without one they go to the debugger output. The sink
// runs on the thread that failed and must not throw.
#pragma once

#include <functional>
#include <string>

namespace zintra::win32 {

using FailureSink = std::function<void(const std::string& where, const std::string& what)>;

// Replaces the sink (an empty one restores the debugger output); returns the old one.
FailureSink SetFailureSink(FailureSink sink);

// Reports one failure; never throws.
void ReportFailure(const std::string& where, const std::string& what) noexcept;

// Reports the exception being handled (call from a catch block); never throws.
void ReportCurrentException(const std::string& where) noexcept;

}  // namespace zintra::win32
