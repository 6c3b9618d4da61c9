#include "tools/zintra-sim/cli.h"

#include <CLI/CLI.hpp>

#include <iostream>

#include "tools/zintra-sim/importer.h"
#include "tools/zintra-sim/input_error.h"
#include "tools/zintra-sim/output_files.h"
#include "tools/zintra-sim/scenario_writer.h"

namespace zintra::simtool {

namespace {

int ImportCommand(const std::vector<std::string>& paths, const std::string& out,
                  const std::string& user_text, bool quiet) {
  std::optional<PersonSpec> user;
  if (!user_text.empty()) {
    user = ParsePersonText(user_text);
    if (!user) throw InputError("--user", 0, "", "expected \"Name <user@domain>\"");
  }
  ImportResult r = Import(paths, user);
  nlohmann::ordered_json j = ScenarioJson(r.scenario);
  std::string text = j.dump(2) + "\n";
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
  return 0;
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

  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& e) {
    int code = app.exit(e);
    return code == 0 ? 0 : kExitBadInput;
  }
  try {
    if (*import) return ImportCommand(import_paths, import_out, import_user, quiet);
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
