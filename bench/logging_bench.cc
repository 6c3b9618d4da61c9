// Item logging through the whole pipeline (screening, contact search over 10,000
// contacts in three folder sets, a logged copy, links and marks) against the bare
// store work any logging of the same item must do (the reads that screen it and find
// its contact, the copy, the saves and the property writes), measured in the same
// run, and the longest single
// activation of the queue while items are logged. Host calls are counted too: they are
// what an item costs inside Outlook, and unlike times they do not vary from run to run;
// so are the calls of items screened out (skipped, or marked not-logged). An item's time
// is also split between the add-in's own work and the time inside host calls, which the
// counter measures. Times are the thread's CPU time, which the other processes of a
// shared machine do not inflate.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <memory>
#include <random>

#include <time.h>

#include "sim/outlook/call_counter.h"

#include "src/contacts/tracked_contact_folder.h"
#include "src/contacts/tracked_contacts.h"
#include "src/host/mapi_address.h"
#include "src/host/mapi_safe_item.h"
#include "src/host/mapi_session.h"
#include "src/host/mapi_utils.h"
#include "src/host/outlook_application.h"
#include "src/host/outlook_folder.h"
#include "src/host/outlook_item.h"
#include "src/host/outlook_item_parts.h"
#include "src/logging/job_process.h"
#include "src/logging/zintra_utils.h"
#include "src/outlook/folder_helpers.h"
#include "src/outlook/library_factory.h"
#include "tests/logging/logging_env.h"

namespace zintra::testing_support {
namespace {

using Steady = std::chrono::steady_clock;

double ThreadCpuSeconds() {
  timespec ts;
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &ts);
  return static_cast<double>(ts.tv_sec) + static_cast<double>(ts.tv_nsec) / 1e9;
}

int64_t ThreadCpuNanos() {
  timespec ts;
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &ts);
  return static_cast<int64_t>(ts.tv_sec) * 1000000000 + ts.tv_nsec;
}

// The queue's slice clock on real time, so that one timer tick runs one activation.
class RealClock : public Clock {
 public:
  double Now() override { return 0; }
  float SecondsSinceMidnight() override {
    return std::chrono::duration<float>(Steady::now().time_since_epoch()).count();
  }
};

class Pipeline {
 public:
  explicit Pipeline(bool async) {
    env_.registry.SetDword(kHKeyCurrentUser, "Software\\Brellow\\Zintra\\Logging", "LogLevel", 0);
    env_.settings.RunJobsAsync = async;
    env_.settings.QueuedWorkTimechunk = 0;
    env_.queue_clock = &real_clock_;
    const char* names[] = {"Customers", "Suppliers", "Partners"};
    for (int i = 0; i < 3; ++i) {
      sets_.push_back(env_.AddFolderSet(names[i], i == 1));
      env_.builder.Contacts(sets_.back().contacts, i == 0 ? 3334 : 3333);
    }
    env_.Start();
    env_.RunQueue();  // the address caches are filled before anything is measured
    env_.profile.Faults().SetCounter(&counter_);
    const auto registry = counter_.Observer("Registry.");
    env_.registry.SetCallObserver(registry.enter, registry.leave);
  }

  sim::CallCounter& Counter() { return counter_; }
  // Timed runs go without the counter: Outlook has none, and it would weigh on the
  // side that makes more calls.
  void StopCounting() {
    env_.profile.Faults().SetCounter(nullptr);
    env_.registry.SetCallObserver(nullptr);
  }

  std::shared_ptr<Item> NewMail() {
    const int i = 1 + static_cast<int>(rng_() % 3333);
    const std::string address =
        "contact" + std::to_string(i) + "@company" + std::to_string(i % 97) + ".com";
    return env_.ItemOf(env_.builder.MailFrom(sim::ProfileBuilder::Smtp("C", address),
                                             {"Mail " + std::to_string(++count_)}));
  }
  // A mail that screening skips: it already carries "Zintra Logged".
  std::shared_ptr<Item> LoggedMail() {
    auto mail = NewMail();
    env_.utils.SetUserProperty(mail->UserProperties(), kPropZintraLogged, kOlYesNo, Value(true),
                               false);
    env_.utils.SaveItem(mail);
    return mail;
  }
  // A mail that screening marks not-logged: it is confidential.
  std::shared_ptr<Item> ConfidentialMail() {
    auto mail = NewMail();
    mail->SetSensitivity(kOlConfidential);
    env_.utils.SaveItem(mail);
    return mail;
  }

