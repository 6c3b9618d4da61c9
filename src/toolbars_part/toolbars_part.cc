#include "src/toolbars_part/toolbars_part.h"

#include "src/addin/zintra_addin_app.h"
#include "src/core/z_error.h"
#include "src/host/host.h"

namespace zintra {

void ToolbarsPart::Initialize(const std::shared_ptr<ZintraAddinApp>& AddinApp) {
  if (!AddinApp) throw ZError(kErrObjectNotSet, "Object variable not set");
  app_ = AddinApp;
  toolbars_ = std::make_shared<zintra::Toolbars>();
  addin_kill_ = AddinApp->Kill.Connect([this] {
    if (toolbars_) toolbars_->Addin_Kill();
  });
  toolbars_->Initialize(shared_from_this());
}

void ToolbarsPart::Kill() {
  addin_kill_.Disconnect();
  if (toolbars_) toolbars_->Kill();
  toolbars_.reset();
  app_.reset();
}

void ToolbarsPart::Addin_RegSettingsChanged(const RegSettings& OldSettings) {
  if (toolbars_) toolbars_->Addin_RegSettingsChanged(OldSettings);
}

ZintraAddinApp& ToolbarsPart::App() {
  auto app = app_.lock();
  if (!app) throw ZError(kErrObjectNotSet, "Object variable not set");
  // The add-in owns this part, so it outlives every call made through it.
  return *app;
}

const RegSettings& ToolbarsPart::Settings() { return App().RegSettings(); }
std::shared_ptr<Application> ToolbarsPart::OLApp() { return App().OLApp(); }

std::shared_ptr<Namespace> ToolbarsPart::Session() {
  auto ol_app = App().OLApp();
  return ol_app ? ol_app->Session() : nullptr;
}

ZintraUtils* ToolbarsPart::Utils() {
  auto app = app_.lock();
  return app ? app->Utils() : nullptr;
}

std::shared_ptr<Folder> ToolbarsPart::TrackedLogFolder(
    const std::shared_ptr<Folder>& contact_folder) {
  return lookup_ && contact_folder ? lookup_(contact_folder) : nullptr;
}

const StringTable& ToolbarsPart::Strings() { return App().Strings(); }
ErrorHandling& ToolbarsPart::Errors() { return App().Errors(); }
MsgBox& ToolbarsPart::Prompt() { return App().Host().msg_box; }
Platform& ToolbarsPart::PlatformFacts() { return App().Host().platform; }
FileSystem& ToolbarsPart::Files() { return App().Host().file_system; }
ToolbarLibrary* ToolbarsPart::ToolbarLib() { return App().Host().toolbar_library; }
Word* ToolbarsPart::WordProcessor() { return App().Host().word; }
double ToolbarsPart::Now() { return App().Host().clock.Now(); }

AddinPartFactory ToolbarsPartFactory(TrackedLogFolderLookup lookup) {
  return
      [lookup]() -> std::shared_ptr<AddinPart> { return std::make_shared<ToolbarsPart>(lookup); };
}

}  // namespace zintra
