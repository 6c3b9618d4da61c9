#include "tools/zintra-sim/runner.h"

#include <chrono>
#include <filesystem>
#include <iomanip>
#include <iostream>
#include <random>
#include <stdexcept>

#include "sim/addin_host/sim_outlook.h"
#include "sim/outlook/message_props.h"
#include "sim/outlook/sim_item.h"
#include "sim/outlook/sim_namespace.h"
#include "sim/registry/reg_file.h"
#include "src/addin/connect.h"
#include "src/core/text.h"
#include "src/errors/error_handling.h"
#include "src/host/mapi_object.h"
#include "src/resources/string_table.h"
#include "src/settings/reg_settings.h"
#include "tools/zintra-sim/addin_composition.h"
#include "tools/zintra-sim/expectations.h"
#include "tools/zintra-sim/input_error.h"
#include "tools/zintra-sim/item_view.h"
#include "tools/zintra-sim/profile_loader.h"
#include "tools/zintra-sim/progress.h"
#include "tools/zintra-sim/results_writer.h"
#include "tools/zintra-sim/scenario_reader.h"
#include "tools/zintra-sim/why_report.h"

namespace zintra::simtool {

namespace fs = std::filesystem;
using Clock_ = std::chrono::steady_clock;

namespace {

constexpr double kDefaultStart = 46027.375;  // 5 January 2026 09:00
constexpr char kLoggingKey[] = "Software\\Brellow\\Zintra\\Logging";

std::pair<HKey, std::string> SplitKey(const std::string& key) {
  size_t slash = key.find('\\');
  std::string hive = text::UCase(key.substr(0, slash));
  std::string path = slash == std::string::npos ? "" : key.substr(slash + 1);
  HKey h = (hive == "HKLM" || hive == "HKEY_LOCAL_MACHINE") ? kHKeyLocalMachine : kHKeyCurrentUser;
  return {h, path};
}

void ApplyRegistry(sim::MemoryRegistry& registry, const RegistrySpec& desc) {
  for (const std::string& file : desc.reg_files) {
    try {
      sim::RegFile::Import(registry, ReadWholeFile(file), file);
    } catch (const sim::RegFileError& e) {
      std::string what = e.what();
      // "source:line: problem"
      size_t colon = what.find(": ", file.size());
      throw InputError(file, e.line(), "",
                       colon == std::string::npos ? what : what.substr(colon + 2));
    }
  }
  for (const RegValueSpec& v : desc.values) {
    auto [hive, path] = SplitKey(v.key);
    if (v.type == RegType::kDword) {
      registry.SetDword(hive, path, v.name, v.dword);
    } else if (v.type == RegType::kString) {
      registry.SetString(hive, path, v.name, v.text);
    } else {
      sim::RegistryValue value;
      value.name = v.name;
      value.type = kRegMultiSz;
      for (const std::string& t : v.texts) {
        value.data.insert(value.data.end(), t.begin(), t.end());
        value.data.push_back(0);
      }
      value.data.push_back(0);
      registry.PutValue(hive, path, value);
    }
  }
}

bool SetsLogLevel(const RegistrySpec& desc) {
  for (const RegValueSpec& v : desc.values) {
    if (text::EqualsNoCase(v.name, "LogLevel")) return true;
  }
  return !desc.reg_files.empty();  // a settings file may set it; it wins
}

double Seconds(Clock_::time_point since) {
  return std::chrono::duration<double>(Clock_::now() - since).count();
}

// The simulated world of one run. Members are destroyed in reverse order: the
// add-in (inside SimOutlook) goes before the error handling and the profile.
class World {
 public:
  World(const Scenario& s, const RunOptions& o, const fs::path& log_root)
      : scenario_(s),
        options_(o),
        outlook_(log_root, s.start_time != 0 ? s.start_time : kDefaultStart),
        profile_(outlook_.profile()),
        loader_(profile_) {}

  ~World() {
    if (outlook_.Started() && !outlook_.Ended()) outlook_.EndProcess();
  }

  void Build() {
    loader_.Load(scenario_.profile, scenario_.outlook_version);
    for (const auto& store : profile_.Stores()) {
      CountItems(*store->root, loaded_items_);
    }
    if (options_.log_level >= 0) {
      ApplyRegistry(outlook_.registry, scenario_.registry);
      outlook_.registry.SetDword(kHKeyCurrentUser, kLoggingKey, "LogLevel",
                                 static_cast<uint32_t>(options_.log_level));
    } else {
      if (!SetsLogLevel(scenario_.registry)) {
        outlook_.registry.SetDword(kHKeyCurrentUser, kLoggingKey, "LogLevel",
                                   static_cast<uint32_t>(scenario_.log_level));
      }
      ApplyRegistry(outlook_.registry, scenario_.registry);
    }
    WriteFolderSettings();
    if (!scenario_.first_run) {
      // The add-in has run for this user before, so it scans the Inbox at start-up.
      outlook_.registry.SetDword(kHKeyCurrentUser, kProductKey, "UserFirstRun", 0);
    }
    ApplyRegistry(outlook_.registry, scenario_.registry);  // the scenario's own values win
    outlook_.SetAddin([this](const Host& host) {
      return std::make_shared<Connect>(host, errors_, strings_, MakeAddinParts());
    });
  }

  sim::Profile& profile() { return profile_; }
  ProfileLoader& loader() { return loader_; }
  sim::SimOutlook& outlook() { return outlook_; }
  size_t loaded_items() const { return loaded_items_; }

  std::shared_ptr<ZintraAddinApp> Addin() {
    auto connect = std::dynamic_pointer_cast<Connect>(outlook_.Addin().lock());
    return connect ? connect->AddinApp() : nullptr;
  }

