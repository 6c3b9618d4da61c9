// ZintraAddin.dll's start-up and shut-down as Outlook times them, through real COM: the
// COM test host loads the registered DLL by ProgID over a served profile of 10,000
// tracked contacts and a 100,000-item Inbox, and times OnConnection + OnStartupComplete,
// and Outlook's quit (its windows close, which is where the add-in shuts down, then Quit,
// OnBeginShutdown and OnDisconnection), against Outlook's one-second limit (beyond it
// Outlook reports the add-in as slow and offers to disable it). The same run over a
// 1,000-item Inbox gives the ratio that shows start-up does not grow with the folders:
// everything that reads them runs later, as jobs. Each is measured over a few loads, in
// wall time (what Outlook measures) and in this thread's CPU time (the add-in runs on
// it; other processes of a shared machine do not inflate it). Host calls are counted on
// the served profile. Run by tools/bench-windows.sh (the DLL registered, a desktop for
// the add-in's windows).
#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <vector>

#include "sim/outlook/call_counter.h"
#include "src/host/idt_extensibility2.h"
#include "src/host/outlook_constants.h"
#include "tests/win32/com_host/com_host.h"
#include "win32/com/windows_api.h"

namespace zintra::win32 {
namespace {

constexpr double kOutlookLimitSeconds = 1.0;
constexpr int kContacts = 10000;
// Loads per folder size after one that warms up (the DLL's first load, the first pages
// touched): wall time is their median, CPU time their mean (Wine's thread times tick
// coarsely).
constexpr int kCycles = 7;

struct Cycle {
  double startup_s = 0, shutdown_s = 0, startup_cpu_s = 0, shutdown_cpu_s = 0;
  int64_t startup_calls = 0, shutdown_calls = 0;
};

struct Sizes {
  Cycle median;
  bool ok = true;
};

double Seconds(std::chrono::steady_clock::duration d) {
  return std::chrono::duration<double>(d).count();
}

// This thread's CPU time, user and kernel, in seconds.
double ThreadCpuSeconds() {
  FILETIME created, exited, kernel, user;
  GetThreadTimes(GetCurrentThread(), &created, &exited, &kernel, &user);
  auto ticks = [](const FILETIME& t) {
    return static_cast<double>((static_cast<uint64_t>(t.dwHighDateTime) << 32) | t.dwLowDateTime);
  };
  return (ticks(kernel) + ticks(user)) / 1e7;  // 100 ns units
}

double Median(std::vector<double> v) {
  std::sort(v.begin(), v.end());
  return v[v.size() / 2];
}

// Loads the add-in 1 + kCycles times into one host whose Inbox holds `items` mails.
Sizes Measure(int items, benchmark::State& state) {
  ComHost host;
  host.builder().Contacts(host.clients(), kContacts);
  host.builder().Mails(host.profile().DefaultFolder(kOlFolderInbox), items);
  host.settings().LogLevel = 1;  // errors only, as users run it
  sim::CallCounter counter;
  host.profile().Faults().SetCounter(&counter);
  std::vector<double> up, down;
  Cycle last;
  double up_cpu = 0, down_cpu = 0;
  for (int i = 0; i <= kCycles; ++i) {
    if (host.app().OpenExplorers().empty()) {
      host.app().OpenExplorer(host.profile().DefaultFolder(kOlFolderInbox));
    }
    host.WriteSettings();
    if (FAILED(host.Load())) {
      state.SkipWithError("ZintraAddin.Connect did not load: is it registered (regsvr32)?");
      return {{}, false};
    }
    counter.Reset();
    const double c0 = ThreadCpuSeconds();
    const auto t0 = std::chrono::steady_clock::now();
    HRESULT hr = host.OnConnection(kExtCmStartup);
    if (SUCCEEDED(hr)) hr = host.OnStartupComplete();
    const auto t1 = std::chrono::steady_clock::now();
    const double c1 = ThreadCpuSeconds();
    last.startup_calls = counter.Totals().Total();
    counter.Reset();
    const double c2 = ThreadCpuSeconds();
    const auto t2 = std::chrono::steady_clock::now();
    host.app().QuitOutlook();
    HRESULT hr_down = host.OnBeginShutdown();
    if (SUCCEEDED(hr_down)) hr_down = host.OnDisconnection(kExtDmHostShutdown);
    const auto t3 = std::chrono::steady_clock::now();
    const double c3 = ThreadCpuSeconds();
    last.shutdown_calls = counter.Totals().Total();
    host.ReleaseAddin();
    if (FAILED(hr) || FAILED(hr_down)) {
      state.SkipWithError("the add-in failed to start or to shut down");
      return {{}, false};
    }
    if (i == 0) continue;  // the warm-up
    up.push_back(Seconds(t1 - t0));
    down.push_back(Seconds(t3 - t2));
    up_cpu += c1 - c0;
    down_cpu += c3 - c2;
  }
  host.profile().Faults().SetCounter(nullptr);
  last.startup_s = Median(up);
  last.shutdown_s = Median(down);
  last.startup_cpu_s = up_cpu / kCycles;
  last.shutdown_cpu_s = down_cpu / kCycles;
  return {last, true};
}

void BM_DllStartupAndShutdown(benchmark::State& state) {
  Sizes small, large;
  for (auto _ : state) {
    small = Measure(1000, state);
    if (!small.ok) return;
    large = Measure(100000, state);
    if (!large.ok) return;
  }
  const Cycle& a = small.median;
  const Cycle& b = large.median;
  state.counters["startup_ms_1k"] = a.startup_s * 1e3;
  state.counters["startup_ms_100k"] = b.startup_s * 1e3;
  state.counters["startup_100k_over_1k"] = b.startup_s / a.startup_s;
  state.counters["startup_cpu_ms_1k"] = a.startup_cpu_s * 1e3;
  state.counters["startup_cpu_ms_100k"] = b.startup_cpu_s * 1e3;
  state.counters["startup_cpu_100k_over_1k"] = b.startup_cpu_s / a.startup_cpu_s;
  state.counters["startup_share_of_limit"] = b.startup_s / kOutlookLimitSeconds;
  state.counters["shutdown_ms_1k"] = a.shutdown_s * 1e3;
  state.counters["shutdown_ms_100k"] = b.shutdown_s * 1e3;
  state.counters["shutdown_share_of_limit"] = b.shutdown_s / kOutlookLimitSeconds;
  state.counters["shutdown_cpu_ms_1k"] = a.shutdown_cpu_s * 1e3;
  state.counters["shutdown_cpu_ms_100k"] = b.shutdown_cpu_s * 1e3;
  state.counters["startup_calls_1k"] = static_cast<double>(a.startup_calls);
  state.counters["startup_calls_100k"] = static_cast<double>(b.startup_calls);
  state.counters["shutdown_calls_1k"] = static_cast<double>(a.shutdown_calls);
  state.counters["shutdown_calls_100k"] = static_cast<double>(b.shutdown_calls);
}
BENCHMARK(BM_DllStartupAndShutdown)->Unit(benchmark::kMillisecond)->Iterations(1);

}  // namespace
}  // namespace zintra::win32

BENCHMARK_MAIN();
