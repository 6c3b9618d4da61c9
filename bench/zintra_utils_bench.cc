// ZintraUtils' per-item services against the bare store operations they wrap, in one
// run: screening an item against reading its "Zintra Tag" directly, and a named
// property write (name lookup plus write) against the bare write of a known tag.
// Logging is off (level 0), as the cost of the log has its own benchmark.
#include <benchmark/benchmark.h>

#include <memory>
#include <string>

#include "sim/files/memory_file_system.h"
#include "sim/mapi/sim_mapi_utils.h"
#include "sim/outlook/profile_builder.h"
#include "sim/outlook/sim_item.h"
#include "sim/outlook/sim_ol_application.h"
#include "sim/platform/sim_platform.h"
#include "sim/registry/memory_registry.h"
#include "sim/ui/recording_msg_box.h"
#include "src/errors/error_handling.h"
#include "src/host/error_log_store.h"
#include "src/logging/zintra_utils.h"
#include "src/resources/string_table.h"
#include "src/settings/reg_settings.h"

namespace zintra {
namespace {

class NoLog : public ErrorLogFactory {
 public:
  std::shared_ptr<ErrorLogStore> CreateErrorLog() override { return nullptr; }
};

struct Env {
  Env() : builder(profile) {
    builder.Mailbox(sim::ProfileBuilder::Smtp("Jane Doe", "jane@contoso.com"));
    item = sim::MakeItem(&profile, builder.Item(builder.Default(kOlFolderInbox), ItemClass::kMail,
                                                "Quarterly figures"));
    utils.Connect({app, &settings, nullptr});
    utils.SetLibrary(mapi_utils, nullptr);
    utils.SetUserProperty(item->UserProperties(), kPropZintraTag, kOlText, Value(""), false);
  }
  sim::Profile profile;
  sim::ProfileBuilder builder;
  std::shared_ptr<Item> item;
  std::shared_ptr<sim::SimOlApplication> app = std::make_shared<sim::SimOlApplication>(&profile);
  std::shared_ptr<sim::SimMapiUtils> mapi_utils = std::make_shared<sim::SimMapiUtils>(&profile);
  sim::MemoryRegistry registry;
  sim::MemoryFileSystem files;
  sim::SimPlatform platform;
  sim::RecordingMsgBox msg_box;
  NoLog log;
  StringTable strings;
  ErrorHandling errors{{log, msg_box, registry, files, platform, strings}};
  RegSettings settings{registry, files, platform};
  ZintraUtils utils{errors};
};

void BM_Baseline_ReadTag(benchmark::State& state) {
  Env env;
  for (auto _ : state) {
    benchmark::DoNotOptimize(env.item->UserProperties()->Find(kPropZintraTag)->GetValue());
  }
}
BENCHMARK(BM_Baseline_ReadTag);

void BM_GeneralScreening(benchmark::State& state) {
  Env env;
  std::string reason, subject, folder, description;
  for (auto _ : state) {
    benchmark::DoNotOptimize(env.utils.GeneralScreening("scan", env.item, true, false, reason,
                                                        subject, folder, description));
  }
}
BENCHMARK(BM_GeneralScreening);

void BM_Baseline_SetKnownTag(benchmark::State& state) {
  Env env;
  auto object = env.item->MAPIOBJECT();
  const int32_t tag = env.mapi_utils->GetIDsFromNames(object, kZintraPropSetGuid,
                                                      Value(kPropZintraLastAudited), true) |
                      kPtSystime;
  for (auto _ : state) env.mapi_utils->HrSetOneProp(object, tag, Value::Date(46000.5), false);
}
BENCHMARK(BM_Baseline_SetKnownTag);

void BM_SetNamedProp(benchmark::State& state) {
  Env env;
  auto object = env.item->MAPIOBJECT();
  for (auto _ : state) {
    env.utils.SetNamedProp(object, Value(kPropZintraLastAudited), Value::Date(46000.5), kPtSystime,
                           false);
  }
}
BENCHMARK(BM_SetNamedProp);

}  // namespace
}  // namespace zintra

BENCHMARK_MAIN();
