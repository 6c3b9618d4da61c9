// Contact tracking at scale: a contact folder of 100,000 contacts with one to three
// addresses each. Baselines measured in the same run: the simulated table's bare
// GetRows over the same columns (for the fill) and a bare hash-map lookup of the same
// keys (for the cached lookup). The uncached Find shows what the cache buys.
#include <benchmark/benchmark.h>
#include <malloc.h>
#include <sys/resource.h>
#include <time.h>

#include <algorithm>
#include <random>
#include <string>
#include <unordered_map>
#include <vector>

#include "sim/mapi/sim_mapi_table.h"
#include "sim/outlook/call_counter.h"
#include "sim/outlook/profile_builder.h"
#include "sim/outlook/sim_folder.h"
#include "sim/outlook/sim_item.h"
#include "src/contacts/tracked_contact_folder.h"
#include "src/contacts/tracked_contacts.h"
#include "tests/contacts/test_contacts_addin.h"

namespace zintra {
namespace {

constexpr int kContacts = 100000;
// One tick of the simulated clock: the queue's timer fires once, one activation runs.
constexpr int64_t kOneTickMicros = 15625;

int64_t ThreadCpuNanos() {
  timespec ts;
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &ts);
  return static_cast<int64_t>(ts.tv_sec) * 1000000000 + ts.tv_nsec;
}

double ThreadCpuMs() {
  timespec ts;
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &ts);
  return static_cast<double>(ts.tv_sec) * 1e3 + static_cast<double>(ts.tv_nsec) / 1e6;
}

// The simulated host with its profile, built once for every benchmark; each rig starts
// an asynchronous queue on it, so that each timer slice runs exactly one activation.
struct World : testing::JobEnv {
  World() : JobEnv(/*async=*/true) {
    record = builder.ContactFolder("Customers");
    builder.Contacts(record, kContacts);
    folder = FolderOf(record);
    for (const auto& m : record->messages) {
      auto item = ItemOf(m);
      for (const std::string& a :
           {item->Email1Address(), item->Email2Address(), item->Email3Address()}) {
        if (!a.empty()) {
          addresses.push_back(a);
          entry_ids.push_back(item->EntryID());
        }
      }
    }
  }
  std::shared_ptr<sim::FolderRecord> record;
  std::shared_ptr<Folder> folder;
  std::vector<std::string> addresses, entry_ids;
};

World& TheWorld() {
  static World* world = new World();
  return *world;
}

// Tracked contacts over the world's folder, on a fresh queue.
struct Rig {
  explicit Rig(bool cached = true) {
    settings.CacheContactFolders = cached;
    settings.FoldersetCount = 1;
    settings.ContactFolderEntryIDs.Clear();
    settings.ContactFolderStoreIDs.Clear();
    settings.FoldersetFlags.Clear();
    settings.ContactFolderEntryIDs.Add(w.folder->EntryID());
    settings.ContactFolderStoreIDs.Add(w.folder->StoreID());
    settings.FoldersetFlags.Add(0);
    w.recorder.lines.clear();
    w.Start();
    addin =
        std::make_shared<testing::TestContactsAddin>(w, *w.app, w.factory, w.mapi_utils, settings);
  }
  ~Rig() {
    if (tracked) tracked->Kill();
  }
  // Runs a whole fill; returns the activations, the longest one and the total, in
  // thread CPU time (the machine is shared, so wall time measures the neighbours).
  // Host calls are counted too: all of them (`fill_calls`) and the most one
  // activation made (`most_calls`), and the time inside them (`host_ms`).
  void Fill(int64_t& activations, double& longest_ms, double& total_ms) {
    sim::CallCounter counter;
    counter.SetClock(&ThreadCpuNanos);
    w.profile.Faults().SetCounter(&counter);
    tracked = std::make_shared<TrackedContacts>();
    const double begin = ThreadCpuMs();
    tracked->Initialize(addin);
    activations = 0;
    longest_ms = 0;
    most_calls = counter.Totals().Total();
    while (!tracked->Folders().Item(1)->Ready()) {
      const int64_t calls_before = counter.Totals().Total();
      const double t0 = ThreadCpuMs();
      w.loop.AdvanceBy(kOneTickMicros);
      longest_ms = std::max(longest_ms, ThreadCpuMs() - t0);
      most_calls = std::max(most_calls, counter.Totals().Total() - calls_before);
      ++activations;
    }
    total_ms = ThreadCpuMs() - begin;
    fill_calls = counter.Totals();
    host_ms = static_cast<double>(counter.HostNanoseconds()) / 1e6;
    w.profile.Faults().SetCounter(nullptr);
  }
  sim::CallCounter::Tally fill_calls;
  int64_t most_calls = 0;
  double host_ms = 0;
  std::shared_ptr<TrackedContactFolder> Folder() { return tracked->Folders().Item(1); }

