// An object reached twice is one adapter while that adapter lives (the add-in tells
// windows apart by identity), and the adapters remembered never keep an object alive.
#include <gtest/gtest.h>

#include "src/host/outlook_constants.h"
#include "tests/win32/outlook/served_profile.h"
#include "win32/outlook/adapter_cache.h"
#include "win32/outlook/wrap.h"
#include "win32/sim_server/dispatch_object.h"
#include "win32/sim_server/serve.h"

namespace zintra::win32::testing {
namespace {

TEST(AdapterIdentityTest, TheSameWindowReachedTwoWaysIsOneAdapter) {
  ServedProfile p;
  auto inbox = p.profile.DefaultFolder(kOlFolderInbox);
  std::shared_ptr<Explorer> opened;
  auto explorers = p.app->Explorers();
  Connection c = explorers->NewExplorer.Connect(
      [&](std::shared_ptr<Explorer> explorer) { opened = explorer; });
  p.sim_app->OpenExplorer(inbox);
  p.sim_app->OpenExplorer(p.profile.DefaultFolder(kOlFolderSentMail));
  ASSERT_TRUE(opened);
  EXPECT_EQ(opened, p.app->ActiveExplorer());
  EXPECT_EQ(opened, p.app->Explorers()->Item(2));
  EXPECT_NE(opened, p.app->Explorers()->Item(1));
  EXPECT_EQ(explorers, p.app->Explorers());
  EXPECT_EQ(p.app, Wrap<Application>(Serve(p.sim_app)));

  // The window that closes is recognised as the first of the list while it closes.
  std::shared_ptr<Explorer> first = p.app->Explorers()->Item(1);
  int closes = 0;
  Connection close = first->CloseEvent.Connect([&] {
    ++closes;
    EXPECT_EQ(p.app->Explorers()->Item(1), first);
  });
  p.sim_app->OpenExplorers().front()->Close(0);
  EXPECT_EQ(closes, 1);
}

TEST(AdapterIdentityTest, AnObjectSeenAsTwoPortsHasAnAdapterForEach) {
  ServedProfile p;
  auto inbox = p.app->Session()->GetDefaultFolder(kOlFolderInbox);
  ComPtr<IDispatch> object = AdapterOf(inbox.get())->Object();
  std::shared_ptr<AutomationObject> any = WrapAny(object);
  EXPECT_EQ(any, std::static_pointer_cast<AutomationObject>(Wrap<Folder>(object)));
  EXPECT_NE(any.get(), static_cast<AutomationObject*>(Wrap<Items>(object).get()));
}

TEST(AdapterIdentityTest, RememberedAdaptersKeepNothingAlive) {
  size_t remembered = AdapterCache::Size();
  int64_t served = DispatchObject::LiveCount();
  {
    ServedProfile p;
    p.sim_app->OpenExplorer(p.profile.DefaultFolder(kOlFolderInbox));
    auto explorer = p.app->ActiveExplorer();
    Connection c = explorer->SelectionChange.Connect([] {});
    auto items = p.app->Session()->GetDefaultFolder(kOlFolderInbox)->Items();
    for (auto item = items->GetFirst(); item; item = items->GetNext()) item->Subject();
    EXPECT_GT(AdapterCache::Size(), remembered);
    // An adapter let go is forgotten: the next one over the object is new and works.
    std::weak_ptr<Explorer> gone = explorer;
    c.Disconnect();
    explorer.reset();
    EXPECT_TRUE(gone.expired());
    EXPECT_EQ(p.app->ActiveExplorer()->Caption(), p.sim_app->OpenExplorers().front()->Caption());
  }
  EXPECT_EQ(AdapterCache::Size(), remembered);
  EXPECT_EQ(DispatchObject::LiveCount(), served);
}

}  // namespace
}  // namespace zintra::win32::testing
