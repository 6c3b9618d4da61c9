// The simulated Outlook's primitives at scale: a folder of 100,000 mails and a contact
// folder of 100,000 contacts. Later benchmarks state the system's overhead as a ratio
// to these; BM_Baseline_HashLookup (a bare hash lookup) is the yardstick of this run.
#include <benchmark/benchmark.h>

#include <memory>
#include <string>
#include <unordered_map>

#include "sim/mapi/sim_mapi_table.h"
#include "sim/mapi/sim_mapi_utils.h"
#include "sim/mapi/sim_outlook_host.h"
#include "sim/outlook/profile_builder.h"
#include "sim/outlook/sim_folder.h"
#include "sim/outlook/sim_item.h"
#include "src/host/mapi_object.h"

namespace zintra::sim {
namespace {

constexpr int kScale = 100000;

// One profile for the whole run: building it is measured by BM_BuildProfile.
struct Scaled {
  Scaled() : builder(host.profile) {
    builder.Mailbox(ProfileBuilder::Exchange("Jane Doe", "jdoe", "CONTOSO"));
    mail = builder.Folder("Archive");
    contacts = builder.ContactFolder("Customers");
    builder.Mails(mail, kScale);
    builder.Contacts(contacts, kScale);
  }
  SimOutlookHost host;
  ProfileBuilder builder;
  std::shared_ptr<FolderRecord> mail;
  std::shared_ptr<FolderRecord> contacts;
};

Scaled& Profile100k() {
  static Scaled* scaled = new Scaled();
  return *scaled;
}

void BM_Baseline_HashLookup(benchmark::State& state) {
  std::unordered_map<std::string, std::string> map;
  for (int i = 0; i < kScale; ++i) map["contact" + std::to_string(i) + "@company.com"] = "x";
  const std::string key = "contact77777@company.com";
  for (auto _ : state) benchmark::DoNotOptimize(map.find(key));
}
BENCHMARK(BM_Baseline_HashLookup);

void BM_BuildProfile(benchmark::State& state) {
  for (auto _ : state) {
    Scaled scaled;
    benchmark::DoNotOptimize(scaled.contacts->messages.size());
  }
  state.counters["items"] = 2.0 * kScale;
}
BENCHMARK(BM_BuildProfile)->Iterations(1)->Unit(benchmark::kMillisecond);

void BM_AddItem(benchmark::State& state) {
  Scaled& s = Profile100k();
  static int runs = 0;
  auto folder = MakeFolder(&s.host.profile, s.builder.Folder("Adds " + std::to_string(++runs)));
  auto items = folder->Items();
  Connection listener;
  if (state.range(0))
    listener = items->ItemAdd.Connect([](std::shared_ptr<Item> i) { benchmark::DoNotOptimize(i); });
  for (auto _ : state) {
    auto item = items->Add(kOlMailItem);
    item->SetSubject("New");
    item->Save();
  }
}
BENCHMARK(BM_AddItem)->Arg(0)->Arg(1);

void BM_SaveWithItemChange(benchmark::State& state) {
  Scaled& s = Profile100k();
  auto folder = MakeFolder(&s.host.profile, s.mail);
  auto items = folder->Items();
  int changes = 0;
  auto listener = items->ItemChange.Connect([&changes](std::shared_ptr<Item>) { ++changes; });
  auto item = MakeItem(&s.host.profile, s.mail->messages[kScale / 2]);
  for (auto _ : state) item->Save();
  benchmark::DoNotOptimize(changes);
}
BENCHMARK(BM_SaveWithItemChange);

void BM_PropertyRead(benchmark::State& state) {
  Scaled& s = Profile100k();
  auto item = MakeItem(&s.host.profile, s.contacts->messages[kScale / 2]);
  for (auto _ : state) benchmark::DoNotOptimize(item->Email1Address());
}
BENCHMARK(BM_PropertyRead);

void BM_UserPropertyRead(benchmark::State& state) {
  Scaled& s = Profile100k();
  auto item = MakeItem(&s.host.profile, s.mail->messages[kScale / 3]);
  item->UserProperties()->Add("Zintra Logged", kOlYesNo, false)->SetValue(Value(true));
  for (auto _ : state)
    benchmark::DoNotOptimize(item->UserProperties()->Find("Zintra Logged")->GetValue());
}
BENCHMARK(BM_UserPropertyRead);

void BM_SortedWalk100k(benchmark::State& state) {
  Scaled& s = Profile100k();
  auto folder = MakeFolder(&s.host.profile, s.mail);
  for (auto _ : state) {
    auto items = folder->Items();
    items->Sort("[Created]", true);
    int n = 0;
    for (auto item = items->GetFirst(); item; item = items->GetNext()) ++n;
    benchmark::DoNotOptimize(n);
  }
  state.SetItemsProcessed(state.iterations() * kScale);
}
BENCHMARK(BM_SortedWalk100k)->Unit(benchmark::kMillisecond);

void BM_FindContact100k(benchmark::State& state) {
  Scaled& s = Profile100k();
  auto items = MakeFolder(&s.host.profile, s.contacts)->Items();
  // The builder's address scheme: contact<i>@company<i % 97>.com.
  const std::string q = "\"contact99999@company" + std::to_string(99999 % 97) + ".com\"";
  const std::string filter =
      "[Email1Address] = " + q + " or [Email2Address] = " + q + " or [Email3Address] = " + q;
  for (auto _ : state) {
    int n = 0;
    for (auto c = items->Find(filter); c; c = items->FindNext()) ++n;
    if (n != 1) state.SkipWithError("the contact was not found");
  }
  state.SetItemsProcessed(state.iterations() * kScale);
}
BENCHMARK(BM_FindContact100k)->Unit(benchmark::kMillisecond);

void BM_GetRowsChunk(benchmark::State& state) {
  Scaled& s = Profile100k();
  SimMapiUtils utils(&s.host.profile);
  SimMapiTable table(&s.host.profile);
  auto folder = MakeFolder(&s.host.profile, s.contacts);
  table.SetItem(folder);
  std::vector<int32_t> columns;
  for (int32_t id : {0x8083, 0x8093, 0x80A3}) {
    columns.push_back(utils.GetIDsFromNames(folder->MAPIOBJECT(), kPsetidAddress, Value(id), true) |
                      kPtString8);
  }
  columns.push_back(kPrEntryId);
  table.SetColumns(columns);
  const int32_t chunk = static_cast<int32_t>(state.range(0));
  for (auto _ : state) {
    MapiRows rows = table.GetRows(chunk);
    if (rows.rows.empty()) {
      table.GoToFirst();
      rows = table.GetRows(chunk);
    }
    benchmark::DoNotOptimize(rows);
  }
  state.SetItemsProcessed(state.iterations() * chunk);
}
BENCHMARK(BM_GetRowsChunk)->Arg(100)->Arg(1000);

}  // namespace
}  // namespace zintra::sim

BENCHMARK_MAIN();