  World& w = TheWorld();
  RegSettings& settings = w.settings;
  std::shared_ptr<testing::TestContactsAddin> addin;
  std::shared_ptr<TrackedContacts> tracked;
};

void BM_BareGetRows(benchmark::State& state) {
  World& w = TheWorld();
  auto mapi_folder = w.folder->MAPIOBJECT();
  std::vector<int32_t> columns;
  for (int32_t id : {kEmail1AddressId, kEmail2AddressId, kEmail3AddressId}) {
    columns.push_back(w.mapi_utils->GetIDsFromNames(mapi_folder, kContactPropSet, Value(id), true) |
                      kPtString8);
  }
  columns.push_back(kPrEntryId);
  for (auto _ : state) {
    sim::SimMapiTable table(&w.profile);
    table.SetItem(w.folder);
    table.SetColumns(columns);
    int64_t rows = 0;
    for (;;) {
      MapiRows chunk = table.GetRows(100);
      if (chunk.rows.empty()) break;
      rows += static_cast<int64_t>(chunk.rows.size());
    }
    benchmark::DoNotOptimize(rows);
  }
}
BENCHMARK(BM_BareGetRows)->Unit(benchmark::kMillisecond)->Iterations(3);

void BM_CacheFill(benchmark::State& state) {
  TheWorld();
  int64_t activations = 0;
  double longest = 0, total = 0, worst = 0, total_sum = 0;
  size_t heap = 0, estimate = 0;
  int32_t count = 0;
  sim::CallCounter::Tally calls;
  int64_t most_calls = 0;
  double host_sum = 0;
  for (auto _ : state) {
    Rig rig;
    const size_t before = mallinfo2().uordblks;
    rig.Fill(activations, longest, total);
    calls = rig.fill_calls;
    most_calls = rig.most_calls;
    heap = mallinfo2().uordblks - before;
    worst = std::max(worst, longest);
    total_sum += total;
    host_sum += rig.host_ms;
    count = rig.Folder()->CacheCount();
    estimate = rig.Folder()->CacheMemoryUsage();
  }
  state.counters["activations"] = static_cast<double>(activations);
  state.counters["longest_activation_ms"] = worst;
  state.counters["fill_cpu_ms"] = total_sum / static_cast<double>(state.iterations());
  // The fill's time inside host calls (the table's rows), and the add-in's own.
  state.counters["fill_host_ms"] = host_sum / static_cast<double>(state.iterations());
  state.counters["fill_own_ms"] = (total_sum - host_sum) / static_cast<double>(state.iterations());
  state.counters["addresses"] = count;
  state.counters["heap_bytes_per_address"] = static_cast<double>(heap) / count;
  state.counters["index_bytes_per_address"] = static_cast<double>(estimate) / count;
  // The process's peak resident memory so far: the 100,000-contact profile, its table
  // and the filled cache (and whatever benchmarks ran before in this process).
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  state.counters["peak_rss_mb"] = static_cast<double>(usage.ru_maxrss) / 1024.0;
  state.counters["fill_calls"] = static_cast<double>(calls.Total());
  state.counters["fill_GetRows"] = static_cast<double>(calls.Of(sim::CallCounter::Kind::kRow));
  state.counters["most_calls_in_one_activation"] = static_cast<double>(most_calls);
}
BENCHMARK(BM_CacheFill)->Unit(benchmark::kMillisecond)->Iterations(3);

