#include "sim/addin_host/sim_outlook.h"

#include <algorithm>
#include <utility>

#include "src/core/z_error.h"

namespace zintra::sim {

SimOutlook::SimOutlook(std::filesystem::path log_root, double start_serial)
    : clock(start_serial), error_logs(std::move(log_root)), host_{registry, files,   platform,
                                                                  clock,    loop,    loop,
                                                                  forms,    windows, shell,
                                                                  msg_box,  dialogs, error_logs,
                                                                  objects} {
  std::weak_ptr<bool> alive = alive_;
  objects.Register(kSimKeepAliveProgId, [this, alive] {
    return std::make_shared<SimKeepAlive>([this, alive](bool hold) {
      if (!alive.expired()) KeepAliveHold(hold);
    });
  });
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

void SimOutlook::Connect(int32_t mode) {
  if (!addin_factory_ || addin_) return;
  addin_ = addin_factory_(host_);
  com_addin_->connected = true;
  loader_calls_.push_back("OnConnection(" + std::to_string(mode) + ")");
  std::vector<Value> custom;
  addin_->OnConnection(app_, mode, com_addin_, custom);
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
  if (!started_ || quitting_) throw ZError(kErrInvalidCall, "Outlook is not running");
  Connect(kExtCmAfterStartup);
  if (addin_) {
    loader_calls_.push_back("OnAddInsUpdate");
    std::vector<Value> custom;
    addin_->OnAddInsUpdate(custom);
  }
}

void SimOutlook::UnloadAddin() { Disconnect(kExtDmUserClosed); }

std::shared_ptr<SimExplorer> SimOutlook::OpenExplorer(std::shared_ptr<Folder> folder) {
  if (!started_ || quitting_) throw ZError(kErrInvalidCall, "Outlook is not running");
  auto explorer = std::make_shared<SimExplorer>(std::move(folder), next_hwnd_++,
                                                [this](SimExplorer& e) { CloseExplorer(e); });
  app_->explorers().open.push_back(explorer);
  app_->explorers().NewExplorer.Raise(std::shared_ptr<Explorer>(explorer));
  return explorer;
}

std::shared_ptr<SimInspector> SimOutlook::OpenInspector(std::shared_ptr<Item> item) {
  if (!started_ || quitting_) throw ZError(kErrInvalidCall, "Outlook is not running");
  auto inspector = std::make_shared<SimInspector>(std::move(item), next_hwnd_++,
                                                  [this](SimInspector& i) { CloseInspector(i); });
  app_->inspectors().open.push_back(inspector);
  app_->inspectors().NewInspector.Raise(std::shared_ptr<Inspector>(inspector));
  return inspector;
}

void SimOutlook::CloseExplorer(SimExplorer& explorer) {
  auto& open = app_->explorers().open;
  auto it =
      std::find_if(open.begin(), open.end(), [&](const auto& e) { return e.get() == &explorer; });
  if (it == open.end()) return;
  std::shared_ptr<SimExplorer> keep = *it;
  keep->CloseEvent.Raise();  // still listed while its Close runs
  open.erase(std::find(open.begin(), open.end(), keep));
  keep->MarkClosed();
  WindowClosed();
}

void SimOutlook::CloseInspector(SimInspector& inspector) {
  auto& open = app_->inspectors().open;
  auto it =
      std::find_if(open.begin(), open.end(), [&](const auto& i) { return i.get() == &inspector; });
  if (it == open.end()) return;
  std::shared_ptr<SimInspector> keep = *it;
  if (std::shared_ptr<Item> item = keep->CurrentItem()) {
    bool cancel = false;
    item->CloseEvent.Raise(cancel);
  }
  keep->CloseEvent.Raise();
  open.erase(std::find(open.begin(), open.end(), keep));
  keep->MarkClosed();
  WindowClosed();
}

void SimOutlook::WindowClosed() {
  if (quitting_ || app_->explorers().Count() > 0 || app_->inspectors().Count() > 0) return;
  quitting_ = true;
  app_->Quit.Raise();
  if (keep_alive_holds_ == 0) EndProcess();
}

void SimOutlook::Quit() {
  if (!started_ || quitting_) return;
  while (!app_->inspectors().open.empty()) app_->inspectors().open.back()->Close(0);
  while (!app_->explorers().open.empty()) app_->explorers().open.back()->Close(0);
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
