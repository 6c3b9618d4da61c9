// SimOutlook: the Outlook process as a user lives it, over every simulated port. It
// owns the ports (handed to the add-in as one Host bundle), the simulated Outlook
// (profile, Application with its explorers and inspectors, class registry with the MAPI
// library), and the add-in that Outlook's loader creates through the factory set with
// SetAddin. It makes the loader's calls in Outlook's order:
//
//   Start: OnConnection(mode 1), the start-up windows open, OnStartupComplete.
//   LoadAddin (after start): OnConnection(mode 0), OnAddInsUpdate.
//   UnloadAddin: OnDisconnection(1), OnAddInsUpdate, the add-in object released.
//   Last window closed: Application Quit; then, unless a keep-alive object holds
//   Outlook open, OnBeginShutdown, OnDisconnection(0), the add-in released and the
//   process ended. A held process ends (at the next message) when the keep-alive
//   object is released.
//
// A start without windows leaves Outlook running for the program that started it;
// EndProcess ends it. The profile starts empty: build it with ProfileBuilder(profile())
// before opening windows. Everything runs on the test's thread; messages posted to the
// loop (loop.Post) arrive inside the add-in's DoEvents as window messages would.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "hosts/errorlog/sqlite_error_log.h"
#include "sim/addin_host/sim_com_add_in.h"
#include "sim/addin_host/sim_keep_alive.h"
#include "sim/files/memory_file_system.h"
#include "sim/mapi/sim_outlook_host.h"
#include "sim/outlook/sim_ol_application.h"
#include "sim/outlook/sim_ol_windows.h"
#include "sim/platform/sim_platform.h"
#include "sim/registry/memory_registry.h"
#include "sim/shell/recording_shell.h"
#include "sim/shell/recording_window_manager.h"
#include "sim/shell/sim_form_factory.h"
#include "sim/time/event_loop.h"
#include "sim/time/virtual_clock.h"
#include "sim/toolbars/sim_toolbar_helper.h"
#include "sim/ui/recording_dialog_views.h"
#include "sim/ui/recording_msg_box.h"
#include "sim/word/sim_word.h"
#include "src/host/host.h"
#include "src/host/idt_extensibility2.h"

namespace zintra::sim {

enum class StartWindows { kExplorer, kInspector, kNone };

class SimOutlook {
 public:
  using AddinFactory = std::function<std::shared_ptr<IDTExtensibility2>(const Host& host)>;

  // The error log's files go below log_root (see SqliteErrorLog).
  explicit SimOutlook(std::filesystem::path log_root, double start_serial = 46027.375);
  ~SimOutlook();
  SimOutlook(const SimOutlook&) = delete;
  SimOutlook& operator=(const SimOutlook&) = delete;

  // --- The ports (fixture side is public) ---
  MemoryRegistry registry;
  MemoryFileSystem files;
  SimPlatform platform;
  VirtualClock clock;
  EventLoop loop{clock};
  SimFormFactory forms;
  RecordingWindowManager windows;
  RecordingShell shell;
  RecordingMsgBox msg_box;
  RecordingDialogViews dialogs;
  hosts::SqliteErrorLogFactory error_logs;
  // The toolbar library and Word, installed with Outlook (Host.toolbar_library, Host.word);
  // an add-in composed without a toolbar part never reaches them.
  SimToolbarLibrary toolbar_library;
  SimWord word{files};

 private:
  SimOutlookHost outlook_;  // before `objects`, which refers into it

 public:
  // The class registry: the MAPI library's classes over the profile,
  // "Outlook.Application" and the keep-alive program; tests register more.
  SimClassRegistry& objects = outlook_.factory;
  const Host& host() const { return host_; }

  // The profile behind the session, driven by this process's clock.
  Profile& profile() { return outlook_.profile; }
  SimOlApplication& app() { return *outlook_.application; }
  // References to the Application held outside this process model.
  long ApplicationHolders() const { return outlook_.application.use_count() - 1; }

  // The add-in registered with Outlook's loader, under its ProgID.
  void SetAddin(AddinFactory factory, std::string prog_id = "ZintraAddin.Connect");

  // --- The process ---
  // An inspector start opens `inspector_item` (nullptr: a new mail message).
  void Start(StartWindows start_windows, bool load_addin,
             std::shared_ptr<Item> inspector_item = nullptr);
  void LoadAddin();
  void UnloadAddin();
  // An explorer on the folder (nullptr: the Inbox, or no folder in an empty profile).
  std::shared_ptr<SimOlExplorer> OpenExplorer(std::shared_ptr<FolderRecord> folder = nullptr);
  // An inspector on the item (nullptr: a new mail message, not yet saved).
  std::shared_ptr<SimOlInspector> OpenInspector(std::shared_ptr<Item> item);
  // File > Exit: every inspector, then every explorer, closes without saving; a
  // window whose close is cancelled stops the exit.
  void Quit();
  // The program that started Outlook without windows lets it go.
  void EndProcess();

  bool Started() const { return started_; }
  bool Ended() const { return ended_; }
  bool AddinLoaded() const { return addin_ != nullptr; }
  // The UI is gone but a keep-alive object holds the process open.
  bool HeldByKeepAlive() const { return quitting_ && !ended_ && keep_alive_holds_ > 0; }
  int KeepAliveHolds() const { return keep_alive_holds_; }
  std::weak_ptr<IDTExtensibility2> Addin() const { return addin_; }
  // Loader calls in order ("OnConnection(1)", "OnStartupComplete", ...).
  const std::vector<std::string>& LoaderCalls() const { return loader_calls_; }

 private:
  void CheckRunning() const;
  void Connect(int32_t mode);
  void Disconnect(int32_t mode);
  void WindowClosed();
  void KeepAliveHold(bool hold);

  Host host_;
  std::shared_ptr<SimComAddIn> com_addin_;
  AddinFactory addin_factory_;
  std::shared_ptr<IDTExtensibility2> addin_;
  std::vector<std::string> loader_calls_;
  Connection window_removed_;
  int keep_alive_holds_ = 0;
  bool started_ = false;
  bool quitting_ = false;
  bool ended_ = false;
  std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

}  // namespace zintra::sim
