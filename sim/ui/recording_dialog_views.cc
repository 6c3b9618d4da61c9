#include "sim/ui/recording_dialog_views.h"

#include "sim/ui/recording_msg_box.h"

#include <algorithm>

namespace zintra::sim {

// Counts itself among the factory's live views while it exists.
class LiveCount {
 public:
  explicit LiveCount(std::shared_ptr<int32_t> count) : count_(std::move(count)) { ++*count_; }
  ~LiveCount() { --*count_; }
  LiveCount(const LiveCount&) = delete;
  LiveCount& operator=(const LiveCount&) = delete;

 private:
  std::shared_ptr<int32_t> count_;
};

class SimOptionalMsgBoxView : public OptionalMsgBoxView {
 public:
  explicit SimOptionalMsgBoxView(RecordingDialogViews& owner) : owner_(owner), live_(owner.live_) {}

  void Load(const OptionalMsgBoxContent& content) override {
    content_ = content;
    check_ = content.chkDontShow_value;
  }
  void SetForegroundWindow() override { front_ = true; }
  void ShowModal(WindowHandle owner) override {
    visible_ = true;
    OptionalMsgBoxAction action;
    if (!owner_.actions_.empty()) {
      action = owner_.actions_.front();
      owner_.actions_.pop_front();
    }
    if (action.tick) check_ = 1;
    if (action.untick) check_ = 0;
    bool by_ok = false;
    if (action.close_box) {
      visible_ = false;
    } else {
      cmdOk_Click.Raise();
      by_ok = !visible_;
    }
    // A form that ignored OK would stay up; the sim records that and lets go.
    visible_ = false;
    owner_.optional_shown_.push_back({content_, owner, front_, check_, by_ok, NextShowingOrder()});
  }
  void Hide() override { visible_ = false; }
  int32_t chkDontShowValue() const override { return check_; }

 private:
  RecordingDialogViews& owner_;
  LiveCount live_;
  OptionalMsgBoxContent content_;
  int32_t check_ = 0;
  bool front_ = false;
  bool visible_ = false;
};

class SimMessageFormView : public MessageFormView {
 public:
  explicit SimMessageFormView(RecordingDialogViews& owner) : owner_(owner), live_(owner.live_) {}

  ViewSize MeasureText(const std::string& text, int32_t max_width) override {
    return RecordingDialogViews::Measure(text, max_width);
  }
  void Apply(const MessageFormLayout& layout) override { layout_ = layout; }
  void ShowModal(WindowHandle owner) override {
    visible_ = true;
    cmdOk_Click.Raise();
    owner_.messages_shown_.push_back({layout_, owner, !visible_, NextShowingOrder()});
    visible_ = false;
  }
  void Hide() override { visible_ = false; }

 private:
  RecordingDialogViews& owner_;
  LiveCount live_;
  MessageFormLayout layout_;
  bool visible_ = false;
};

std::unique_ptr<OptionalMsgBoxView> RecordingDialogViews::CreateOptionalMsgBoxView() {
  return std::make_unique<SimOptionalMsgBoxView>(*this);
}

std::unique_ptr<MessageFormView> RecordingDialogViews::CreateMessageFormView() {
  return std::make_unique<SimMessageFormView>(*this);
}

ViewSize RecordingDialogViews::Measure(const std::string& text, int32_t max_width) {
  const size_t per_line = static_cast<size_t>(std::max(1, max_width / kCharWidth));
  size_t widest = 0;
  int32_t lines = 0;
  size_t start = 0;
  // Each paragraph (text between line breaks) wraps on its own.
  while (start <= text.size()) {
    size_t end = text.find('\n', start);
    if (end == std::string::npos) end = text.size();
    std::string para = text.substr(start, end - start);
    if (!para.empty() && para.back() == '\r') para.pop_back();
    size_t pos = 0;
    do {
      size_t len = std::min(per_line, para.size() - pos);
      if (pos + len < para.size()) {
        size_t space = para.rfind(' ', pos + len);
        if (space != std::string::npos && space > pos) len = space - pos;
      }
      widest = std::max(widest, len);
      ++lines;
      pos += len;
      while (pos < para.size() && para[pos] == ' ') ++pos;
    } while (pos < para.size());
    start = end + 1;
  }
  return {static_cast<int32_t>(widest) * kCharWidth, lines * kLineHeight};
}

}  // namespace zintra::sim
