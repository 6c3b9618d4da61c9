#include "win32/addin/addin_host.h"

#include <utility>

#include "src/addin/zintra_addin_app.h"
#include "src/core/z_error.h"
#include "win32/addin/com_add_in_adapter.h"
#include "win32/addin/com_options_page.h"
#include "win32/addin/dll_module.h"
#include "win32/addin/keep_alive_client.h"
#include "win32/com/unicode.h"
#include "win32/outlook/wrap.h"

namespace zintra::win32 {

namespace {

// The folder of the DLL, where the add-in's companion files are installed.
std::string DllFolder() {
  std::string path = Narrow(DllModule::Instance().Path());
  size_t slash = path.rfind('\\');
  return slash == std::string::npos ? std::string() : path.substr(0, slash);
}

}  // namespace

AddinHost::AddinHost()
    : subclasser_(std::make_shared<Win32Subclasser>()),
      strings_(StringTable::ForUserInterface(ports_.platform)),
      host_(ports_.MakeHost(objects_, &toolbar_library_, &word_)) {
  objects_.RegisterNative(kSubclasserProgId, [subclasser = subclasser_] { return subclasser; });
  // The options page comes from its own file; the add-in talks to it through its port.
  objects_.RegisterNative(kOptionsPageProgId, [] {
    return std::make_shared<ComOptionsPage>(ComObjectFactory::CreateDispatch(kOptionsPageProgId));
  });
  // The keep-alive program is told which Outlook to hold: the one the add-in runs in.
  objects_.RegisterNative(kKeepAliveProgId, [this] {
    return std::make_shared<KeepAliveClient>(ComObjectFactory::CreateDispatch(kKeepAliveProgId),
                                             [this] { return OutlookOfAddin(); });
  });
  errors_ = std::make_unique<ErrorHandling>(ErrorHandlingHost{ports_.error_logs, ports_.msg_box,
                                                              ports_.registry, ports_.file_system,
                                                              ports_.platform, strings_});
  errors_->SetAddinFolder(DllFolder());
  // Failures inside window procedures and timer callbacks reach the add-in's log.
  previous_failure_sink_ =
      SetFailureSink([this](const std::string& where, const std::string& what) {
        errors_->LogWarning(where + ": " + what);
      });
  connect_ = std::make_shared<zintra::Connect>(host_, *errors_, strings_);
}

AddinHost::~AddinHost() {
  // The add-in goes first: it borrows everything else.
  connect_.reset();
  SetFailureSink(std::move(previous_failure_sink_));
}

ComPtr<IDispatch> AddinHost::OutlookOfAddin() const {
  std::shared_ptr<ZintraAddinApp> app = addin_.lock();
  auto* outlook = app ? dynamic_cast<const ComAdapter*>(app->OLApp().get()) : nullptr;
  return outlook ? outlook->Object() : ComPtr<IDispatch>();
}

std::shared_ptr<Application> AddinHost::WrapApplication(const ComPtr<IDispatch>& application) {
  return Wrap<Application>(application);
}

std::shared_ptr<ComAddIn> AddinHost::WrapAddIn(const ComPtr<IDispatch>& add_in) {
  if (!add_in) return nullptr;
  return std::make_shared<ComAddInAdapter>(add_in);
}

std::shared_ptr<WordDocument> AddinHost::WrapDocument(const ComPtr<IDispatch>& document) {
  if (!document) return nullptr;
  return std::make_shared<ComWordDocument>(document);
}

std::shared_ptr<ZintraAddinApp> AddinHost::RunningAddin() const {
  std::shared_ptr<ZintraAddinApp> app = addin_.lock();
  return app && !app->Quitting() && !app->TornDown() ? app : nullptr;
}

bool AddinHost::AddinPending() const {
  std::shared_ptr<ZintraAddinApp> app = addin_.lock();
  return app && !app->TornDown();
}

}  // namespace zintra::win32
