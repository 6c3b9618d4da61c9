// HookedInspector: the per-inspector object the add-in creates for every inspector
// Outlook opens. It watches the inspector through an InspMon (with the subclassing
// service, so a note's window counts as closed when it is hidden), keeps the
// inspector's "Zintra" toolbar enabled only while the inspector is active, and runs a
// contact search for the addresses of the item shown (its recipients, or a contact's
// own addresses), keeping the names of the tracked contacts found. When the inspector
// closes, or the add-in shuts down, it releases everything.
//
// Ownership: create with std::make_shared and Initialize; the job queue's wait list
// holds the object (under WaitKey) until it is released, which is why it is an IJob:
// it is never queued, only parked. The add-in is held weakly. No member throws: the
// handlers log their errors with module "HookedInspector". Outlook's thread only.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "src/core/event.h"
#include "src/jobs/i_job.h"
#include "src/outlook/zintra_bar_name.h"

namespace zintra {

class ContactSearch;
class InspMon;
class Inspector;
class MonitoringAddin;

class HookedInspector : public IJob, public std::enable_shared_from_this<HookedInspector> {
 public:
  HookedInspector() = default;
  ~HookedInspector() override;
  HookedInspector(const HookedInspector&) = delete;
  HookedInspector& operator=(const HookedInspector&) = delete;

  void Initialize(const std::shared_ptr<Inspector>& inspector,
                  const std::shared_ptr<MonitoringAddin>& app);

  void Addin_Kill() { Release(); }
  void Inspector_Activate() { SetBarEnabled(true); }
  void Inspector_Deactivate() { SetBarEnabled(false); }
  void InspMon_InspectorClosed() { Release(); }
  void MySearch_SearchComplete(bool aborted);

  // IJob: parked on the wait list only.
  void Activate() override {}
  void Abort() override { Release(); }
  std::string JobDescription() override { return "HookedInspector for '" + caption_ + "'"; }

  const std::string& WaitKey() const { return wait_key_; }
  bool Released() const { return released_; }
  const std::shared_ptr<InspMon>& Monitor() const { return mon_; }
  // Full names of the tracked contacts the search found.
  const std::vector<std::string>& ContactNames() const { return contact_names_; }

 private:
  void StartSearch();
  void SetBarEnabled(bool enabled);
  void Release();
  void Trace(const std::string& text);
  void LogCurrentException(const char* proc);

  std::weak_ptr<MonitoringAddin> app_;
  std::shared_ptr<Inspector> inspector_;
  std::shared_ptr<InspMon> mon_;
  std::shared_ptr<ContactSearch> search_;
  std::string wait_key_;
  std::string caption_;
  std::vector<std::string> contact_names_;
  Connection closed_;
  Connection activate_;
  Connection deactivate_;
  Connection search_complete_;
  Connection addin_kill_;
  bool released_ = false;
};

}  // namespace zintra
