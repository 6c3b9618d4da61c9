#include "win32/ports/win32_dialog_views.h"

#include <algorithm>

#include "win32/ports/gui_font.h"
#include "win32/ports/handles.h"

namespace zintra::win32 {
namespace {

constexpr int kLabelId = 201;
constexpr int kCheckId = 202;

// The optional message box's fixed layout, in pixels.
constexpr int kMargin = 12;
constexpr int kBoxWidth = 360;
constexpr int kMinLabelHeight = 40;
constexpr int kCheckHeight = 20;
constexpr int kButtonWidth = 88;
constexpr int kButtonHeight = 26;

ViewSize Measure(HWND window, const std::string& text, int32_t max_width) {
  HDC dc = GetDC(window);
  if (dc == nullptr) return ViewSize{};
  HGDIOBJ old_font = SelectObject(dc, GuiFont());
  RECT area{0, 0, std::max<int32_t>(max_width, 1), 0};
  DrawTextA(dc, text.c_str(), static_cast<int>(text.size()), &area,
            DT_CALCRECT | DT_WORDBREAK | DT_EXPANDTABS | DT_NOPREFIX);
  SelectObject(dc, old_font);
  ReleaseDC(window, dc);
  return ViewSize{area.right - area.left, area.bottom - area.top};
}

void Place(HWND control, const ViewRect& rect) {
  MoveWindow(control, rect.left, rect.top, rect.width, rect.height, TRUE);
}

}  // namespace

Win32OptionalMsgBoxView::Win32OptionalMsgBoxView() : dialog_([this] { cmdOk_Click.Raise(); }) {
  label_ = CreateControl(dialog_.hwnd(), "STATIC", "", SS_LEFT | SS_NOPREFIX, kLabelId);
  check_ = CreateControl(dialog_.hwnd(), "BUTTON", "", BS_AUTOCHECKBOX | WS_TABSTOP, kCheckId);
  ok_ = CreateControl(dialog_.hwnd(), "BUTTON", "OK", BS_DEFPUSHBUTTON | WS_TABSTOP, IDOK);
}

void Win32OptionalMsgBoxView::Load(const OptionalMsgBoxContent& content) {
  SetWindowTextA(dialog_.hwnd(), content.caption.c_str());
  SetWindowTextA(label_, content.lblMsg.c_str());
  SetWindowTextA(check_, content.chkDontShow.c_str());
  SetWindowTextA(ok_, content.cmdOk.c_str());
  SendMessageA(check_, BM_SETCHECK, content.chkDontShow_value == 1 ? BST_CHECKED : BST_UNCHECKED,
               0);
  // The message decides the height; the check box and the button go below it.
  const int label_width = kBoxWidth - 2 * kMargin;
  const int label_height =
      std::max(kMinLabelHeight, Measure(dialog_.hwnd(), content.lblMsg, label_width).height);
  Place(label_, {kMargin, kMargin, label_width, label_height});
  const int check_top = kMargin + label_height + kMargin;
  Place(check_, {kMargin, check_top, label_width, kCheckHeight});
  const int button_top = check_top + kCheckHeight + kMargin;
  Place(ok_, {kBoxWidth - kMargin - kButtonWidth, button_top, kButtonWidth, kButtonHeight});
  dialog_.SetClientSize(kBoxWidth, button_top + kButtonHeight + kMargin);
}

void Win32OptionalMsgBoxView::SetForegroundWindow() { ::SetForegroundWindow(dialog_.hwnd()); }

void Win32OptionalMsgBoxView::ShowModal(WindowHandle owner) {
  SetFocus(ok_);
  dialog_.ShowModal(ToHwnd(owner));
}

void Win32OptionalMsgBoxView::Hide() { dialog_.Hide(); }

int32_t Win32OptionalMsgBoxView::chkDontShowValue() const {
  return SendMessageA(check_, BM_GETCHECK, 0, 0) == BST_CHECKED ? 1 : 0;
}

Win32MessageFormView::Win32MessageFormView() : dialog_([this] { cmdOk_Click.Raise(); }) {
  label_ = CreateControl(dialog_.hwnd(), "STATIC", "", SS_LEFT | SS_NOPREFIX, kLabelId);
  ok_ = CreateControl(dialog_.hwnd(), "BUTTON", "OK", BS_DEFPUSHBUTTON | WS_TABSTOP, IDOK);
}

ViewSize Win32MessageFormView::MeasureText(const std::string& text, int32_t max_width) {
  return Measure(dialog_.hwnd(), text, max_width);
}

void Win32MessageFormView::Apply(const MessageFormLayout& layout) {
  SetWindowTextA(dialog_.hwnd(), layout.caption.c_str());
  SetWindowTextA(label_, layout.lblMessage.c_str());
  SetWindowTextA(ok_, layout.cmdOk.c_str());
  Place(label_, layout.label);
  Place(ok_, layout.button);
  dialog_.SetClientSize(layout.client.width, layout.client.height);
}

void Win32MessageFormView::ShowModal(WindowHandle owner) {
  SetFocus(ok_);
  dialog_.ShowModal(ToHwnd(owner));
}

void Win32MessageFormView::Hide() { dialog_.Hide(); }

std::unique_ptr<OptionalMsgBoxView> Win32DialogViewFactory::CreateOptionalMsgBoxView() {
  return std::make_unique<Win32OptionalMsgBoxView>();
}

std::unique_ptr<MessageFormView> Win32DialogViewFactory::CreateMessageFormView() {
  return std::make_unique<Win32MessageFormView>();
}

}  // namespace zintra::win32
