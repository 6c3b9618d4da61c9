// A folder scan of a 100,000-item folder whose newest 1,000 items are new (the rest
// already logged), one item per activation, against the simulated store's bare sorted
// walk over the same 1,001 items, measured in the same run.
//
// Counters: activations of the scan job, the longest activation and the mean one, the
// scan's total time and the bare walk's, and the ratio of the two; host calls of the
// scan and of the walk, and the most calls one activation made; the bare sort and
// first item, which is the host's part of the longest (first) activation; the peak
// memory of the process. Each activation
// includes what the scan really does per item: reading its creation time and
// "Zintra Logged", and creating the item's processing job (screening, marking, saving,
// queueing); the processing jobs themselves are not run.
#include <benchmark/benchmark.h>
#include <sys/resource.h>

#include <algorithm>
#include <chrono>
#include <memory>

#include "sim/outlook/call_counter.h"
#include "tests/monitoring/monitoring_env.h"

namespace zintra::monitoring_test {
namespace {

constexpr int kFolderItems = 100000;
constexpr int kNewItems = 1000;

double Micros(std::chrono::steady_clock::duration d) {
  return std::chrono::duration<double, std::micro>(d).count();
}

void BM_ScanNewest1000Of100000(benchmark::State& state) {
  double scan_us = 0, walk_us = 0, longest_us = 0, longest_sort_us = 0;
  int64_t activations = 0, walk_calls = 0, scan_calls = 0, most_calls = 0;
  sim::CallCounter counter;
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
    counter.Reset();
    state.ResumeTiming();

    // The bare walk: sort once, then step over the same items reading what the scan reads.
    auto t0 = std::chrono::steady_clock::now();
    {
      auto items = folder->Items();
      items->Sort("Created", true);
      auto item = items->GetFirst();
      // The host's own part of the scan's first step: Outlook sorts the folder.
      longest_sort_us = std::max(longest_sort_us, Micros(std::chrono::steady_clock::now() - t0));
      for (int i = 0; item && i <= kNewItems; ++i, item = items->GetNext()) {
        benchmark::DoNotOptimize(item->CreationTime());
      }
    }
    auto t1 = std::chrono::steady_clock::now();
    walk_us += Micros(t1 - t0);
    walk_calls += counter.Totals().Total();
    counter.Reset();

    // The scan, one activation at a time as the queue would run it.
    monitor->Scan(true);
    while (monitor->Scanning()) {
      const int64_t calls_before = counter.Totals().Total();
      auto a0 = std::chrono::steady_clock::now();
      monitor->Activate();
      const double us = Micros(std::chrono::steady_clock::now() - a0);
      most_calls = std::max(most_calls, counter.Totals().Total() - calls_before);
      longest_us = std::max(longest_us, us);
      ++activations;
    }
    scan_us += Micros(std::chrono::steady_clock::now() - t1);
    scan_calls += counter.Totals().Total();
    env->profile.Faults().SetCounter(nullptr);
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
  // The process's peak: the 100,000-item profile, the add-in and the scan together.
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  state.counters["peak_rss_mb"] = static_cast<double>(usage.ru_maxrss) / 1024.0;
}
BENCHMARK(BM_ScanNewest1000Of100000)->Iterations(3)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace zintra::monitoring_test

BENCHMARK_MAIN();
