#include "sim/ui/recording_msg_box.h"

namespace zintra::sim {

int64_t NextShowingOrder() {
  static int64_t next = 0;
  return ++next;
}

int32_t RecordingMsgBox::DefaultAnswer(int32_t buttons) {
  // The button set is in the low nibble, the default button in bits 8-9.
  int32_t set = buttons & 0xF;
  int32_t which = (buttons >> 8) & 0x3;
  static const int32_t kSets[][3] = {
      {kMsgBoxResultOK, kMsgBoxResultOK, kMsgBoxResultOK},
      {kMsgBoxResultOK, kMsgBoxResultCancel, kMsgBoxResultCancel},
      {kMsgBoxResultAbort, kMsgBoxResultRetry, kMsgBoxResultIgnore},
      {kMsgBoxResultYes, kMsgBoxResultNo, kMsgBoxResultCancel},
      {kMsgBoxResultYes, kMsgBoxResultNo, kMsgBoxResultNo},
      {kMsgBoxResultRetry, kMsgBoxResultCancel, kMsgBoxResultCancel},
  };
  if (set > 5) set = 0;
  return kSets[set][which > 2 ? 0 : which];
}

int32_t RecordingMsgBox::Show(const std::string& prompt, int32_t buttons,
                              const std::string& title) {
  int32_t answer = DefaultAnswer(buttons);
  if (!answers_.empty()) {
    answer = answers_.front();
    answers_.pop_front();
  }
  shown_.push_back({prompt, buttons, title, answer, NextShowingOrder()});
  return answer;
}

}  // namespace zintra::sim
