#include "tools/zintra-sim/runner.h"

#include <chrono>
#include <filesystem>
#include <iostream>
#include <memory>
#include <random>
#include <stdexcept>

#include "sim/addin_host/sim_outlook.h"
#include "sim/outlook/message_props.h"
#include "sim/outlook/sim_item.h"
#include "sim/outlook/sim_namespace.h"
#include "src/addin/zintra_addin_app.h"
#include "src/core/text.h"
#include "src/core/z_error.h"
#include "src/host/mapi_object.h"
#include "src/jobs/job_queue.h"
#include "tools/zintra-sim/check_step.h"
#include "tools/zintra-sim/click_player.h"
#include "tools/zintra-sim/disk_files.h"
#include "tools/zintra-sim/expectations.h"
#include "tools/zintra-sim/host_steps.h"
#include "tools/zintra-sim/input_error.h"
#include "tools/zintra-sim/item_marks.h"
#include "tools/zintra-sim/item_view.h"
#include "tools/zintra-sim/job_moment.h"
#include "tools/zintra-sim/profile_loader.h"
#include "tools/zintra-sim/progress.h"
#include "tools/zintra-sim/results_writer.h"
#include "tools/zintra-sim/scenario_reader.h"
#include "tools/zintra-sim/timeline_check.h"
#include "tools/zintra-sim/why_report.h"
#include "tools/zintra-sim/world.h"

namespace zintra::simtool {

namespace fs = std::filesystem;
using Clock_ = std::chrono::steady_clock;

namespace {

double Seconds(Clock_::time_point since) {
  return std::chrono::duration<double>(Clock_::now() - since).count();
}

class TimelinePlayer {
 public:
  TimelinePlayer(World& world, Progress& progress)
      : w_(world), progress_(progress), moments_(world) {}

  void Play(const StepSpec& step) {
    if (step.during && !inside_job_) {
      moments_.PlayDuringJob(step.during_job, step.source_line, [this, step] {
        inside_job_ = true;
        Play(step);
        inside_job_ = false;
      });
      return;
    }
    sim::SimOutlook& o = w_.outlook();
    const bool running = o.Started() && !o.Ended() && !o.HeldByKeepAlive();
    if (step.kind == StepKind::kStart && o.Started()) {
      Fail(step, "/do", "Outlook is already running; a simulated Outlook starts once");
    }
    if ((step.kind == StepKind::kClick || step.kind == StepKind::kOpenInspector ||
         step.kind == StepKind::kLoadAddin) &&
        !running) {
      Fail(step, "/do",
           std::string("\"") + StepName(step.kind) +
               "\" needs Outlook running, but it has quit (its last window closed, or a "
               "\"quit\" step)");
    }
    switch (step.kind) {
      case StepKind::kStart: {
        sim::StartWindows windows = step.windows == "none"        ? sim::StartWindows::kNone
                                    : step.windows == "inspector" ? sim::StartWindows::kInspector
                                                                  : sim::StartWindows::kExplorer;
        std::shared_ptr<Item> item;
        if (!step.target.empty()) item = ItemFor(step.target, step);
        o.Start(windows, step.addin, item);
        break;
      }
      case StepKind::kDeliver:
      case StepKind::kSend:
      case StepKind::kAdd:
        Store(step);
        break;
      case StepKind::kChange:
        Change(step);
        break;
      case StepKind::kDelete: {
        auto record = Record(step.target, step);
        if (step.hard) {
          w_.profile().DestroyMessage(record);
        } else {
          w_.profile().DeleteMessage(record);
        }
        break;
      }
      case StepKind::kWait: {
        double seconds =
            step.until != 0 ? std::max(0.0, (step.until - o.clock.Now()) * 86400.0) : step.seconds;
        Wait(seconds);
        break;
      }
      case StepKind::kSettings:
        try {
          w_.ReplaceSettings(step.registry, step.multi_user, step.reset_messages);
        } catch (const ZError& e) {
          // The options page keeps a 16-bit setting in range; a file can hold anything.
          if (e.Number() != kErrOverflow) throw;
          Fail(step, "/registry", e.Description());
        }
        break;
      case StepKind::kClick:
        ClickPlayer(w_, [this](const std::string& note) { progress_.Note(note); }).Play(step);
        break;
      case StepKind::kOpenInspector:
        o.OpenInspector(ItemFor(step.target, step));
        break;
      case StepKind::kCloseInspector: {
        auto record = Record(step.target, step);
        for (const auto& insp : o.app().OpenInspectors()) {
          if (sim::RecordOf(insp->CurrentItem()) == record) {
            insp->Close(0);
            break;
          }
        }
        break;
      }
      case StepKind::kLoadAddin:
        o.LoadAddin();
        break;
      case StepKind::kUnloadAddin:
        o.UnloadAddin();
        break;
      case StepKind::kQuit:
        o.Quit();
        if (!inside_job_) Wait(0);  // inside a job the loop is already running
        break;
      case StepKind::kFail:
      case StepKind::kHeal:
      case StepKind::kRemoveFolder:
      case StepKind::kAnswer:
      case StepKind::kWindowMessage:
        PlayHostStep(w_, step);
        break;
      case StepKind::kCheck:
        for (auto& outcome : CheckNow(w_, step.checks)) checks_.push_back(std::move(outcome));
        break;
    }
  }

