// JobAddin: the add-in application as the job engine sees it. The add-in object
// (ZintraAddinApp) implements it; the queue keeps only a weak reference, cleared by
// JobQueue::Kill, and treats a vanished add-in as "gone".
//
// Called on the user-interface thread only. TouchOutlook may throw (its errors are
// ignored); the other members should not.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

namespace zintra {

class ICheckLinger;
class JobQueue;

// The three settings the queue copies at Initialize (RegSettings fields).
struct JobQueueSettings {
  bool RunJobsAsync = true;
  int32_t QueuedWorkTimeInterval = 10;  // ms between slices
  int32_t QueuedWorkTimechunk = 10;     // ms per slice
};

class JobAddin {
 public:
  virtual ~JobAddin() = default;

  virtual JobQueueSettings QueueSettings() = 0;
  // True once the add-in has begun to quit.
  virtual bool Quitting() = 0;
  // Outlook 2007 (12) or later (ZintraUtils.Outlook12OrHigher).
  virtual bool Outlook12OrHigher() = 0;
  // A fresh key, unique among live keys (ZintraUtils.GenerateKey).
  virtual std::string GenerateKey() = 0;
  // Registers an object for the lingering-reference check (ZintraUtils.SetCheckLinger).
  virtual void SetCheckLinger(std::shared_ptr<ICheckLinger> obj) = 0;
  // Reads one string property of an object reached through Outlook and discards it;
  // a harmless touch that lets a dead connection surface.
  virtual void TouchOutlook() = 0;
  // The add-in's deferred shut-down, called when a job returns after Outlook quit.
  virtual void Shutdown() = 0;
  // The add-in's queue (nullptr once released).
  virtual std::shared_ptr<JobQueue> GetJobQueue() = 0;
};

}  // namespace zintra
