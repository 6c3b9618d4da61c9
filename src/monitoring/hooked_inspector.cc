#include "src/monitoring/hooked_inspector.h"

#include "src/contacts/contact_search.h"
#include "src/contacts/tracked_contacts.h"
#include "src/core/z_error.h"
#include "src/errors/cached_error.h"
#include "src/errors/error_handling.h"
#include "src/host/command_bars.h"
#include "src/host/object_factory.h"
#include "src/host/outlook_item.h"
#include "src/host/outlook_window.h"
#include "src/host/subclasser.h"
#include "src/jobs/job_engine_log.h"
#include "src/jobs/job_queue.h"
#include "src/monitoring/insp_mon.h"
#include "src/monitoring/monitoring_addin.h"

namespace zintra {

namespace {
constexpr char kHookedInspectorModule[] = "HookedInspector";
}  // namespace

HookedInspector::~HookedInspector() = default;

void HookedInspector::Initialize(const std::shared_ptr<Inspector>& inspector,
                                 const std::shared_ptr<MonitoringAddin>& app) {
  if (!inspector || !app) return;
  app_ = app;
  inspector_ = inspector;
  try {
    caption_ = inspector->Caption();
    std::shared_ptr<Subclasser> subclasser;
    try {
      subclasser = InspMon::CreateSubclasser(app->Objects());
    } catch (...) {
      // Without the service a note is watched through its inspector's Close only.
      LogCurrentException("Initialize");
    }
    mon_ = std::make_shared<InspMon>();
    mon_->SetSubclasser(subclasser);
    std::weak_ptr<HookedInspector> weak = weak_from_this();
    closed_ = mon_->InspectorClosed.Connect([weak] {
      if (auto self = weak.lock()) self->InspMon_InspectorClosed();
    });
    mon_->SetInspector(inspector);
    activate_ = inspector->ActivateEvent.Connect([weak] {
      if (auto self = weak.lock()) self->Inspector_Activate();
    });
    deactivate_ = inspector->Deactivate.Connect([weak] {
      if (auto self = weak.lock()) self->Inspector_Deactivate();
    });
    addin_kill_ = app->KillBroadcast().Connect([weak] {
      if (auto self = weak.lock()) self->Addin_Kill();
    });
    if (std::shared_ptr<JobQueue> queue = app->GetJobQueue()) {
      wait_key_ = queue->WaitListAdd(shared_from_this());
    }
    StartSearch();
  } catch (...) {
    LogCurrentException("Initialize");
    Release();
  }
}

void HookedInspector::StartSearch() {
  std::shared_ptr<MonitoringAddin> app = app_.lock();
  std::shared_ptr<TrackedContacts> tracked = app ? app->Tracked() : nullptr;
  std::shared_ptr<Item> item = inspector_ ? inspector_->CurrentItem() : nullptr;
  if (!tracked || !item) return;
  std::vector<std::string> emails;
  auto add = [&emails](const std::string& address) {
    if (!address.empty()) emails.push_back(address);
  };
  if (item->Class() == ItemClass::kContact) {
    add(item->Email1Address());
    add(item->Email2Address());
    add(item->Email3Address());
  } else {
    try {
      std::shared_ptr<Recipients> recipients = item->Recipients();
      for (int32_t i = 1; recipients && i <= recipients->Count(); ++i) {
        add(recipients->Item(i)->Address());
      }
    } catch (const ZError& e) {
      if (e.Number() != kErrNoSuchMember) throw;  // a kind without recipients
    }
  }
  if (emails.empty()) return;
  search_ = tracked->Search(emails);
  if (search_->Completed()) {
    MySearch_SearchComplete(search_->Aborted());
    return;
  }
  std::weak_ptr<HookedInspector> weak = weak_from_this();
  search_complete_ = search_->SearchComplete.Connect([weak](bool aborted) {
    if (auto self = weak.lock()) self->MySearch_SearchComplete(aborted);
  });
}

void HookedInspector::MySearch_SearchComplete(bool aborted) {
  try {
    Trace(aborted ? "Search aborted" : "Completed search");
    if (!aborted && search_) {
      for (const auto& contact : search_->AllResults()) {
        if (contact) contact_names_.push_back(contact->FullName());
      }
    }
  } catch (...) {
    LogCurrentException("MySearch_SearchComplete");
  }
  search_complete_.Disconnect();
  search_.reset();
}

void HookedInspector::SetBarEnabled(bool enabled) {
  try {
    std::shared_ptr<CommandBars> bars = inspector_ ? inspector_->CommandBars() : nullptr;
    if (!bars) return;
    std::shared_ptr<CommandBar> bar;
    try {
      bar = bars->Item(kZintraBarName);
    } catch (const ZError&) {
      return;  // no toolbar on this inspector
    }
    std::shared_ptr<CommandBarControls> controls = bar->Controls();
    for (int32_t i = 1; controls && i <= controls->Count(); ++i) {
      controls->Item(i)->SetEnabled(enabled);
    }
  } catch (...) {
    LogCurrentException(enabled ? "Inspector_Activate" : "Inspector_Deactivate");
  }
}

void HookedInspector::Release() {
  if (released_) return;
  released_ = true;
  std::shared_ptr<HookedInspector> keep = weak_from_this().lock();
  std::shared_ptr<MonitoringAddin> app = app_.lock();
  try {
    if (!wait_key_.empty() && app) {
      if (std::shared_ptr<JobQueue> queue = app->GetJobQueue()) queue->WaitListRelease(wait_key_);
    }
  } catch (...) {
    LogCurrentException("InspMon_InspectorClosed");
  }
  closed_.Disconnect();
  activate_.Disconnect();
  deactivate_.Disconnect();
  addin_kill_.Disconnect();
  search_complete_.Disconnect();
  if (search_) search_->Kill();
  search_.reset();
  if (mon_) mon_->SetInspector(nullptr);
  mon_.reset();
  inspector_.reset();
  app_.reset();
}

void HookedInspector::Trace(const std::string& text) {
  std::shared_ptr<MonitoringAddin> app = app_.lock();
  if (app && app->Errors().DebugMode()) app->Log().WriteLogMessage(text, false);
}

void HookedInspector::LogCurrentException(const char* proc) {
  CachedError rec;
  rec.SetToCurrentException(kHookedInspectorModule, proc);
  if (std::shared_ptr<MonitoringAddin> app = app_.lock()) app->Log().LogCachedError(rec);
}

}  // namespace zintra
