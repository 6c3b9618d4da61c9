#include "tools/zintra-sim/runner.h"

#include <chrono>
#include <filesystem>
#include <iostream>
#include <random>
#include <stdexcept>

#include "sim/addin_host/sim_outlook.h"
#include "sim/outlook/message_props.h"
#include "sim/outlook/sim_item.h"
#include "sim/outlook/sim_namespace.h"
#include "src/addin/zintra_addin_app.h"
#include "src/core/text.h"
#include "src/host/mapi_object.h"
#include "src/jobs/job_queue.h"
#include "tools/zintra-sim/click_player.h"
#include "tools/zintra-sim/expectations.h"
#include "tools/zintra-sim/input_error.h"
#include "tools/zintra-sim/item_view.h"
#include "tools/zintra-sim/profile_loader.h"
#include "tools/zintra-sim/progress.h"
#include "tools/zintra-sim/results_writer.h"
#include "tools/zintra-sim/scenario_reader.h"
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
  TimelinePlayer(World& world, Progress& progress) : w_(world), progress_(progress) {}

  void Play(const StepSpec& step) {
    sim::SimOutlook& o = w_.outlook();
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
        w_.profile().DeleteMessage(record);
        break;
      }
      case StepKind::kWait: {
        double seconds =
            step.until != 0 ? std::max(0.0, (step.until - o.clock.Now()) * 86400.0) : step.seconds;
        Wait(seconds);
        break;
      }
      case StepKind::kSettings:
        w_.ReplaceSettings(step.registry, step.multi_user);
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
        Wait(0);
        break;
    }
  }

  // Virtual time passes in one-second slices so that progress can be shown.
  void Wait(double seconds) {
    sim::SimOutlook& o = w_.outlook();
    int64_t left = static_cast<int64_t>(seconds * 1e6);
    do {
      int64_t slice = std::min<int64_t>(left, 1000000);
      o.loop.AdvanceBy(slice);
      left -= slice;
      ShowTasks();
    } while (left > 0);
  }

 private:
  std::shared_ptr<sim::MessageRecord> Record(const std::string& id, const StepSpec& step) {
    auto r = w_.loader().FindItem(id);
    if (!r) {
      throw std::runtime_error("line " + std::to_string(step.source_line) + ": the item \"" + id +
                               "\" is no longer in the profile");
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
      if (!folder) {
        throw std::runtime_error("line " + std::to_string(step.source_line) + ": no folder \"" +
                                 step.folder + "\" in the profile");
      }
    } else {
      folder = p.DefaultFolder(step.kind == StepKind::kSend ? kOlFolderSentMail : kOlFolderInbox);
    }
    if (step.kind == StepKind::kSend && !item.from) {
      const sim::Person& me = p.CurrentUser();
      item.from = PersonSpec{me.name, me.smtp, me.ex_dn};
    }
    auto record = w_.loader().NewItem(item, folder);
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
    SetItemFields(*item, step.changes, step.source_line);
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
};

}  // namespace

RunResult RunScenario(const Scenario& scenario, const RunOptions& options, std::ostream& out) {
  RunResult result;
  fs::path out_dir =
      options.out_dir.empty()
          ? fs::temp_directory_path() / ("zintra-sim-" + std::to_string(std::random_device{}()))
          : fs::path(options.out_dir);
  fs::path log_root = out_dir / "errorlog";
  {
    // A run's error log holds that run only, not those of earlier runs into the folder.
    std::error_code ec;
    fs::remove_all(log_root, ec);
  }
  auto t0 = Clock_::now();
  World world(scenario, options, log_root);
  world.Build();
  if (options.stats) {
    world.profile().Faults().SetCounter(options.stats);
    world.outlook().registry.SetCallObserver(options.stats->Observer("Registry."));
  }
  auto calls = [&] { return options.stats ? options.stats->Totals() : sim::CallCounter::Tally{}; };
  result.sim_seconds += Seconds(t0);

  Progress progress(out, options.quiet, options.live);
  if (!options.quiet) {
    out << "Scenario: " << scenario.name << " (" << world.loaded_items() << " items in "
        << world.profile().Stores().size() << " stores)\n";
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
  TimelinePlayer player(world, progress);
  for (const StepSpec& step : timeline) {
    progress.Step(step, world.outlook().clock.Now());
    const sim::CallCounter::Tally before = calls();
    player.Play(step);
    if (step.kind == StepKind::kStart) result.startup_calls = calls() - before;
    if (step.kind == StepKind::kQuit) result.shutdown_calls = calls() - before;
  }
  if (world.outlook().Started() && !world.outlook().Ended()) {
    player.Wait(0);
    const sim::CallCounter::Tally before = calls();
    world.outlook().EndProcess();
    result.shutdown_calls = calls() - before;
  }
  if (options.stats) {
    world.profile().Faults().SetCounter(nullptr);
    world.outlook().registry.SetCallObserver(nullptr);
  }
  progress.Done();
  result.addin_seconds = Seconds(t1);

  auto t2 = Clock_::now();
  result.log_lines = world.LogLines();
  for (const auto& log : world.outlook().error_logs.Created()) {
    result.error_log_path = log->NativePath().string();
  }
  result.why =
      BuildWhyReport(world.profile(), world.loader(), scenario.foldersets, result.log_lines);
  for (const WhyRow& row : result.why) result.items_logged += row.outcome == "logged";
  result.expectations =
      CheckExpectations(scenario.expect, world.outlook().registry, world.loader(), result);
  for (const auto& e : result.expectations) {
    if (!e.met) result.exit_code = 1;
  }
  if (!options.out_dir.empty()) {
    WriteResults(out_dir, scenario, world.profile(), world.loader(), world.outlook(), result);
  } else {
    std::error_code ec;
    fs::remove_all(out_dir, ec);
    result.error_log_path.clear();
  }
  result.sim_seconds += Seconds(t2);
  return result;
}

}  // namespace zintra::simtool