  // The whole pipeline for one item.
  void Log(const std::shared_ptr<Item>& mail) {
    auto job = std::make_shared<JobProcess>(env_.addin);
    job->Initialize("bench", mail, true, false);
    env_.RunQueue();
  }

  // Logs one item tick by tick; returns the longest tick (one activation), in seconds.
  double LogTimingActivations(const std::shared_ptr<Item>& mail) {
    auto job = std::make_shared<JobProcess>(env_.addin);
    job->Initialize("bench", mail, true, false);
    double longest = 0;
    while (env_.queue->QueuedJobsCount() > 0 || env_.queue->WaitListCount() > 0) {
      const double start = ThreadCpuSeconds();
      env_.loop.AdvanceByMs(env_.settings.QueuedWorkTimeInterval);
      longest = std::max(longest, ThreadCpuSeconds() - start);
    }
    return longest;
  }

  // What any logging of the item must do in the store under the default settings (an
  // incoming folder, the library copy, the contact caches), each thing once, activation
  // by activation as the queue runs them. A value is taken again only where it could
  // have changed: what one activation read it may use again in that activation; a
  // store's named-property tags and a folder's search key never change, so they are
  // asked for once (they were, by the items logged before); the item's user-property
  // collection, sender and identifiers are held from the start. Nothing here is
  // optional: each line says what asks for it.
  void BareOperations(const std::shared_ptr<Item>& mail) {
    ZintraUtils& u = env_.utils;
    std::shared_ptr<Namespace> session = env_.addin->Session();
    std::shared_ptr<MapiUtils> mapi = env_.addin->LibraryUtils();
    const std::shared_ptr<Folder> journal = env_.FolderOf(sets_[0].journal);
    std::shared_ptr<TrackedContactFolder> tracked = env_.tracked->Folders().Values().front();

    // Initialize. Screening: the kind tests, the folder, the subject, folder name and
    // received time of the screening line and task text, the two marks that turn an
    // item away ("Zintra Tag" set, "Zintra Logged" present), the voice-mail class, the
    // sensitivity, the recipients (with recipients, the links need not be counted).
    (void)mail->Class();
    std::shared_ptr<Folder> parent = mail->Parent();
    (void)mail->Subject();
    (void)parent->Name();
    (void)mail->SentOn();
    std::shared_ptr<UserProperties> props = mail->UserProperties();
    std::shared_ptr<UserProperty> tag = props->Find(kPropZintraTag);
    (void)props->Find(kPropZintraLogged);
    (void)mail->MessageClass();
    (void)mail->Sensitivity();
    (void)mail->Recipients()->Count();
    // A colleague's mail is not logged (IgnoreItemsFromInternal): the sender, read
    // through the library's safe item, which the address search and the copy reuse.
    auto safe =
        std::dynamic_pointer_cast<SafeItem>(env_.addin->CreateLibraryObject(SafeItemKind(0)));
    safe->SetItem(mail);
    std::shared_ptr<AddressEntry> sender = safe->Sender();
    (void)sender->Type();
    const std::string address = sender->Address();
    // The identifiers that find the item again at the end, then the "Processing" mark
    // (the Find above said whether to add it), saved.
    const std::string store_id = parent->StoreID();
    (void)mail->EntryID();
    if (!tag) tag = props->Add(kPropZintraTag, kOlText, false);
    tag->SetValue(Value(std::string(kZintraTagProcessing)));
    u.SaveItem(mail);

    // The search activation: the item is checked, its links counted; the cache names
    // the contact, which is opened and filtered (IgnorePrivateContacts).
    (void)mail->Subject();
    (void)mail->Links()->Count();
    const std::string* contact_id = tracked->CacheLookup(address);
    if (contact_id) (void)session->GetItemFromID(*contact_id, tracked->StoreID())->Sensitivity();

    // The copy activation: the library's copy, its "Zintra Tag" checked and the copy
    // saved; its identifiers; the folder it landed in compared with the journal (whose
    // search key is known); the copy opened in the object model, its tag cleared, saved.
    std::shared_ptr<RdoMessage> message;
    u.PreSaveItem();
    message = safe->CopyTo(journal);
    u.PostSaveItem();
    (void)message->UserProperties()->Find(kPropZintraTag)->GetValue();
    u.PreSaveItem();
    message->Save();
    u.PostSaveItem();
    const std::string copy_entry_id = message->EntryID();
    const std::string copy_store_id = message->StoreID();
    std::shared_ptr<Item> copy = session->GetItemFromID(copy_entry_id, copy_store_id);
    (void)FolderSearchKey(copy->Parent(), *mapi);
    std::shared_ptr<UserProperties> copy_props = copy->UserProperties();
    copy_props->Find(kPropZintraTag)->SetValue(Value(std::string()));
    u.SaveItem(copy);

    // The final activation: the link lists (read first: links are appended), the two
    // flags, "Zintra Last Audited", the tag cleared, saved.
    std::shared_ptr<MapiObject> object = mail->MAPIOBJECT();
    (void)u.GetNamedProp(store_id, object, Value(std::string(kPropLoggedEntryIds)), kPtMvString8);
    u.SetNamedProp(store_id, object, Value(std::string(kPropLoggedEntryIds)),
                   Value(Value::StringArray{copy_entry_id}), kPtMvString8, false);
    u.SetNamedProp(store_id, object, Value(std::string(kPropLoggedStoreIds)),
                   Value(Value::StringArray{copy_store_id}), kPtMvString8, true);
    u.SetUserProperty(props, kPropZintraLogged, kOlYesNo, Value(true), false);
    u.SetUserProperty(props, kPropZintraShared, kOlYesNo, Value(false), false);
    u.SetNamedProp(store_id, object, Value(std::string(kPropZintraLastAudited)),
                   Value::Date(env_.clock.Now()), kPtSystime, false);
    u.SetUserProperty(props, kPropZintraTag, kOlText, Value(std::string()), false);
    u.SaveItem(mail);
  }

