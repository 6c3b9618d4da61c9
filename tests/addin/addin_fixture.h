// The add-in in a simulated Outlook process: SimOutlook with every port over a
// mailbox profile (its library classes share the profile's logon), the error handling
// over a real SQLite log in a temporary folder (level 3, everything kept), and
// recording parts that trace where they run in the start-up and tear-down order.
#pragma once

#include <filesystem>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "sim/addin_host/sim_outlook.h"
#include "sim/outlook/profile_builder.h"
#include "src/addin/connect.h"
#include "src/core/z_error.h"
#include "src/errors/error_handling.h"

namespace zintra::testing {

// A part that records its Initialize and Kill, with what the add-in held at that moment.
class RecordingPart : public AddinPart {
 public:
  RecordingPart(std::string name, std::vector<std::string>& trace)
      : name_(std::move(name)), trace_(trace) {}
  void Initialize(const std::shared_ptr<ZintraAddinApp>& AddinApp) override {
    addin_ = AddinApp;
    trace_.push_back(
        name_ + ".Initialize" + (AddinApp->GetJobQueue() ? " queue" : "") +
        (AddinApp->RDOSession() && AddinApp->RDOSession()->LoggedOn() ? " session" : "") +
        (AddinApp->RegSettings().UserFirstRun() ? " first-run" : ""));
    kill_ = AddinApp->Kill.Connect([this] {
      trace_.push_back(name_ + ".Addin_Kill");
      kill_.Disconnect();
    });
  }
  void Kill() override {
    auto addin = addin_.lock();
    trace_.push_back(name_ + ".Kill" + (addin && addin->GetJobQueue() ? " queue" : ""));
    addin_.reset();
  }
  void StopMonitoring() override { trace_.push_back(name_ + ".StopMonitoring"); }

 private:
  std::string name_;
  std::vector<std::string>& trace_;
  std::weak_ptr<ZintraAddinApp> addin_;
  Connection kill_;
};

class AddinFixture {
 public:
  AddinFixture()
      : root_(std::filesystem::temp_directory_path() /
              ("zintra-addin-" + std::to_string(std::random_device{}()))),
        outlook(root_) {
    outlook.registry.SetDword(kHKeyCurrentUser, "Software\\Brellow\\Zintra\\Logging", "LogLevel",
                              3);
    sim::ProfileBuilder(outlook.profile())
        .Mailbox(sim::ProfileBuilder::Exchange("Jane Doe", "jdoe", "CONTOSO"));
    parts.TrackedContacts = [this] {
      return std::make_shared<RecordingPart>("TrackedContacts", trace);
    };
    parts.Toolbars = [this] { return std::make_shared<RecordingPart>("Toolbars", trace); };
    parts.Monitoring = [this] { return std::make_shared<RecordingPart>("Monitoring", trace); };
    outlook.SetAddin([this](const Host& host) {
      auto connect = std::make_shared<zintra::Connect>(host, errors, strings, parts);
      connect_ = connect;
      return connect;
    });
  }
  ~AddinFixture() {
    outlook.EndProcess();  // the add-in goes before the error handling it logs through
    std::error_code ec;
    std::filesystem::remove_all(root_, ec);
  }

  // The running Connect and add-in (nullptr when gone).
  std::shared_ptr<zintra::Connect> connect() { return connect_.lock(); }
  std::shared_ptr<ZintraAddinApp> addin() {
    auto c = connect();
    return c ? c->AddinApp() : nullptr;
  }

  // Log lines as "M text" (message), "W text" (warning) or "E description".
  std::vector<std::string> Lines() {
    std::vector<std::string> lines;
    if (outlook.error_logs.Created().empty()) return lines;
    for (const auto& row : outlook.error_logs.Created().back()->Rows()) {
      lines.push_back(row.kind.substr(0, 1) + " " + row.description);
    }
    return lines;
  }
  std::vector<std::string> Warnings() {
    std::vector<std::string> out;
    for (const auto& l : Lines()) {
      if (l[0] != 'M') out.push_back(l);
    }
    return out;
  }

 private:
  std::filesystem::path root_;

 public:
  sim::SimOutlook outlook;
  StringTable strings;
  ErrorHandling errors{ErrorHandlingHost{outlook.error_logs, outlook.msg_box, outlook.registry,
                                         outlook.files, outlook.platform, strings}};
  AddinParts parts;
  std::vector<std::string> trace;

 private:
  std::weak_ptr<zintra::Connect> connect_;
};

}  // namespace zintra::testing
