// ZintraAddinApp: the add-in's single application object. Initialize creates every
// long-lived component in a fixed order (error-log versions, RegSettings, ZintraUtils,
// the lingering-reference registration, the MAPI library's utility object and
// session, JobQueue, then the parts: TrackedContacts, Toolbars unless
// NeverLoadToolbars, Monitoring) and tear-down kills them again in the reverse
// order, after a Kill broadcast to every listener.
//
// Shut-down: Quit pauses the queue; with no job in the middle of an activation it
// shuts down at once, otherwise (on Outlook 2002 and later with the keep-alive
// program holding Outlook open) the queue calls Shutdown as soon as the job returns.
// While that shut-down is pending the add-in keeps itself alive, so that its owner
// may release it. A second Quit or Shutdown does nothing.
//
// Ownership: create with std::make_shared (the queue and the lingering-reference
// registration need shared owners). The Host ports, the ErrorHandling and the
// StringTable are borrowed and must outlive the object. Outlook's objects, the
// library objects and the keep-alive object are held until tear-down. Errors of
// Initialize are raised to the caller with this module's step on the trail, after
// the add-in has torn itself down; Quit, Shutdown and the event handlers log their
// errors and never throw. Called on Outlook's user-interface thread only.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "src/addin/addin_part.h"
#include "src/addin/errors_job_log.h"
#include "src/addin/linger_watch.h"
#include "src/core/event.h"
#include "src/core/key_generator.h"
#include "src/errors/error_handling.h"
#include "src/host/automation_object.h"
#include "src/host/host.h"
#include "src/host/mapi_session.h"
#include "src/host/mapi_utils.h"
#include "src/host/outlook_application.h"
#include "src/jobs/i_check_linger.h"
#include "src/jobs/job_addin.h"
#include "src/jobs/job_queue.h"
#include "src/logging/zintra_utils.h"
#include "src/resources/string_table.h"
#include "src/settings/reg_settings.h"
#include "src/ui/optional_messages.h"