std::vector<std::string> ShuffledKeys(bool change_case) {
  std::vector<std::string> keys = TheWorld().addresses;
  std::mt19937 rng(42);
  std::shuffle(keys.begin(), keys.end(), rng);
  if (change_case) {
    for (auto& k : keys) k[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(k[0])));
  }
  return keys;
}

void BM_BareHashLookup(benchmark::State& state) {
  World& w = TheWorld();
  std::unordered_map<std::string, std::string> map;
  for (size_t i = 0; i < w.addresses.size(); ++i) map.emplace(w.addresses[i], w.entry_ids[i]);
  const auto keys = ShuffledKeys(false);
  size_t i = 0;
  for (auto _ : state) {
    auto it = map.find(keys[i++ % keys.size()]);
    benchmark::DoNotOptimize(it);
  }
}
BENCHMARK(BM_BareHashLookup);

void BM_CachedLookup(benchmark::State& state) {
  Rig rig;
  int64_t a;
  double l, t;
  rig.Fill(a, l, t);
  auto folder = rig.Folder();
  const auto keys = ShuffledKeys(state.range(0) != 0);
  size_t i = 0;
  for (auto _ : state) {
    const std::string* id = folder->CacheLookup(keys[i++ % keys.size()]);
    benchmark::DoNotOptimize(id);
  }
}
BENCHMARK(BM_CachedLookup)->Arg(0)->Arg(1)->ArgName("other_case");

// The cached lookup against the bare hash lookup, timed in the same run over the same
// shuffled keys, 1,000 lookups of each in turn (thread CPU time, so that the other
// processes of a shared machine do not weigh on one side only).
void BM_CachedAgainstBareLookup(benchmark::State& state) {
  World& w = TheWorld();
  std::unordered_map<std::string, std::string> map;
  for (size_t i = 0; i < w.addresses.size(); ++i) map.emplace(w.addresses[i], w.entry_ids[i]);
  Rig rig;
  int64_t a;
  double l, t;
  rig.Fill(a, l, t);
  auto folder = rig.Folder();
  const auto keys = ShuffledKeys(false);
  constexpr size_t kBatch = 1000;
  double cached_ms = 0, bare_ms = 0;
  size_t next = 0;
  for (auto _ : state) {
    const size_t first = next;
    const double t0 = ThreadCpuMs();
    for (size_t i = 0; i < kBatch; ++i) {
      benchmark::DoNotOptimize(folder->CacheLookup(keys[(first + i) % keys.size()]));
    }
    const double t1 = ThreadCpuMs();
    for (size_t i = 0; i < kBatch; ++i) {
      benchmark::DoNotOptimize(map.find(keys[(first + i) % keys.size()]));
    }
    const double t2 = ThreadCpuMs();
    cached_ms += t1 - t0;
    bare_ms += t2 - t1;
    next = (first + kBatch) % keys.size();
  }
  const double lookups = static_cast<double>(state.iterations() * kBatch);
  state.counters["cached_ns"] = cached_ms * 1e6 / lookups;
  state.counters["bare_ns"] = bare_ms * 1e6 / lookups;
  state.counters["cached_over_bare"] = cached_ms / bare_ms;
}
BENCHMARK(BM_CachedAgainstBareLookup)->Iterations(2000);

// What a search pays per address: cached (index + opening the contact) and uncached
// (Items.Find over the folder).
void BM_GetContactItems(benchmark::State& state) {
  const bool cached = state.range(0) != 0;
  Rig rig(cached);
  int64_t a;
  double l, t;
  if (cached) {
    rig.Fill(a, l, t);
  } else {
    rig.tracked = std::make_shared<TrackedContacts>();
    rig.tracked->Initialize(rig.addin);
  }
  auto folder = rig.Folder();
  const auto keys = ShuffledKeys(false);
  size_t i = 0;
  for (auto _ : state) {
    auto found = folder->GetContactItems(keys[i++ % keys.size()]);
    benchmark::DoNotOptimize(found);
  }
}
BENCHMARK(BM_GetContactItems)->Arg(1)->Arg(0)->ArgName("cached")->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace zintra

BENCHMARK_MAIN();
