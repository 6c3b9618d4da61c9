// JobProcess: the per-item job that decides whether a new or sent item is to be
// logged and, if so, logs it from end to end: screening, the "Processing" mark, the
// search of the item's links and e-mail addresses for tracked contacts, the logged
// and shared copies (JobLog, JobCreateShared), the links to the copies and the final
// marks.
//
// Life of a job. Folder monitoring creates one per candidate item and calls
// Initialize, which screens the item and, when it passes, marks it "Processing",
// saves it, adds a task-list entry and queues the job (true); otherwise the caller
// drops the job (false). Activations then run, in order: the links and e-mail steps
// (the e-mail search may park the job on the queue's wait list until the search
// completes), the logged-copy stage, the shared-copy stage (each copy job is a job of
// its own; the stage ends when all of them have ended) and final post-processing,
// which links the item to its copies, writes "Zintra Logged" and "Zintra Shared" and
// kills the job. Kill writes the final marks ("Zintra Logged", "Zintra Last Audited",
// "Zintra Tag" cleared) on every job that got as far as marking, removes the task
// entry, leaves the wait list, kills a running search and the live copy jobs, and
// deletes a working copy for good.
//
// Ownership: create with std::make_shared. The queue (or the wait list, or a live copy
// job) keeps the job alive while it works; the add-in is held weakly and a vanished
// add-in ends the job at its next step. The job holds the item (or its working copy)
// until Kill. Errors never leave the job: each step logs its error with the class
// "JobProcess" and kills the job ("Failed processing item: '<subject>'").
// Outlook's thread only.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "src/core/event.h"
#include "src/host/decision_log.h"
#include "src/host/outlook_constants.h"
#include "src/jobs/i_job.h"

namespace zintra {

class ContactSearch;
class CopyJob;
class Folder;
class Item;
class JobEngineLog;
class LoggingAddin;
class RegSettings;
class SafeItem;
class TrackedContactFolder;
class MapiObject;
class UserProperties;
class UserProperty;
class ZError;
class ZintraUtils;

// The two kinds of copy the processing job makes.
enum class CopyKind { kLogged, kShared };

// String-table ids of the task-list prefixes: "Process appointment: " ... and the
// audit prefixes ("Audit appointment: " ...), kAuditTaskPrefixBase + the same offset.
inline constexpr int32_t kProcessTaskPrefixBase = 155;
inline constexpr int32_t kAuditTaskPrefixBase = 171;
// The offset (0-15) of an item kind in the prefix tables; -1 for notes and sharing
// items, which have no prefix.
int32_t TaskPrefixOffset(int32_t item_class);
// Task-list icon of an item kind (the form's image list has one per OlItemType).
int32_t TaskIconFor(int32_t ol_item_type);

// The voice-mail message class prefix that is never logged.
inline constexpr char kAvtMessageClassPrefix[] = "IPM.NOTE.APPLIEDVOICETECHNOLOGY.";

class JobProcess : public IJob, public std::enable_shared_from_this<JobProcess> {
 public:
  explicit JobProcess(std::weak_ptr<LoggingAddin> app);
  ~JobProcess() override;
  JobProcess(const JobProcess&) = delete;
  JobProcess& operator=(const JobProcess&) = delete;

  // Screens the item and, when it passes, marks, saves and queues the job; true when
  // queued. `caller` names the creator in log lines. Never throws.
  bool Initialize(const std::string& caller, const std::shared_ptr<Item>& item, bool AmIncomingFold,
                  bool AmOutgoingFold);

  void Activate() override;
  void Abort() override;
  std::string JobDescription() override;

  // True while the held item (or working copy) can still be read; false once killed.
  bool ValidateItem();
  void Kill();
  void Addin_Kill() { Kill(); }

  // The sender's SMTP address (WantSmtp) or native address; "" when none can be had.
  std::string SenderAddress(const std::shared_ptr<Item>& item, bool WantSmtp);
  // True when the sender belongs to the current user's organisation.
  bool ItemFromInternalUser(const std::shared_ptr<Item>& item);
  // Deletes every attachment of a copy and saves it.
  void StripAttachments(const std::shared_ptr<Item>& item);

  // --- For the copy jobs.
  // Makes a copy of the item in `target` (through the library or the object model,
  // as UseRedemptionCopy says), tagged "Processing". Throws the platform's error.
  std::shared_ptr<Item> CopyItemTo(const std::shared_ptr<Folder>& target);
  // A copy job made its copy in `folder` (CopyItemTo's target, where the copy ends up
  // wherever the store first put it): recorded for linking and for the final flags.
  void AddCopy(CopyKind kind, const std::shared_ptr<Item>& copy,
               const std::shared_ptr<Folder>& folder);
  // A copy job ended (made its copy or not); the stage moves on when it was the last.
  // `aborted`: the queue aborted it, so the whole job ends.
  void CopyJobEnded(CopyKind kind, const std::string& key, bool aborted);