namespace zintra {

class AddinServices;

inline constexpr char kOptionsPageProgId[] = "ZintraControls.OutlookPropertiesPage";
inline constexpr char kKeepAliveProgId[] = "ZintraKeepAlive.KeepAlive";
inline constexpr char kMapiUtilsProgId[] = "TovuRedemption.TovuMAPIUtils";
inline constexpr char kRdoSessionProgId[] = "TovuRedemption.TovuRDOSession";
inline constexpr int32_t kStrNeedOutlook2000 = 3000;

class ZintraAddinApp : public JobAddin,
                       public ICheckLinger,
                       public std::enable_shared_from_this<ZintraAddinApp> {
 public:
  ZintraAddinApp(const zintra::Host& host, ErrorHandling& errors, const StringTable& strings,
                 AddinParts parts = {});
  ~ZintraAddinApp() override;
  ZintraAddinApp(const ZintraAddinApp&) = delete;
  ZintraAddinApp& operator=(const ZintraAddinApp&) = delete;

  // Start-up; see the class comment for the order. Outlook older than 2000 gets the
  // message box of text 3000 and a torn-down, inert add-in.
  void Initialize(const std::shared_ptr<Application>& OLApp, const std::string& ProgID,
                  bool StartModeIsHostStartup);
  // Begins shut-down; OutlookClosing is False when the user unloaded the add-in.
  void Quit(bool OutlookClosing);
  // Outlook let the add-in go while it was still running (it was released with no
  // window closed): tear down at once without running queued work. Items a job had
  // only marked "Processing" get the mark cleared, so the next start finds them.
  void LetGo();
  bool LeavingWorkForNextStart() const { return leaving_work_; }
  bool Quitting() override { return pQuitting; }
  // Finishes shut-down once no job is active: stops monitoring, flushes and abandons
  // the queue, tears down. Only the first call does anything.
  void Shutdown() override;
  // Outlook's Application Quit event.
  void OLApp_Quit();
  // Pauses or resumes the job queue (nothing once the queue is gone).
  void SetPauseJobQueue(bool paused);
  bool PauseJobQueue() const;

  // The current settings (valid from Initialize on).
  zintra::RegSettings& RegSettings() { return *settings_; }

  // Raised at the start of tear-down: every listener drops its references to the add-in
  // and its Outlook objects (its Addin_Kill handler).
  Event<> Kill;

  // --- Host application events (zintra_addin_app_events.cc). Errors are logged, never
  // raised to Outlook.
  // Hands the new inspector to the Monitoring part, which hooks it.
  void Inspectors_NewInspector(const std::shared_ptr<Inspector>& Inspector);
  // Cancels the send while ZintraUtils squelches item events (its save bracket).
  void OLApp_ItemSend(const std::shared_ptr<Item>& Item, bool& Cancel);
  // Adds the options page created by kOptionsPageProgId, titled with the product name.
  void OLApp_OptionsPagesAdd(const std::shared_ptr<PropertyPages>& Pages);
  void Namespace_OptionsPagesAdd(const std::shared_ptr<PropertyPages>& Pages,
                                 const std::shared_ptr<Folder>& Folder);
  void OLApp_NewMail() {}
  void MAPIUtils_NewMail() {}
  void IgnoreSentEMail() {}
  // RegSettings (Set): saves vNew, re-registers the add-in when MultiUser changed,
  // moves the error log when its folder changed, raises RegSettingsChanged(old) and
  // tells every part. The settings object keeps its identity (the values are copied
  // in), so references to it stay valid.
  void SetRegSettings(const zintra::RegSettings& vNew);
  Event<const zintra::RegSettings&> RegSettingsChanged;
  // Debugging aid: keeps a task-list entry while jobs are queued.
  void dbgLinger();

  // --- JobAddin ---
  JobQueueSettings QueueSettings() override;
  bool Outlook12OrHigher() override;
  std::string GenerateKey() override;
  void SetCheckLinger(std::shared_ptr<ICheckLinger> obj) override;
  void TouchOutlook() override;
  std::shared_ptr<JobQueue> GetJobQueue() override { return job_queue_; }

  // --- ICheckLinger: reports watched objects and Kill listeners that outlived the
  // Kill broadcast and the explicit kills.
  void CheckLingeringRefs() override;
  // Adds an object to those that must be gone by the lingering-reference check;
  // never keeps it alive. Parts are watched from their creation on.
  template <typename T>
  void WatchForLinger(const std::shared_ptr<T>& object) {
    linger_watch_.Watch(object);
  }

  // --- What the add-in holds, for its parts (nullptr before creation or after
  // tear-down).
  const std::shared_ptr<Application>& OLApp() const { return ol_app_; }
  ZintraUtils* Utils() const { return utils_.get(); }
  const std::shared_ptr<zintra::MapiUtils>& MAPIUtils() const { return mapi_utils_; }
  const std::shared_ptr<RdoSession>& RDOSession() const { return rdo_session_; }
  std::shared_ptr<AddinPart> TrackedContacts() const { return tracked_contacts_; }
  std::shared_ptr<AddinPart> Toolbars() const { return toolbars_; }
  std::shared_ptr<AddinPart> Monitoring() const { return monitoring_; }
  // The add-in as its subsystems see it, made before the parts and dropped right after
  // they are killed.
  const std::shared_ptr<AddinServices>& Services() const { return services_; }
  OptionalMessages* OptionalMsgs() const { return optional_messages_.get(); }
  ErrorHandling& Errors() { return errors_; }
  const StringTable& Strings() const { return strings_; }
  const zintra::Host& Host() const { return host_; }
  const std::string& ProgID() const { return prog_id_; }
  bool StartModeIsHostStartup() const { return start_mode_is_host_startup_; }

  // --- State, for the host and tests.
  bool UserUnloaded() const { return user_unloaded_; }
  bool ShutdownStarted() const { return shutdown_started_; }
  bool TornDown() const { return torn_down_; }
  // Quit found a job active: Shutdown waits for the queue.
  bool ShutdownPending() const { return pQuitting && !shutdown_started_; }
  const std::shared_ptr<AutomationObject>& KeepAlive() const { return keep_alive_; }

 private:
  void CreateParts();
  void CreatePart(const AddinPartFactory& factory, std::shared_ptr<AddinPart>& slot);
  std::shared_ptr<AutomationObject> CreateLibraryObject(const std::string& prog_id);
  void StartKeepAlive();
  void ReadSettings();
  void TearDown();
  void KillPart(std::shared_ptr<AddinPart>& part);
  void LogError(const char* proc_name);
  void ConnectHostEvents();
  void DisconnectHostEvents();

  const zintra::Host host_;
  ErrorHandling& errors_;
  const StringTable& strings_;
  AddinParts parts_;
  ErrorsJobLog job_log_;

  std::shared_ptr<Application> ol_app_;
  std::shared_ptr<Namespace> namespace_;
  std::string prog_id_;
  int32_t outlook_major_ = 0;  // from Application.Version
  bool start_mode_is_host_startup_ = false;
  std::unique_ptr<zintra::RegSettings> settings_;
  std::unique_ptr<OptionalMessages> optional_messages_;
  std::unique_ptr<ZintraUtils> utils_;
  std::shared_ptr<zintra::MapiUtils> mapi_utils_;
  std::shared_ptr<RdoSession> rdo_session_;
  std::shared_ptr<JobQueue> job_queue_;
  std::shared_ptr<AddinServices> services_;
  std::shared_ptr<AddinPart> tracked_contacts_;
  std::shared_ptr<AddinPart> toolbars_;
  std::shared_ptr<AddinPart> monitoring_;
  std::shared_ptr<AutomationObject> keep_alive_;
  Connection ol_app_quit_;
  Connection mapi_utils_new_mail_;
  std::shared_ptr<zintra::Inspectors> inspectors_;
  Connection item_send_;
  Connection new_inspector_;
  Connection options_pages_add_;
  Connection namespace_options_pages_add_;
  Connection new_mail_;
  std::string dbg_linger_task_;
  LingerWatch linger_watch_;
  KeyGenerator own_keys_;  // once ZintraUtils is gone

  bool pQuitting = false;
  bool leaving_work_ = false;
  bool user_unloaded_ = false;
  bool shutdown_started_ = false;
  bool torn_down_ = false;
  // Held while a deferred shut-down waits for the active job.
  std::shared_ptr<ZintraAddinApp> self_until_shutdown_;
};

}  // namespace zintra