  // Virtual time passes in one-second slices so that progress can be shown. The
  // timeline's length was bounded when it was read.
  void Wait(double seconds) {
    sim::SimOutlook& o = w_.outlook();
    const double days = std::clamp(seconds / 86400.0, 0.0, kMaxTimelineDays);
    int64_t left = static_cast<int64_t>(days * 86400.0 * 1e6);
    do {
      int64_t slice = std::min<int64_t>(left, 1000000);
      o.loop.AdvanceBy(slice);
      left -= slice;
      ShowTasks();
    } while (left > 0);
  }

 private:
  [[noreturn]] void Fail(const StepSpec& step, const std::string& field,
                         const std::string& problem) {
    throw InputError(w_.scenario().source, step.source_line, step.pointer + field, problem);
  }

  std::shared_ptr<sim::MessageRecord> Record(const std::string& id, const StepSpec& step) {
    auto r = w_.loader().FindItem(id);
    if (!r) {
      Fail(step, "/target",
           "the item \"" + Excerpt(id) + "\" is no longer in the profile (deleted or moved)");
    }
    return r;
  }
  std::shared_ptr<Item> ItemFor(const std::string& id, const StepSpec& step) {
    return sim::MakeItem(&w_.profile(), Record(id, step));
  }

  void Store(const StepSpec& step) {
    ItemSpec item = *step.item;
    sim::Profile& p = w_.profile();
    if (item.time == kUnsetDate) item.time = w_.outlook().clock.Now();
    std::shared_ptr<sim::FolderRecord> folder;
    if (!step.folder.empty()) {
      folder = w_.loader().FindFolder(step.folder);
      if (!folder)
        Fail(step, "/folder", "no folder \"" + Excerpt(step.folder) + "\" in the profile");
    } else {
      folder = p.DefaultFolder(step.kind == StepKind::kSend ? kOlFolderSentMail : kOlFolderInbox);
      if (!folder) {
        Fail(step, "/do",
             std::string("the ") + (step.kind == StepKind::kSend ? "Sent Items" : "Inbox") +
                 " folder was removed: name the \"folder\" the item goes to");
      }
    }
    if (!item.class_given) item.item_class = ItemClassForFolderType(folder->default_item_type);
    if (item.item_class != ItemClass::kContact && !item.emails.empty()) {
      throw InputError(w_.scenario().source, item.source_line, "item/emails",
                       "only contacts have e-mail addresses; the folder holds " +
                           std::string(FolderTypeName(folder->default_item_type)) + " items");
    }
    if (step.kind == StepKind::kSend && !item.from) {
      const sim::Person& me = p.CurrentUser();
      item.from = PersonSpec{me.name, me.smtp, me.ex_dn};
    }
    auto record = w_.loader().NewItem(item, folder);
    if (item.marks) ApplyPresetMarks(*record, *item.marks, w_.loader());
    if (step.kind == StepKind::kDeliver && step.folder.empty()) {
      w_.outlook().app().Deliver(sim::MakeItem(&p, record));  // ItemAdd, then NewMail
    } else if (step.kind == StepKind::kSend && step.folder.empty()) {
      // ItemSend first (the add-in sees it), then stamped and stored in Sent Items.
      if (!w_.outlook().app().Send(sim::MakeItem(&p, record))) return;
    } else {
      p.SaveMessage(record);
    }
    for (const std::string& link : item.links) w_.loader().Link(record, link);
  }

