#include "sim/outlook/sim_folder.h"

#include <algorithm>

#include "sim/outlook/message_props.h"
#include "sim/outlook/sim_item.h"
#include "sim/outlook/sim_mapi_object.h"
#include "sim/outlook/sim_namespace.h"
#include "src/core/date.h"
#include "src/core/text.h"
#include "src/core/z_error.h"
#include "src/host/mapi_object.h"

namespace zintra::sim {

std::shared_ptr<SimFolder> MakeFolder(Profile* profile, std::shared_ptr<FolderRecord> record) {
  return std::make_shared<SimFolder>(profile, std::move(record));
}

// --- SimFolder ---

SimFolder::SimFolder(Profile* profile, std::shared_ptr<FolderRecord> record)
    : profile_(profile), record_(std::move(record)) {}

HostCall SimFolder::Hit(std::string_view member) const {
  HostCall call = profile_->Faults().Check(member, record_.get());
  Profile::CheckAlive(*record_);
  return call;
}

std::string SimFolder::Name() const {
  HostCall host_call = Hit("Folder.Name");
  return record_->name;
}

void SimFolder::SetName(const std::string& name) {
  HostCall host_call = Hit("Folder.SetName");
  if (name.empty()) throw ZError(kMapiInvalidParameter, "A folder name is required");
  record_->name = name;
}

std::string SimFolder::EntryID() const {
  HostCall host_call = Hit("Folder.EntryID");
  return profile_->EntryIdOf(*record_);
}

std::string SimFolder::StoreID() const {
  HostCall host_call = Hit("Folder.StoreID");
  return profile_->StoreIdOf(*record_->store);
}

int32_t SimFolder::DefaultItemType() const {
  HostCall host_call = Hit("Folder.DefaultItemType");
  return record_->default_item_type;
}

std::shared_ptr<AutomationObject> SimFolder::Parent() {
  HostCall host_call = Hit("Folder.Parent");
  if (auto parent = record_->parent.lock()) return MakeFolder(profile_, parent);
  return MakeNamespace(profile_);
}

std::shared_ptr<zintra::Folders> SimFolder::Folders() {
  HostCall host_call = Hit("Folder.Folders");
  return std::make_shared<SimFolders>(profile_, record_);
}

std::shared_ptr<zintra::Items> SimFolder::Items() {
  HostCall host_call = Hit("Folder.Items");
  return std::make_shared<SimItems>(profile_, record_);
}

std::shared_ptr<MapiObject> SimFolder::MAPIOBJECT() {
  HostCall host_call = Hit("Folder.MAPIOBJECT");
  return std::make_shared<SimMapiObject>(profile_, record_);
}

void SimFolder::Delete() {
  HostCall host_call = Hit("Folder.Delete");
  profile_->DeleteFolder(record_);
}

// --- SimFolders ---

SimFolders::SimFolders(Profile* profile, std::shared_ptr<FolderRecord> parent)
    : profile_(profile), parent_(std::move(parent)) {}

HostCall SimFolders::Hit(std::string_view member) const {
  HostCall call = profile_->Faults().Check(member, FaultKey());
  if (parent_) Profile::CheckAlive(*parent_);
  return call;
}

std::vector<std::shared_ptr<FolderRecord>> SimFolders::List() const {
  if (parent_) return parent_->children;
  std::vector<std::shared_ptr<FolderRecord>> roots;
  for (const auto& store : profile_->Stores()) roots.push_back(store->root);
  return roots;
}

int32_t SimFolders::Count() const {
  HostCall host_call = Hit("Folders.Count");
  return static_cast<int32_t>(List().size());
}

std::shared_ptr<Folder> SimFolders::Item(int32_t index) {
  HostCall host_call = Hit("Folders.Item");
  auto list = List();
  return MakeFolder(profile_, list[CheckIndex(index, list.size())]);
}

std::shared_ptr<Folder> SimFolders::Item(const std::string& name) {
  HostCall host_call = Hit("Folders.Item");
  for (const auto& folder : List()) {
    if (text::EqualsNoCase(folder->name, name)) return MakeFolder(profile_, folder);
  }
  throw ZError(kMapiNotFound, "The folder '" + name + "' could not be found");
}

std::shared_ptr<Folder> SimFolders::Add(const std::string& name, int32_t type) {
  HostCall host_call = Hit("Folders.Add");
  if (!parent_) throw ZError(kMapiNoAccess, "A store cannot be added here");
  int32_t item_type = kOlMailItem;
  switch (type) {
    case kOlFolderCalendar:
      item_type = kOlAppointmentItem;
      break;
    case kOlFolderContacts:
      item_type = kOlContactItem;
      break;
    case kOlFolderJournal:
      item_type = kOlJournalItem;
      break;
    case kOlFolderNotes:
      item_type = kOlNoteItem;
      break;
    case kOlFolderTasks:
      item_type = kOlTaskItem;
      break;
    default:
      break;
  }
  return MakeFolder(profile_, profile_->AddFolder(parent_, name, item_type));
}

// --- SimItems ---

SimItems::SimItems(Profile* profile, std::shared_ptr<FolderRecord> folder)
    : profile_(profile), folder_(std::move(folder)) {
  on_added_ = folder_->added.Connect([this](const auto& m) { OnAdded(m); });
  on_changed_ = folder_->changed.Connect([this](const auto& m) { OnChanged(m); });
  on_removed_ = folder_->removed.Connect([this](const auto& m) { OnRemoved(m); });
}

HostCall SimItems::Hit(std::string_view member) const {
  HostCall call = profile_->Faults().Check(member, folder_.get());
  Profile::CheckAlive(*folder_);
  return call;
}

void SimItems::Materialize() {
  if (sort_ && !index_) index_ = SortedIndex::Of(*folder_, sort_->tag, sort_->is_date);
}

size_t SimItems::Size() const { return index_ ? index_->Size() : folder_->messages.size(); }

const std::shared_ptr<MessageRecord>& SimItems::RecordAt(size_t index) const {
  if (!index_) return folder_->messages[index];
  return index_->At(sort_->descending ? index_->Size() - 1 - index : index);
}

std::shared_ptr<zintra::Item> SimItems::ItemAt(int64_t index) {
  if (index < 0 || static_cast<size_t>(index) >= Size()) return nullptr;
  return MakeItem(profile_, RecordAt(static_cast<size_t>(index)));
}

int32_t SimItems::Count() const {
  HostCall host_call = Hit("Items.Count");
  return static_cast<int32_t>(folder_->messages.size());
}

std::shared_ptr<zintra::Item> SimItems::Item(int32_t index) {
  HostCall host_call = Hit("Items.Item");
  Materialize();
  return MakeItem(profile_, RecordAt(CheckIndex(index, Size())));
}

void SimItems::Sort(const std::string& property, bool descending) {
  HostCall host_call = Hit("Items.Sort");
  std::string name = text::LCase(property);
  if (name.size() >= 2 && name.front() == '[' && name.back() == ']') {
    name = name.substr(1, name.size() - 2);
  }
  SortSpec desc{0, true, descending};
  if (name == "created" || name == "creationtime")
    desc.tag = kPrCreationTime;
  else if (name == "modified" || name == "lastmodificationtime")
    desc.tag = kPrLastModificationTime;
  else if (name == "received" || name == "receivedtime")
    desc.tag = kPrMessageDeliveryTime;
  else if (name == "sent" || name == "senton")
    desc.tag = kPrClientSubmitTime;
  else if (name == "subject")
    desc = SortSpec{kPrSubject, false, descending};
  else if (name == "fullname")
    desc = SortSpec{kPrDisplayName, false, descending};
  else
    throw ZError(kMapiInvalidParameter, "The property \"" + property + "\" cannot be sorted on");
  sort_ = desc;
  index_.reset();
  cursor_ = -1;
  find_pos_ = -1;
}

std::shared_ptr<zintra::Item> SimItems::GetFirst() {
  HostCall host_call = Hit("Items.GetFirst");
  Materialize();
  cursor_ = 0;
  return ItemAt(cursor_);
}

std::shared_ptr<zintra::Item> SimItems::GetNext() {
  HostCall host_call = Hit("Items.GetNext");
  Materialize();
  // The position is a plain index, as Outlook's: insertions before it repeat an item,
  // removals before it skip one.
  if (cursor_ < static_cast<int64_t>(Size())) ++cursor_;
  return ItemAt(cursor_);
}

std::shared_ptr<zintra::Item> SimItems::GetLast() {
  HostCall host_call = Hit("Items.GetLast");
  Materialize();
  cursor_ = static_cast<int64_t>(Size()) - 1;
  return ItemAt(cursor_);
}

std::shared_ptr<zintra::Item> SimItems::GetPrevious() {
  HostCall host_call = Hit("Items.GetPrevious");
  Materialize();
  if (cursor_ >= 0) --cursor_;
  return ItemAt(cursor_);
}

std::shared_ptr<zintra::Item> SimItems::Find(const std::string& filter) {
  HostCall host_call = Hit("Items.Find");
  find_ = ItemFilter::Compile(filter);
  find_pos_ = -1;
  return FindNext();
}

std::shared_ptr<zintra::Item> SimItems::FindNext() {
  HostCall host_call = Hit("Items.FindNext");
  if (!find_) throw ZError(kErrInvalidCall, "FindNext called before Find");
  Materialize();
  size_t size = Size();
  for (size_t i = static_cast<size_t>(find_pos_ + 1); i < size; ++i) {
    if (find_->Matches(*RecordAt(i))) {
      find_pos_ = static_cast<int64_t>(i);
      return MakeItem(profile_, RecordAt(i));
    }
  }
  find_pos_ = static_cast<int64_t>(size);
  return nullptr;
}

std::shared_ptr<zintra::Item> SimItems::Add(int32_t item_type) {
  HostCall host_call = Hit("Items.Add");
  return MakeItem(profile_, profile_->NewMessage(ItemClassForType(item_type), folder_));
}

void SimItems::Remove(int32_t index) {
  HostCall host_call = Hit("Items.Remove");
  Materialize();
  profile_->DeleteMessage(RecordAt(CheckIndex(index, Size())));
}

void SimItems::OnAdded(const std::shared_ptr<MessageRecord>& m) {
  std::shared_ptr<zintra::Item> item = MakeItem(profile_, m);
  // The add-in's handlers run on the add-in's time, not the host call's that stored it.
  const auto callback = profile_->Faults().Callback();
  ItemAdd.Raise(item);
}

void SimItems::OnChanged(const std::shared_ptr<MessageRecord>& m) {
  std::shared_ptr<zintra::Item> item = MakeItem(profile_, m);
  // The add-in's handlers run on the add-in's time, not the host call's that stored it.
  const auto callback = profile_->Faults().Callback();
  ItemChange.Raise(item);
}

void SimItems::OnRemoved(const std::shared_ptr<MessageRecord>& /*m*/) {
  const auto callback = profile_->Faults().Callback();
  ItemRemove.Raise();
}

}  // namespace zintra::sim