 private:
  sim::CallCounter counter_;  // outlives the environment, which calls the host on its way out
  LoggingEnv env_;
  RealClock real_clock_;
  std::vector<LoggingEnv::FolderSet> sets_;
  std::mt19937 rng_{42};
  int count_ = 0;
};

// Items per second through the pipeline, and the pipeline's cost over the bare store
// operations for the same kind of item, both timed in this run.
void BM_PipelineAgainstBareStore(benchmark::State& state) {
  Pipeline pipeline(false);
  pipeline.StopCounting();
  double pipeline_s = 0, bare_s = 0;
  for (auto _ : state) {
    auto a = pipeline.NewMail();
    auto b = pipeline.NewMail();
    const double t0 = ThreadCpuSeconds();
    pipeline.Log(a);
    const double t1 = ThreadCpuSeconds();
    pipeline.BareOperations(b);
    const double t2 = ThreadCpuSeconds();
    pipeline_s += t1 - t0;
    bare_s += t2 - t1;
  }
  state.counters["items_per_s"] = static_cast<double>(state.iterations()) / pipeline_s;
  state.counters["bare_items_per_s"] = static_cast<double>(state.iterations()) / bare_s;
  state.counters["pipeline_over_bare"] = pipeline_s / bare_s;
}

// Host calls per logged item, by kind, against the bare store operations counted the
// same way; the pipeline's calls by member go to stderr, to show where they are spent.
void BM_CallsPerItem(benchmark::State& state) {
  Pipeline pipeline(false);
  sim::CallCounter& counter = pipeline.Counter();
  sim::CallCounter::Tally pipeline_calls, bare_calls;
  std::vector<std::pair<std::string, int64_t>> by_member;
  for (auto _ : state) {
    auto a = pipeline.NewMail();
    auto b = pipeline.NewMail();
    counter.Reset();
    pipeline.Log(a);
    const sim::CallCounter::Tally after_log = counter.Totals();
    by_member = counter.ByMember();
    pipeline.BareOperations(b);
    pipeline_calls = after_log;
    bare_calls = counter.Totals() - after_log;
  }
  for (int i = 0; i < sim::CallCounter::kKinds; ++i) {
    const auto kind = static_cast<sim::CallCounter::Kind>(i);
    const std::string name(sim::CallCounter::KindName(kind));
    if (pipeline_calls.Of(kind) + bare_calls.Of(kind) == 0) continue;
    state.counters[name] = static_cast<double>(pipeline_calls.Of(kind));
    state.counters["bare " + name] = static_cast<double>(bare_calls.Of(kind));
  }
  state.counters["calls"] = static_cast<double>(pipeline_calls.Total());
  state.counters["bare_calls"] = static_cast<double>(bare_calls.Total());
  state.counters["calls_over_bare"] =
      static_cast<double>(pipeline_calls.Total()) / static_cast<double>(bare_calls.Total());
  std::fprintf(stderr, "pipeline calls per item: %s\nbare calls per item: %s\n",
               pipeline_calls.ToString().c_str(), bare_calls.ToString().c_str());
  for (const auto& [member, calls] : by_member)
    std::fprintf(stderr, "  %6lld %s\n", static_cast<long long>(calls), member.c_str());
}
BENCHMARK(BM_CallsPerItem)->Iterations(3)->Unit(benchmark::kMicrosecond);

