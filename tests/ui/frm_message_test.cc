#include "src/ui/frm_message.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "sim/ui/recording_dialog_views.h"
#include "src/ui/frm_optional_msg_box.h"

namespace zintra {
namespace {

using sim::RecordingDialogViews;

// Space left and right of the button differ by at most the odd pixel.
bool Centred(const ViewRect& button, int32_t width) {
  int32_t right_gap = width - button.left - button.width;
  return button.left >= 0 && std::abs(button.left - right_gap) <= 1;
}

MessageFormLayout LayOut(RecordingDialogViews& views, const std::string& text) {
  frmMessage form(views.CreateMessageFormView(), "OK");
  form.Initialize("Zintra", text);
  form.Show(77);
  return views.MessagesShown().back().layout;
}

TEST(FrmMessageTest, ShortTextKeepsTheMinimumWidthWithTheButtonCentredBelow) {
  RecordingDialogViews views;
  MessageFormLayout layout = LayOut(views, "Done.");
  EXPECT_EQ(layout.caption, "Zintra");
  EXPECT_EQ(layout.lblMessage, "Done.");
  EXPECT_EQ(layout.cmdOk, "OK");
  EXPECT_EQ(layout.label, (ViewRect{12, 12, frmMessage::kMinLabelWidth, 13}));
  EXPECT_EQ(layout.client.width, frmMessage::kMinLabelWidth + 24);
  EXPECT_EQ(layout.button.top, 12 + 13 + 12);
  EXPECT_TRUE(Centred(layout.button, layout.client.width));
  EXPECT_EQ(layout.client.height, layout.button.top + layout.button.height + 12);
  EXPECT_TRUE(views.MessagesShown().back().hidden_by_ok);
  EXPECT_EQ(views.MessagesShown().back().owner, 77);
}

TEST(FrmMessageTest, LongTextWrapsAtTheMaximumWidthAndTheFormGrowsDown) {
  RecordingDialogViews views;
  std::string para(200, 'a');
  for (size_t i = 9; i < para.size(); i += 10) para[i] = ' ';
  MessageFormLayout one = LayOut(views, para);
  MessageFormLayout two = LayOut(views, para + "\r\n\r\n" + para);
  EXPECT_LE(one.label.width, frmMessage::kMaxLabelWidth);
  EXPECT_GT(one.label.width, frmMessage::kMinLabelWidth);
  EXPECT_GT(one.label.height, 13);
  EXPECT_EQ(two.label.width, one.label.width);
  EXPECT_EQ(two.label.height, one.label.height * 2 + 13);
  EXPECT_EQ(two.button.top - one.button.top, two.label.height - one.label.height);
  EXPECT_TRUE(Centred(two.button, two.client.width));
}

TEST(FrmOptionalMsgBoxTest, DisplayHonoursTheDefaultTick) {
  RecordingDialogViews views;
  frmOptionalMsgBox form(views.CreateOptionalMsgBoxView());
  form.Display("m", "c", "chk", "ok", /*HideOptDefault=*/true, 0, false);
  EXPECT_EQ(form.chkDontShow(), 1);
  EXPECT_EQ(views.OptionalShown().back().content.chkDontShow_value, 1);
  views.Script({.untick = true});
  form.Display("m", "c", "chk", "ok", true, 0, false);
  EXPECT_EQ(form.chkDontShow(), 0);
}

}  // namespace
}  // namespace zintra
