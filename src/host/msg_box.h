// MsgBox: the platform's modal message box. Button and icon flags and the answers
// are the platform's own numbers, so callers combine them as in the original
// (kMsgBoxYesNo | kMsgBoxQuestion). Called on the user-interface thread; blocks until
// the user answers. Never throws.
#pragma once

#include <cstdint>
#include <string>

namespace zintra {

inline constexpr int32_t kMsgBoxOKOnly = 0;
inline constexpr int32_t kMsgBoxOKCancel = 1;
inline constexpr int32_t kMsgBoxAbortRetryIgnore = 2;
inline constexpr int32_t kMsgBoxYesNoCancel = 3;
inline constexpr int32_t kMsgBoxYesNo = 4;
inline constexpr int32_t kMsgBoxRetryCancel = 5;
inline constexpr int32_t kMsgBoxCritical = 16;
inline constexpr int32_t kMsgBoxQuestion = 32;
inline constexpr int32_t kMsgBoxExclamation = 48;
inline constexpr int32_t kMsgBoxInformation = 64;
inline constexpr int32_t kMsgBoxDefaultButton2 = 256;
inline constexpr int32_t kMsgBoxDefaultButton3 = 512;
inline constexpr int32_t kMsgBoxSystemModal = 4096;

inline constexpr int32_t kMsgBoxResultOK = 1;
inline constexpr int32_t kMsgBoxResultCancel = 2;
inline constexpr int32_t kMsgBoxResultAbort = 3;
inline constexpr int32_t kMsgBoxResultRetry = 4;
inline constexpr int32_t kMsgBoxResultIgnore = 5;
inline constexpr int32_t kMsgBoxResultYes = 6;
inline constexpr int32_t kMsgBoxResultNo = 7;

class MsgBox {
 public:
  virtual ~MsgBox() = default;
  // Shows `prompt` under `title` with the given button/icon flags; returns the answer.
  virtual int32_t Show(const std::string& prompt, int32_t buttons, const std::string& title) = 0;
};

}  // namespace zintra
