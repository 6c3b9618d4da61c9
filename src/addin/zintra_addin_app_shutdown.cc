// ZintraAddinApp's shut-down: Quit, the deferred Shutdown, the tear-down order and
// Outlook's Quit event.
#include <utility>

#include "src/addin/addin_services.h"
#include "src/addin/zintra_addin_app.h"
#include "src/core/dispatchable.h"
#include "src/core/z_error.h"
#include "src/errors/cached_error.h"

namespace zintra {
namespace {

constexpr int32_t kOutlook2002 = 10;

}  // namespace

void ZintraAddinApp::Quit(bool OutlookClosing) {
  if (torn_down_) return;
  errors_.WriteLogMessage(std::string("ZintraAddinApp Quit method called, pQuitting = ") +
                              (pQuitting ? "True" : "False"),
                          false);
  if (pQuitting) return;
  pQuitting = true;
  user_unloaded_ = !OutlookClosing;
  try {
    if (job_queue_) job_queue_->SetPaused(true);
    if (!job_queue_ || !job_queue_->ActiveJob()) {
      Shutdown();
      return;
    }
    // A job is inside an activation further up the stack (it pumped messages while
    // the window closed): the queue finishes the shut-down when it returns. Until
    // then nothing else may hold the add-in, so it holds itself.
    self_until_shutdown_ = weak_from_this().lock();
    if (outlook_major_ >= kOutlook2002) StartKeepAlive();
    job_queue_->ShutdownZintraOnJobComplete = true;
  } catch (...) {
    CachedError rec;
    rec.SetToCurrentException("ZintraAddinApp", "Quit");
    errors_.LogCachedError(rec);
  }
}

void ZintraAddinApp::LetGo() {
  if (torn_down_) return;
  errors_.LogWarning(
      "Outlook released the add-in before its last window closed; queued work is left "
      "for the next start");
  pQuitting = true;
  leaving_work_ = true;
  std::shared_ptr<ZintraAddinApp> keep = weak_from_this().lock();
  try {
    if (job_queue_) job_queue_->SetPaused(true);
    if (monitoring_) monitoring_->StopMonitoring();
    if (job_queue_) job_queue_->Abandon();
  } catch (...) {
    LogError("LetGo");
  }
  shutdown_started_ = true;
  TearDown();
  self_until_shutdown_.reset();
}

void ZintraAddinApp::StartKeepAlive() {
  try {
    keep_alive_ = host_.objects.CreateObject(kKeepAliveProgId);
    auto dispatch = std::dynamic_pointer_cast<Dispatchable>(keep_alive_);
    if (!dispatch) throw ZError(kErrNoSuchMember, "Object doesn't support this property or method");
    dispatch->Invoke("Initialize", nullptr);
  } catch (...) {
    // Without the keep-alive program Outlook may end first; the shut-down still waits.
    CachedError rec;
    rec.SetToCurrentException("ZintraAddinApp", "Quit");
    errors_.LogCachedError(rec);
  }
}

void ZintraAddinApp::Shutdown() {
  if (shutdown_started_) return;
  shutdown_started_ = true;
  std::shared_ptr<ZintraAddinApp> keep = weak_from_this().lock();
  try {
    if (monitoring_) monitoring_->StopMonitoring();
  } catch (...) {
    LogError("Shutdown");
  }
  try {
    if (job_queue_) {
      job_queue_->Flush(false);
      job_queue_->Abandon();
    }
  } catch (...) {
    LogError("Shutdown");
  }
  TearDown();
  self_until_shutdown_.reset();
}

void ZintraAddinApp::KillPart(std::shared_ptr<AddinPart>& part) {
  if (!part) return;
  try {
    part->Kill();
  } catch (...) {
    LogError("TearDown");
  }
  part.reset();
}

void ZintraAddinApp::TearDown() {
  if (torn_down_) return;
  torn_down_ = true;
  try {
    Kill.Raise();
  } catch (...) {
    LogError("TearDown");
  }
  KillPart(monitoring_);
  KillPart(toolbars_);
  KillPart(tracked_contacts_);
  services_.reset();
  if (job_queue_) {
    job_queue_->Kill();
    job_queue_.reset();
  }
  if (utils_) {
    utils_->CheckLingering();
    utils_->Kill();
    utils_.reset();
  }
  optional_messages_.reset();

  ol_app_quit_.Disconnect();
  mapi_utils_new_mail_.Disconnect();
  DisconnectHostEvents();
  namespace_.reset();
  ol_app_.reset();
  mapi_utils_.reset();
  rdo_session_.reset();
  keep_alive_.reset();  // Outlook may end now
}

void ZintraAddinApp::OLApp_Quit() {
  if (outlook_major_ < kOutlook2002) return;
  try {
    if (!pQuitting) {
      errors_.LogWarning(
          "OLApp Quit event fired before last window's Close event.  This should "
          "never occur!");
    }
    if (user_unloaded_) {
      std::shared_ptr<IJob> job = job_queue_ ? job_queue_->ActiveJob() : nullptr;
      errors_.WriteLogMessage("User manually unloaded Zintra and then quit Outlook before job '" +
                                  (job ? job->JobDescription() : std::string()) +
                                  "' could complete its current chunk of work.",
                              false);
    }
  } catch (...) {
    LogError("OLApp_Quit");
  }
}

}  // namespace zintra
