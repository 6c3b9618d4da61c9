// zintra-sim over an imported-size mailbox: 20,000 received and sent mails and 5,000
// tracked contacts, played from start-up scan to quit. Reported per run: items logged
// per second, the share of wall time spent building and reading back the simulated
// profile against the time inside the timeline (the add-in at work), and the peak
// resident memory. The baseline in the same run is building the same profile alone.
// BM_ImportAndRun times `import` and `run` over a generated mailbox of exported files at
// the smallest and the largest log settings; run each alone (--benchmark_filter) for its
// own peak memory. Measured on the shared 2-core machine, 20,000 mails and 5,000
// contacts: smallest, import 1.1 s + run 5.7 s, 387 MB; largest, import 1.5 s + run 43 s
// (94,882 log lines left at the 32 MB cap), 876 MB; 13,062 logged and no report mismatch
// at either. The largest took 215 s while the error log's write-ahead log was copied
// back every 256 pages; 2,000 mails at the largest took 415 s while the log synced the
// disk for every line.
// BM_StartupAndShutdown times the add-in's start-up and shut-down at two folder sizes.
#include <sys/resource.h>

#include <benchmark/benchmark.h>

#include <chrono>
#include <filesystem>
#include <sstream>

#include "sim/addin_host/sim_outlook.h"
#include "tests/zintra_sim/report_check.h"
#include "tools/zintra-sim/importer.h"
#include "tools/zintra-sim/mailbox_generator.h"
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

// A generated mailbox as exported files (mail.mbox, contacts.vcf), imported and played as
// `zintra-sim import` then `run` do: received mail scanned at start-up, the user's own
// mail sent by the user. The third argument is the log setting: 0 the smallest (nothing
// logged, a 1 KB log), 1 the largest (every line, error reporting on, a log too large to
// be cut). `report_mismatches` counts items whose row in the report disagrees with the
// marks the add-in left on them (0 expected); the report at both settings is the same.
void BM_ImportAndRun(benchmark::State& state) {
  namespace fs = std::filesystem;
  fs::path dir =
      fs::temp_directory_path() / ("zintra-sim-bench-import-" + std::to_string(Mails(state)));
  fs::remove_all(dir);
  GeneratedMailbox generated = GenerateMailbox(dir, Mails(state), Contacts(state));
  const bool largest = state.range(2) != 0;
  RunOptions options;
  options.quiet = true;
  options.out_dir = (dir / "out").string();
  std::ostringstream out;
  double import = 0, run = 0;
  int64_t logged = 0, reached = 0, mismatches = 0, lines = 0;
  for (auto _ : state) {
    auto t0 = std::chrono::steady_clock::now();
    ImportResult imported = Import({dir.string()}, generated.user);
    auto t1 = std::chrono::steady_clock::now();
    testing_support::SetLogSettings(imported.scenario, largest);
    RunResult r = RunScenario(imported.scenario, options, out);
    auto t2 = std::chrono::steady_clock::now();
    import += std::chrono::duration<double>(t1 - t0).count();
    run += std::chrono::duration<double>(t2 - t1).count();
    logged += r.items_logged;
    lines += static_cast<int64_t>(r.log_lines.size());
    for (const WhyRow& row : r.why) reached += row.outcome != "not reached";
    mismatches += static_cast<int64_t>(testing_support::ReportMismatches(options.out_dir).size());
  }
  fs::remove_all(dir);
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  const auto n = static_cast<double>(state.iterations());
  state.counters["import_s"] = import / n;
  state.counters["run_s"] = run / n;
  state.counters["items_logged"] = static_cast<double>(logged) / n;
  state.counters["items_reached"] = static_cast<double>(reached) / n;
  state.counters["log_lines"] = static_cast<double>(lines) / n;
  state.counters["report_mismatches"] = static_cast<double>(mismatches) / n;
  state.counters["peak_rss_MB"] = static_cast<double>(usage.ru_maxrss) / 1024.0;
}

// Start-up and shut-down with 10,000 tracked contacts and 100,000 mails, against the
// same with 1,000 mails, in one run: what Outlook waits for while it loads the add-in
// (OnConnection and OnStartupComplete, with a window open) and while it quits,
// beside Outlook's one-second limit, and the host calls each makes. Whatever grows
// with the folders (the start-up scans, the cache fill) runs later as jobs, so the
// two sizes should cost about the same.
void BM_StartupAndShutdown(benchmark::State& state) {
  auto start_and_quit = [](int mails) {
    Scenario s = Mailbox(mails, 10000);
    StepSpec start, quit;
    start.kind = StepKind::kStart;
    quit.kind = StepKind::kQuit;
    s.timeline = {start, quit};
    return s;
  };
  const Scenario small = start_and_quit(1000), large = start_and_quit(100000);
  RunOptions options;
  options.quiet = true;
  std::ostringstream out;
  RunResult a, b;
  for (auto _ : state) {
    sim::CallCounter small_calls, large_calls;
    options.stats = &small_calls;
    a = RunScenario(small, options, out);
    options.stats = &large_calls;
    b = RunScenario(large, options, out);
  }
  constexpr double kOutlookLimitSeconds = 1.0;  // Outlook disables a slower add-in
  state.counters["startup_ms_1k"] = a.startup_seconds * 1e3;
  state.counters["startup_ms_100k"] = b.startup_seconds * 1e3;
  state.counters["startup_100k_over_1k"] = b.startup_seconds / a.startup_seconds;
  state.counters["startup_share_of_limit"] = b.startup_seconds / kOutlookLimitSeconds;
  state.counters["shutdown_ms_1k"] = a.shutdown_seconds * 1e3;
  state.counters["shutdown_ms_100k"] = b.shutdown_seconds * 1e3;
  state.counters["shutdown_share_of_limit"] = b.shutdown_seconds / kOutlookLimitSeconds;
  state.counters["startup_calls_1k"] = static_cast<double>(a.startup_calls.Total());
  state.counters["startup_calls_100k"] = static_cast<double>(b.startup_calls.Total());
  state.counters["shutdown_calls_1k"] = static_cast<double>(a.shutdown_calls.Total());
  state.counters["shutdown_calls_100k"] = static_cast<double>(b.shutdown_calls.Total());
}
BENCHMARK(BM_StartupAndShutdown)->Unit(benchmark::kMillisecond)->Iterations(1);

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
BENCHMARK(BM_ImportAndRun)
    ->Args({2000, 500, 0})
    ->Args({2000, 500, 1})
    ->Args({20000, 5000, 0})
    ->Args({20000, 5000, 1})
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1);

}  // namespace
}  // namespace zintra::simtool

BENCHMARK_MAIN();
