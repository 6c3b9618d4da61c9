// The simulated toolbar library: bars per window, events, release.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/toolbars/toolbars_env.h"

namespace zintra::testing_support {
namespace {

using ::testing::ElementsAre;

class SimToolbarHelperTest : public ToolbarsTest {
 protected:
  SimToolbarHelperTest() {
    helper_ = std::dynamic_pointer_cast<sim::SimToolbarHelper>(library_.CreateToolbarHelper());
    connections_.push_back(helper_->BarCreated.Connect([this](std::shared_ptr<CommandBar> bar) {
      events_.push_back("BarCreated " + bar->Name());
    }));
    connections_.push_back(
        helper_->ControlCreated.Connect([this](std::shared_ptr<CommandBarControl> c) {
          events_.push_back("ControlCreated " + c->Tag());
        }));
    connections_.push_back(helper_->UpdateBar.Connect([this](std::shared_ptr<CommandBar> bar) {
      events_.push_back("UpdateBar " + bar->Name());
    }));
    connections_.push_back(
        helper_->UpdateControl.Connect([this](std::shared_ptr<CommandBarControl> c) {
          events_.push_back("UpdateControl " + c->Tag());
        }));
    connections_.push_back(helper_->ButtonClicked.Connect(
        [this](std::shared_ptr<CommandBarControl> c, std::shared_ptr<OutlookWindow> window) {
          events_.push_back("ButtonClicked " + c->Tag() + " in " + window->TypeName());
        }));
  }

  std::shared_ptr<sim::SimToolbarHelper> helper_;
  std::vector<Connection> connections_;
  std::vector<std::string> events_;
};

TEST_F(SimToolbarHelperTest, DeclarationsReachOpenAndNewWindowsOfTheirKindOnly) {
  auto explorer = app_->OpenExplorer(inbox_);
  helper_->Initialize(app_, "Zintra");
  helper_->DeclareBar(kToolbarKindExplorer, "Zintra");
  helper_->DeclareButton(kToolbarKindExplorer, "Zintra", "A", kMsoButtonCaption, true);
  app_->OpenInspector(NewItem(ItemClass::kMail, inbox_));
  app_->OpenExplorer(contacts_);
  EXPECT_THAT(events_, ElementsAre("BarCreated Zintra", "ControlCreated A", "BarCreated Zintra",
                                   "ControlCreated A", "UpdateBar Zintra", "UpdateControl A"));
  EXPECT_THROW(helper_->DeclareButton(kToolbarKindInspector, "Zintra", "B", 1, true), ZError);
}

TEST_F(SimToolbarHelperTest, ClicksCarryTheWindowAndClosedWindowsAreForgotten) {
  helper_->Initialize(app_, "Zintra");
  helper_->DeclareBar(kToolbarKindInspector, "Zintra");
  helper_->DeclareButton(kToolbarKindInspector, "Zintra", "A", kMsoButtonCaption, true);
  auto inspector = app_->OpenInspector(NewItem(ItemClass::kMail, inbox_));
  events_.clear();
  Click(*inspector, "A");
  EXPECT_THAT(events_, ElementsAre("ButtonClicked A in Inspector"));
  EXPECT_EQ(helper_->WindowCount(), 1);
  inspector->Close(1);
  EXPECT_EQ(helper_->WindowCount(), 0);
}

TEST_F(SimToolbarHelperTest, AWindowThatCouldNotTakeItsBarGetsItWhenActivated) {
  helper_->Initialize(app_, "Zintra");
  helper_->DeclareBar(kToolbarKindExplorer, "Zintra");
  helper_->DeclareButton(kToolbarKindExplorer, "Zintra", "A", kMsoButtonCaption, true);
  const int refusal = profile_.Faults().FailAlways("CommandBars.Add", kErrInvalidCall);
  auto explorer = app_->OpenExplorer(inbox_);
  profile_.Faults().Remove(refusal);
  EXPECT_TRUE(events_.empty()) << "a bar was reported that Outlook refused";
  auto other = app_->OpenExplorer(contacts_);  // takes the activation
  events_.clear();
  explorer->Activate();
  EXPECT_THAT(events_, ElementsAre("BarCreated Zintra", "ControlCreated A", "UpdateBar Zintra",
                                   "UpdateControl A"));
  other->Activate();
  events_.clear();
  explorer->Activate();  // made once only
  EXPECT_THAT(events_, ElementsAre("UpdateBar Zintra", "UpdateControl A"));
}

}  // namespace
}  // namespace zintra::testing_support
