#include <gtest/gtest.h>

#include <memory>

#include "sim/subclass/sim_subclasser.h"
#include "src/host/command_bars.h"
#include "src/monitoring/hooked_inspector.h"
#include "src/monitoring/insp_mon.h"
#include "tests/monitoring/monitoring_env.h"
#include "tests/support/error_of.h"

namespace zintra::monitoring_test {
namespace {

class InspMonTest : public ::testing::Test {
 protected:
  InspMonTest() {
    messages = env.app->WindowMessage.Connect([this](int32_t hwnd, int32_t message, int32_t w) {
      subclasser->Deliver(hwnd, message, w);
    });
    env.factory.Register(kSubclasserProgId, [this] { return subclasser; });
  }
  std::shared_ptr<InspMon> Watch(const std::shared_ptr<Inspector>& inspector) {
    auto mon = std::make_shared<InspMon>();
    mon->SetSubclasser(subclasser);
    closes = mon->InspectorClosed.Connect([this] { ++closed; });
    mon->SetInspector(inspector);
    return mon;
  }
  std::shared_ptr<sim::SimOlInspector> Open(ItemClass item_class, const std::string& subject) {
    auto record = env.builder.Item(env.builder.Default(kOlFolderInbox), item_class, subject);
    return env.app->OpenInspector(env.ItemOf(record));
  }

  MonitoringEnv env;
  std::shared_ptr<sim::SimSubclasser> subclasser = std::make_shared<sim::SimSubclasser>();
  Connection messages;
  Connection closes;
  int closed = 0;
};

TEST_F(InspMonTest, ItemAndInspectorCloseRaiseOneEvent) {
  auto inspector = Open(ItemClass::kMail, "Hello");
  auto mon = Watch(inspector);
  EXPECT_TRUE(mon->WatchesItem());
  inspector->Close(1);  // the item's Close, then the inspector's
  EXPECT_EQ(closed, 1);
  EXPECT_EQ(mon->Inspector(), nullptr);
  // Either close arriving again raises nothing more, and never cancels the item's.
  mon->MyInspector_Close();
  bool cancel = false;
  mon->Item_Close(cancel);
  EXPECT_EQ(closed, 1);
  EXPECT_FALSE(cancel);
}

TEST_F(InspMonTest, KindOutsideTheListIsWatchedThroughTheInspectorOnly) {
  auto inspector = Open(ItemClass::kSharing, "Shared calendar");
  auto mon = Watch(inspector);
  EXPECT_FALSE(mon->WatchesItem());
  EXPECT_EQ(subclasser->AttachedCount(), 0);
  inspector->Close(1);
  EXPECT_EQ(closed, 1);
}

TEST_F(InspMonTest, NoteCountsAsClosedWhenItsWindowIsHidden) {
  auto inspector = Open(ItemClass::kNote, "Remember");
  auto mon = Watch(inspector);
  ASSERT_NE(mon->NoteWindow(), 0);
  EXPECT_EQ(subclasser->Deliver(mon->NoteWindow(), kWmShowWindow, 1), 1);  // shown
  EXPECT_EQ(closed, 0);
  inspector->Close(1);  // hidden: message 24 with wParam 0
  EXPECT_EQ(closed, 1);
  EXPECT_EQ(subclasser->Responses().back(), kSubclassPreProcess);
  EXPECT_EQ(subclasser->AttachedCount(), 0);  // unhooked after the event
  mon.reset();
}

TEST_F(InspMonTest, NoteWithoutWindowHandleRaises) {
  auto inspector = Open(ItemClass::kNote, "Remember");
  env.profile.Faults().FailAlways("Inspector.Hwnd", 5, "no window");
  auto mon = std::make_shared<InspMon>();
  mon->SetSubclasser(subclasser);
  std::optional<ZError> e = Raised([&] { mon->SetInspector(inspector); });
  ASSERT_TRUE(e) << "no error raised";
  EXPECT_EQ(e->Description(), kErrTextNoNoteWindow);
}

TEST_F(InspMonTest, HookedInspectorLivesOnTheWaitListUntilItsInspectorCloses) {
  auto contacts = env.AddFolderSet("Clients").contacts;
  env.builder.Contact(contacts, {"Ann Lee", {"ann@fabrikam.com"}});
  env.Start(false);
  env.Run();
  auto record = env.builder.MailTo({sim::ProfileBuilder::Smtp("Ann Lee", "ann@fabrikam.com")},
                                   {"Quote", "", 0});
  auto inspector = env.app->OpenInspector(env.ItemOf(record));
  auto bar = inspector->CommandBars()->Add(kZintraBarName, 1, true);
  auto button = bar->Controls()->Add(1);

  auto hooked = std::make_shared<HookedInspector>();
  hooked->Initialize(inspector, env.addin);
  std::weak_ptr<HookedInspector> weak = hooked;
  hooked.reset();
  ASSERT_FALSE(weak.expired());  // the wait list holds it
  EXPECT_EQ(env.queue->WaitListCount(), 1);
  env.Run();
  EXPECT_EQ(weak.lock()->ContactNames(), std::vector<std::string>{"Ann Lee"});

  inspector->Deactivate.Raise();
  EXPECT_FALSE(button->Enabled());
  inspector->ActivateEvent.Raise();
  EXPECT_TRUE(button->Enabled());

  inspector->Close(1);
  EXPECT_TRUE(weak.expired());
  EXPECT_EQ(env.queue->WaitListCount(), 0);
}

TEST_F(InspMonTest, KillBroadcastReleasesHookedInspectors) {
  env.Start(false);
  auto inspector = Open(ItemClass::kNote, "Remember");
  auto hooked = std::make_shared<HookedInspector>();
  hooked->Initialize(inspector, env.addin);
  EXPECT_EQ(subclasser->AttachedCount(), 1);
  env.addin->kill.Raise();
  EXPECT_TRUE(hooked->Released());
  EXPECT_EQ(env.queue->WaitListCount(), 0);
  EXPECT_EQ(subclasser->AttachedCount(), 0);
}

}  // namespace
}  // namespace zintra::monitoring_test
