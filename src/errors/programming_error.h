// Programming errors: a C++ exception other than ZError (a bad variant access, an index
// out of range, a logic error) that reaches one of the system's handlers. The handlers
// still keep it from Outlook, but it is never reported as one of the system's own
// errors: its record carries number 51 ("Internal error") and a text that names the
// exception's type, and a process-wide observer hears of it, so that a test or a
// sanitizer build fails on it instead of passing it as a handled error.
#pragma once

#include <cstdint>
#include <exception>
#include <functional>
#include <string>

namespace zintra {

inline constexpr int32_t kErrInternal = 51;

using ProgrammingErrorObserver = std::function<void(const std::string& description)>;

// Replaces the observer (none by default); returns the previous one.
ProgrammingErrorObserver SetProgrammingErrorObserver(ProgrammingErrorObserver observer);

// "Programming error: <type>: <what>" for an exception that is not a ZError (nor
// std::bad_alloc, which is the platform running out of memory), after telling the
// observer; "" for those two.
std::string NoteIfProgrammingError(const std::exception_ptr& error);

// For handlers that deliberately ignore what they catch: a programming error is still
// noted. Call only inside a catch block.
void IgnoreCurrentException();

}  // namespace zintra
