// Explorers, inspectors, their item's Close, selections and command bars.
#include <gtest/gtest.h>

#include "sim/outlook/sim_ol_application.h"
#include "tests/sim_outlook/sim_fixture.h"

namespace zintra::sim {
namespace {

TEST_F(SimTest, ClosingAnInspectorRaisesItsItemsCloseThenItsOwn) {
  auto app = host.application;
  std::vector<std::string> log;
  auto hook = app->Inspectors()->NewInspector.Connect(
      [&](std::shared_ptr<Inspector> i) { log.push_back("new " + i->CurrentItem()->Subject()); });
  auto mail = I(builder.MailFrom(ProfileBuilder::Smtp("Bob", "bob@x.com"), {"Quote"}));
  mail->Display(false);
  ASSERT_EQ(app->Inspectors()->Count(), 1);
  auto inspector = app->Inspectors()->Item(1);
  auto item_close =
      inspector->CurrentItem()->CloseEvent.Connect([&](bool&) { log.push_back("item close"); });
  auto close = inspector->CloseEvent.Connect([&] { log.push_back("inspector close"); });
  inspector->Close(1);
  EXPECT_EQ(log, (std::vector<std::string>{"new Quote", "item close", "inspector close"}));
  EXPECT_EQ(app->Inspectors()->Count(), 0);
  EXPECT_THROW(inspector->CurrentItem(), ZError);
}

TEST_F(SimTest, ANoteWindowReportsOnlyThatItIsHidden) {
  auto app = host.application;
  auto note = I(builder.Item(builder.Default(kOlFolderNotes), ItemClass::kNote, "Remember"));
  auto inspector = app->OpenInspector(note);
  int32_t hwnd = inspector->Hwnd();
  EXPECT_NE(hwnd, 0);
  std::vector<std::tuple<int32_t, int32_t, int32_t>> messages;
  auto m = app->WindowMessage.Connect(
      [&](int32_t h, int32_t msg, int32_t w) { messages.emplace_back(h, msg, w); });
  int closes = 0;
  auto c = inspector->CloseEvent.Connect([&] { ++closes; });
  inspector->Close(1);
  EXPECT_EQ(closes, 0);
  EXPECT_EQ(messages, (std::vector<std::tuple<int32_t, int32_t, int32_t>>{{hwnd, 24, 0}}));
}

TEST_F(SimTest, MenuCommandActsOnTheSelectedContact) {
  auto app = host.application;
  auto ann = I(builder.Contact(customers, {"Ann Lee", {"ann@fabrikam.com"}}));
  auto explorer = app->OpenExplorer(customers);
  explorer->Select({ann});
  ASSERT_EQ(explorer->Selection()->Count(), 1);
  auto menu = explorer->CommandBars()->Item("Menu Bar");
  EXPECT_EQ(menu->FindControl(0, 1978, "", false, false), nullptr);  // it sits in a submenu
  auto control = menu->FindControl(0, 1978, "", false, true);
  ASSERT_NE(control, nullptr);
  control->Execute();
  EXPECT_EQ(app->ExecutedCommands(), std::vector<int32_t>{1978});
  auto inspector = app->ActiveInspector();
  ASSERT_NE(inspector, nullptr);
  auto draft = inspector->CurrentItem();
  EXPECT_EQ(draft->Recipients()->Item(1)->Address(), "ann@fabrikam.com");
  EXPECT_EQ(draft->Links()->Item(1)->Item()->FullName(), "Ann Lee");
}

TEST_F(SimTest, ActivationMovesBetweenWindowsAndQuitClosesThemAll) {
  auto app = host.application;
  auto explorer = app->OpenExplorer(builder.Default(kOlFolderInbox));
  std::vector<std::string> log;
  auto d = explorer->Deactivate.Connect([&] { log.push_back("explorer deactivate"); });
  auto a = explorer->ActivateEvent.Connect([&] { log.push_back("explorer activate"); });
  auto inspector = app->OpenInspector(NewItem(Default(kOlFolderInbox), kOlMailItem, "X"));
  explorer->Activate();
  auto q = app->Quit.Connect([&] { log.push_back("quit"); });
  app->QuitOutlook();
  EXPECT_EQ(log, (std::vector<std::string>{"explorer deactivate", "explorer activate", "quit"}));
  EXPECT_EQ(app->Explorers()->Count(), 0);
  EXPECT_EQ(app->Version(), "11.0.0.8312");
}

TEST_F(SimTest, ItemSendCanBeCancelled) {
  auto app = host.application;
  bool cancel_next = true;
  auto c =
      app->ItemSend.Connect([&](std::shared_ptr<Item>, bool& cancel) { cancel = cancel_next; });
  auto item = app->CreateItem(kOlMailItem);
  item->SetSubject("Out");
  EXPECT_FALSE(app->Send(item));
  EXPECT_EQ(item->EntryID(), "");
  cancel_next = false;
  EXPECT_TRUE(app->Send(item));
  EXPECT_EQ(item->Parent()->Name(), "Sent Items");
  EXPECT_NE(item->SentOn(), 0.0);
}

}  // namespace
}  // namespace zintra::sim
