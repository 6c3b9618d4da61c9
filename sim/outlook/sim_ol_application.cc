#include "sim/outlook/sim_ol_application.h"

#include <algorithm>

#include "sim/outlook/message_props.h"
#include "sim/outlook/sim_folder.h"
#include "sim/outlook/sim_namespace.h"
#include "src/core/z_error.h"
#include "src/host/mapi_object.h"

namespace zintra::sim {

class SimOlApplication::ExplorerList : public zintra::Explorers {
 public:
  explicit ExplorerList(Profile* profile) : profile_(profile) {}
  std::string TypeName() const override { return "Explorers"; }
  int32_t Count() const override {
    HostCall host_call = profile_->Faults().Check("Explorers.Count", profile_);
    return static_cast<int32_t>(list.size());
  }
  std::shared_ptr<Explorer> Item(int32_t index) override {
    HostCall host_call = profile_->Faults().Check("Explorers.Item", profile_);
    return list[CheckIndex(index, list.size())];
  }
  std::vector<std::shared_ptr<SimOlExplorer>> list;

 private:
  Profile* profile_;
};

class SimOlApplication::InspectorList : public zintra::Inspectors {
 public:
  explicit InspectorList(Profile* profile) : profile_(profile) {}
  std::string TypeName() const override { return "Inspectors"; }
  int32_t Count() const override {
    HostCall host_call = profile_->Faults().Check("Inspectors.Count", profile_);
    return static_cast<int32_t>(list.size());
  }
  std::shared_ptr<Inspector> Item(int32_t index) override {
    HostCall host_call = profile_->Faults().Check("Inspectors.Item", profile_);
    return list[CheckIndex(index, list.size())];
  }
  std::vector<std::shared_ptr<SimOlInspector>> list;

