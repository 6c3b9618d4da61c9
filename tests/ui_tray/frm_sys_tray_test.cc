#include "src/ui/frm_sys_tray.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "sim/shell/recording_shell.h"
#include "sim/shell/sim_views.h"
#include "src/core/z_error.h"

namespace zintra {
namespace {

using ::testing::ElementsAre;

struct TrayFixture : ::testing::Test {
  TrayFixture() {
    auto owned = std::make_unique<sim::SimTrayView>(0x2222, 0x77);
    view = owned.get();
    tray = std::make_unique<frmSysTray>(std::move(owned), shell, "Zintra", 0x77);
    connections.push_back(tray->SysTrayMouseDown.Connect(
        [this](int32_t b) { events.push_back("down " + std::to_string(b)); }));
    connections.push_back(tray->SysTrayMouseUp.Connect(
        [this](int32_t b) { events.push_back("up " + std::to_string(b)); }));
    connections.push_back(tray->SysTrayMouseMove.Connect([this] { events.push_back("move"); }));
    connections.push_back(tray->SysTrayDoubleClick.Connect(
        [this](int32_t b) { events.push_back("dbl " + std::to_string(b)); }));
    connections.push_back(tray->MenuClick.Connect([this](int32_t i, const std::string& key) {
      events.push_back("menu " + std::to_string(i) + " " + key);
    }));
  }

  sim::RecordingShell shell;
  sim::SimTrayView* view = nullptr;
  std::unique_ptr<frmSysTray> tray;
  std::vector<std::string> events;
  std::vector<Connection> connections;
};

TEST_F(TrayFixture, LoadAddsTheIconWithTheFullRecord) {
  ASSERT_EQ(shell.calls().size(), 1u);
  EXPECT_EQ(shell.calls()[0].message, kNimAdd);
  const auto bytes = shell.calls()[0].data.Bytes();
  EXPECT_EQ(bytes.size(), 88u);
  const uint8_t head[] = {88, 0, 0, 0, 0x22, 0x22, 0, 0, 1, 0, 0, 0, 7, 0, 0, 0, 0, 2, 0, 0, 0x77};
  for (size_t i = 0; i < sizeof head; ++i) EXPECT_EQ(bytes[i], head[i]) << "byte " << i;
  EXPECT_EQ(std::string(reinterpret_cast<const char*>(&bytes[24]), 7), std::string("Zintra\0", 7));
  tray->Unload();
  tray->Unload();
  EXPECT_EQ(shell.calls().back().message, kNimDelete);
  EXPECT_EQ(shell.calls().size(), 2u);
  EXPECT_TRUE(shell.icons().empty());
}

TEST_F(TrayFixture, TipAndIconAreSentOnlyWhenTheyChange) {
  tray->SetToolTip("Zintra");
  tray->SetIconHandle(0x77);
  EXPECT_EQ(shell.calls().size(), 1u);
  tray->SetToolTip("Working");
  EXPECT_EQ(shell.calls().back().message, kNimModify);
  EXPECT_EQ(shell.calls().back().data.uFlags, 4u);
  tray->SetIconHandle(0x99);
  EXPECT_EQ(shell.calls().back().data.uFlags, 2u);
  EXPECT_EQ(tray->IconHandle(), 0x99);
  EXPECT_EQ(shell.icons().begin()->second.hIcon, 0x99);
  shell.set_fail_always(true);  // a refusing shell is not reported; the record keeps the value
  tray->SetToolTip("Refused");
  EXPECT_EQ(tray->ToolTip(), "Refused");
}

TEST_F(TrayFixture, TipIsCutAt64CharactersAndThenLosesItsTerminator) {
  const std::string exact63(63, 'a'), long70(70, 'b');
  tray->SetToolTip(exact63);
  EXPECT_EQ(tray->Record().szTip[63], '\0');
  EXPECT_EQ(tray->ToolTip(), exact63);
  tray->SetToolTip(long70);
  EXPECT_EQ(tray->ToolTip(), std::string(64, 'b'));
  EXPECT_EQ(tray->Record().szTip[63], 'b');
}

TEST_F(TrayFixture, MenuItemsReuseElementZeroThenLoadNewOnes) {
  EXPECT_EQ(tray->AddMenuItem("Show", "show", false), 0);
  EXPECT_EQ(tray->AddMenuItem("Exit", "exit", true), 1);
  EXPECT_EQ(tray->DefaultMenuIndex(), 1);
  EXPECT_TRUE(view->menu().item(1).visible);
  tray->EnableMenuItem(1, false);
  EXPECT_FALSE(view->menu().item(1).enabled);
  tray->RemoveMenuItem(1);
  EXPECT_EQ(tray->DefaultMenuIndex(), -1);
  EXPECT_EQ(view->menu().items().count(1), 0u);
  tray->RemoveMenuItem(0);  // element 0 is hidden and free again
  EXPECT_FALSE(view->menu().item(0).visible);
  EXPECT_EQ(tray->AddMenuItem("Again", "again", false), 0);
  EXPECT_THROW(tray->EnableMenuItem(5, true), ZError);

  view->menu().ChooseOnPopup(0);
  tray->ShowMenu();
  EXPECT_THAT(view->menu().popups(), ElementsAre(-1));
  EXPECT_THAT(events, ElementsAre("menu 0 again"));
}

struct MouseCase {
  uint32_t message;
  const char* event;  // "" for none
};

class TrayMouseTest : public TrayFixture, public ::testing::WithParamInterface<MouseCase> {};

TEST_P(TrayMouseTest, MessageNumberInXSelectsTheEvent) {
  view->SendIconMessage(GetParam().message);
  if (*GetParam().event == '\0') {
    EXPECT_TRUE(events.empty());
  } else {
    EXPECT_THAT(events, ElementsAre(GetParam().event));
  }
}

INSTANTIATE_TEST_SUITE_P(Messages, TrayMouseTest,
                         ::testing::Values(MouseCase{512, "move"}, MouseCase{513, ""},
                                           MouseCase{514, "down 1"}, MouseCase{515, "dbl 1"},
                                           MouseCase{516, "down 2"}, MouseCase{517, "up 2"},
                                           MouseCase{518, "dbl 2"}, MouseCase{511, ""},
                                           MouseCase{519, ""}));

TEST_F(TrayFixture, LeftClickGivesOneDownRightClickGivesDownThenUp) {
  view->set_scale(12.0f);  // another screen density: X is scaled back to pixels
  for (uint32_t m : {kWmLButtonDown, kWmLButtonUp}) view->SendIconMessage(m);
  EXPECT_THAT(events, ElementsAre("down 1"));
  events.clear();
  for (uint32_t m : {kWmRButtonDown, kWmRButtonUp}) view->SendIconMessage(m);
  EXPECT_THAT(events, ElementsAre("down 2", "up 2"));
}

}  // namespace
}  // namespace zintra
