#include "src/addin/zintra_addin_app.h"

#include <cctype>
#include <cstdlib>
#include <utility>

#include "src/addin/addin_services.h"
#include "src/core/z_error.h"
#include "src/errors/cached_error.h"
#include "src/outlook/library_factory.h"

namespace zintra {
namespace {

constexpr char kZintraAddinAppModule[] = "ZintraAddinApp";

// VB's Val: the number a text starts with ("11.0.0.8312" gives 11.0; "" gives 0).
double LeadingNumber(const std::string& text) {
  size_t i = 0;
  while (i < text.size() && text[i] == ' ') ++i;
  std::string digits;
  bool point = false;
  for (; i < text.size(); ++i) {
    const char c = text[i];
    if (std::isdigit(static_cast<unsigned char>(c))) {
      digits += c;
    } else if (c == '.' && !point) {
      point = true;
      digits += c;
    } else {
      break;
    }
  }
  if (digits.empty() || digits == ".") return 0.0;
  // strtod, not stod: a version of hundreds of digits is out of a double's range and
  // becomes HUGE_VAL instead of throwing.
  return std::strtod(digits.c_str(), nullptr);
}

template <typename T>
std::shared_ptr<T> As(const std::shared_ptr<AutomationObject>& object, const std::string& prog_id) {
  auto typed = std::dynamic_pointer_cast<T>(object);
  if (!typed) throw ZError(kErrTypeMismatch, "Class " + prog_id + " is not of the expected kind");
  return typed;
}

}  // namespace

ZintraAddinApp::ZintraAddinApp(const zintra::Host& host, ErrorHandling& errors,
                               const StringTable& strings, AddinParts parts)
    : host_(host), errors_(errors), strings_(strings), parts_(std::move(parts)), job_log_(errors) {}

ZintraAddinApp::~ZintraAddinApp() = default;

void ZintraAddinApp::LogError(const char* proc_name) {
  CachedError rec;
  rec.SetToCurrentException(kZintraAddinAppModule, proc_name);
  errors_.LogCachedError(rec);
}

void ZintraAddinApp::Initialize(const std::shared_ptr<Application>& OLApp,
                                const std::string& ProgID, bool StartModeIsHostStartup) {
  try {
    if (!OLApp) throw ZError(kErrObjectNotSet, "No Outlook application to start with");
    ol_app_ = OLApp;
    prog_id_ = ProgID;
    start_mode_is_host_startup_ = StartModeIsHostStartup;
    ol_app_quit_ = ol_app_->Quit.Connect([this] { OLApp_Quit(); });

    // 1. The add-in's own version for the error log.
    errors_.SetAddinVersion(std::to_string(kAddinVersionMajor) + "." +
                            std::to_string(kAddinVersionMinor) + "." +
                            std::to_string(kAddinVersionRevision));
    // 2. The settings, read for this version of Outlook.
    const double version = LeadingNumber(ol_app_->Version());
    outlook_major_ = static_cast<int32_t>(version);
    ReadSettings();
    // 3.
    errors_.SetRunJobsAsync(settings_->RunJobsAsync);
    // 4.
    optional_messages_ =
        std::make_unique<OptionalMessages>(*settings_, host_.dialogs, strings_, errors_);
    utils_ = std::make_unique<ZintraUtils>(errors_);
    utils_->Connect(ZintraUtilsHost{ol_app_, settings_.get(), optional_messages_.get()});
    // 5. Outlook 97/98 cannot run the add-in.
    if (version < 9.0) {
      host_.msg_box.Show(strings_.Load(kStrNeedOutlook2000), kMsgBoxCritical,
                         strings_.Load(kStrProductName));
      TearDown();
      return;
    }
    // 6.
    utils_->SetCheckLinger(shared_from_this());
    // 7. The library's utility object; its NewMail is not used (folder events are).
    mapi_utils_ = As<zintra::MapiUtils>(CreateLibraryObject(kMapiUtilsProgId), kMapiUtilsProgId);
    mapi_utils_new_mail_ = mapi_utils_->NewMail.Connect([](const std::string&) {});
    // 8. The library session shares Outlook's MAPI logon.
    rdo_session_ = As<RdoSession>(CreateLibraryObject(kRdoSessionProgId), kRdoSessionProgId);
    namespace_ = ol_app_->Session();
    rdo_session_->SetMAPIOBJECT(namespace_->MAPIOBJECT());
    utils_->SetLibrary(mapi_utils_, rdo_session_);
    ConnectHostEvents();
    // 9.
    job_queue_ =
        std::make_shared<JobQueue>(JobQueueHost{host_.clock, host_.timers, host_.pump, host_.forms,
                                                host_.windows, host_.shell, strings_, job_log_});
    job_queue_->Initialize(shared_from_this());
    // 10, 11.
    CreateParts();
  } catch (...) {
    CachedError rec;
    rec.SetToCurrentException(kZintraAddinAppModule, "Initialize");
    // A half-started add-in would hold Outlook open: take everything down again.
    TearDown();
    rec.Raise();
  }
}

void ZintraAddinApp::ReadSettings() {
  settings_ =
      std::make_unique<zintra::RegSettings>(host_.registry, host_.file_system, host_.platform);
  settings_->SetWarningSink([this](const std::string& text) { errors_.LogWarning(text); });
  // An oversized 16-bit number fails the whole read, and with it the start-up: the
  // add-in does not run on settings of which only a part was read (folder sets and
  // delays would be silently lost). Initialize records the error and tears down.
  settings_->Read(/*JustCritical=*/false, /*IsOutlook9=*/outlook_major_ == 9,
                  /*IsOutlook12OrHigher=*/outlook_major_ >= 12);
}

std::shared_ptr<AutomationObject> ZintraAddinApp::CreateLibraryObject(const std::string& prog_id) {
  // The library factory logs the failure and re-raises it with the reinstall advice.
  return LibraryFactory(host_.objects, errors_, strings_).CreateObject(prog_id);
}

void ZintraAddinApp::CreateParts() {
  services_ = std::make_shared<AddinServices>(shared_from_this());
  linger_watch_.Watch(services_);
  CreatePart(parts_.TrackedContacts, tracked_contacts_);
  if (pQuitting) return;
  if (!settings_->NeverLoadToolbars) CreatePart(parts_.Toolbars, toolbars_);
  CreatePart(parts_.Monitoring, monitoring_);
  settings_->UserFirstRun(false);
}

void ZintraAddinApp::CreatePart(const AddinPartFactory& factory, std::shared_ptr<AddinPart>& slot) {
  if (!factory) return;
  slot = factory();
  if (!slot) return;
  linger_watch_.Watch(slot);
  // Kept before Initialize, so that a failing part is still killed at tear-down.
  std::shared_ptr<AddinPart> part = slot;
  part->Initialize(shared_from_this());
}

// --- JobAddin ---

JobQueueSettings ZintraAddinApp::QueueSettings() {
  JobQueueSettings result;
  if (settings_) {
    result.RunJobsAsync = settings_->RunJobsAsync;
    result.QueuedWorkTimeInterval = settings_->QueuedWorkTimeInterval;
    result.QueuedWorkTimechunk = settings_->QueuedWorkTimechunk;
  }
  return result;
}

bool ZintraAddinApp::Outlook12OrHigher() { return utils_ && utils_->Outlook12OrHigher(); }

std::string ZintraAddinApp::GenerateKey() {
  return utils_ ? utils_->GenerateKey() : own_keys_.GenerateKey();
}

void ZintraAddinApp::SetCheckLinger(std::shared_ptr<ICheckLinger> obj) {
  if (utils_) utils_->SetCheckLinger(std::move(obj));
}

void ZintraAddinApp::TouchOutlook() {
  if (!ol_app_) throw ZError(kErrObjectNotSet);
  (void)ol_app_->Version();
}

void ZintraAddinApp::SetPauseJobQueue(bool paused) {
  try {
    if (job_queue_) job_queue_->SetPaused(paused);
  } catch (...) {
    LogError("PauseJobQueue");
  }
}

bool ZintraAddinApp::PauseJobQueue() const { return job_queue_ && job_queue_->Paused(); }

void ZintraAddinApp::CheckLingeringRefs() {
  const std::string types = linger_watch_.SurvivorTypes();
  if (!types.empty()) {
    errors_.LogWarning(
        "Lingering objects exist after AddinApp fired Kill event.  They are of the following "
        "types: " +
        types);
  }
  if (Kill.HandlerCount() > 0) {
    errors_.LogWarning("Objects still connected to AddinApp's Kill event after it fired: " +
                       std::to_string(Kill.HandlerCount()));
  }
}

}  // namespace zintra
