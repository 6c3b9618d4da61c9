// What a call raises as one of the system's own errors, for tests that expect it to fail:
// ErrorOf gives the error number (0 when the call returns), Raised the whole error (of
// another class when told, such as an input error).
#pragma once

#include <functional>
#include <optional>

#include "src/core/z_error.h"

namespace zintra {

inline int32_t ErrorOf(const std::function<void()>& call) {
  try {
    call();
  } catch (const ZError& e) {
    return e.Number();
  }
  return 0;
}

template <class Error = ZError>
std::optional<Error> Raised(const std::function<void()>& call) {
  try {
    call();
  } catch (const Error& e) {
    return e;
  }
  return std::nullopt;
}

}  // namespace zintra
