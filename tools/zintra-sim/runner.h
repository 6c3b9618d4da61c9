// Runner: plays a scenario. It builds the simulated Outlook process (SimOutlook over
// the scenario's profile and registry, the MAPI library, the error log in a scratch
// folder), registers the add-in with Outlook's loader, then plays the timeline on
// virtual time: every step happens at the virtual moment it names and waits let the
// add-in's timer-driven queue run. At the end Outlook ends, the expectations are
// checked and the results are written (all or nothing) to the output folder:
//   profile.json  every store, folder and item with the add-in's marks
//   log.json, log.txt  the add-in's log lines and error records
//   report.json  what happened to every item the run touched, and the expectations
//   errorlog/  the add-in's error log, moved in from the scratch folder
// A step the scenario cannot play as written (Outlook not running, an item gone, a
// folder missing, a setting out of its range) throws InputError naming the step, and
// nothing is written. Errors of the simulation itself throw std::runtime_error (exit 3).
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "sim/outlook/call_counter.h"
#include "tools/zintra-sim/host_record.h"
#include "tools/zintra-sim/scenario.h"

namespace zintra::simtool {

struct RunOptions {
  std::string out_dir;  // results go here ("" writes nothing)
  int log_level = -1;   // the add-in's LogLevel for this run; -1: the scenario's
  bool quiet = false;   // only failures and the summary
  bool live = false;    // progress redrawn in place (a terminal)
  bool why_table = true;
  sim::CallCounter* stats = nullptr;  // counts every call the add-in makes into the host
};

struct ExpectationOutcome {
  ExpectSpec desc;
  bool met = false;
  std::string detail;  // what was found
};

struct WhyRow {
  std::string folder;
  std::string subject;
  std::string id;
  std::string outcome;  // logged | screened | in progress | not reached | copy
  // The contacts it was logged to, each with how it was matched: "Ann Lee (link)",
  // "Ann Lee (ann@fabrikam.com)", "Wingtip Toys (*@wingtiptoys.com)".
  std::vector<std::string> contacts;
  int logged_copies = 0;
  int shared_copies = 0;
  std::vector<std::string> copies;  // folders of its copies ("Client Journal", ...)
  std::string reason;               // why it was screened, or what a copy is a copy of
};

struct RunResult {
  std::vector<WhyRow> why;
  std::vector<ExpectationOutcome> expectations;
  std::vector<std::string> log_lines;  // "M text", "W text", "E description"
  std::string error_log_path;          // the SQLite error log on disk
  int exit_code = 0;                   // 0 all met, 1 an expectation failed
  double sim_seconds = 0;              // wall time building the profile and reading back
  double addin_seconds = 0;            // wall time inside the timeline
  int items_logged = 0;
  size_t loaded_items = 0;  // items the scenario's profile was built with
  HostRecord host;          // the messages shown and the error log's rows
  // With RunOptions::stats: the calls made by the start step and by the end (quit).
  sim::CallCounter::Tally startup_calls, shutdown_calls;
  // Wall time of the start step (Outlook loads the add-in: OnConnection and
  // OnStartupComplete) and of the end (Outlook quits and releases it).
  double startup_seconds = 0, shutdown_seconds = 0;
  // With RunOptions::stats, on the same clock: the part of the timeline, of the start
  // step and of the end spent inside host calls; the rest is the add-in's own (and,
  // in the timeline, the simulation's playing of the steps).
  double host_seconds = 0, startup_host_seconds = 0, shutdown_host_seconds = 0;
  // The part of each host time spent in registry calls.
  double registry_seconds = 0, startup_registry_seconds = 0, shutdown_registry_seconds = 0;
};

RunResult RunScenario(const Scenario& scenario, const RunOptions& options, std::ostream& out);

}  // namespace zintra::simtool