  std::vector<std::string> LogLines() const {
    std::vector<std::string> lines;
    for (const auto& log : outlook_.error_logs.Created()) {
      for (const auto& row : log->Rows()) {
        lines.push_back(row.kind.substr(0, 1) + " " + row.description);
      }
    }
    return lines;
  }

  static void CountItems(const sim::FolderRecord& f, size_t& n) {
    n += f.messages.size();
    for (const auto& c : f.children) CountItems(*c, n);
  }

 private:
  std::shared_ptr<sim::FolderRecord> Folder(const std::string& path, int line, const char* field) {
    auto f = loader_.FindFolder(path);
    if (!f) {
      throw InputError(scenario_.source, line, field, "no folder \"" + path + "\" in the profile");
    }
    return f;
  }

  // One numbered list entry ("Foldersets\Contact\EntryID" value "1", ...).
  void WriteIds(const std::string& list, int index, const std::string& path, int line,
                const char* field) {
    std::string entry, store;
    if (!path.empty()) {
      auto f = Folder(path, line, field);
      entry = profile_.EntryIdOf(*f);
      store = profile_.StoreIdOf(*f->store);
    }
    std::string base = std::string(kProductKey) + "\\" + list;
    outlook_.registry.SetString(kHKeyCurrentUser, base + "\\EntryID", std::to_string(index), entry);
    outlook_.registry.SetString(kHKeyCurrentUser, base + "\\StoreID", std::to_string(index), store);
  }

  void WriteFolderSettings() {
    const std::string product = kProductKey;
    int i = 0;
    for (const FoldersetSpec& set : scenario_.foldersets) {
      ++i;
      WriteIds("Foldersets\\Contact", i, set.contacts, set.source_line, "contacts");
      WriteIds("Foldersets\\Email", i, set.email, set.source_line, "email");
      WriteIds("Foldersets\\Journal", i, set.journal, set.source_line, "journal");
      WriteIds("Foldersets\\SharedCalendar", i, set.shared_calendar, set.source_line,
               "shared_calendar");
      WriteIds("Foldersets\\SharedJournal", i, set.shared_journal, set.source_line,
               "shared_journal");
      WriteIds("Foldersets\\SharedTaskList", i, set.shared_tasks, set.source_line, "shared_tasks");
      outlook_.registry.SetDword(kHKeyCurrentUser, product + "\\Foldersets\\Flags",
                                 std::to_string(i), static_cast<uint32_t>(set.flags));
    }
    if (i > 0) {
      outlook_.registry.SetDword(kHKeyCurrentUser, product + "\\Foldersets", "Count",
                                 static_cast<uint32_t>(i));
    }
    i = 0;
    for (const MonitorSpec& m : scenario_.monitored_folders) {
      ++i;
      WriteIds("Monitoring\\Folders", i, m.folder, m.source_line, "folder");
      outlook_.registry.SetDword(kHKeyCurrentUser, product + "\\Monitoring\\Folders\\Flags",
                                 std::to_string(i), static_cast<uint32_t>(m.flags));
    }
    if (i > 0) {
      outlook_.registry.SetDword(kHKeyCurrentUser, product + "\\Monitoring\\Folders", "FolderCount",
                                 static_cast<uint32_t>(i));
    }
  }

  const Scenario& scenario_;
  const RunOptions& options_;
  // The process first: it owns the profile (driven by its clock) and its class
  // registry carries the library; the add-in inside it is ended by the destructor
  // before anything below goes.
  sim::SimOutlook outlook_;
  sim::Profile& profile_;
  ProfileLoader loader_;
  StringTable strings_;
  size_t loaded_items_ = 0;
  ErrorHandling errors_{ErrorHandlingHost{outlook_.error_logs, outlook_.msg_box, outlook_.registry,
                                          outlook_.files, outlook_.platform, strings_}};
};

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
        ApplyRegistry(o.registry, step.registry);
        break;
      case StepKind::kClick:
        throw std::runtime_error("line " + std::to_string(step.source_line) +
                                 ": toolbar clicks are not modelled by this build of zintra-sim");
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
      progress_.Update(w_.Addin());
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
    for (const auto& [field, value] : step.changes) {
      std::string f = text::LCase(field);
      if (f == "subject") {
        item->SetSubject(value);
      } else if (f == "body") {
        item->SetBody(value);
      } else if (f == "categories") {
        item->SetCategories(value);
      } else if (f == "sensitivity") {
        auto s = SensitivityFromName(value);
        if (!s)
          throw std::runtime_error("line " + std::to_string(step.source_line) +
                                   ": sensitivity must be normal, personal, private or "
                                   "confidential");
        item->SetSensitivity(*s);
      } else {
        bool yes_no = text::EqualsNoCase(value, "true") || text::EqualsNoCase(value, "false");
        auto props = item->UserProperties();
        auto prop = props->Find(field);
        if (!prop) prop = props->Add(field, yes_no ? kOlYesNo : kOlText, false);
        prop->SetValue(yes_no ? Value(text::EqualsNoCase(value, "true")) : Value(value));
      }
    }
    item->Save();
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
    player.Play(step);
  }
  if (world.outlook().Started() && !world.outlook().Ended()) {
    player.Wait(0);
    world.outlook().EndProcess();
  }
  progress.Done();
  result.addin_seconds = Seconds(t1);

  auto t2 = Clock_::now();
  result.log_lines = world.LogLines();
  for (const auto& log : world.outlook().error_logs.Created()) {
    result.error_log_path = log->NativePath().string();
  }
  result.why = BuildWhyReport(world.profile(), world.loader(), result.log_lines);
  for (const WhyRow& row : result.why) result.items_logged += row.outcome == "logged";
  result.expectations = CheckExpectations(scenario.expect, world.profile(), world.loader(), result);
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