// Host calls of an item that screening turns away: skipped (already marked logged;
// nothing is written, so the least is no call at all) and marked not-logged
// (confidential; the least is writing "Zintra Logged" and saving: the collection, the
// find, the add, the value and the save).
void BM_CallsPerScreenedItem(benchmark::State& state) {
  Pipeline pipeline(false);
  sim::CallCounter& counter = pipeline.Counter();
  int64_t skipped = 0, not_logged = 0;
  for (auto _ : state) {
    auto a = pipeline.LoggedMail();
    auto b = pipeline.ConfidentialMail();
    counter.Reset();
    pipeline.Log(a);
    skipped = counter.Totals().Total();
    counter.Reset();
    pipeline.Log(b);
    not_logged = counter.Totals().Total();
  }
  state.counters["skipped_calls"] = static_cast<double>(skipped);
  state.counters["not_logged_calls"] = static_cast<double>(not_logged);
  state.counters["not_logged_least_calls"] = 5;
}
BENCHMARK(BM_CallsPerScreenedItem)->Iterations(3)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_PipelineAgainstBareStore)->Iterations(2000)->Unit(benchmark::kMicrosecond);

// The cost of one reading of the thread's CPU clock (a system call), measured here.
double ClockReadingNs() {
  constexpr int kReadings = 100000;
  const int64_t t0 = ThreadCpuNanos();
  for (int i = 0; i < kReadings - 1; ++i) benchmark::DoNotOptimize(ThreadCpuNanos());
  return static_cast<double>(ThreadCpuNanos() - t0) / kReadings;
}

// A logged item's time split between the add-in's own work and the time inside the host
// calls it makes, on the same clock, with the counter attached. Its clock readings
// (clock_us_per_item, at the cost measured in this run) are taken back out, half from
// each side, as they fall; the rest of the difference from items_per_s's time is the
// counting itself. Registry calls are host time too; registry_us_per_item is their part
// of it (clock readings not taken out), beside their number.
void BM_OwnAndHostTimePerItem(benchmark::State& state) {
  Pipeline pipeline(false);
  sim::CallCounter& counter = pipeline.Counter();
  counter.SetClock(&ThreadCpuNanos);
  const double reading_ns = ClockReadingNs();
  int64_t total_ns = 0, host_ns = 0, registry_ns = 0, readings = 0, registry_calls = 0;
  for (auto _ : state) {
    auto mail = pipeline.NewMail();
    counter.Reset();
    const int64_t t0 = ThreadCpuNanos();
    pipeline.Log(mail);
    total_ns += ThreadCpuNanos() - t0;
    host_ns += counter.HostNanoseconds();
    registry_ns += counter.RegistryNanoseconds();
    readings += counter.ClockReadings();
    registry_calls += counter.RegistryCalls();
  }
  const double n = static_cast<double>(state.iterations());
  const double clock_ns = static_cast<double>(readings) * reading_ns;
  const double host = static_cast<double>(host_ns) - clock_ns / 2;
  const double own = static_cast<double>(total_ns - host_ns) - clock_ns / 2;
  state.counters["own_us_per_item"] = own / n / 1e3;
  state.counters["host_us_per_item"] = host / n / 1e3;
  state.counters["host_share"] = host / (host + own);
  state.counters["clock_us_per_item"] = clock_ns / n / 1e3;
  state.counters["registry_us_per_item"] = static_cast<double>(registry_ns) / n / 1e3;
  state.counters["registry_calls_per_item"] = static_cast<double>(registry_calls) / n;
}
BENCHMARK(BM_OwnAndHostTimePerItem)->Iterations(2000)->Unit(benchmark::kMicrosecond);

// The longest single activation of the queue (one timer tick runs one) while items
// are logged in asynchronous mode.
void BM_LongestActivation(benchmark::State& state) {
  Pipeline pipeline(true);
  pipeline.StopCounting();
  double longest = 0;
  for (auto _ : state)
    longest = std::max(longest, pipeline.LogTimingActivations(pipeline.NewMail()));
  state.counters["longest_activation_us"] = longest * 1e6;
}
BENCHMARK(BM_LongestActivation)->Iterations(1000)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace zintra::testing_support

BENCHMARK_MAIN();
