// A job queue on the simulated host: virtual clock and event loop, recording
// forms and shell, a fake add-in and a log that keeps its lines.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "sim/shell/recording_shell.h"
#include "sim/shell/recording_window_manager.h"
#include "sim/shell/sim_form_factory.h"
#include "sim/time/event_loop.h"
#include "sim/time/virtual_clock.h"
#include "src/core/date.h"
#include "src/core/key_generator.h"
#include "src/errors/cached_error.h"
#include "src/jobs/job_queue.h"

namespace zintra::testing {

class FakeLog : public JobEngineLog {
 public:
  void WriteLogMessage(const std::string& text, bool warning) override {
    (warning ? warnings : messages).push_back(text);
  }
  void LogWarning(const std::string& text) override { warnings.push_back(text); }
  void LogCachedError(const CachedError& rec) override { errors.push_back(rec); }

  std::vector<std::string> messages, warnings;
  std::vector<CachedError> errors;
};

class FakeAddin : public JobAddin {
 public:
  JobQueueSettings QueueSettings() override { return settings; }
  bool Quitting() override { return quitting; }
  bool Outlook12OrHigher() override { return outlook12; }
  std::string GenerateKey() override { return keys.GenerateKey(); }
  void SetCheckLinger(std::shared_ptr<ICheckLinger> obj) override { lingers.push_back(obj); }
  void TouchOutlook() override {
    ++touches;
    if (touch_fails) throw ZError(-2147417848, "The object invoked has disconnected");
  }
  void Shutdown() override {
    ++shutdowns;
    if (auto q = queue.lock()) q->Kill();
  }
  std::shared_ptr<JobQueue> GetJobQueue() override { return queue.lock(); }

  JobQueueSettings settings;
  bool quitting = false;
  bool outlook12 = true;
  bool touch_fails = false;
  int touches = 0;
  int shutdowns = 0;
  KeyGenerator keys;
  std::vector<std::shared_ptr<ICheckLinger>> lingers;
  std::weak_ptr<JobQueue> queue;
};

// A job that does `steps` activations, re-queueing itself at top priority between
// them, and records each call in a shared trace.
class ScriptedJob : public IJob, public std::enable_shared_from_this<ScriptedJob> {
 public:
  ScriptedJob(std::string name, JobQueue& queue, std::vector<std::string>& trace, int steps = 1)
      : name_(std::move(name)), queue_(queue), trace_(trace), steps_(steps) {}

  void Activate() override {
    ++activations;
    trace_.push_back(name_);
    if (on_activate) on_activate(*this);
    if (activations < steps_) queue_.Queue(shared_from_this(), true);
  }
  void Abort() override {
    ++aborts;
    trace_.push_back("abort " + name_);
    if (on_abort) on_abort(*this);
  }
  std::string JobDescription() override { return name_; }

  int activations = 0;
  int aborts = 0;
  std::function<void(ScriptedJob&)> on_activate;
  std::function<void(ScriptedJob&)> on_abort;

 private:
  std::string name_;
  JobQueue& queue_;
  std::vector<std::string>& trace_;
  int steps_;
};

class OtherJob : public IJob {
 public:
  void Activate() override {}
  void Abort() override {}
  std::string JobDescription() override { return "other"; }
};

struct JobEnv {
  explicit JobEnv(bool async = false, double start = MakeDate(2024, 3, 1, 9, 0, 0)) : clock(start) {
    addin->settings.RunJobsAsync = async;
  }
  ~JobEnv() {
    if (queue) queue->Kill();
  }

  void Start() {
    queue = std::make_shared<JobQueue>(
        JobQueueHost{clock, loop, loop, forms, windows, shell, strings, log});
    addin->queue = queue;
    queue->Initialize(addin);
  }

  std::shared_ptr<ScriptedJob> Job(const std::string& name, int steps = 1) {
    return std::make_shared<ScriptedJob>(name, *queue, trace, steps);
  }

  sim::SimTaskListView& view() { return *forms.task_list(); }

  sim::VirtualClock clock;
  sim::EventLoop loop{clock};
  sim::SimFormFactory forms;
  sim::RecordingWindowManager windows;
  sim::RecordingShell shell;
  StringTable strings;
  FakeLog log;
  std::shared_ptr<FakeAddin> addin = std::make_shared<FakeAddin>();
  std::shared_ptr<JobQueue> queue;
  std::vector<std::string> trace;
};

}  // namespace zintra::testing
