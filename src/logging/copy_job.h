// CopyJob: what JobLog (a logged copy in a folder set's log folder) and
// JobCreateShared (a copy in a shared public folder) have in common. A copy job is
// created by its JobProcess, started (queued) by it and does its whole work in one
// activation: the owner makes the copy in the target folder, the job strips its
// attachments when the settings say so, records it with the owner, clears the copy's
// "Zintra Tag", saves it and tells the owner that it ended.
//
// Ownership: create with std::make_shared. The job holds its owner until Kill, so a
// processing job stays alive while its copy jobs run; the owner holds its pending
// copy jobs and kills them when it ends (JobProcess_Kill). Kill releases the owner
// and the folder. Errors never leave Activate: they are logged with the job's class,
// a copy made but not recorded is deleted for good, and the job ends without a copy.
// Outlook's thread only.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "src/jobs/i_job.h"
#include "src/logging/job_process.h"

namespace zintra {

class Folder;
class Item;
class LoggingAddin;

class CopyJob : public IJob, public std::enable_shared_from_this<CopyJob> {
 public:
  ~CopyJob() override = default;
  CopyJob(const CopyJob&) = delete;
  CopyJob& operator=(const CopyJob&) = delete;

  // Takes the owner, the target folder and the key under which the owner keeps the
  // job. The description is built when first asked for: the folder's path takes a
  // call into Outlook per folder up to the store, which a log that keeps no debug
  // lines never shows.
  void Initialize(const std::shared_ptr<JobProcess>& owner, const std::shared_ptr<Folder>& target,
                  const std::string& key);
  // Logs "Queueing <class>: " + description and queues the job.
  void Start();

  void Activate() override;
  void Abort() override;
  std::string JobDescription() override { return Description(); }
  // A path that cannot be read is left out.
  const std::string& Description() const;

  // The owner ended: end without telling it.
  void JobProcess_Kill();
  // Releases the owner and the folder; tells a live owner that the job ended.
  void Kill();

  CopyKind Kind() const { return kind_; }
  // The key under which the owner keeps the job.
  const std::string& Key() const { return key_; }
  const std::shared_ptr<Folder>& TargetFolder() const { return target_; }
  bool Killed() const { return killed_; }

 protected:
  CopyJob(std::weak_ptr<LoggingAddin> app, CopyKind kind) : app_(std::move(app)), kind_(kind) {}
  // "JobLog" or "JobCreateShared".
  virtual const char* ClassName() const = 0;
  // The description's opening words, before the subject.
  virtual const char* DescriptionPrefix() const = 0;

 private:
  void End(bool aborted);

  std::weak_ptr<LoggingAddin> app_;
  CopyKind kind_;
  std::shared_ptr<JobProcess> owner_;
  std::shared_ptr<Folder> target_;
  std::string key_;
  std::string subject_;
  std::weak_ptr<Folder> described_folder_;  // the target, for a description asked late
  mutable std::string description_;
  mutable bool described_ = false;
  bool killed_ = false;
};

}  // namespace zintra
