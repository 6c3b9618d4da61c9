// RecordingMsgBox: a message box that records every showing and answers from a
// script. Without a scripted answer it answers as a user pressing the default button
// would: OK for OK-only boxes, else the first button of the set.
#pragma once

#include <cstdint>
#include <deque>
#include <string>
#include <vector>

#include "src/host/msg_box.h"

namespace zintra::sim {

// The order of every showing of a message box or form, across the recorders, so that
// a test can tell which came first.
int64_t NextShowingOrder();

struct ShownMsgBox {
  std::string prompt;
  int32_t buttons = 0;
  std::string title;
  int32_t answer = 0;
  int64_t order = 0;  // NextShowingOrder at the showing
};

class RecordingMsgBox : public MsgBox {
 public:
  int32_t Show(const std::string& prompt, int32_t buttons, const std::string& title) override;

  // The next showing answers `answer` (kMsgBoxResultYes, ...); answers queue up.
  void Answer(int32_t answer) { answers_.push_back(answer); }
  const std::vector<ShownMsgBox>& Shown() const { return shown_; }
  void Clear() { shown_.clear(); }

  // The answer a user pressing Enter gives for a set of button flags.
  static int32_t DefaultAnswer(int32_t buttons);

 private:
  std::deque<int32_t> answers_;
  std::vector<ShownMsgBox> shown_;
};

}  // namespace zintra::sim
