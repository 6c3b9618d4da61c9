// A folder scan of a 100,000-item folder whose newest 1,000 items are new (the rest
// already logged), one item per activation, against the simulated store's bare sorted
// walk over the same 1,001 items, measured in the same run.
//
// Counters: activations of the scan job, the longest activation and the mean one, the
// scan's total time and the bare walk's, and the ratio of the two; host calls of the
// scan and of the walk, and the most calls one activation made; the bare sort and
// first item; the peak memory of the process. The counter splits every activation's
// time between the add-in's own work and the time inside host calls: the longest own
// part and the longest host part of any activation, the first activation's two parts,
// and the scan's (scan_own_ms, scan_host_ms), with its clock readings (scan_clock_ms, at
// the cost measured in this run) taken back out, half from each side; the registry's
// calls and their part of the host time (scan_registry_calls, scan_registry_ms).
//
// The store keeps a folder's contents indexed in the orders it has been sorted in, so
// "warm" is the usual case: the folder has been sorted by creation time before (here by
// the set-up that marks the logged items). "Cold" drops the folder's indexes before the
// walk and the scan, so that the first sort builds the index, once.
// Times are the thread's CPU time, which other processes on a shared machine do not
// inflate. Each activation
// includes what the scan really does per item: reading its creation time and
// "Zintra Logged", and creating the item's processing job (screening, marking, saving,
// queueing); the processing jobs themselves are not run.
#include <benchmark/benchmark.h>
#include <sys/resource.h>
#include <time.h>

#include <algorithm>
#include <memory>

#include "sim/outlook/call_counter.h"
#include "sim/outlook/sim_keys.h"
#include "tests/monitoring/monitoring_env.h"

namespace zintra::monitoring_test {
namespace {

constexpr int kFolderItems = 100000;
constexpr int kNewItems = 1000;

int64_t ThreadCpuNanos() {
  timespec ts;
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &ts);
  return static_cast<int64_t>(ts.tv_sec) * 1000000000 + ts.tv_nsec;
}

// The cost of one reading of the thread's CPU clock (a system call), measured here.
double ClockReadingNs() {
  constexpr int kReadings = 100000;
  const int64_t t0 = ThreadCpuNanos();
  for (int i = 0; i < kReadings - 1; ++i) benchmark::DoNotOptimize(ThreadCpuNanos());
  return static_cast<double>(ThreadCpuNanos() - t0) / kReadings;
}

double ThreadCpuMicros() {
  timespec ts;
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &ts);
  return static_cast<double>(ts.tv_sec) * 1e6 + static_cast<double>(ts.tv_nsec) / 1e3;
}

// The store forgets the orders it keeps the folder in; the next sort builds one again.
void DropIndexes(const std::shared_ptr<Folder>& folder) {
  dynamic_cast<sim::FolderHolder&>(*folder).FolderRec()->indexes.clear();
}

