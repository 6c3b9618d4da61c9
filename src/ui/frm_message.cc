#include "src/ui/frm_message.h"

#include <algorithm>
#include <utility>

namespace zintra {

frmMessage::frmMessage(std::unique_ptr<MessageFormView> view, std::string ok_caption)
    : view_(std::move(view)), cmd_ok_click_(view_->cmdOk_Click.Connect([this] { cmdOk_Click(); })) {
  layout_.cmdOk = std::move(ok_caption);
}

void frmMessage::Initialize(const std::string& caption, const std::string& message) {
  layout_.caption = caption;
  layout_.lblMessage = message;
  ViewSize text = view_->MeasureText(message, kMaxLabelWidth);
  int32_t label_width = std::clamp(text.width, kMinLabelWidth, kMaxLabelWidth);
  int32_t label_height = std::max(text.height, 0);
  layout_.label = {kMargin, kMargin, label_width, label_height};
  layout_.client.width = label_width + 2 * kMargin;
  int32_t button_top = kMargin + label_height + kMargin;
  layout_.button = {(layout_.client.width - kButtonWidth) / 2, button_top, kButtonWidth,
                    kButtonHeight};
  layout_.client.height = button_top + kButtonHeight + kMargin;
  view_->Apply(layout_);
}

void frmMessage::Show(WindowHandle owner) { view_->ShowModal(owner); }

void frmMessage::cmdOk_Click() { view_->Hide(); }

}  // namespace zintra
