#include "sim/outlook/sim_ol_windows.h"

#include "sim/outlook/message_props.h"
#include "sim/outlook/sim_folder.h"
#include "sim/outlook/sim_ol_application.h"
#include "src/core/z_error.h"
#include "src/host/mapi_object.h"

namespace zintra::sim {

namespace {

class SimSelection : public Selection {
 public:
  SimSelection(Profile* profile, std::vector<std::shared_ptr<MessageRecord>> items)
      : profile_(profile), items_(std::move(items)) {}
  std::string TypeName() const override { return "Selection"; }
  int32_t Count() const override {
    HostCall host_call = profile_->Faults().Check("Selection.Count", profile_);
    return static_cast<int32_t>(items_.size());
  }
  std::shared_ptr<zintra::Item> Item(int32_t index) override {
    HostCall host_call = profile_->Faults().Check("Selection.Item", profile_);
    auto record = items_[CheckIndex(index, items_.size())];
    Profile::CheckAlive(*record);
    return MakeItem(profile_, record);
  }

 private:
  Profile* profile_;
  std::vector<std::shared_ptr<MessageRecord>> items_;
};

}  // namespace

// --- explorer ---

SimOlExplorer::SimOlExplorer(SimOlApplication* app, Profile* profile,
                             std::shared_ptr<FolderRecord> folder)
    : app_(app), profile_(profile), folder_(std::move(folder)) {
  bars_ = SimCommandBars::MakeState(
      profile, this, [this](int32_t id) { app_->ExecuteCommand(id, shared_from_this()); });
}

HostCall SimOlExplorer::Hit(std::string_view member) const {
  HostCall call = profile_->Faults().Check(member, this);
  if (closed_) throw ZError(kMapiObjectDeleted, "The explorer has been closed");
  return call;
}

std::string SimOlExplorer::Caption() const {
  HostCall host_call = Hit("Explorer.Caption");
  return (folder_ ? folder_->name + " - " : std::string()) + "Microsoft Outlook";
}

std::shared_ptr<zintra::CommandBars> SimOlExplorer::CommandBars() {
  HostCall host_call = Hit("Explorer.CommandBars");
  bars_->window = weak_from_this();
  return std::make_shared<SimCommandBars>(bars_);
}

void SimOlExplorer::Activate() {
  HostCall host_call = Hit("Explorer.Activate");
  const auto callback = profile_->Faults().Callback();  // the add-in handles the events
  app_->WindowActivated(this);
}

void SimOlExplorer::Close(int32_t /*save_mode*/) {
  HostCall host_call = Hit("Explorer.Close");
  auto keep = shared_from_this();
  closed_ = true;
  // From here the add-in's handlers run (the last window's close shuts it down).
  const auto callback = profile_->Faults().Callback();
  CloseEvent.Raise();
  app_->WindowClosed(this);
}

std::shared_ptr<zintra::Selection> SimOlExplorer::Selection() {
  HostCall host_call = Hit("Explorer.Selection");
  return std::make_shared<SimSelection>(profile_, selection_);
}

std::shared_ptr<Folder> SimOlExplorer::CurrentFolder() {
  HostCall host_call = Hit("Explorer.CurrentFolder");
  return folder_ ? MakeFolder(profile_, folder_) : nullptr;
}

void SimOlExplorer::Select(const std::vector<std::shared_ptr<Item>>& items) {
  selection_.clear();
  for (const auto& item : items) {
    if (auto record = RecordOf(item)) selection_.push_back(record);
  }
  SelectionChange.Raise();
}

void SimOlExplorer::ShowFolder(const std::shared_ptr<FolderRecord>& folder) {
  folder_ = folder;
  selection_.clear();
  SelectionChange.Raise();
}

// --- inspector ---

SimOlInspector::SimOlInspector(SimOlApplication* app, Profile* profile,
                               std::shared_ptr<SimItem> item, int32_t hwnd)
    : app_(app), profile_(profile), item_(std::move(item)), hwnd_(hwnd) {
  bars_ = SimCommandBars::MakeState(
      profile, this, [this](int32_t id) { app_->ExecuteCommand(id, shared_from_this()); });
}

HostCall SimOlInspector::Hit(std::string_view member) const {
  HostCall call = profile_->Faults().Check(member, this);
  if (closed_) throw ZError(kMapiObjectDeleted, "The inspector has been closed");
  return call;
}

std::string SimOlInspector::Caption() const {
  HostCall host_call = Hit("Inspector.Caption");
  const MessageRecord& m = *item_->Record();
  std::string title = MessageProps::Text(m, kPrSubject);
  return (title.empty() ? "Untitled" : title) + " - " + ItemClassTypeName(m.item_class);
}

std::shared_ptr<zintra::CommandBars> SimOlInspector::CommandBars() {
  HostCall host_call = Hit("Inspector.CommandBars");
  bars_->window = weak_from_this();
  return std::make_shared<SimCommandBars>(bars_);
}

void SimOlInspector::Activate() {
  HostCall host_call = Hit("Inspector.Activate");
  const auto callback = profile_->Faults().Callback();  // the add-in handles the events
  app_->WindowActivated(this);
}

void SimOlInspector::Close(int32_t save_mode) {
  HostCall host_call = Hit("Inspector.Close");
  auto keep = shared_from_this();
  const auto& record = item_->Record();
  if (save_mode == 0 && !record->deleted) profile_->SaveMessage(record);
  const auto callback = profile_->Faults().Callback();  // the add-in handles the events
  if (record->item_class == ItemClass::kNote) {
    closed_ = true;
    app_->WindowMessage.Raise(hwnd_, 24, 0);
  } else {
    bool cancel = false;
    item_->CloseEvent.Raise(cancel);
    if (cancel) return;
    closed_ = true;
    CloseEvent.Raise();
  }
  app_->WindowClosed(this);
}

std::shared_ptr<Item> SimOlInspector::CurrentItem() {
  HostCall host_call = Hit("Inspector.CurrentItem");
  return item_;
}

int32_t SimOlInspector::Hwnd() {
  HostCall host_call = Hit("Inspector.Hwnd");
  return hwnd_;
}

}  // namespace zintra::sim
