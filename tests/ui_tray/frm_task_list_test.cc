#include "src/ui/frm_task_list.h"

#include <gtest/gtest.h>

#include "sim/shell/recording_window_manager.h"
#include "sim/shell/sim_views.h"
#include "src/ui/frm_temp.h"

namespace zintra {
namespace {

TEST(frmTaskList, ButtonsRaiseTheFormEventsAndKeepOnTopUsesTopmost) {
  sim::RecordingWindowManager windows;
  StringTable strings(Language::kFrench);
  auto owned = std::make_unique<sim::SimTaskListView>(0x31);
  sim::SimTaskListView* view = owned.get();
  frmTaskList form(std::move(owned), windows, strings);
  EXPECT_EQ(view->caption(), strings.Load(kStrTaskListCaption));
  int aborts = 0, minimizes = 0;
  Connection a = form.Abort.Connect([&] { ++aborts; });
  Connection m = form.Minimize.Connect([&] { ++minimizes; });
  view->ClickAbort();
  view->ClickMinimize();
  view->ClickMinimize();
  EXPECT_EQ(aborts, 1);
  EXPECT_EQ(minimizes, 2);
  form.KeepOnTop();
  ASSERT_EQ(windows.calls().size(), 1u);
  EXPECT_EQ(windows.calls()[0].insert_after, kHwndTopmost);
}

TEST(frmTaskList, OverallBarScalesToTheViewMaximumAndIgnoresBadUnits) {
  sim::RecordingWindowManager windows;
  StringTable strings;
  auto owned = std::make_unique<sim::SimTaskListView>(0x31);
  owned->set_progress_max(1000);
  sim::SimTaskListView* view = owned.get();
  frmTaskList form(std::move(owned), windows, strings);
  form.AddEntry(std::make_shared<TaskListEntry>(TaskListEntry{"k1", "one", 2, 4, 0, false}));
  form.AddEntry(std::make_shared<TaskListEntry>(TaskListEntry{"k2", "zero units", 0, 0, 0, false}));
  form.SetUnitsDone("k1", 1);
  EXPECT_EQ(view->progress(), 250);
  form.SetUnitsDone("k1", -3);  // clamped to 0
  form.SetUnitsDone("k2", 5);   // nothing to do in a task of no units
  EXPECT_EQ(view->progress(), 0);
  EXPECT_EQ(view->FindRow("k2")->percent, 0);
  form.SetUnitsDone("missing", 1);
  EXPECT_EQ(form.EntryCount(), 2);
}

TEST(frmTemp, LoadPlacesTheFormOnTop) {
  sim::RecordingWindowManager windows;
  frmTemp form(std::make_unique<sim::SimFormView>(0x45), windows);
  ASSERT_EQ(windows.calls().size(), 1u);
  EXPECT_EQ(windows.calls()[0].hwnd, 0x45);
  EXPECT_EQ(windows.calls()[0].insert_after, kHwndTopmost);
  EXPECT_EQ(windows.calls()[0].flags, 35u);
}

}  // namespace
}  // namespace zintra
