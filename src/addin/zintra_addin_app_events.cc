// The host application events of ZintraAddinApp: Outlook's and the library's events
// the add-in listens to, the settings replacement and the linger debugging aid.
#include <optional>
#include <string_view>

#include "src/addin/options_page.h"
#include "src/addin/zintra_addin_app.h"
#include "src/core/dispatchable.h"
#include "src/core/z_error.h"
#include "src/errors/cached_error.h"
#include "src/jobs/job_callback.h"

namespace zintra {
namespace {

constexpr char kZintraAddinAppEventsModule[] = "ZintraAddinApp";
constexpr char kLingerDescription[] = "Debugging helper: Linger";
constexpr int32_t kLingerIcon = 146;

// The add-in as the target of dbgLinger's callback job (called by name).
class LingerTarget : public Dispatchable {
 public:
  explicit LingerTarget(std::weak_ptr<ZintraAddinApp> app) : app_(std::move(app)) {}
  Value Invoke(std::string_view name, const Value* /*arg*/) override {
    if (name != "dbgLinger") throw ZError(kErrNoSuchMember);
    if (std::shared_ptr<ZintraAddinApp> app = app_.lock()) app->dbgLinger();
    return {};
  }

 private:
  std::weak_ptr<ZintraAddinApp> app_;
};

}  // namespace

void ZintraAddinApp::ConnectHostEvents() {
  std::weak_ptr<ZintraAddinApp> weak = weak_from_this();
  item_send_ = ol_app_->ItemSend.Connect([weak](std::shared_ptr<Item> item, bool& Cancel) {
    if (auto self = weak.lock()) self->OLApp_ItemSend(item, Cancel);
  });
  options_pages_add_ =
      ol_app_->OptionsPagesAdd.Connect([weak](std::shared_ptr<PropertyPages> pages) {
        if (auto self = weak.lock()) self->OLApp_OptionsPagesAdd(pages);
      });
  new_mail_ = ol_app_->NewMail.Connect([weak] {
    if (auto self = weak.lock()) self->OLApp_NewMail();
  });
  inspectors_ = ol_app_->Inspectors();
  if (inspectors_) {
    new_inspector_ =
        inspectors_->NewInspector.Connect([weak](std::shared_ptr<Inspector> inspector) {
          if (auto self = weak.lock()) self->Inspectors_NewInspector(inspector);
        });
  }
  if (namespace_) {
    namespace_options_pages_add_ = namespace_->OptionsPagesAdd.Connect(
        [weak](std::shared_ptr<PropertyPages> pages, std::shared_ptr<Folder> folder) {
          if (auto self = weak.lock()) self->Namespace_OptionsPagesAdd(pages, folder);
        });
  }
}

void ZintraAddinApp::DisconnectHostEvents() {
  item_send_.Disconnect();
  options_pages_add_.Disconnect();
  new_mail_.Disconnect();
  new_inspector_.Disconnect();
  namespace_options_pages_add_.Disconnect();
  inspectors_.reset();
}

void ZintraAddinApp::Inspectors_NewInspector(const std::shared_ptr<zintra::Inspector>& Inspector) {
  try {
    // Without the monitoring part (never created, or killed) there is nothing to hook for.
    if (!monitoring_ || !Inspector || torn_down_) return;
    monitoring_->Inspectors_NewInspector(Inspector);
  } catch (...) {
    LogError("Inspectors_NewInspector");
  }
}

void ZintraAddinApp::OLApp_ItemSend(const std::shared_ptr<zintra::Item>& Item, bool& Cancel) {
  try {
    if (utils_ && utils_->SquelchItemSend(Item)) Cancel = true;
  } catch (...) {
    LogError("OLApp_ItemSend");
  }
}

void ZintraAddinApp::OLApp_OptionsPagesAdd(const std::shared_ptr<PropertyPages>& Pages) {
  try {
    if (!Pages) return;
    std::shared_ptr<AutomationObject> object = host_.objects.CreateObject(kOptionsPageProgId);
    auto page = std::dynamic_pointer_cast<OptionsPage>(object);
    if (!page) {
      throw ZError(kErrTypeMismatch,
                   std::string("Class ") + kOptionsPageProgId + " is not an options page");
    }
    page->Initialize(shared_from_this());
    Pages->Add(page, strings_.Load(kStrProductName));
  } catch (...) {
    LogError("OLApp_OptionsPagesAdd");
  }
}

void ZintraAddinApp::Namespace_OptionsPagesAdd(const std::shared_ptr<PropertyPages>& /*Pages*/,
                                               const std::shared_ptr<Folder>& /*Folder*/) {
  // No page of the add-in's own in a folder's properties.
}

void ZintraAddinApp::SetRegSettings(const zintra::RegSettings& vNew) {
  if (!settings_) return;
  try {
    const zintra::RegSettings old = *settings_;
    *settings_ = vNew;
    settings_->Save();
    if (old.MultiUser != settings_->MultiUser) {
      settings_->WriteAddinLoader(settings_->MultiUser ? kLocationMachine : kLocationUser);
    }
    // Moves the log database when its folder changed, and applies level and cap.
    errors_.Addin_RegSettingsChanged(old, *settings_);
    RegSettingsChanged.Raise(old);
    for (std::shared_ptr<AddinPart>* part : {&tracked_contacts_, &toolbars_, &monitoring_}) {
      if (*part) (*part)->Addin_RegSettingsChanged(old);
    }
  } catch (...) {
    LogError("RegSettings");
  }
}

void ZintraAddinApp::dbgLinger() {
  try {
    if (!job_queue_) return;
    if (dbg_linger_task_.empty()) {
      dbg_linger_task_ = job_queue_->TaskListAdd(kLingerDescription, kLingerIcon, 1.0f, false);
    }
    if (job_queue_->QueuedJobsCount() > 0) {
      auto callback = std::make_shared<JobCallback>();
      callback->Initialize(std::make_shared<LingerTarget>(weak_from_this()), kLingerDescription,
                           "dbgLinger", "");
      job_queue_->Queue(callback, false);
    } else {
      const std::string task = dbg_linger_task_;
      dbg_linger_task_.clear();
      job_queue_->TaskListRemove(task);
    }
  } catch (...) {
    LogError("dbgLinger");
  }
}

}  // namespace zintra
