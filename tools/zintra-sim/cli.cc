#include "tools/zintra-sim/cli.h"

#include <CLI/CLI.hpp>

#include <sys/resource.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <iostream>

#include "tools/zintra-sim/demo_scenario.h"
#include "tools/zintra-sim/expectations.h"
#include "tools/zintra-sim/importer.h"
#include "tools/zintra-sim/input_error.h"
#include "tools/zintra-sim/json_source.h"
#include "tools/zintra-sim/output_files.h"
#include "tools/zintra-sim/results_writer.h"
#include "tools/zintra-sim/runner.h"
#include "tools/zintra-sim/scenario_reader.h"
#include "tools/zintra-sim/scenario_writer.h"
#include "tools/zintra-sim/why_report.h"

namespace zintra::simtool {

namespace {

// Reads input with `read`. The readers report bad input as InputError; any other
// exception a reader lets out (a library's own, on text it could not handle) is still
// about the input, so it is reported as such rather than as a failed simulation.
template <typename Read>
auto ReadingInput(const std::string& file, Read read) -> decltype(read()) {
  try {
    return read();
  } catch (const InputError&) {
    throw;
  } catch (const std::bad_alloc&) {
    throw;
  } catch (const std::exception& e) {
    throw InputError(file, 0, "", std::string("cannot be read: ") + e.what());
  }
}

int ImportCommand(const std::vector<std::string>& paths, const std::string& out,
                  const std::string& user_text, bool quiet) {
  std::optional<PersonSpec> user;
  if (!user_text.empty()) {
    user = ParsePersonText(user_text);
    if (!user) throw InputError("--user", 0, "", "expected \"Name <user@domain>\"");
  }
  ImportResult r =
      ReadingInput(paths.size() == 1 ? paths.front() : "", [&] { return Import(paths, user); });
  nlohmann::ordered_json j = ScenarioJson(r.scenario);
  std::string text = JsonText(j) + "\n";
  if (out.empty() || out == "-") {
    std::cout << text;
  } else {
    OutputFiles files;
    files.Add(out, text);
    files.Commit();
  }
  if (!quiet) {
    std::cerr << "Imported " << r.contacts << " contacts, " << r.received << " received and "
              << r.sent << " sent mails" << (out.empty() || out == "-" ? "" : " into " + out)
              << ".\n";
    for (const std::string& note : r.notes) std::cerr << "  note: " << note << "\n";
  }
  for (const std::string& file : r.not_imported) {
    std::cerr << "zintra-sim: not imported: " << file << "\n";
  }
  return 0;
}

struct RunFlags {
  std::string out;
  int log_level = -1;
  bool json = false;
  bool no_table = false;
  bool stats = false;
};

// Calls into Outlook and the MAPI library, by kind: start-up, shut-down, and the rest
// per item the run logged; then the members called most; then the time of start-up,
// shut-down and the whole timeline, split between the add-in and the host calls.
void PrintStats(const sim::CallCounter& counter, const RunResult& r, std::ostream& out) {
  const sim::CallCounter::Tally items = counter.Totals() - r.startup_calls - r.shutdown_calls;
  out << "\nHost calls: " << counter.Totals().Total() << " in all, " << counter.RegistryCalls()
      << " of them registry calls\n"
      << "  start-up:  " << r.startup_calls.ToString() << "\n"
      << "  shut-down: " << r.shutdown_calls.ToString() << "\n"
      << "  the rest:  " << items.ToString() << "\n";
  if (r.items_logged > 0) {
    out << "  the rest per logged item (" << r.items_logged << "): ";
    std::string sep;
    for (int i = 0; i < sim::CallCounter::kKinds; ++i) {
      const auto kind = static_cast<sim::CallCounter::Kind>(i);
      if (items.Of(kind) == 0) continue;
      out << sep << sim::CallCounter::KindName(kind) << " "
          << static_cast<double>(items.Of(kind)) / r.items_logged;
      sep = ", ";
    }
    out << "\n";
  }
  out << "  most called:\n";
  int shown = 0;
  for (const auto& [member, n] : counter.ByMember()) {
    if (++shown > 15) break;
    out << "    " << n << " " << member << "\n";
  }
  // Wall time on the counter's clock: inside host calls (of which the registry's), and
  // the add-in's own.
  auto split = [](double total, double host, double registry) {
    char text[200];
    std::snprintf(text, sizeof text,
                  "%.2f ms: the add-in's own %.2f ms, inside host calls %.2f ms (registry %.2f ms)",
                  total * 1e3, (total - host) * 1e3, host * 1e3, registry * 1e3);
    return std::string(text);
  };
  out << "Time (wall):\n"
      << "  start-up:  "
      << split(r.startup_seconds, r.startup_host_seconds, r.startup_registry_seconds) << "\n"
      << "  shut-down: "
      << split(r.shutdown_seconds, r.shutdown_host_seconds, r.shutdown_registry_seconds) << "\n"
      << "  the whole timeline: " << split(r.addin_seconds, r.host_seconds, r.registry_seconds)
      << " (the own part includes the simulation playing the steps)\n";
  // The process's peak resident memory: the simulated profile, the add-in and the tool.
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  out << "Peak memory: " << usage.ru_maxrss / 1024
      << " MB resident (the whole process; items in the profile: " << r.loaded_items << ")\n";
}

void PrintSummary(const Scenario& s, const RunResult& r, const RunFlags& flags, bool quiet,
                  std::ostream& out) {
  if (flags.json) {
    out << JsonText(ReportJson(s, r)) << "\n";
    return;
  }
  int logged = 0, screened = 0, copies = 0, letters = 0, unfinished = 0, other = 0;
  for (const WhyRow& row : r.why) {
    if (row.outcome == "logged") {
      ++logged;
    } else if (row.outcome == "screened" || row.outcome == "skipped") {
      ++screened;
    } else if (row.outcome == "copy") {
      ++copies;
    } else if (row.outcome == "letter") {
      ++letters;
    } else if (row.outcome == "in progress" || row.outcome == "not finished") {
      ++unfinished;
    } else {
      ++other;
    }
  }
  if (!quiet) {
    if (!flags.no_table) {
      out << "\nWhat happened to each item:\n";
      PrintWhyTable(r.why, out);
    }
    std::vector<std::string> notable;
    for (const std::string& line : r.log_lines) {
      if (line[0] != 'M' || line.find("Audit") != std::string::npos) notable.push_back(line);
    }
    if (!notable.empty()) {
      out << "\nAudit lines, warnings and errors of the add-in:\n";
      for (const std::string& line : notable) out << "  " << line << "\n";
    }
  }
  int met = 0;
  for (const auto& e : r.expectations) met += e.met;
  for (const auto& e : r.expectations) {
    if (!e.met)
      out << "FAILED " << (s.source.empty() ? "" : s.source + ": ") << DescribeOutcome(e) << "\n";
  }
  out << "\n"
      << r.why.size() << " items: " << logged << " logged, " << screened << " screened out, "
      << copies << " copies made, " << (letters ? std::to_string(letters) + " letters filed, " : "")
      << (unfinished ? std::to_string(unfinished) + " not finished, " : "") << other
      << " not reached; " << r.log_lines.size() << " log lines";
  if (!r.expectations.empty()) {
    out << "; expectations " << met << "/" << r.expectations.size() << " met";
  }
  out << "\n";
  if (!flags.out.empty()) {
    out << "Results: " << flags.out
        << "/ (profile.json, log.json, log.txt, report.json, messages.json, errors.json)\n";
    if (!r.error_log_path.empty()) out << "Error log: " << r.error_log_path << "\n";
  }
}

int RunCommand(const Scenario& scenario, RunFlags flags, bool quiet) {
  RunOptions options;
  options.out_dir = flags.out;
  options.log_level = flags.log_level;
  options.quiet = quiet || flags.json;
  options.live = isatty(STDOUT_FILENO) != 0;
  sim::CallCounter counter;
  if (flags.stats) options.stats = &counter;
  RunResult result = RunScenario(scenario, options, std::cout);
  PrintSummary(scenario, result, flags, quiet, std::cout);
  if (flags.stats) PrintStats(counter, result, flags.json ? std::cerr : std::cout);
  return result.exit_code;
}

std::string DefaultOut(const std::string& name) {
  std::string safe;
  for (char c : name) safe += std::isalnum(static_cast<unsigned char>(c)) || c == '-' ? c : '_';
  return "zintra-sim-out/" + safe;
}

}  // namespace

int Main(int argc, char** argv) {
  CLI::App app{"zintra-sim: the Zintra add-in inside a simulated Outlook profile"};
  app.require_subcommand(1);
  bool quiet = false;
  app.add_flag("-q,--quiet", quiet, "Print only failures and the final summary");

  auto* import = app.add_subcommand(
      "import", "Make a scenario profile from vCard (.vcf), .eml and mbox files or folders");
  std::vector<std::string> import_paths;
  std::string import_out, import_user;
  import->fallthrough();
  import->add_option("paths", import_paths, "Files or folders to import")->required();
  import->add_option("-o,--out", import_out, "Scenario file to write (default: standard output)");
  import->add_option("--user", import_user,
                     "The mailbox owner, \"Name <user@domain>\" (default: the most frequent "
                     "recipient)");

  RunFlags run_flags;
  auto add_run_flags = [&](CLI::App* cmd) {
    cmd->fallthrough();
    cmd->add_option("-o,--out", run_flags.out,
                    "Folder for profile.json, log.json, log.txt, report.json and the error log "
                    "(default: zintra-sim-out/<scenario name>)");
    cmd->add_option("--log-level", run_flags.log_level,
                    "The add-in's log level for this run: 0 nothing, 1 errors, 2 warnings, 3 "
                    "everything (default: the scenario's)")
        ->check(CLI::Range(0, 3));
    cmd->add_flag("--json", run_flags.json, "Print the report as JSON instead of tables");
    cmd->add_flag("--no-table", run_flags.no_table, "Leave out the table of items");
    cmd->add_flag("--stats", run_flags.stats,
                  "Count the add-in's calls into Outlook and the MAPI library, by kind");
  };
  auto* run = app.add_subcommand("run", "Play a scenario file and check its expectations");
  std::string scenario_file;
  run->add_option("scenario", scenario_file, "The scenario (JSON; see docs/scenarios.md)")
      ->required();
  add_run_flags(run);
  auto* demo = app.add_subcommand("demo", "Play the built-in demonstration scenario");
  bool print_demo = false;
  demo->add_flag("--print", print_demo, "Print the demo's scenario file instead of playing it");
  add_run_flags(demo);

  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& e) {
    int code = app.exit(e);
    return code == 0 ? 0 : kExitBadInput;
  }
  try {
    if (*import) return ImportCommand(import_paths, import_out, import_user, quiet);
    if (*demo) {
      if (print_demo) {
        std::cout << kDemoScenario;
        return 0;
      }
      Scenario s = ReadScenarioText(kDemoScenario, "demo", ".");
      if (run_flags.out.empty()) run_flags.out = DefaultOut("demo");
      if (!quiet && !run_flags.json) std::cout << s.description << "\n\n";
      return RunCommand(s, run_flags, quiet);
    }
    if (*run) {
      Scenario s = ReadingInput(scenario_file, [&] { return ReadScenarioFile(scenario_file); });
      if (run_flags.out.empty()) {
        run_flags.out = DefaultOut(std::filesystem::path(scenario_file).stem().string());
      }
      return RunCommand(s, run_flags, quiet);
    }
  } catch (const InputError& e) {
    std::cerr << "zintra-sim: " << e.what() << "\n";
    return kExitBadInput;
  } catch (const std::exception& e) {
    std::cerr << "zintra-sim: " << e.what() << "\n";
    return kExitSimulationFailed;
  }
  return 0;
}

}  // namespace zintra::simtool
