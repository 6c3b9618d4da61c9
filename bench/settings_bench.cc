// Reading the settings of a large installation (200 folder sets, 2,600 list elements)
// from the registry and from an enterprise settings file, against the bare registry
// reads of the same values measured in the same run. Report the ratios
// Read/registry_baseline and FileRead/registry_baseline.
#include <benchmark/benchmark.h>

#include <string>

#include "sim/files/memory_file_system.h"
#include "sim/platform/sim_platform.h"
#include "sim/registry/memory_registry.h"
#include "src/settings/reg_settings.h"

namespace zintra {
namespace {

constexpr int kSets = 200;
constexpr char kFile[] = "C:\\policy\\zintra.txt";

struct Installation {
  sim::MemoryRegistry registry;
  sim::MemoryFileSystem files;
  sim::SimPlatform platform;

  explicit Installation(bool enterprise) {
    if (enterprise) {
      registry.SetString(kHKeyLocalMachine, kPolicyKey, "EnterpriseSettingsPath", kFile);
      files.AddFolder("C:\\policy");
    }
    RegSettings settings(registry, files, platform);
    settings.Read(false, false, false);
    settings.FoldersetCount = kSets;
    for (StringList* list : {&settings.ContactFolderEntryIDs, &settings.ContactFolderStoreIDs,
                             &settings.EmailFolderEntryIDs, &settings.EmailFolderStoreIDs,
                             &settings.JournalFolderEntryIDs, &settings.JournalFolderStoreIDs,
                             &settings.SharedCalendarEntryIDs, &settings.SharedCalendarStoreIDs,
                             &settings.SharedJournalEntryIDs, &settings.SharedJournalStoreIDs,
                             &settings.SharedTaskListEntryIDs, &settings.SharedTaskListStoreIDs}) {
      for (int i = 0; i < kSets; ++i) {
        list->Add("00000000" + std::to_string(1000000 + i) + "ABCDEF");
      }
    }
    for (int i = 0; i < kSets; ++i) settings.FoldersetFlags.Add(i % 4 + 1);
    settings.Save();
  }
};

void BM_RegistryBaseline(benchmark::State& state) {
  Installation inst(false);
  const std::string key = std::string(kProductKey) + "\\Foldersets\\Contact\\EntryID";
  for (auto _ : state) {
    // The same number of value reads as a full Read: one open, query and close each.
    for (int i = 0; i < kSets * 13 + 60; ++i) {
      HKey handle = 0;
      inst.registry.OpenKey(kHKeyCurrentUser, key, kKeyRead, &handle);
      char buffer[2000];
      uint32_t size = sizeof buffer;
      inst.registry.QueryValue(handle, std::to_string(i % kSets + 1), nullptr,
                               reinterpret_cast<uint8_t*>(buffer), &size);
      inst.registry.CloseKey(handle);
    }
  }
}
BENCHMARK(BM_RegistryBaseline)->Unit(benchmark::kMillisecond);

void BM_Read(benchmark::State& state) {
  Installation inst(false);
  RegSettings settings(inst.registry, inst.files, inst.platform);
  for (auto _ : state) settings.Read(false, false, false);
  if (settings.EmailFolderStoreIDs.Count() != kSets ||
      settings.EmailFolderStoreIDs.Item(kSets).empty()) {
    state.SkipWithError("sets not read back");
  }
}
BENCHMARK(BM_Read)->Unit(benchmark::kMillisecond);

void BM_FileRead(benchmark::State& state) {
  Installation inst(true);
  RegSettings settings(inst.registry, inst.files, inst.platform);
  for (auto _ : state) settings.Read(false, false, false);
  if (!settings.UsingEnterpriseSettings || settings.EmailFolderStoreIDs.Count() != kSets ||
      settings.EmailFolderStoreIDs.Item(kSets).empty()) {
    state.SkipWithError("enterprise sets not read back");
  }
}
BENCHMARK(BM_FileRead)->Unit(benchmark::kMillisecond);

void BM_FileSave(benchmark::State& state) {
  Installation inst(true);
  RegSettings settings(inst.registry, inst.files, inst.platform);
  settings.Read(false, false, false);
  for (auto _ : state) settings.Save();
}
BENCHMARK(BM_FileSave)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace zintra

BENCHMARK_MAIN();
