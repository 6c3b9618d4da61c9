// The forms as real (hidden) windows: what they hold and the clicks they report. Nothing
// here shows a window, so the tests run without a display.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include "src/core/z_error.h"
#include "win32/com/unique_handles.h"
#include "win32/ports/handles.h"
#include "win32/ports/win32_dialog_views.h"
#include "win32/ports/win32_form_factory.h"
#include "win32/ports/win32_msg_box.h"
#include "win32/ports/win32_popup_menu.h"
#include "win32/ports/win32_shell.h"
#include "win32/ports/win32_task_list_view.h"
#include "win32/ports/win32_tray_view.h"
#include "win32/ports/win32_window_manager.h"

namespace zintra::win32 {
namespace {

std::string TextOf(HWND window) {
  char text[256] = {};
  GetWindowTextA(window, text, sizeof(text));
  return text;
}

// Top-level windows need a desktop: without a display (Wine with no X server) these tests
// are skipped; tools/test-windows.sh runs the suites named *OnDesktop again under a
// virtual X server.
class FormsTest : public ::testing::Test {
 protected:
  void SetUp() override {
    UniqueHWnd probe(
        CreateWindowExA(0, "STATIC", "", WS_POPUP, 0, 0, 1, 1, nullptr, nullptr, nullptr, nullptr));
    if (!probe) GTEST_SKIP() << "top-level windows need a display";
  }
};
using Win32FormsOnDesktop = FormsTest;
using Win32DialogsOnDesktop = FormsTest;

int32_t ErrorOf(const std::function<void()>& call) {
  try {
    call();
  } catch (const ZError& error) {
    return error.Number();
  }
  return 0;
}

TEST_F(Win32FormsOnDesktop, TheTaskListHoldsRowsAndReportsItsButtons) {
  auto made = Win32FormFactory().CreateTaskListView();
  auto& view = dynamic_cast<Win32TaskListView&>(*made);
  const HWND window = ToHwnd(view.hWnd());
  EXPECT_FALSE(view.Visible());
  view.SetAbortCaption("Abort all");
  EXPECT_EQ(TextOf(view.AbortButton()), "Abort all");

  RECT empty{}, two_rows{};
  GetWindowRect(window, &empty);
  view.AddRow("a", "Logging 3 items", 1);
  view.AddRow("b", "Filling caches", 2);
  EXPECT_EQ(ErrorOf([&] { view.AddRow("a", "again", 1); }), 35602);
  view.SetRowProgress("a", 40);
  view.SetRowProgress("b", 250);
  view.SetRowProgress("missing", 10);
  ASSERT_EQ(view.Rows().size(), 2u);
  EXPECT_EQ(view.Rows()[0].percent, 40);
  EXPECT_EQ(view.Rows()[1].percent, 100);
  GetWindowRect(window, &two_rows);
  EXPECT_GT(two_rows.bottom - two_rows.top, empty.bottom - empty.top) << "grows with its rows";
  view.RemoveRow("a");
  EXPECT_EQ(view.Rows().size(), 1u);
  view.SetProgress(view.ProgressMax() / 2);
  EXPECT_EQ(view.Progress(), view.ProgressMax() / 2);

  int aborts = 0, minimizes = 0;
  Connection a = view.AbortClick.Connect([&] { ++aborts; });
  Connection m = view.MinimizeClick.Connect([&] { ++minimizes; });
  SendMessageA(view.AbortButton(), BM_CLICK, 0, 0);
  SendMessageA(view.MinimizeButton(), BM_CLICK, 0, 0);
  EXPECT_EQ(aborts, 1);
  EXPECT_EQ(minimizes, 1);
  EXPECT_TRUE(
      Win32WindowManager().SetWindowPos(view.hWnd(), kHwndTopmost, 0, 0, 0, 0, kSwpKeepOnTopFlags));
  made.reset();
  EXPECT_FALSE(IsWindow(window)) << "released with its view";
}

TEST_F(Win32FormsOnDesktop, TheTrayFormReportsTheShellsMouseMessagesInTwips) {
  Win32TrayView view;
  ICONINFO icon{};  // the product's own icon, at the small-icon size
  ASSERT_TRUE(GetIconInfo(ToHicon(view.IconHandle()), &icon));
  UniqueGdiObject color(icon.hbmColor);  // copies made for the caller
  UniqueGdiObject mask(icon.hbmMask);
  BITMAP bitmap{};
  GetObjectA(icon.hbmColor, sizeof(bitmap), &bitmap);
  EXPECT_EQ(bitmap.bmWidth, GetSystemMetrics(SM_CXSMICON));
  EXPECT_GT(view.ScaleXPerPixel(), 0.0f);
  std::vector<float> moves;
  Connection c = view.MouseMove.Connect([&](float x) { moves.push_back(x); });
  constexpr UINT kRightButtonUp = 0x205;
  SendMessageA(ToHwnd(view.hWnd()), WM_MOUSEMOVE, 0, kRightButtonUp);
  ASSERT_EQ(moves.size(), 1u);
  EXPECT_FLOAT_EQ(moves[0] / view.ScaleXPerPixel(), static_cast<float>(kRightButtonUp));
}

TEST_F(Win32FormsOnDesktop, ThePopupMenuIsAControlArrayBuiltIntoAMenu) {
  Win32TrayView tray;
  auto& menu = dynamic_cast<Win32PopupMenu&>(tray.Menu());
  menu.SetCaption(0, "&Open");
  menu.SetVisible(0, true);
  menu.LoadItem(1);
  menu.SetCaption(1, "-");
  menu.SetVisible(1, true);
  menu.LoadItem(2);
  menu.SetCaption(2, "E&xit");
  menu.SetVisible(2, true);
  menu.SetEnabled(2, false);
  menu.LoadItem(3);
  menu.SetCaption(3, "Hidden");
  EXPECT_EQ(ErrorOf([&] { menu.LoadItem(2); }), 360);
  EXPECT_EQ(ErrorOf([&] { menu.UnloadItem(0); }), 362);
  EXPECT_EQ(ErrorOf([&] { menu.SetCaption(9, "x"); }), kErrNoSuchElement);

  UniqueHMenu owned(menu.Build(0));
  HMENU built = owned.get();
  ASSERT_NE(built, nullptr);
  EXPECT_EQ(GetMenuItemCount(built), 3) << "item 3 is not visible";
  char caption[64] = {};
  GetMenuStringA(built, 1, caption, sizeof(caption), MF_BYCOMMAND);
  EXPECT_STREQ(caption, "&Open");
  EXPECT_NE(GetMenuState(built, 1, MF_BYPOSITION) & MF_SEPARATOR, 0u);
  EXPECT_NE(GetMenuState(built, 3, MF_BYCOMMAND) & MF_GRAYED, 0u);
  EXPECT_EQ(GetMenuDefaultItem(built, FALSE, 0), 1u);
  owned.reset();

  menu.UnloadItem(3);
  EXPECT_EQ(ErrorOf([&] { menu.SetVisible(3, true); }), kErrNoSuchElement);
}

TEST_F(Win32DialogsOnDesktop, TheOptionalMessageBoxShowsItsContentAndEndsOnOk) {
  Win32DialogViewFactory factory;
  auto made = factory.CreateOptionalMsgBoxView();
  auto& view = dynamic_cast<Win32OptionalMsgBoxView&>(*made);
  view.Load(
      OptionalMsgBoxContent{"Zintra", "The item was logged.", "Don't show this again", "OK", 1});
  EXPECT_EQ(TextOf(view.hwnd()), "Zintra");
  EXPECT_EQ(TextOf(view.CheckBox()), "Don't show this again");
  EXPECT_EQ(view.chkDontShowValue(), 1);
  SendMessageA(view.CheckBox(), BM_CLICK, 0, 0);
  EXPECT_EQ(view.chkDontShowValue(), 0);

  // The core hides the form from its OK handler; the click is waiting when the form opens.
  int clicks = 0;
  Connection c = view.cmdOk_Click.Connect([&] {
    ++clicks;
    view.Hide();
  });
  PostMessageA(view.OkButton(), BM_CLICK, 0, 0);
  view.ShowModal(0);
  EXPECT_EQ(clicks, 1);
  EXPECT_FALSE(IsWindowVisible(view.hwnd()));
}

TEST_F(Win32DialogsOnDesktop, TheMessageFormMeasuresPlacesAndClosesWithoutOk) {
  Win32MessageFormView view;
  const ViewSize one_line = view.MeasureText("Short", 300);
  std::string words;
  for (int i = 0; i < 40; ++i) words += "word ";
  const ViewSize wrapped = view.MeasureText(words, 300);
  EXPECT_GT(one_line.width, 0);
  EXPECT_GT(one_line.height, 0);
  EXPECT_LE(wrapped.width, 300) << "wrapped at the width given";
  EXPECT_GT(wrapped.height, one_line.height);

  MessageFormLayout layout;
  layout.caption = "Zintra";
  layout.lblMessage = "Short";
  layout.label = {12, 12, 200, one_line.height};
  layout.button = {60, 40, 88, 26};
  layout.cmdOk = "Close";
  layout.client = {224, 78};
  view.Apply(layout);
  RECT client{}, button{};
  GetClientRect(view.hwnd(), &client);
  EXPECT_EQ(client.right, 224);
  EXPECT_EQ(client.bottom, 78);
  GetWindowRect(view.OkButton(), &button);
  MapWindowPoints(nullptr, view.hwnd(), reinterpret_cast<POINT*>(&button), 2);
  EXPECT_EQ(button.left, 60);
  EXPECT_EQ(button.top, 40);
  EXPECT_EQ(TextOf(view.OkButton()), "Close");

  int clicks = 0;
  Connection c = view.cmdOk_Click.Connect([&] { ++clicks; });
  PostMessageA(view.hwnd(), WM_CLOSE, 0, 0);
  view.ShowModal(0);
  EXPECT_EQ(clicks, 0) << "closing is not OK";
}

TEST_F(Win32FormsOnDesktop, TheTrayIconIsAddedChangedAndRemovedThroughTheShell) {
  Win32TrayView view;
  Win32Shell shell;
  NotifyIconData record;
  record.cbSize = NotifyIconData::kRecordSize;
  record.hWnd = view.hWnd();
  record.uID = 1;
  record.uFlags = kNifMessage | kNifIcon | kNifTip;
  record.uCallbackMessage = WM_MOUSEMOVE;
  record.hIcon = view.IconHandle();
  const std::string tip = "Zintra";
  std::copy(tip.begin(), tip.end(), record.szTip.begin());
  ASSERT_TRUE(shell.NotifyIcon(kNimAdd, record));
  record.uFlags = kNifTip;
  record.szTip.fill(' ');  // a full-width tip without its zero is cut, not overrun
  EXPECT_TRUE(shell.NotifyIcon(kNimModify, record));
  EXPECT_TRUE(shell.NotifyIcon(kNimDelete, record));
  EXPECT_FALSE(shell.NotifyIcon(kNimModify, record)) << "the icon is gone";
}

// Picks the second entry of the menu being tracked, from inside the menu's own loop.
HWND menu_owner = nullptr;
void PickSecondEntry(HWND, UINT, UINT_PTR timer, DWORD) {
  KillTimer(nullptr, timer);
  for (WPARAM key : {VK_DOWN, VK_DOWN, VK_RETURN}) PostMessageA(menu_owner, WM_KEYDOWN, key, 0);
}

TEST_F(Win32FormsOnDesktop, ThePopupMenuReportsThePickedItem) {
  Win32TrayView tray;
  PopupMenu& menu = tray.Menu();
  menu.SetCaption(0, "Show Zintra Monitor");
  menu.SetVisible(0, true);
  menu.LoadItem(1);
  menu.SetCaption(1, "Exit");
  menu.SetVisible(1, true);
  std::vector<int32_t> clicks;
  Connection c = menu.Click.Connect([&](int32_t index) { clicks.push_back(index); });
  menu_owner = ToHwnd(tray.hWnd());
  const UINT_PTR timer = SetTimer(nullptr, 0, 100, &PickSecondEntry);
  menu.Popup(0);
  KillTimer(nullptr, timer);
  EXPECT_EQ(clicks, std::vector<int32_t>{1});
}

// Answers the message box titled kBoxTitle with Yes from inside its own modal loop.
constexpr char kBoxTitle[] = "Zintra box test";
void CALLBACK AnswerYes(HWND, UINT, UINT_PTR timer, DWORD) {
  HWND box = FindWindowA("#32770", kBoxTitle);
  if (box == nullptr) return;
  KillTimer(nullptr, timer);
  PostMessageA(box, WM_COMMAND, IDYES, 0);
}

TEST_F(Win32DialogsOnDesktop, AMessageBoxReturnsTheUsersAnswer) {
  const UINT_PTR timer = SetTimer(nullptr, 0, 50, &AnswerYes);
  ASSERT_NE(timer, 0u);
  const int32_t answer =
      Win32MsgBox().Show("Log this item?", kMsgBoxYesNo | kMsgBoxQuestion, kBoxTitle);
  KillTimer(nullptr, timer);
  EXPECT_EQ(answer, kMsgBoxResultYes);
}

}  // namespace
}  // namespace zintra::win32
