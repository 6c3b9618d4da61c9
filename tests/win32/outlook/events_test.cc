// Events raised in the simulated Outlook arrive through the adapters' sinks, Cancel
// flags written by handlers go back, and a connection exists only while handlers do.
#include <gtest/gtest.h>

#include <vector>

#include "src/host/outlook_constants.h"
#include "tests/win32/outlook/served_profile.h"
#include "win32/com/outlook_events.h"
#include "win32/sim_server/outlook_declarations.h"

namespace zintra::win32::testing {
namespace {

namespace ev = outlook_events;

TEST(EventsTest, ItemEventsArriveWhileSomeoneListens) {
  ServedProfile p;
  auto inbox = p.app->Session()->GetDefaultFolder(kOlFolderInbox);
  auto items = inbox->Items();
  EXPECT_EQ(ServedProfile::Sinks(*items, ev::kItemsEvents), 0u);
  std::vector<std::string> seen;
  {
    Connection add = items->ItemAdd.Connect(
        [&](std::shared_ptr<Item> item) { seen.push_back("add " + item->Subject()); });
    Connection change = items->ItemChange.Connect(
        [&](std::shared_ptr<Item> item) { seen.push_back("change " + item->Subject()); });
    Connection remove = items->ItemRemove.Connect([&] { seen.push_back("remove"); });
    EXPECT_EQ(ServedProfile::Sinks(*items, ev::kItemsEvents), 1u);  // one for all three

    auto direct = p.sim_app->Session()->GetDefaultFolder(kOlFolderInbox)->Items();
    auto first = direct->GetFirst();
    first->SetSubject("Changed");
    first->Save();
    first->Delete();
    auto added = direct->Add(kOlMailItem);
    added->SetSubject("New");
    added->Save();
    change.Disconnect();
    EXPECT_EQ(ServedProfile::Sinks(*items, ev::kItemsEvents), 1u);
  }
  EXPECT_EQ(ServedProfile::Sinks(*items, ev::kItemsEvents), 0u);
  EXPECT_EQ(seen, (std::vector<std::string>{"change Changed", "remove", "add New"}));
}

TEST(EventsTest, ReadingItemsCostsNoConnection) {
  ServedProfile p;
  auto items = p.app->Session()->GetDefaultFolder(kOlFolderInbox)->Items();
  for (auto item = items->GetFirst(); item; item = items->GetNext()) {
    EXPECT_EQ(ServedProfile::Sinks(*item, ev::kItemEvents10), 0u);
  }
}

TEST(EventsTest, ItemSendIsCancelledByAHandler) {
  ServedProfile p;
  int sends = 0;
  Connection c = p.app->ItemSend.Connect([&](std::shared_ptr<Item> item, bool& cancel) {
    ++sends;
    cancel = item->Subject() == "Stop me";
  });
  auto stopped = p.sim_app->CreateItem(kOlMailItem);
  stopped->SetSubject("Stop me");
  EXPECT_FALSE(p.sim_app->Send(stopped));
  auto passed = p.sim_app->CreateItem(kOlMailItem);
  passed->SetSubject("Let me go");
  EXPECT_TRUE(p.sim_app->Send(passed));
  EXPECT_EQ(sends, 2);
}

TEST(EventsTest, AnItemsCloseCanKeepItsInspectorOpen) {
  ServedProfile p;
  auto mail = p.sim_app->Session()->GetDefaultFolder(kOlFolderInbox)->Items()->GetFirst();
  auto window = p.sim_app->OpenInspector(mail);
  auto inspector = p.app->ActiveInspector();
  ASSERT_TRUE(inspector);
  EXPECT_EQ(inspector->Caption(), window->Caption());
  auto item = inspector->CurrentItem();
  bool refuse = true;
  int closes = 0;
  Connection close = item->CloseEvent.Connect([&](bool& cancel) {
    ++closes;
    cancel = refuse;
  });
  Connection gone = inspector->CloseEvent.Connect([&] { closes += 10; });
  EXPECT_EQ(inspector->Hwnd(), window->Hwnd());
  inspector->Close(1);
  EXPECT_FALSE(window->closed());
  refuse = false;
  inspector->Close(1);
  EXPECT_TRUE(window->closed());
  EXPECT_EQ(closes, 12);
}

TEST(EventsTest, AnItemsCloseWithCancelByValueIsHeardAndIsNoError) {
  ServedProfile p;
  std::vector<std::string> reported;
  SetEventErrorReporter([&](const std::string& where, const ZError& e) {
    reported.push_back(where + " " + std::to_string(e.Number()));
  });
  auto item = p.app->Session()->GetDefaultFolder(kOlFolderInbox)->Items()->GetFirst();
  int closes = 0;
  Connection close = item->CloseEvent.Connect([&](bool& cancel) {
    ++closes;
    cancel = true;  // cannot reach a source that passed Cancel by value
  });
  ComPtr<DispatchObject> served = ServedProfile::Served(*item);
  ASSERT_TRUE(served);
  const int64_t failed_before = DispatchObject::FailedSinkCalls();
  for (bool given : {false, true}) {
    std::vector<Variant> args;
    args.emplace_back(Value(given));
    served->Fire(declared::item_events_10::kIid, declared::item_events_10::kClose, args);
  }
  SetEventErrorReporter(nullptr);
  EXPECT_EQ(closes, 2);
  EXPECT_EQ(reported, std::vector<std::string>{});
  EXPECT_EQ(DispatchObject::FailedSinkCalls(), failed_before);
}

TEST(EventsTest, ASendAndAButtonClickWithCancelByValueAreHeardAndAreNoError) {
  ServedProfile p;
  p.sim_app->OpenExplorer(p.build.Default(kOlFolderInbox));
  std::vector<std::string> reported;
  SetEventErrorReporter([&](const std::string& where, const ZError& e) {
    reported.push_back(where + " " + std::to_string(e.Number()));
  });
  auto item = p.app->Session()->GetDefaultFolder(kOlFolderInbox)->Items()->GetFirst();
  auto bar = p.app->ActiveExplorer()->CommandBars()->Add("Mine", kMsoBarTop, true);
  auto button = bar->Controls()->Add(kMsoControlButton, 1, 0, true);
  int sends = 0;
  int clicks = 0;
  // The handlers' answers cannot reach a source that passed the flag by value.
  Connection send = p.app->ItemSend.Connect([&](std::shared_ptr<Item>, bool& cancel) {
    ++sends;
    cancel = true;
  });
  Connection click = button->Click.Connect([&](std::shared_ptr<CommandBarControl>, bool& cancel) {
    ++clicks;
    cancel = true;
  });
  ComPtr<DispatchObject> application = ServedProfile::Served(*p.app);
  ComPtr<DispatchObject> served_item = ServedProfile::Served(*item);
  ComPtr<DispatchObject> served_button = ServedProfile::Served(*button);
  ASSERT_TRUE(application && served_item && served_button);
  const int64_t failed_before = DispatchObject::FailedSinkCalls();
  for (bool given : {false, true}) {
    std::vector<Variant> send_args;
    send_args.emplace_back(ComPtr<IDispatch>(served_item->AsDispatch()));
    send_args.emplace_back(Value(given));
    application->Fire(declared::application_events_11::kIid,
                      declared::application_events_11::kItemSend, send_args);
    std::vector<Variant> click_args;
    click_args.emplace_back(ComPtr<IDispatch>(served_button->AsDispatch()));
    click_args.emplace_back(Value(given));
    served_button->Fire(declared::command_bar_button_events::kIid,
                        declared::command_bar_button_events::kClick, click_args);
  }
  SetEventErrorReporter(nullptr);
  EXPECT_EQ(sends, 2);
  EXPECT_EQ(clicks, 2);
  EXPECT_EQ(reported, std::vector<std::string>{});
  EXPECT_EQ(DispatchObject::FailedSinkCalls(), failed_before);
}

TEST(EventsTest, NewWindowsArriveAsTheirPorts) {
  ServedProfile p;
  auto explorers = p.app->Explorers();
  std::vector<std::string> folders;
  Connection c = explorers->NewExplorer.Connect([&](std::shared_ptr<Explorer> explorer) {
    folders.push_back(explorer->CurrentFolder()->Name());
  });
  p.sim_app->OpenExplorer(p.build.Default(kOlFolderInbox));
  p.sim_app->OpenExplorer(p.contacts);
  EXPECT_EQ(folders, (std::vector<std::string>{"Inbox", "Customers"}));
  EXPECT_EQ(explorers->Count(), 2);
  EXPECT_EQ(explorers->Item(2)->Caption(), p.app->ActiveExplorer()->Caption());
}

TEST(EventsTest, AnExplorersOwnEventsAndSelectionArriveAlike) {
  ServedProfile p;
  auto first = p.sim_app->OpenExplorer(p.build.Default(kOlFolderInbox));
  auto second = p.sim_app->OpenExplorer(p.contacts);
  auto explorer = p.app->Explorers()->Item(1);
  std::vector<std::string> seen;
  Connection a = explorer->ActivateEvent.Connect([&] { seen.push_back("activate"); });
  Connection d = explorer->Deactivate.Connect([&] { seen.push_back("deactivate"); });
  Connection s = explorer->SelectionChange.Connect([&] {
    auto selection = explorer->Selection();
    seen.push_back("selected " + std::to_string(selection->Count()) + " " +
                   selection->Item(1)->Subject());
  });
  Connection c = explorer->CloseEvent.Connect([&] { seen.push_back("close"); });
  first->Activate();
  first->Select({p.sim_app->Session()->GetDefaultFolder(kOlFolderInbox)->Items()->GetLast()});
  second->Activate();
  explorer->Close(0);
  EXPECT_TRUE(first->closed());
  EXPECT_EQ(seen, (std::vector<std::string>{"activate", "selected 1 Caf\xc3\xa9 order",
                                            "deactivate", "close"}));
  EXPECT_EQ(ErrorOf([&] { explorer->Caption(); }), kMapiObjectDeleted);
}

TEST(EventsTest, OptionsPagesAreAddedAsTheObjectsThePagesAre) {
  ServedProfile p;
  // A page made by ProgID is a plain late-bound object; it goes out as itself.
  auto page = std::make_shared<ComObject>(AdapterOf(p.app.get())->Object());
  Connection options = p.app->OptionsPagesAdd.Connect(
      [&](std::shared_ptr<PropertyPages> pages) { pages->Add(page, "Zintra"); });
  std::string folder_name;
  auto session = p.app->Session();  // held, as a WithEvents variable holds it
  Connection properties = session->OptionsPagesAdd.Connect(
      [&](std::shared_ptr<PropertyPages> pages, std::shared_ptr<Folder> folder) {
        folder_name = folder->Name();
        pages->Add(page, "Zintra folder");
      });
  auto shown = p.sim_app->ShowOptions();
  ASSERT_EQ(shown->Titles(), std::vector<std::string>{"Zintra"});
  EXPECT_EQ(shown->Item(1).get(), static_cast<AutomationObject*>(p.sim_app.get()));
  auto folder_pages =
      p.sim_app->ShowFolderProperties(p.sim_app->Session()->GetDefaultFolder(kOlFolderInbox));
  EXPECT_EQ(folder_pages->Titles(), std::vector<std::string>{"Zintra folder"});
  EXPECT_EQ(folder_name, "Inbox");
}

TEST(EventsTest, AFailingHandlerIsReportedAndTheSourceCarriesOn) {
  ServedProfile p;
  std::vector<std::string> reported;
  SetEventErrorReporter([&](const std::string& where, const ZError& e) {
    reported.push_back(where + " " + std::to_string(e.Number()));
  });
  Connection c = p.app->NewMail.Connect([] { throw ZError(91, "Object variable not set"); });
  auto mail = p.sim_app->CreateItem(kOlMailItem);
  p.sim_app->Deliver(mail);
  SetEventErrorReporter(nullptr);
  ASSERT_EQ(reported.size(), 1u);
  EXPECT_NE(reported[0].find("Application events"), std::string::npos);
  EXPECT_NE(reported[0].find(" 91"), std::string::npos);
  EXPECT_EQ(p.sim_app->Session()->GetDefaultFolder(kOlFolderInbox)->Items()->Count(), 3);
}

}  // namespace
}  // namespace zintra::win32::testing