void BM_ScanNewest1000Of100000(benchmark::State& state) {
  const bool cold = state.range(0) != 0;
  double scan_us = 0, walk_us = 0, longest_us = 0, longest_sort_us = 0, first_us = 0;
  double longest_later_us = 0, first_own_us = 0, longest_own_us = 0, longest_host_us = 0;
  int64_t activations = 0, walk_calls = 0, scan_calls = 0, most_calls = 0;
  double scan_host_us = 0, first_host_us = 0, scan_registry_us = 0;
  int64_t scan_registry_calls = 0;
  int64_t scan_readings = 0;
  sim::CallCounter counter;
  counter.SetClock(&ThreadCpuNanos);
  const double reading_ns = ClockReadingNs();
  for (auto _ : state) {
    state.PauseTiming();
    auto env = std::make_unique<MonitoringEnv>();
    env->settings.MonitorMethod = 1;
    auto folder_record = env->builder.Folder("Archive");
    env->builder.Mails(folder_record, kFolderItems);
    env->Start();
    auto folder = env->FolderOf(folder_record);
    {
      // Only the newest logged items matter to a scan that stops at the first of them.
      auto items = folder->Items();
      items->Sort("Created", true);
      auto item = items->GetFirst();
      for (int i = 0; item && i < kNewItems + 10; ++i, item = items->GetNext()) {
        if (i < kNewItems) continue;
        env->utils.SetUserProperty(item->UserProperties(), kPropZintraLogged, kOlYesNo, Value(true),
                                   false);
        env->utils.SaveItem(item);
      }
    }
    FolderSetting setting;
    setting.SetAllItemsLogged(true);
    auto monitor = std::make_shared<MonitoredFolder>(env->addin);
    monitor->Initialize(folder, env->monitoring, setting);
    env->profile.Faults().SetCounter(&counter);
    const auto registry = counter.Observer("Registry.");
    env->registry.SetCallObserver(registry.enter, registry.leave);
    counter.Reset();
    if (cold) DropIndexes(folder);
    state.ResumeTiming();

    // The bare walk: sort once, then step over the same items reading what the scan reads.
    const double t0 = ThreadCpuMicros();
    {
      auto items = folder->Items();
      items->Sort("Created", true);
      auto item = items->GetFirst();
      // The host's own part of the scan's first step: the store orders the folder.
      const double sort_us = ThreadCpuMicros() - t0;
      longest_sort_us = std::max(longest_sort_us, sort_us);
      for (int i = 0; item && i <= kNewItems; ++i, item = items->GetNext()) {
        benchmark::DoNotOptimize(item->CreationTime());
      }
    }
    const double t1 = ThreadCpuMicros();
    walk_us += t1 - t0;
    walk_calls += counter.Totals().Total();
    counter.Reset();
    if (cold) {
      state.PauseTiming();
      DropIndexes(folder);
      state.ResumeTiming();
    }

    // The scan, one activation at a time as the queue would run it.
    monitor->Scan(true);
    const int64_t scan_host_before = counter.HostNanoseconds();
    const int64_t scan_readings_before = counter.ClockReadings();
    bool first = true;
    while (monitor->Scanning()) {
      const int64_t calls_before = counter.Totals().Total();
      const int64_t host_before = counter.HostNanoseconds();
      const double a0 = ThreadCpuMicros();
      monitor->Activate();
      const double us = ThreadCpuMicros() - a0;
      const double host_us = static_cast<double>(counter.HostNanoseconds() - host_before) / 1e3;
      most_calls = std::max(most_calls, counter.Totals().Total() - calls_before);
      longest_us = std::max(longest_us, us);
      longest_own_us = std::max(longest_own_us, us - host_us);
      longest_host_us = std::max(longest_host_us, host_us);
      if (first) {
        first_us = std::max(first_us, us);
        first_own_us = std::max(first_own_us, us - host_us);
        first_host_us = std::max(first_host_us, host_us);
        first = false;
      } else {
        longest_later_us = std::max(longest_later_us, us);
      }
      ++activations;
    }
    scan_us += ThreadCpuMicros() - t1;
    scan_host_us += static_cast<double>(counter.HostNanoseconds() - scan_host_before) / 1e3;
    scan_readings += counter.ClockReadings() - scan_readings_before;
    scan_calls += counter.Totals().Total();
    scan_registry_calls += counter.RegistryCalls();
    scan_registry_us += static_cast<double>(counter.RegistryNanoseconds()) / 1e3;
    env->profile.Faults().SetCounter(nullptr);
    env->registry.SetCallObserver(nullptr);
    if (monitor->ScannedCount() != kNewItems)
      state.SkipWithError("scan did not stop at the logged items");

    state.PauseTiming();
    env->queue->Abandon();
    env.reset();
    state.ResumeTiming();
  }
  const double n = static_cast<double>(state.iterations());
  state.counters["activations"] = static_cast<double>(activations) / n;
  state.counters["longest_activation_us"] = longest_us;
  state.counters["mean_activation_us"] = scan_us / static_cast<double>(activations);
  state.counters["scan_ms"] = scan_us / n / 1000.0;
  state.counters["bare_walk_ms"] = walk_us / n / 1000.0;
  state.counters["scan_vs_bare_walk"] = scan_us / walk_us;
  state.counters["scan_calls"] = static_cast<double>(scan_calls) / n;
  state.counters["bare_walk_calls"] = static_cast<double>(walk_calls) / n;
  state.counters["scan_calls_vs_bare"] =
      static_cast<double>(scan_calls) / static_cast<double>(walk_calls);
  state.counters["most_calls_in_one_activation"] = static_cast<double>(most_calls);
  // The first step sorts the folder; sorting and reaching the first item, bare.
  state.counters["bare_sort_first_us"] = longest_sort_us;
  // Of any one activation: the longest time inside host calls and the longest rest, the
  // add-in's own, each still holding its half of the counter's clock readings (at most
  // two per host call; scan_clock_ms is their cost over the whole scan).
  state.counters["longest_activation_own_us"] = longest_own_us;
  state.counters["longest_activation_host_us"] = longest_host_us;
  state.counters["first_activation_us"] = first_us;
  state.counters["first_activation_own_us"] = first_own_us;
  state.counters["longest_later_activation_us"] = longest_later_us;
  // Measured by the counter: the time inside host calls, and the rest, the add-in's own.
  const double clock_us = static_cast<double>(scan_readings) * reading_ns / 1e3;
  state.counters["scan_host_ms"] = (scan_host_us - clock_us / 2) / n / 1000.0;
  state.counters["scan_own_ms"] = (scan_us - scan_host_us - clock_us / 2) / n / 1000.0;
  state.counters["scan_clock_ms"] = clock_us / n / 1000.0;
  // Registry calls are part of the host's time (clock readings not taken out).
  state.counters["scan_registry_calls"] = static_cast<double>(scan_registry_calls) / n;
  state.counters["scan_registry_ms"] = scan_registry_us / n / 1000.0;
  state.counters["first_activation_host_us"] = first_host_us;
  // The process's peak: the 100,000-item profile, the add-in and the scan together.
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  state.counters["peak_rss_mb"] = static_cast<double>(usage.ru_maxrss) / 1024.0;
}
BENCHMARK(BM_ScanNewest1000Of100000)
    ->ArgName("cold")
    ->Arg(0)
    ->Arg(1)
    ->Iterations(3)
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace zintra::monitoring_test

BENCHMARK_MAIN();
