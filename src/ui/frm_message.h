// frmMessage: a longer message in a label that grows with its text, and one OK
// button centred beneath it. Owns its view.
//
// Layout (pixels): the label is wrapped at kMaxLabelWidth and is never narrower than
// kMinLabelWidth; kMargin surrounds it; the button sits kMargin below the label,
// centred; the form is as wide as the label plus both margins.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "src/core/event.h"
#include "src/host/dialog_views.h"

namespace zintra {

class frmMessage {
 public:
  static constexpr int32_t kMargin = 12;
  static constexpr int32_t kMinLabelWidth = 240;
  static constexpr int32_t kMaxLabelWidth = 480;
  static constexpr int32_t kButtonWidth = 75;
  static constexpr int32_t kButtonHeight = 23;

  // `ok_caption` is the button's text (string 500 of the string table).
  frmMessage(std::unique_ptr<MessageFormView> view, std::string ok_caption);
  frmMessage(const frmMessage&) = delete;
  frmMessage& operator=(const frmMessage&) = delete;

  // Sets the caption and the message and lays the form out to fit the text.
  void Initialize(const std::string& caption, const std::string& message);
  // Shows the form modally (over `owner` when not 0) until OK or close.
  void Show(WindowHandle owner = 0);

  const MessageFormLayout& layout() const { return layout_; }

 private:
  void cmdOk_Click();

  std::unique_ptr<MessageFormView> view_;
  MessageFormLayout layout_;
  Connection cmd_ok_click_;
};

}  // namespace zintra
