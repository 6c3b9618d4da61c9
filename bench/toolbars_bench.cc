// What the Zintra toolbar adds to opening an Outlook window: an explorer opened and
// closed bare (BM_Baseline_OpenExplorer) against the same with the toolbar library
// serving the window and Toolbars captioning its six buttons. The ratio of the two is
// the figure to watch. Also the phone-call button on a selection of 29 contacts
// against linking the same contacts by hand (BM_Baseline_LinkByHand).
#include <benchmark/benchmark.h>

#include <memory>
#include <string>
#include <vector>

#include "sim/outlook/sim_item.h"
#include "sim/toolbars/sim_toolbar_helper.h"
#include "sim/word/sim_word.h"
#include "src/logging/zintra_utils.h"
#include "src/toolbars/toolbars.h"
#include "src/toolbars/toolbars_addin.h"
#include "tests/support/sim_world.h"

namespace zintra {
namespace {

struct World : ToolbarsAddin {
  World() {
    // The toolbar is measured, not the log: nothing is kept.
    host.registry.SetDword(kHKeyCurrentUser, "Software\\Brellow\\Zintra\\Logging", "LogLevel", 0);
    inbox = host.builder.Default(kOlFolderInbox);
    contacts = host.builder.Default(kOlFolderContacts);
    utils.Connect({app, &host.settings, nullptr});
    for (int i = 0; i < 29; ++i) {
      selection.push_back(sim::MakeItem(
          &host.profile,
          host.builder.Contact(contacts, {"Contact " + std::to_string(i), {}, "", 0, ""})));
    }
  }
  const RegSettings& Settings() override { return host.settings; }
  std::shared_ptr<Application> OLApp() override { return app; }
  std::shared_ptr<Namespace> Session() override { return app->Session(); }
  ZintraUtils* Utils() override { return &utils; }
  std::shared_ptr<Folder> TrackedLogFolder(const std::shared_ptr<Folder>&) override {
    return nullptr;
  }
  const StringTable& Strings() override { return host.strings; }
  ErrorHandling& Errors() override { return host.errors; }
  MsgBox& Prompt() override { return host.msg_box; }
  Platform& PlatformFacts() override { return host.platform; }
  FileSystem& Files() override { return host.files; }
  ToolbarLibrary* ToolbarLib() override { return &library; }
  Word* WordProcessor() override { return &word; }
  double Now() override { return 46348.0; }

  testing_support::SimWorld host{sim::ProfileBuilder::Smtp("Jane Doe", "jane@contoso.com")};
  std::shared_ptr<sim::SimOlApplication>& app = host.app;
  std::shared_ptr<sim::FolderRecord> inbox, contacts;
  std::vector<std::shared_ptr<Item>> selection;
  ZintraUtils utils{host.errors};
  sim::SimToolbarLibrary library;
  sim::SimWord word{host.files};
};

void BM_Baseline_OpenExplorer(benchmark::State& state) {
  World world;
  for (auto _ : state) world.app->OpenExplorer(world.inbox)->Close(1);
}
BENCHMARK(BM_Baseline_OpenExplorer);

void BM_OpenExplorerWithToolbar(benchmark::State& state) {
  auto world = std::make_shared<World>();
  auto toolbars = std::make_shared<Toolbars>();
  toolbars->Initialize(std::shared_ptr<ToolbarsAddin>(world, world.get()));
  for (auto _ : state) world->app->OpenExplorer(world->inbox)->Close(1);
  toolbars->Kill();
}
BENCHMARK(BM_OpenExplorerWithToolbar);

void BM_Baseline_LinkByHand(benchmark::State& state) {
  World world;
  for (auto _ : state) {
    auto entry = world.app->CreateItem(kOlJournalItem);
    auto links = entry->Links();
    for (const auto& contact : world.selection) world.utils.AddToLinksCollection(links, contact);
    benchmark::DoNotOptimize(links->Count());
  }
}
BENCHMARK(BM_Baseline_LinkByHand);

void BM_PhoneCallOn29Contacts(benchmark::State& state) {
  auto world = std::make_shared<World>();
  auto toolbars = std::make_shared<Toolbars>();
  toolbars->Initialize(std::shared_ptr<ToolbarsAddin>(world, world.get()));
  auto explorer = world->app->OpenExplorer(world->contacts);
  explorer->Select(world->selection);
  auto control =
      explorer->CommandBars()->Item(kZintraBarName)->FindControl(0, 0, kTagPhoneCall, false, false);
  for (auto _ : state) {
    std::dynamic_pointer_cast<sim::SimCommandBarControl>(control)->ClickByUser();
    state.PauseTiming();
    // The entry's window is closed unsaved, as a user dismissing it would.
    auto inspectors = world->app->Inspectors();
    while (inspectors->Count() > 0) inspectors->Item(1)->Close(1);
    state.ResumeTiming();
  }
  toolbars->Kill();
}
BENCHMARK(BM_PhoneCallOn29Contacts);

}  // namespace
}  // namespace zintra

BENCHMARK_MAIN();
