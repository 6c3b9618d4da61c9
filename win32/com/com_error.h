// The one mapping between COM failures and the core's ZError, both ways.
//
// Calling out: a failed HRESULT becomes the error number late binding would have
// raised — 438 for an unknown member, 13 for a type mismatch, 429 when a ProgID cannot
// be created, the error an automation server raised (EXCEPINFO's wCode, else its scode),
// and otherwise the HRESULT itself as a signed number (a MAPI error reads as
// kMapiNotFound and the like).
//
// Being called: every COM entry point of ours runs its body through GuardCall, so no
// C++ exception crosses the boundary; a ZError is reported as DISP_E_EXCEPTION with an
// EXCEPINFO that round-trips to the same ZError on the calling side.
#pragma once

#include <cstdint>
#include <functional>
#include <string_view>

#include "src/core/z_error.h"
#include "win32/com/windows_api.h"

namespace zintra::win32 {

inline constexpr int32_t kErrCannotCreateObject = 429;
inline constexpr int32_t kErrNoInterface = 430;
inline constexpr int32_t kErrWrongArgumentCount = 450;

// The run-time error number for a failed call; `info` may be null.
int32_t ErrorNumberOf(HRESULT hr, const EXCEPINFO* info);
// Throws the ZError for a failed call; `what` names the call ("Items.GetFirst").
[[noreturn]] void ThrowComError(HRESULT hr, const EXCEPINFO* info, std::string_view what);
inline void CheckHr(HRESULT hr, std::string_view what) {
  if (FAILED(hr)) ThrowComError(hr, nullptr, what);
}

// The HRESULT a ZError is reported as, filling `info` when given (strings allocated for
// the caller to free, as IDispatch::Invoke's contract says).
HRESULT ReportError(const ZError& error, EXCEPINFO* info);

// Runs `body`; any exception is caught and reported: a ZError as above, anything else
// as E_UNEXPECTED (with its text in `info` when given). `where` names the entry point
// for the description of a foreign exception.
HRESULT GuardCall(std::string_view where, EXCEPINFO* info, const std::function<HRESULT()>& body);

}  // namespace zintra::win32
