// Connect: the add-in as Outlook loads it (ZintraAddin.Connect, IDTExtensibility2).
// It decides when the add-in may start (only once Outlook has a window), creates the
// one ZintraAddinApp, tracks exactly one open Outlook window (an explorer if there is
// one, else an inspector through an InspMon) so that it can shut the add-in down
// when the last window closes, and handles the user unloading the add-in.
//
// States: waiting (connected at Outlook's start-up, until OnStartupComplete); inert
// (unknown connect mode, no window at start-up, a start-up that failed: Outlook's
// reference is released and nothing else happens); running (the add-in created);
// shut down (the add-in told to quit and released).
//
// Ownership: the Host ports, the ErrorHandling and the StringTable are borrowed and
// must outlive this object. Connect holds Outlook's application until shut-down and
// the add-in until then; a deferred shut-down keeps the add-in alive by itself. No
// member lets an exception escape: errors are logged (OnDisconnection ignores them).
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "src/addin/addin_part.h"
#include "src/addin/zintra_addin_app.h"
#include "src/core/event.h"
#include "src/host/host.h"
#include "src/host/idt_extensibility2.h"
#include "src/host/outlook_application.h"
#include "src/monitoring/insp_mon.h"

namespace zintra {

class Connect : public IDTExtensibility2 {
 public:
  Connect(const zintra::Host& host, ErrorHandling& errors, const StringTable& strings,
          AddinParts parts = {});
  ~Connect() override;
  Connect(const Connect&) = delete;
  Connect& operator=(const Connect&) = delete;

  // --- IDTExtensibility2 ---
  void OnConnection(const std::shared_ptr<Application>& Application, int32_t ConnectMode,
                    const std::shared_ptr<ComAddIn>& AddInInst,
                    std::vector<Value>& custom) override;
  void OnDisconnection(int32_t RemoveMode, std::vector<Value>& custom) override;
  void OnAddInsUpdate(std::vector<Value>& custom) override;
  void OnStartupComplete(std::vector<Value>& custom) override;
  void OnBeginShutdown(std::vector<Value>& custom) override;

  // --- Window tracking ---
  void pTrackedExplorer_Close();
  void pTrackedInspectorMon_InspectorClosed();

  // --- State, for the host and tests ---
  bool HoldsOutlook() const { return theOLApp != nullptr; }
  const std::string& ProgID() const { return ProgID_; }
  bool StartModeIsHostStartup() const { return StartModeIsHostStartup_; }
  bool AddinCreated() const { return addin_created_; }
  const std::shared_ptr<ZintraAddinApp>& AddinApp() const { return addin_; }
  const std::shared_ptr<Explorer>& TrackedExplorer() const { return pTrackedExplorer; }
  std::shared_ptr<Inspector> TrackedInspector() const;

 private:
  void Startup();
  // The shut-down: stops tracking, releases Outlook, quits and releases the add-in.
  void ShutdownAddin(bool OutlookClosing);
  void SetTrackedExplorer(const std::shared_ptr<Explorer>& explorer);
  void ClearTrackedExplorer();
  void SetTrackedInspectorMon(const std::shared_ptr<Inspector>& inspector);
  void ClearTrackedInspectorMon();
  // Whether an explorer (inspector) other than the closing one remains; the other's
  // index in Explorers (Inspectors) when one does, else 0.
  int32_t OtherExplorerIndex(const std::shared_ptr<Explorer>& closing);
  int32_t OtherInspectorIndex(const std::shared_ptr<Inspector>& closing);
  void LogError(const char* proc_name);

  const zintra::Host host_;
  ErrorHandling& errors_;
  const StringTable& strings_;
  AddinParts parts_;

  std::shared_ptr<Application> theOLApp;
  std::string ProgID_;
  bool StartModeIsHostStartup_ = false;
  std::shared_ptr<ZintraAddinApp> addin_;
  bool addin_created_ = false;
  std::shared_ptr<Explorer> pTrackedExplorer;
  Connection tracked_explorer_close_;
  std::shared_ptr<InspMon> pTrackedInspectorMon;
  Connection tracked_inspector_closed_;
};

}  // namespace zintra
