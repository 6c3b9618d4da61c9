// The add-in in a simulated Outlook process: SimOutlook with every port, the error
// handling over a real SQLite log in a temporary folder (level 3, everything kept),
// library classes that share the profile's logon, and recording parts that trace
// where they run in the start-up and tear-down order.
#pragma once

#include <filesystem>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "sim/addin_host/sim_outlook.h"
#include "src/addin/connect.h"
#include "src/core/z_error.h"
#include "src/errors/error_handling.h"
#include "src/host/mapi_session.h"
#include "src/host/mapi_utils.h"

namespace zintra::testing {

class LibMapiObject : public MapiObject {
 public:
  std::string TypeName() const override { return "MAPIObject"; }
};

class LibMapiUtils : public MapiUtils {
 public:
  std::string TypeName() const override { return "MAPIUtils"; }
  void SetMAPIOBJECT(const std::shared_ptr<MapiObject>&) override {}
  int32_t GetIDsFromNames(const std::shared_ptr<MapiObject>&, const std::string&, const Value&,
                          bool) override {
    return 0;
  }
  Value HrGetOneProp(const std::shared_ptr<MapiObject>&, int32_t) override { return {}; }
  void HrSetOneProp(const std::shared_ptr<MapiObject>&, int32_t, const Value&, bool) override {}
  void HrDeleteOneProp(const std::shared_ptr<MapiObject>&, int32_t, bool) override {}
  bool CompareIDs(const std::string& a, const std::string& b) override { return a == b; }
  void Cleanup() override {}
};

class LibSession : public RdoSession {
 public:
  std::string TypeName() const override { return "RDOSession"; }
  void SetMAPIOBJECT(const std::shared_ptr<MapiObject>& s) override { session_ = s; }
  std::shared_ptr<MapiObject> MAPIOBJECT() override { return session_; }
  bool LoggedOn() const override { return session_ != nullptr; }
  std::shared_ptr<AddressEntry> CurrentUser() override { return nullptr; }
  std::shared_ptr<RdoMessage> GetMessageFromID(const std::string&, const std::string&) override {
    throw ZError(kMapiNotFound);
  }
  std::shared_ptr<RdoFolder> GetFolderFromID(const std::string&, const std::string&) override {
    throw ZError(kMapiNotFound);
  }
  std::shared_ptr<RdoFolder> GetDefaultFolder(int32_t) override { throw ZError(kMapiNotFound); }
  std::shared_ptr<zintra::AddressLists> AddressLists() override { return nullptr; }

 private:
  std::shared_ptr<MapiObject> session_;
};

class LibNamespace : public Namespace {
 public:
  std::string TypeName() const override { return "NameSpace"; }
  std::shared_ptr<Folder> GetDefaultFolder(int32_t) override { throw ZError(kMapiNotFound); }
  std::shared_ptr<Item> GetItemFromID(const std::string&, const std::string&) override {
    throw ZError(kMapiNotFound);
  }
  std::shared_ptr<Folder> GetFolderFromID(const std::string&, const std::string&) override {
    throw ZError(kMapiNotFound);
  }
  std::shared_ptr<zintra::Folders> Folders() override { return nullptr; }
  std::shared_ptr<Recipient> CurrentUser() override { return nullptr; }
  std::shared_ptr<MapiObject> MAPIOBJECT() override { return session; }
  std::shared_ptr<MapiObject> session = std::make_shared<LibMapiObject>();
};

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
    outlook.app().SetSession(names);
    outlook.objects.Register("TovuRedemption.TovuMAPIUtils",
                             [] { return std::make_shared<LibMapiUtils>(); });
    outlook.objects.Register("TovuRedemption.TovuRDOSession",
                             [] { return std::make_shared<LibSession>(); });
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
  std::shared_ptr<LibNamespace> names = std::make_shared<LibNamespace>();
  AddinParts parts;
  std::vector<std::string> trace;

 private:
  std::weak_ptr<zintra::Connect> connect_;
};

}  // namespace zintra::testing
