#include "sim/addin_host/sim_outlook.h"

#include <utility>

#include "src/core/z_error.h"
#include "src/host/outlook_constants.h"

namespace zintra::sim {

namespace {
constexpr int32_t kCloseDiscard = 1;  // OlInspectorClose olDiscard
}  // namespace

SimOutlook::SimOutlook(std::filesystem::path log_root, double start_serial)
    : clock(start_serial),
      error_logs(std::move(log_root)),
      outlook_(&clock),
      host_{registry, files, platform, clock,   loop,       loop,    forms,
            windows,  shell, msg_box,  dialogs, error_logs, objects, &toolbar_library,
            &word} {
  std::weak_ptr<bool> alive = alive_;
  objects.Register(kSimKeepAliveProgId, [this, alive] {
    return std::make_shared<SimKeepAlive>([this, alive](bool hold) {
      if (!alive.expired()) KeepAliveHold(hold);
    });
  });
  window_removed_ = app().WindowRemoved.Connect([this] { WindowClosed(); });
}

SimOutlook::~SimOutlook() {
  *alive_ = false;
  alive_.reset();
  addin_.reset();
}

void SimOutlook::SetAddin(AddinFactory factory, std::string prog_id) {
  addin_factory_ = std::move(factory);
  com_addin_ = std::make_shared<SimComAddIn>(std::move(prog_id));
}

void SimOutlook::CheckRunning() const {
  if (!started_ || quitting_) throw ZError(kErrInvalidCall, "Outlook is not running");
}

void SimOutlook::Connect(int32_t mode) {
  if (!addin_factory_ || addin_) return;
  addin_ = addin_factory_(host_);
  com_addin_->connected = true;
  loader_calls_.push_back("OnConnection(" + std::to_string(mode) + ")");
  std::vector<Value> custom;
  addin_->OnConnection(outlook_.application, mode, com_addin_, custom);
}

void SimOutlook::Disconnect(int32_t mode) {
  if (!addin_) return;
  std::vector<Value> custom;
  std::shared_ptr<IDTExtensibility2> addin = addin_;
  if (mode == kExtDmHostShutdown) {
    loader_calls_.push_back("OnBeginShutdown");
    addin->OnBeginShutdown(custom);
  }
  loader_calls_.push_back("OnDisconnection(" + std::to_string(mode) + ")");
  addin->OnDisconnection(mode, custom);
  if (mode == kExtDmUserClosed) {
    loader_calls_.push_back("OnAddInsUpdate");
    addin->OnAddInsUpdate(custom);
  }
  com_addin_->connected = false;
  addin_.reset();  // Outlook's release of the add-in object
}

void SimOutlook::Start(StartWindows start_windows, bool load_addin,
                       std::shared_ptr<Item> inspector_item) {
  if (started_) throw ZError(kErrInvalidCall, "Outlook is already running");
  started_ = true;
  if (load_addin) Connect(kExtCmStartup);
  if (start_windows == StartWindows::kExplorer) OpenExplorer();
  if (start_windows == StartWindows::kInspector) OpenInspector(std::move(inspector_item));
  if (addin_) {
    loader_calls_.push_back("OnStartupComplete");
    std::vector<Value> custom;
    addin_->OnStartupComplete(custom);
  }
}

void SimOutlook::LoadAddin() {
  CheckRunning();
  Connect(kExtCmAfterStartup);
  if (addin_) {
    loader_calls_.push_back("OnAddInsUpdate");
    std::vector<Value> custom;
    addin_->OnAddInsUpdate(custom);
  }
}

void SimOutlook::UnloadAddin() { Disconnect(kExtDmUserClosed); }

std::shared_ptr<SimOlExplorer> SimOutlook::OpenExplorer(std::shared_ptr<FolderRecord> folder) {
  CheckRunning();
  if (!folder) folder = profile().DefaultFolder(kOlFolderInbox);
  return app().OpenExplorer(folder);
}

std::shared_ptr<SimOlInspector> SimOutlook::OpenInspector(std::shared_ptr<Item> item) {
  CheckRunning();
  if (!item) item = app().CreateItem(kOlMailItem);
  return app().OpenInspector(item);
}

void SimOutlook::WindowClosed() {
  if (!started_ || quitting_ || !app().OpenExplorers().empty() || !app().OpenInspectors().empty()) {
    return;
  }
  quitting_ = true;
  app().Quit.Raise();
  if (keep_alive_holds_ == 0) EndProcess();
}

void SimOutlook::Quit() {
  if (!started_ || quitting_) return;
  // Newest first; a window an earlier close took with it is skipped.
  auto inspectors = app().OpenInspectors();
  for (auto it = inspectors.rbegin(); it != inspectors.rend(); ++it) {
    if ((*it)->closed()) continue;
    (*it)->Close(kCloseDiscard);
    if (!(*it)->closed()) return;  // the user kept it open: Outlook stays
  }
  auto explorers = app().OpenExplorers();
  for (auto it = explorers.rbegin(); it != explorers.rend(); ++it) {
    if (!(*it)->closed()) (*it)->Close(kCloseDiscard);
  }
  if (!quitting_) WindowClosed();  // Outlook running without windows
}

void SimOutlook::EndProcess() {
  if (ended_) return;
  quitting_ = true;
  Disconnect(kExtDmHostShutdown);
  ended_ = true;
}

void SimOutlook::KeepAliveHold(bool hold) {
  keep_alive_holds_ += hold ? 1 : -1;
  if (!hold && keep_alive_holds_ == 0 && quitting_ && !ended_) {
    // Released from inside the add-in's tear-down: end at the next message.
    std::weak_ptr<bool> alive = alive_;
    loop.Post([this, alive] {
      if (!alive.expired()) EndProcess();
    });
  }
}

}  // namespace zintra::sim
