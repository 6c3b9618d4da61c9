// JobChanged: reacts to a change of an item the system logged or shared: it finds
// the copies derived from the item (through both pairs of link lists) and starts one
// JobAudit per copy, which appends "Changed by <user> on <date>" to the copy's body.
//
// Initialize screens the change (AuditTrail set, "Zintra Tag" empty, "Zintra Logged"
// or "Zintra Shared" True, "Zintra Last Audited" older than MinAuditInterval
// seconds) and, when it passes, marks the item "Processing", saves it and queues the
// job (true). Kill writes "Zintra Last Audited" = now, clears the tag and saves.
//
// Ownership: create with std::make_shared; the queue, then its live audit jobs keep
// it alive. The add-in is held weakly. Errors never leave the job: they are logged
// and end it ("Failed auditing item: '<subject>'"). Outlook's thread only.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "src/core/event.h"
#include "src/core/keyed_collection.h"
#include "src/jobs/i_job.h"

namespace zintra {

class Item;
class JobAudit;
class LoggingAddin;
class RegSettings;

class JobChanged : public IJob, public std::enable_shared_from_this<JobChanged> {
 public:
  explicit JobChanged(std::weak_ptr<LoggingAddin> app);
  ~JobChanged() override;
  JobChanged(const JobChanged&) = delete;
  JobChanged& operator=(const JobChanged&) = delete;

  // Screens the change and queues the job; true when queued. Never throws.
  bool Initialize(const std::shared_ptr<Item>& item);

  void Activate() override;
  void Abort() override;
  std::string JobDescription() override { return "JobChanged for item: " + subject_; }

  bool ValidateItem();
  void Kill();
  void Addin_Kill() { Kill(); }
  void Addin_RegSettingsChanged();

  // From an audit job that ended.
  void JobAuditEnded(const std::string& key);

  const std::string& Subject() const { return subject_; }
  bool Killed() const { return killed_; }
  int32_t AuditCount() const { return audits_started_; }

 private:
  void StartAudits(const std::string& entry_ids_name, const std::string& store_ids_name);
  void LogLine(const std::string& text);
  void LogCurrentException(const char* proc);

  std::weak_ptr<LoggingAddin> app_;
  std::shared_ptr<Item> item_;
  std::string subject_;
  std::string task_id_;
  KeyedCollection<std::shared_ptr<JobAudit>> audits_;
  int32_t audits_started_ = 0;
  bool marked_ = false;
  bool activated_ = false;
  bool killed_ = false;
  bool failed_ = false;
  bool audit_trail_ = false;
  int32_t min_audit_interval_ = 20;
  Connection addin_kill_;
};

// JobAudit: appends the audit line to one copy derived from a changed item.
class JobAudit : public IJob, public std::enable_shared_from_this<JobAudit> {
 public:
  explicit JobAudit(std::weak_ptr<LoggingAddin> app) : app_(std::move(app)) {}

  // Builds the description "Audit '<copy subject>' in folder '<folder name>'".
  void Initialize(const std::shared_ptr<JobChanged>& owner, const std::shared_ptr<Item>& copy,
                  const std::string& key);
  // Logs "Queueing JobAudit: " + description and queues the job.
  void Start();

  void Activate() override;
  void Abort() override { Kill(); }
  std::string JobDescription() override { return description_; }
  const std::string& Description() const { return description_; }

  void JobChanged_Kill();
  void Kill();

 private:
  std::weak_ptr<LoggingAddin> app_;
  std::shared_ptr<JobChanged> owner_;
  std::shared_ptr<Item> copy_;
  std::string key_;
  std::string description_;
  bool killed_ = false;
};

}  // namespace zintra
