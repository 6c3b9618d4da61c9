// The job engine's overhead: one activation round trip through the queue against a
// bare virtual call measured in the same run, and how many trivial activations one
// 10 ms slice of the timer form achieves on a real clock.
#include <benchmark/benchmark.h>

#include <chrono>
#include <cmath>
#include <memory>

#include "sim/shell/recording_shell.h"
#include "sim/shell/recording_window_manager.h"
#include "sim/shell/sim_form_factory.h"
#include "sim/time/event_loop.h"
#include "sim/time/virtual_clock.h"
#include "src/core/date.h"
#include "src/core/key_generator.h"
#include "src/jobs/job_queue.h"

namespace zintra {
namespace {

class NullLog : public JobEngineLog {
 public:
  void WriteLogMessage(const std::string&, bool) override {}
  void LogWarning(const std::string&) override {}
  void LogCachedError(const CachedError&) override {}
};

class BenchAddin : public JobAddin {
 public:
  explicit BenchAddin(bool async) { settings.RunJobsAsync = async; }
  JobQueueSettings QueueSettings() override { return settings; }
  bool Quitting() override { return false; }
  bool Outlook12OrHigher() override { return true; }
  std::string GenerateKey() override { return keys.GenerateKey(); }
  void SetCheckLinger(std::shared_ptr<ICheckLinger>) override {}
  void TouchOutlook() override {}
  void Shutdown() override {}
  std::shared_ptr<JobQueue> GetJobQueue() override { return queue.lock(); }
  JobQueueSettings settings;
  KeyGenerator keys;
  std::weak_ptr<JobQueue> queue;
};

// A real clock: the time of day from the steady clock, starting at `start_of_day`
// seconds past midnight and read in ticks of `resolution`. The reading is a float,
// as the platform's is, so late in the day it moves only every few milliseconds.
class SteadyClock : public Clock {
 public:
  SteadyClock(double resolution_seconds, double start_of_day)
      : resolution_(resolution_seconds), start_of_day_(start_of_day) {}
  double Now() override { return std::floor(Seconds()) / 86400.0; }
  float SecondsSinceMidnight() override {
    return static_cast<float>(std::floor(Seconds() / resolution_) * resolution_);
  }

 private:
  double Seconds() const {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start_).count() +
           start_of_day_;
  }
  double resolution_;
  double start_of_day_;
  std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

class CountingJob : public IJob, public std::enable_shared_from_this<CountingJob> {
 public:
  explicit CountingJob(JobQueue* queue = nullptr) : queue_(queue) {}
  void Activate() override {
    ++activations;
    if (queue_ != nullptr) queue_->Queue(shared_from_this(), true);  // endless work
  }
  void Abort() override {}
  std::string JobDescription() override { return "count"; }
  int64_t activations = 0;

 private:
  JobQueue* queue_;
};

struct Engine {
  Engine(bool async, Clock& clock_port) : addin(std::make_shared<BenchAddin>(async)) {
    queue = std::make_shared<JobQueue>(
        JobQueueHost{clock_port, loop, loop, forms, windows, shell, strings, log});
    addin->queue = queue;
    queue->Initialize(addin);
  }
  ~Engine() { queue->Kill(); }

  sim::VirtualClock clock{MakeDate(2024, 3, 1, 10, 0, 0)};
  sim::EventLoop loop{clock};
  sim::SimFormFactory forms;
  sim::RecordingWindowManager windows;
  sim::RecordingShell shell;
  StringTable strings;
  NullLog log;
  std::shared_ptr<BenchAddin> addin;
  std::shared_ptr<JobQueue> queue;
};

void BM_BareVirtualCall(benchmark::State& state) {
  std::shared_ptr<IJob> job = std::make_shared<CountingJob>();
  IJob* volatile target = job.get();
  for (auto _ : state) target->Activate();
  benchmark::DoNotOptimize(static_cast<CountingJob*>(job.get())->activations);
}
BENCHMARK(BM_BareVirtualCall);

// Synchronous mode: Queue finds nothing running, runs the queue, activates the job.
void BM_ActivationRoundTripSync(benchmark::State& state) {
  sim::VirtualClock clock(MakeDate(2024, 3, 1, 10, 0, 0));
  Engine engine(false, clock);
  auto job = std::make_shared<CountingJob>();
  for (auto _ : state) engine.queue->Queue(job, false);
  if (job->activations != static_cast<int64_t>(state.iterations())) state.SkipWithError("lost");
}
BENCHMARK(BM_ActivationRoundTripSync);

// Asynchronous mode: Queue switches the timer on, one tick runs the one activation.
void BM_ActivationRoundTripTimed(benchmark::State& state) {
  sim::VirtualClock clock(MakeDate(2024, 3, 1, 10, 0, 0));
  Engine engine(true, clock);
  auto job = std::make_shared<CountingJob>();
  frmTimer& timer = *engine.queue->TimerForm();
  for (auto _ : state) {
    engine.queue->Queue(job, false);
    timer.Timer1_Timer();
  }
  if (job->activations != static_cast<int64_t>(state.iterations())) state.SkipWithError("lost");
}
BENCHMARK(BM_ActivationRoundTripTimed);

// One 10 ms slice of trivial activations, on a clock of the given resolution (ns)
// read from the given second of the day. Just after midnight with 1 ns ticks the
// reading moves between almost any two reads, so the slice runs its full 10 ms; at
// 10:00 the float reading moves in 3.9 ms steps, and with the platform's 15.625 ms
// ticks it rarely moves at all: the slice then ends after its first activation.
void BM_ActivationsPerSlice(benchmark::State& state) {
  SteadyClock clock(static_cast<double>(state.range(0)) / 1e9, static_cast<double>(state.range(1)));
  Engine engine(true, clock);
  auto job = std::make_shared<CountingJob>(engine.queue.get());
  engine.queue->Queue(job, false);
  frmTimer& timer = *engine.queue->TimerForm();
  for (auto _ : state) timer.Timer1_Timer();
  state.counters["activations_per_slice"] =
      static_cast<double>(job->activations) / static_cast<double>(state.iterations());
}
BENCHMARK(BM_ActivationsPerSlice)
    ->Args({1, 0})
    ->Args({1000, 36000})
    ->Args({15625000, 36000})
    ->Iterations(60)
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace zintra

BENCHMARK_MAIN();