  // --- State, for the copy jobs, the lingering check and tests.
  const std::string& Subject() const { return subject_; }
  // "[Recieved <date>]" ...: made when first shown (error lines, the job's description).
  const std::string& ItemDescription() const;
  const std::string& ScreenReason() const { return screen_reason_; }
  bool Screened() const { return screened_; }
  bool Killed() const { return killed_; }
  bool LoggedFlag() const { return logged_; }
  bool SharedFlag() const { return shared_; }
  bool HasLinks() const { return has_links_; }
  int32_t FoundContactCount() const;
  int32_t PendingCopyJobs(CopyKind kind) const;
  size_t CopyCount(CopyKind kind) const;
  const std::vector<std::string>& SearchedAddresses() const { return searched_addresses_; }
  bool AmIncomingFold() const { return AmIncomingFold_; }
  bool AmOutgoingFold() const { return AmOutgoingFold_; }

 private:
  enum class Stage { kSearch, kLogs, kShared, kFinal, kDone };

  bool pPreScreen(const std::string& caller, const std::shared_ptr<Item>& item, bool AmIncomingFold,
                  bool AmOutgoingFold, std::string& reason);
  bool MarkNotLogged(const std::shared_ptr<Item>& item, const std::string& reason);
  bool HasLinksOrRecipients(const std::shared_ptr<Item>& item);
  bool InDefaultFolder(const std::shared_ptr<Item>& item, int32_t folder_type);
  std::string CurrentUserName();
  void MakeWorkingCopy(const std::shared_ptr<Item>& item);
  void UndoMark(const std::shared_ptr<Item>& item);

  // Contact discovery (job_process_contacts.cc).
  void Step1_SearchLinks();
  void Step2_SearchEmails();
  void EmailSearch_SearchComplete(bool aborted);
  // `filtered`: the contact passed ShouldTrack in this same activation.
  void FoundLinkedContact(const std::shared_ptr<Item>& contact,
                          const std::shared_ptr<TrackedContactFolder>& folderset,
                          bool filtered = false);
  void ChooseTargets(const std::shared_ptr<TrackedContactFolder>& folderset);
  void AddCopyJob(CopyKind kind, const std::shared_ptr<Folder>& target);

  // Copies and the end (job_process_copy.cc).
  void RunStage();
  bool StartCopyJobs(CopyKind kind);
  void FinalPostProcessing();
  std::shared_ptr<Item> CopyThroughOutlook(const std::shared_ptr<Item>& item,
                                           const std::shared_ptr<Folder>& target);
  std::shared_ptr<Item> CopyThroughLibrary(const std::shared_ptr<Item>& item,
                                           const std::shared_ptr<Folder>& target);
  // Deletes a half-made copy for good; logs a failure and goes on.
  void DiscardCopy(const std::shared_ptr<Item>& copy);
  void LinkCopies(const std::shared_ptr<MapiObject>& object, CopyKind kind);
  // The original item: the held reference, or found again by its identifiers.
  std::shared_ptr<Item> FindOriginal();
  void WriteFinalMarks();
  // Clears the "Processing" tag of the item found again, deciding nothing about it.
  void ClearMark();
  void ClearTag(const std::shared_ptr<Item>& item);
  void QueueSelf();
  bool SameFolder(const std::shared_ptr<Folder>& a, const std::shared_ptr<Folder>& b);

  // Decisions stated to the host's decision log (job_process_decisions.cc); never throw.
  // The item is `item` while screening, the job's own afterwards (nullptr).
  void Decide(const std::shared_ptr<Item>& item, Decision decision);
  // Whether the host keeps decisions: on the common path a record is not even built
  // when it does not.
  bool Deciding() const;
  void DecideContact(DecisionKind kind, const std::shared_ptr<Item>& contact, std::string address,
                     std::string reason, const std::shared_ptr<TrackedContactFolder>& folderset);
  void DecideMatches(const ContactSearch& search);
  void DecideCopy(CopyKind kind, const std::shared_ptr<Item>& copy);

  // Logging helpers.
  void LogLine(const std::string& text);
  void LogErrorLine(const std::string& text, const char* proc);
  void LogError(const ZError& error, const char* proc);
  void LogCurrentException(const char* proc);
  void Fail(const char* proc);