  void Change(const StepSpec& step) {
    auto record = Record(step.target, step);
    auto item = sim::MakeItem(&w_.profile(), record);
    SetItemFields(*item, step.changes, w_.scenario().source, step, "/set");
    item->Save();
  }

  // The task list's rows as its window holds them, and the queue's length.
  void ShowTasks() {
    std::vector<TaskRow> rows;
    if (const sim::SimTaskListView* view = w_.outlook().forms.task_list()) {
      for (const auto& row : view->rows()) rows.push_back({row.key, row.description, row.percent});
    }
    std::shared_ptr<ZintraAddinApp> addin = w_.Addin();
    std::shared_ptr<JobQueue> queue = addin ? addin->GetJobQueue() : nullptr;
    progress_.Update(rows, queue ? queue->QueuedJobsCount() : 0);
  }

  World& w_;
  Progress& progress_;
  JobMoments moments_;
  bool inside_job_ = false;

 public:
  // Steps that waited for a job that never pumped messages.
  std::vector<std::string> NeverPlayed() const { return moments_.NeverPlayed(); }
  // The outcomes of the timeline's check steps, in the order checked.
  std::vector<ExpectationOutcome> checks_;
};

// Every folder a step names (to store into, to fail in or to remove) exists once the
// profile is built; checked before the timeline plays, so such a scenario stops before
// anything happens.
void CheckStepFolders(const Scenario& scenario, ProfileLoader& loader) {
  for (const StepSpec& step : scenario.timeline) {
    const bool host = step.kind == StepKind::kFail || step.kind == StepKind::kRemoveFolder;
    const std::string& folder = host ? step.fault.folder : step.folder;
    if (folder.empty()) continue;
    auto found = loader.FindFolder(folder);
    if (!found) {
      throw InputError(scenario.source, step.source_line, step.pointer + "/folder",
                       "no folder \"" + Excerpt(folder) + "\" in the profile");
    }
    if (step.kind == StepKind::kRemoveFolder && !found->parent.lock()) {
      throw InputError(scenario.source, step.source_line, step.pointer + "/folder",
                       "\"" + Excerpt(folder) +
                           "\" is the top of a store, which cannot be removed; remove the "
                           "folders below it");
    }
  }
}

// The error log is made while the timeline plays, in a folder of its own; it joins the
// results only when the run ends without an error, so bad input found while playing
// leaves the output folder as it was.
class ScratchFolder {
 public:
  ScratchFolder()
      : path_(fs::temp_directory_path() /
              ("zintra-sim-" + std::to_string(std::random_device{}()))) {}
  ~ScratchFolder() {
    std::error_code ec;
    fs::remove_all(path_, ec);
  }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;
  const fs::path& path() const { return path_; }

