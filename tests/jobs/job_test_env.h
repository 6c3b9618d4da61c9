// A job queue on the simulated host (SimWorld: virtual clock and event loop, recording
// forms and shell, the real error handling over a log that keeps its lines) with a fake
// add-in that counts what the queue asks of it.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "src/core/date.h"
#include "src/core/key_generator.h"
#include "src/jobs/job_queue.h"
#include "tests/support/sim_world.h"

namespace zintra::testing {

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

struct JobEnv : testing_support::SimWorld {
  explicit JobEnv(bool async = false, double start = MakeDate(2024, 3, 1, 9, 0, 0))
      : SimWorld(DefaultMailbox(), start) {
    addin->settings.RunJobsAsync = async;
  }
  ~JobEnv() { Stop(); }

  // Starts a queue on the world; a queue already running is killed first.
  void Start() {
    Stop();
    queue = std::make_shared<JobQueue>(QueueHost());
    addin->queue = queue;
    queue->Initialize(addin);
  }
  void Stop() {
    if (queue) queue->Kill();
    queue.reset();
  }

  std::shared_ptr<ScriptedJob> Job(const std::string& name, int steps = 1) {
    return std::make_shared<ScriptedJob>(name, *queue, trace, steps);
  }

  sim::SimTaskListView& view() { return *forms.task_list(); }

  std::shared_ptr<FakeAddin> addin = std::make_shared<FakeAddin>();
  std::shared_ptr<JobQueue> queue;
  std::vector<std::string> trace;
};

}  // namespace zintra::testing