  std::shared_ptr<LoggingAddin> App() const { return app_.lock(); }
  ZintraUtils& Utils() const;
  const RegSettings& Settings() const;

  // The item's OlItemType, from the class screening read (read afresh for an item the
  // job did not screen).
  int32_t ItemType(const std::shared_ptr<Item>& item) const;
  // The library's safe item over `item` (nullptr when the library has none for its
  // kind); the one made last is reused for the same item.
  std::shared_ptr<SafeItem> SafeItemFor(const std::shared_ptr<Item>& item);
  // Whether the add-in's log keeps debug lines (JobEngineLog::KeepsDebugLines).
  bool DebugLines() const;

  std::weak_ptr<LoggingAddin> app_;
  // The add-in's log, a member of the add-in: valid while app_ has not expired. Asked
  // about debug lines a dozen times per item, it is found once.
  mutable JobEngineLog* log_ = nullptr;
  // What screening read, kept so that no later step asks the host again: the class,
  // the folder, and the sender's native and SMTP addresses (of `sender_of_`).
  ItemClass item_class_ = ItemClass::kMail;
  bool class_known_ = false;
  std::shared_ptr<Folder> parent_;
  std::shared_ptr<UserProperties> screened_props_;  // until the item is marked
  // "Zintra Tag" and "Zintra Logged" as screening found them (nullptr: absent), for the
  // write that follows in the same call.
  std::shared_ptr<UserProperty> screened_tag_, screened_logged_;
  std::weak_ptr<Item> sender_of_;
  // The library's safe item over one item, made once per item: the sender, the
  // recipients and the library copy all read through it.
  std::shared_ptr<SafeItem> safe_;
  std::weak_ptr<Item> safe_of_;
  // The item as screened and marked, and its user properties, which the final marks
  // reuse when the item found at the end is that same object.
  std::weak_ptr<Item> marked_item_;
  std::shared_ptr<UserProperties> marked_props_;
  std::string sender_native_, sender_smtp_;
  // The original as final post-processing found and marked it, for Kill's final marks
  // in the same activation: it is not looked up again, nor its "Zintra Logged" rewritten.
  std::shared_ptr<Item> final_item_;
  std::shared_ptr<UserProperties> final_props_;
  std::shared_ptr<MapiObject> final_object_;
  std::shared_ptr<Item> item_;          // the item worked on (the working copy's item)
  std::shared_ptr<Item> working_copy_;  // set when MakeWorkingCopy made one
  bool AmIncomingFold_ = false;
  bool AmOutgoingFold_ = false;
  std::string subject_, folder_name_, screen_reason_;
  // The description, or (described_as_ set) what it is made of until first shown.
  mutable std::string item_description_;
  mutable const char* described_as_ = nullptr;
  double described_on_ = 0;
  std::string entry_id_, store_id_;
  std::string task_id_;
  std::string wait_key_;
  bool has_links_ = false;
  bool logged_ = false;
  bool shared_ = false;
  bool screened_ = false;
  bool marked_ = false;
  bool killed_ = false;
  bool failed_ = false;
  bool original_missing_ = false;
  Stage stage_ = Stage::kSearch;

  // Found contacts, by folder-set key, one per contact. A contact's EntryID is read only
  // when another contact of the same folder set has to be told apart from it.
  struct FoundContact {
    std::shared_ptr<Item> item;
    std::optional<std::string> entry_id;
  };
  struct ContactGroupFound {
    std::string folderset_key;
    std::vector<FoundContact> contacts;
  };
  // A handful of folder sets at most: found by walking the list.
  std::vector<ContactGroupFound> found_contacts_;
  // The copy jobs not ended yet, a handful at most, each found by its key.
  std::vector<std::shared_ptr<CopyJob>> pending_logs_;
  std::vector<std::shared_ptr<CopyJob>> pending_shared_;
  // The copies made, each with the folder it was made in and, when the library made
  // it there, the EntryID and StoreID the library reported for it (empty: read them).
  struct CopyMade {
    std::shared_ptr<Item> item;
    std::shared_ptr<Folder> folder;
    std::string entry_id, store_id;
  };
  std::vector<CopyMade> logged_copies_;
  std::vector<CopyMade> shared_copies_;
  // The identifiers of the copy CopyItemTo made last through the library, until AddCopy.
  std::weak_ptr<Item> last_copy_;
  std::string last_copy_entry_id_, last_copy_store_id_;

  std::shared_ptr<ContactSearch> search_;
  Connection search_complete_;
  std::vector<std::string> searched_addresses_;
  Connection addin_kill_;
};

}  // namespace zintra