 private:
  fs::path path_;
};

// Replaces `target` (the error log folder of earlier runs) with `made`.
void MoveFolder(const fs::path& made, const fs::path& target) {
  fs::remove_all(target);
  if (!fs::exists(made)) return;
  fs::create_directories(target.parent_path());
  std::error_code ec;
  fs::rename(made, target, ec);
  if (ec) {  // another file system
    fs::copy(made, target, fs::copy_options::recursive);
  }
}

}  // namespace

RunResult RunScenario(const Scenario& scenario, const RunOptions& options, std::ostream& out) {
  RunResult result;
  ScratchFolder scratch;
  const fs::path log_root = scratch.path() / "errorlog";
  auto t0 = Clock_::now();
  auto world = std::make_unique<World>(scenario, options, log_root);
  world->Build();
  result.loaded_items = world->loaded_items();
  CheckStepFolders(scenario, world->loader());
  if (options.stats) {
    world->profile().Faults().SetCounter(options.stats);
    const auto registry = options.stats->Observer("Registry.");
    world->outlook().registry.SetCallObserver(registry.enter, registry.leave);
  }
  auto calls = [&] { return options.stats ? options.stats->Totals() : sim::CallCounter::Tally{}; };
  auto host_seconds = [&] { return options.stats ? options.stats->HostSeconds() : 0.0; };
  auto registry_seconds = [&] { return options.stats ? options.stats->RegistrySeconds() : 0.0; };
  const double host_before_timeline = host_seconds();
  const double registry_before_timeline = registry_seconds();
  result.sim_seconds += Seconds(t0);

  Progress progress(out, options.quiet, options.live);
  if (!options.quiet) {
    out << "Scenario: " << scenario.name << " (" << world->loaded_items() << " items in "
        << world->profile().Stores().size() << " stores)\n";
  }
  std::vector<StepSpec> timeline = scenario.timeline;
  if (timeline.empty()) {
    StepSpec start, wait, quit;
    start.kind = StepKind::kStart;
    wait.kind = StepKind::kWait;
    wait.seconds = 600;
    quit.kind = StepKind::kQuit;
    timeline = {start, wait, quit};
  }
  auto t1 = Clock_::now();
  TimelinePlayer player(*world, progress);
  for (const StepSpec& step : timeline) {
    progress.Step(step, world->outlook().clock.Now());
    const sim::CallCounter::Tally before = calls();
    const double host_before = host_seconds();
    const double registry_before = registry_seconds();
    const auto step_start = Clock_::now();
    player.Play(step);
    if (step.kind == StepKind::kStart) {
      result.startup_calls = calls() - before;
      result.startup_seconds = Seconds(step_start);
      result.startup_host_seconds = host_seconds() - host_before;
      result.startup_registry_seconds = registry_seconds() - registry_before;
    }
    if (step.kind == StepKind::kQuit) {
      result.shutdown_calls = calls() - before;
      result.shutdown_seconds = Seconds(step_start);
      result.shutdown_host_seconds = host_seconds() - host_before;
      result.shutdown_registry_seconds = registry_seconds() - registry_before;
    }
  }
  if (world->outlook().Started() && !world->outlook().Ended()) {
    player.Wait(0);
    const sim::CallCounter::Tally before = calls();
    const double host_before = host_seconds();
    const double registry_before = registry_seconds();
    const auto end_start = Clock_::now();
    world->outlook().EndProcess();
    result.shutdown_calls = calls() - before;
    result.shutdown_seconds = Seconds(end_start);
    result.shutdown_host_seconds = host_seconds() - host_before;
    result.shutdown_registry_seconds = registry_seconds() - registry_before;
  }
  result.host_seconds = host_seconds() - host_before_timeline;
  result.registry_seconds = registry_seconds() - registry_before_timeline;
  if (options.stats) {
    world->profile().Faults().SetCounter(nullptr);
    world->outlook().registry.SetCallObserver(nullptr);
  }
  progress.Done();
  result.addin_seconds = Seconds(t1);

  auto t2 = Clock_::now();
  result.log_lines = world->LogLines();
  fs::path made_log;
  for (const auto& log : world->outlook().error_logs.Created()) made_log = log->NativePath();
  result.why = BuildWhyReport(world->profile(), world->loader(), world->Decisions());
  for (const WhyRow& row : result.why) result.items_logged += row.outcome == "logged";
  result.host = RecordHost(world->outlook());
  result.host.files = FilesNamed(world->outlook().files, scenario.expect);
  result.expectations = std::move(player.checks_);
  for (const std::string& missed : player.NeverPlayed()) {
    result.expectations.push_back({ExpectSpec{}, false, missed});
  }
  for (auto& outcome :
       CheckExpectations(scenario.expect, world->outlook().registry, world->loader(), result)) {
    result.expectations.push_back(std::move(outcome));
  }
  for (const auto& e : result.expectations) {
    if (!e.met) result.exit_code = 1;
  }
  if (!options.out_dir.empty()) {
    const fs::path out_dir = options.out_dir;
    if (!made_log.empty()) {
      result.error_log_path =
          (out_dir / "errorlog" / fs::relative(made_log, log_root)).lexically_normal().string();
    }
    WriteResults(out_dir, scenario, world->profile(), world->loader(), world->outlook(), result);
    world.reset();  // the add-in's process ends and lets go of its error log
    MoveFolder(log_root, out_dir / "errorlog");
  }
  result.sim_seconds += Seconds(t2);
  return result;
}

}  // namespace zintra::simtool
