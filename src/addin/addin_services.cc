#include "src/addin/addin_services.h"

#include <utility>

#include "src/addin/zintra_addin_app.h"
#include "src/contacts/tracked_contact_folder.h"
#include "src/contacts/tracked_contacts.h"
#include "src/core/z_error.h"
#include "src/host/host.h"
#include "src/outlook/library_factory.h"

namespace zintra {
namespace {

ErrorHandling& ErrorsOf(const std::shared_ptr<ZintraAddinApp>& app) {
  if (!app) throw ZError(kErrObjectNotSet, "Object variable not set");
  return app->Errors();
}

}  // namespace

AddinServices::AddinServices(const std::shared_ptr<ZintraAddinApp>& app)
    : app_(app), log_(ErrorsOf(app)) {}

std::shared_ptr<AddinServices> AddinServices::Of(const std::shared_ptr<ZintraAddinApp>& app) {
  std::shared_ptr<AddinServices> services = app ? app->Services() : nullptr;
  if (!services) throw ZError(kErrObjectNotSet, "Object variable not set");
  return services;
}

ZintraAddinApp& AddinServices::App() {
  std::shared_ptr<ZintraAddinApp> app = app_.lock();
  if (!app) throw ZError(kErrObjectNotSet, "Object variable not set");
  // The add-in owns whatever calls through its services, so it outlives the call.
  return *app;
}

// --- ContactsAddin ---

const RegSettings& AddinServices::Settings() { return App().RegSettings(); }

std::shared_ptr<JobQueue> AddinServices::GetJobQueue() {
  std::shared_ptr<ZintraAddinApp> app = app_.lock();
  return app ? app->GetJobQueue() : nullptr;
}

std::shared_ptr<Namespace> AddinServices::Session() {
  std::shared_ptr<Application> ol_app = App().OLApp();
  if (!ol_app) throw ZError(kErrObjectNotSet, "Outlook has been released");
  return ol_app->Session();
}

std::shared_ptr<MapiUtils> AddinServices::LibraryUtils() {
  std::shared_ptr<ZintraAddinApp> app = app_.lock();
  return app ? app->MAPIUtils() : nullptr;
}

std::shared_ptr<AutomationObject> AddinServices::CreateLibraryObject(int32_t kind) {
  ZintraAddinApp& app = App();
  LibraryFactory factory(app.Host().objects, app.Errors(), app.Strings());
  return factory.CreateLibraryObject(kind);
}

bool AddinServices::Quitting() {
  std::shared_ptr<ZintraAddinApp> app = app_.lock();
  return !app || app->Quitting();
}

void AddinServices::SetCheckLinger(std::shared_ptr<ICheckLinger> obj) {
  if (std::shared_ptr<ZintraAddinApp> app = app_.lock()) app->SetCheckLinger(std::move(obj));
}

std::string AddinServices::GenerateKey() { return App().GenerateKey(); }

bool AddinServices::OptionalMsgBox(int32_t DialogIdx, const std::string& Message,
                                   const std::string& Caption) {
  std::shared_ptr<ZintraAddinApp> app = app_.lock();
  ZintraUtils* utils = app ? app->Utils() : nullptr;
  return utils != nullptr && utils->OptionalMsgBox(DialogIdx, Message, Caption);
}

const StringTable& AddinServices::Strings() { return App().Strings(); }
double AddinServices::Now() { return App().Host().clock.Now(); }

DecisionLog& AddinServices::Decisions() {
  std::shared_ptr<ZintraAddinApp> app = app_.lock();
  return app && app->Host().decisions ? *app->Host().decisions : NoDecisionLog();
}

// --- LoggingAddin ---

ZintraUtils* AddinServices::Utils() {
  std::shared_ptr<ZintraAddinApp> app = app_.lock();
  return app ? app->Utils() : nullptr;
}

std::shared_ptr<TrackedContacts> AddinServices::Tracked() {
  return app_.expired() ? nullptr : tracked_;
}

std::shared_ptr<RdoSession> AddinServices::RDOSession() {
  std::shared_ptr<RdoSession> session = App().RDOSession();
  if (!session) throw ZError(kErrObjectNotSet, "The library session is gone");
  return session;
}

Event<>& AddinServices::KillBroadcast() {
  std::shared_ptr<ZintraAddinApp> app = app_.lock();
  return app ? app->Kill : no_kill_;
}

bool AddinServices::LeavingWorkForNextStart() {
  std::shared_ptr<ZintraAddinApp> app = app_.lock();
  return app && app->LeavingWorkForNextStart();
}

// --- MonitoringAddin ---

std::shared_ptr<Application> AddinServices::OLApp() {
  std::shared_ptr<ZintraAddinApp> app = app_.lock();
  return app ? app->OLApp() : nullptr;
}

ErrorHandling& AddinServices::Errors() { return App().Errors(); }
std::shared_ptr<JobAddin> AddinServices::JobHost() { return app_.lock(); }
Clock& AddinServices::TimeSource() { return App().Host().clock; }
MessagePump& AddinServices::Pump() { return App().Host().pump; }
ObjectFactory& AddinServices::Objects() { return App().Host().objects; }

// --- ToolbarsAddin ---

std::shared_ptr<Folder> AddinServices::TrackedLogFolder(
    const std::shared_ptr<Folder>& contact_folder) {
  std::shared_ptr<TrackedContacts> tracked = Tracked();
  if (!tracked || !contact_folder) return nullptr;
  std::shared_ptr<TrackedContactFolder> set = tracked->FoldersetFor(contact_folder);
  return set ? set->JournalFolder() : nullptr;
}

MsgBox& AddinServices::Prompt() { return App().Host().msg_box; }
Platform& AddinServices::PlatformFacts() { return App().Host().platform; }
FileSystem& AddinServices::Files() { return App().Host().file_system; }
ToolbarLibrary* AddinServices::ToolbarLib() { return App().Host().toolbar_library; }
Word* AddinServices::WordProcessor() { return App().Host().word; }

}  // namespace zintra
