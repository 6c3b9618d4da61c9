#include "win32/ports/failure_log.h"

#include <exception>
#include <utility>

#include "src/core/z_error.h"
#include "win32/com/windows_api.h"

namespace zintra::win32 {
namespace {

FailureSink& Sink() {
  static FailureSink sink;
  return sink;
}

}  // namespace

FailureSink SetFailureSink(FailureSink sink) { return std::exchange(Sink(), std::move(sink)); }

void ReportFailure(const std::string& where, const std::string& what) noexcept {
  try {
    if (Sink()) {
      Sink()(where, what);
      return;
    }
    std::string line = "Zintra: " + where + ": " + what + "\n";
    OutputDebugStringA(line.c_str());
  } catch (...) {
    OutputDebugStringA("Zintra: a failure could not be reported\n");
  }
}

void ReportCurrentException(const std::string& where) noexcept {
  try {
    throw;
  } catch (const ZError& error) {
    ReportFailure(where, "Error " + std::to_string(error.Number()) + ": " + error.Description());
  } catch (const std::exception& error) {
    ReportFailure(where, error.what());
  } catch (...) {
    ReportFailure(where, "unknown exception");
  }
}

}  // namespace zintra::win32
