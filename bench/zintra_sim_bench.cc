// zintra-sim over an imported-size mailbox: 20,000 received and sent mails and 5,000
// tracked contacts, played from start-up scan to quit. Reported per run: items logged
// per second, the share of wall time spent building and reading back the simulated
// profile against the time inside the timeline (the add-in at work), and the peak
// resident memory. The baseline in the same run is building the same profile alone.
#include <sys/resource.h>

#include <benchmark/benchmark.h>

#include <filesystem>
#include <sstream>

#include "sim/addin_host/sim_outlook.h"
#include "tools/zintra-sim/profile_loader.h"
#include "tools/zintra-sim/runner.h"

namespace zintra::simtool {
namespace {

Scenario Mailbox(int mails, int contacts) {
  Scenario s;
  s.name = "bench";
  s.log_level = 1;  // errors only, as a production mailbox would run
  s.profile.user = {"Jane Doe", "jane.doe@contoso.com", ""};
  FolderSpec inbox{"Inbox", kOlMailItem, {}, {}}, sent{"Sent Items", kOlMailItem, {}, {}};
  FolderSpec clients{"Clients", kOlContactItem, {}, {}};
  for (int i = 0; i < contacts; ++i) {
    ItemSpec c;
    c.item_class = ItemClass::kContact;
    c.full_name = "Contact " + std::to_string(i);
    c.emails = {"contact" + std::to_string(i) + "@company" + std::to_string(i % 400) + ".com"};
    clients.items.push_back(std::move(c));
  }
  for (int i = 0; i < mails; ++i) {
    ItemSpec m;
    m.subject = "Message " + std::to_string(i);
    // Two in three mails concern a tracked contact, the rest strangers.
    int who = i * 7 % (contacts * 3 / 2);
    PersonSpec other{"Person " + std::to_string(who),
                     (who < contacts ? "contact" : "stranger") + std::to_string(who) + "@company" +
                         std::to_string(who % 400) + ".com",
                     ""};
    m.time = MakeDate(2026, 1, 5, 8) - (mails - i) * (2.0 / mails);  // the last two days
    if (i % 4 == 0) {
      m.from = s.profile.user;
      m.to = {other};
      sent.items.push_back(std::move(m));
    } else {
      m.from = other;
      m.to = {s.profile.user};
      inbox.items.push_back(std::move(m));
    }
  }
  StoreSpec mailbox;
  mailbox.folders = {std::move(inbox), std::move(sent), std::move(clients),
                     FolderSpec{"Client Journal", kOlJournalItem, {}, {}}};
  s.profile.stores.push_back(std::move(mailbox));
  FoldersetSpec set;
  set.contacts = "Clients";
  set.journal = "Client Journal";
  s.foldersets.push_back(set);
  // New mail after start-up sets the monitored folders' scans going over the backlog.
  StepSpec start, settle, deliver, wait, quit;
  start.kind = StepKind::kStart;
  settle.kind = StepKind::kWait;
  settle.seconds = 60;
  deliver.kind = StepKind::kDeliver;
  deliver.item = ItemSpec{};
  deliver.item->subject = "New mail";
  deliver.item->from = PersonSpec{"Contact 1", "contact1@company1.com", ""};
  deliver.item->to = {s.profile.user};
  wait.kind = StepKind::kWait;
  wait.seconds = 3600;
  quit.kind = StepKind::kQuit;
  s.timeline = {start, settle, deliver, wait, quit};
  return s;
}

int Mails(const benchmark::State& state) { return static_cast<int>(state.range(0)); }
int Contacts(const benchmark::State& state) { return static_cast<int>(state.range(1)); }

// Baseline: the simulated profile alone.
void BM_BuildProfileOnly(benchmark::State& state) {
  Scenario s = Mailbox(Mails(state), Contacts(state));
  for (auto _ : state) {
    sim::SimOutlook outlook(std::filesystem::temp_directory_path() / "zintra-sim-bench");
    ProfileLoader loader(outlook.profile());
    loader.Load(s.profile, s.outlook_version);
    benchmark::DoNotOptimize(outlook.profile().Stores().size());
  }
}

void BM_RunScenario(benchmark::State& state) {
  Scenario s = Mailbox(Mails(state), Contacts(state));
  RunOptions options;
  options.quiet = true;
  std::ostringstream out;
  double sim = 0, addin = 0;
  int64_t logged = 0;
  for (auto _ : state) {
    RunResult r = RunScenario(s, options, out);
    sim += r.sim_seconds;
    addin += r.addin_seconds;
    logged += r.items_logged;
  }
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  state.counters["logged_per_s"] = benchmark::Counter(static_cast<double>(logged) / addin);
  state.counters["sim_share"] = sim / (sim + addin);
  state.counters["addin_share"] = addin / (sim + addin);
  state.counters["peak_rss_MB"] = static_cast<double>(usage.ru_maxrss) / 1024.0;
  state.counters["items_logged"] =
      static_cast<double>(logged) / static_cast<double>(state.iterations());
}

BENCHMARK(BM_BuildProfileOnly)
    ->Args({2000, 500})
    ->Args({20000, 5000})
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1);
BENCHMARK(BM_RunScenario)
    ->Args({2000, 500})
    ->Args({20000, 5000})
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1);

}  // namespace
}  // namespace zintra::simtool

BENCHMARK_MAIN();