 private:
  Profile* profile_;
};

std::shared_ptr<AutomationObject> SimPropertyPages::Item(int32_t index) {
  return pages_[CheckIndex(index, pages_.size())];
}

void SimPropertyPages::Add(const std::shared_ptr<AutomationObject>& page,
                           const std::string& title) {
  if (!page) throw ZError(kErrObjectNotSet, "Object variable or With block variable not set");
  pages_.push_back(page);
  titles_.push_back(title);
}

SimOlApplication::SimOlApplication(Profile* profile)
    : profile_(profile),
      explorers_(std::make_shared<ExplorerList>(profile)),
      inspectors_(std::make_shared<InspectorList>(profile)) {
  profile_->SetInspectorOpener([this](const std::shared_ptr<Item>& item, bool /*modal*/) {
    return std::static_pointer_cast<Inspector>(OpenInspector(item));
  });
}

SimOlApplication::~SimOlApplication() { profile_->SetInspectorOpener(nullptr); }

std::shared_ptr<zintra::Explorers> SimOlApplication::Explorers() {
  HostCall host_call = Hit("Application.Explorers");
  return explorers_;
}

std::shared_ptr<zintra::Inspectors> SimOlApplication::Inspectors() {
  HostCall host_call = Hit("Application.Inspectors");
  return inspectors_;
}

std::string SimOlApplication::Version() const {
  HostCall host_call = Hit("Application.Version");
  return profile_->Version();
}

std::string SimOlApplication::ProductCode() const {
  HostCall host_call = Hit("Application.ProductCode");
  return "{90110409-6000-11D3-8CFE-0150048383C9}";
}

std::shared_ptr<Namespace> SimOlApplication::Session() {
  HostCall host_call = Hit("Application.Session");
  return MakeNamespace(profile_);
}

std::shared_ptr<Explorer> SimOlApplication::ActiveExplorer() {
  HostCall host_call = Hit("Application.ActiveExplorer");
  for (const auto& e : explorers_->list) {
    if (e.get() == active_) return e;
  }
  return explorers_->list.empty() ? nullptr : explorers_->list.front();
}

std::shared_ptr<Inspector> SimOlApplication::ActiveInspector() {
  HostCall host_call = Hit("Application.ActiveInspector");
  for (const auto& i : inspectors_->list) {
    if (i.get() == active_) return i;
  }
  return nullptr;
}

std::shared_ptr<Item> SimOlApplication::CreateItem(int32_t item_type) {
  HostCall host_call = Hit("Application.CreateItem");
  ItemClass item_class = ItemClassForType(item_type);
  auto folder = profile_->DefaultFolder(DefaultFolderForType(item_type));
  if (!folder)
    throw ZError(kMapiNotFound, "The default folder for this kind of item does not exist");
  return MakeItem(profile_, profile_->NewMessage(item_class, folder));
}

std::shared_ptr<SimOlExplorer> SimOlApplication::OpenExplorer(
    const std::shared_ptr<FolderRecord>& folder) {
  auto explorer = std::make_shared<SimOlExplorer>(this, profile_, folder);
  explorers_->list.push_back(explorer);
  explorers_->NewExplorer.Raise(std::shared_ptr<Explorer>(explorer));
  WindowActivated(explorer.get());
  return explorer;
}

std::shared_ptr<SimOlInspector> SimOlApplication::OpenInspector(const std::shared_ptr<Item>& item) {
  auto record = RecordOf(item);
  if (!record) throw ZError(kMapiInvalidParameter, "Not an item of this profile");
  for (const auto& open : inspectors_->list) {
    if (open->ShownItem()->Record() == record) {
      WindowActivated(open.get());
      return open;
    }
  }
  auto shown = std::dynamic_pointer_cast<SimItem>(item);
  if (!shown) shown = MakeItem(profile_, record);
  auto inspector = std::make_shared<SimOlInspector>(this, profile_, shown, NextHwnd());
  inspectors_->list.push_back(inspector);
  inspectors_->NewInspector.Raise(std::shared_ptr<Inspector>(inspector));
  WindowActivated(inspector.get());
  return inspector;
}

bool SimOlApplication::Send(const std::shared_ptr<Item>& item) {
  auto record = RecordOf(item);
  if (!record) throw ZError(kMapiInvalidParameter, "Not an item of this profile");
  bool cancel = false;
  ItemSend.Raise(item, cancel);
  if (cancel) return false;
  record->props.Set(kPrClientSubmitTime, Value::Date(profile_->Now()));
  auto sent = profile_->DefaultFolder(kOlFolderSentMail);
  if (!sent) throw ZError(kMapiNotFound, "There is no Sent Items folder");
  if (record->stored) {
    profile_->MoveMessage(record, sent);
  } else {
    record->folder = sent;
    profile_->SaveMessage(record);
  }
  return true;
}

void SimOlApplication::Deliver(const std::shared_ptr<Item>& item) {
  auto record = RecordOf(item);
  if (!record) throw ZError(kMapiInvalidParameter, "Not an item of this profile");
  auto inbox = profile_->DefaultFolder(kOlFolderInbox);
  if (!inbox) throw ZError(kMapiNotFound, "There is no Inbox");
  if (record->props.Get(kPrMessageDeliveryTime) == nullptr) {
    record->props.Set(kPrMessageDeliveryTime, Value::Date(profile_->Now()));
  }
  if (record->stored) {
    record = profile_->MoveMessage(record, inbox);
  } else {
    record->folder = inbox;
    profile_->SaveMessage(record);
  }
  NewMail.Raise();
  profile_->new_mail.Raise(record);
}

std::shared_ptr<SimPropertyPages> SimOlApplication::ShowOptions() {
  auto pages = std::make_shared<SimPropertyPages>();
  OptionsPagesAdd.Raise(std::shared_ptr<PropertyPages>(pages));
  return pages;
}

std::shared_ptr<SimPropertyPages> SimOlApplication::ShowFolderProperties(
    const std::shared_ptr<Folder>& folder) {
  auto pages = std::make_shared<SimPropertyPages>();
  MakeNamespace(profile_)->OptionsPagesAdd.Raise(std::shared_ptr<PropertyPages>(pages), folder);
  return pages;
}

void SimOlApplication::QuitOutlook() {
  while (!inspectors_->list.empty()) inspectors_->list.back()->Close(1);
  while (!explorers_->list.empty()) explorers_->list.back()->Close(1);
  Quit.Raise();
}

void SimOlApplication::WindowActivated(AutomationObject* window) {
  if (active_ == window) return;
  auto raise = [this](AutomationObject* w, bool activate) {
    for (const auto& e : explorers_->list) {
      if (e.get() == w) activate ? e->ActivateEvent.Raise() : e->Deactivate.Raise();
    }
    for (const auto& i : inspectors_->list) {
      if (i.get() == w) activate ? i->ActivateEvent.Raise() : i->Deactivate.Raise();
    }
  };
  AutomationObject* previous = active_;
  active_ = window;
  if (previous != nullptr) raise(previous, false);
  raise(window, true);
}

void SimOlApplication::WindowClosed(AutomationObject* window) {
  auto& e = explorers_->list;
  e.erase(std::remove_if(e.begin(), e.end(), [window](const auto& x) { return x.get() == window; }),
          e.end());
  auto& i = inspectors_->list;
  i.erase(std::remove_if(i.begin(), i.end(), [window](const auto& x) { return x.get() == window; }),
          i.end());
  if (active_ == window) active_ = nullptr;
  WindowRemoved.Raise();
}

std::vector<std::shared_ptr<SimOlExplorer>> SimOlApplication::OpenExplorers() const {
  return explorers_->list;
}

std::vector<std::shared_ptr<SimOlInspector>> SimOlApplication::OpenInspectors() const {
  return inspectors_->list;
}

void SimOlApplication::ExecuteCommand(int32_t id, const std::shared_ptr<AutomationObject>& window) {
  executed_.push_back(id);
  // The contact the command acts on: the explorer's first selected item or the
  // inspector's item, when it is a contact.
  std::shared_ptr<MessageRecord> contact;
  if (auto explorer = std::dynamic_pointer_cast<SimOlExplorer>(window)) {
    auto selection = explorer->Selection();
    if (selection->Count() > 0) contact = RecordOf(selection->Item(1));
  } else if (auto inspector = std::dynamic_pointer_cast<SimOlInspector>(window)) {
    contact = inspector->ShownItem()->Record();
  }
  if (contact && contact->item_class != ItemClass::kContact) contact = nullptr;
  if (id == kCmdNewMessageToContact || id == kCmdNewAppointmentWithContact) {
    auto item = CreateItem(id == kCmdNewMessageToContact ? kOlMailItem : kOlAppointmentItem);
    if (contact) {
      std::string address = MessageProps::NamedText(*contact, named::Email(1));
      if (!address.empty()) item->Recipients()->Add(address);
      item->Links()->Add(MakeItem(profile_, contact));
    }
    OpenInspector(item);
  }
}

}  // namespace zintra::sim
