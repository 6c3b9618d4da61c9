// Recording views of the two modal forms. Each showing is recorded (what the core
// put into the controls, the owner, whether it was brought to the front) and then
// played out from a script of user actions; with no script the user presses OK
// without touching anything else.
#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <vector>

#include "src/host/dialog_views.h"

namespace zintra::sim {

// What the user does while an optional message box is up.
struct OptionalMsgBoxAction {
  bool tick = false;       // set the check box to ticked (false leaves it as shown)
  bool untick = false;     // clear the check box
  bool close_box = false;  // close with the window's close box instead of OK
};

struct ShownOptionalMsgBox {
  OptionalMsgBoxContent content;  // as loaded
  WindowHandle owner = 0;
  bool brought_to_front = false;
  int32_t final_chkDontShow = 0;
  bool hidden_by_ok = false;  // the form hid itself in answer to OK
  int64_t order = 0;          // NextShowingOrder at the showing
};

struct ShownMessageForm {
  MessageFormLayout layout;
  WindowHandle owner = 0;
  bool hidden_by_ok = false;
  int64_t order = 0;  // NextShowingOrder at the showing
};

class RecordingDialogViews : public DialogViewFactory {
 public:
  // The sim measures text in a fixed font: kCharWidth per character, kLineHeight per
  // line, lines broken at spaces (or anywhere in a word longer than the width) and at
  // line breaks.
  static constexpr int32_t kCharWidth = 7;
  static constexpr int32_t kLineHeight = 13;

  std::unique_ptr<OptionalMsgBoxView> CreateOptionalMsgBoxView() override;
  std::unique_ptr<MessageFormView> CreateMessageFormView() override;

  void Script(OptionalMsgBoxAction action) { actions_.push_back(action); }
  const std::vector<ShownOptionalMsgBox>& OptionalShown() const { return optional_shown_; }
  const std::vector<ShownMessageForm>& MessagesShown() const { return messages_shown_; }
  // Views created and not yet released (forms still loaded).
  int32_t LiveViews() const { return *live_; }

  static ViewSize Measure(const std::string& text, int32_t max_width);

 private:
  friend class SimOptionalMsgBoxView;
  friend class SimMessageFormView;

  std::deque<OptionalMsgBoxAction> actions_;
  std::vector<ShownOptionalMsgBox> optional_shown_;
  std::vector<ShownMessageForm> messages_shown_;
  std::shared_ptr<int32_t> live_ = std::make_shared<int32_t>(0);
};

}  // namespace zintra::sim
