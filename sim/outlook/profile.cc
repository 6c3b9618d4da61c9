#include "sim/outlook/profile.h"

#include <algorithm>
#include <fstream>
#include <sstream>

#include "sim/outlook/sorted_index.h"
#include "src/core/date.h"
#include "src/core/text.h"
#include "src/core/z_error.h"
#include "src/host/mapi_object.h"

namespace zintra::sim {

namespace {

void RemoveFrom(std::vector<std::shared_ptr<MessageRecord>>& list, const MessageRecord* m) {
  // Newest items are removed most often (copies, moves of fresh items): search from the end.
  for (auto it = list.rbegin(); it != list.rend(); ++it) {
    if (it->get() == m) {
      list.erase(std::next(it).base());
      return;
    }
  }
}

}  // namespace

const char* DefaultMessageClass(ItemClass item_class) {
  switch (item_class) {
    case ItemClass::kAppointment:
      return "IPM.Appointment";
    case ItemClass::kContact:
      return "IPM.Contact";
    case ItemClass::kDocument:
      return "IPM.Document";
    case ItemClass::kJournal:
      return "IPM.Activity";
    case ItemClass::kMail:
      return "IPM.Note";
    case ItemClass::kNote:
      return "IPM.StickyNote";
    case ItemClass::kPost:
      return "IPM.Post";
    case ItemClass::kReport:
      return "REPORT.IPM.Note.NDR";
    case ItemClass::kRemote:
      return "IPM.Remote";
    case ItemClass::kTask:
      return "IPM.Task";
    case ItemClass::kTaskRequest:
      return "IPM.TaskRequest";
    case ItemClass::kTaskRequestUpdate:
      return "IPM.TaskRequest.Update";
    case ItemClass::kTaskRequestAccept:
      return "IPM.TaskRequest.Accept";
    case ItemClass::kTaskRequestDecline:
      return "IPM.TaskRequest.Decline";
    case ItemClass::kMeeting:
      return "IPM.Schedule.Meeting.Request";
    case ItemClass::kDistList:
      return "IPM.DistList";
    case ItemClass::kSharing:
      return "IPM.Sharing";
  }
  return "IPM";
}

ItemClass ItemClassForType(int32_t item_type) {
  switch (item_type) {
    case kOlMailItem:
      return ItemClass::kMail;
    case kOlAppointmentItem:
      return ItemClass::kAppointment;
    case kOlContactItem:
      return ItemClass::kContact;
    case kOlTaskItem:
      return ItemClass::kTask;
    case kOlJournalItem:
      return ItemClass::kJournal;
    case kOlNoteItem:
      return ItemClass::kNote;
    case kOlPostItem:
      return ItemClass::kPost;
    case kOlDistributionListItem:
      return ItemClass::kDistList;
    default:
      throw ZError(kErrInvalidCall, "Invalid item type");
  }
}

int32_t DefaultFolderForType(int32_t item_type) {
  switch (item_type) {
    case kOlMailItem:
      return kOlFolderDrafts;
    case kOlAppointmentItem:
      return kOlFolderCalendar;
    case kOlContactItem:
    case kOlDistributionListItem:
      return kOlFolderContacts;
    case kOlTaskItem:
      return kOlFolderTasks;
    case kOlJournalItem:
      return kOlFolderJournal;
    case kOlNoteItem:
      return kOlFolderNotes;
    case kOlPostItem:
      return kOlFolderInbox;
    default:
      throw ZError(kErrInvalidCall, "Invalid item type");
  }
}

Profile::Profile(Clock* clock) : clock_(clock), virtual_now_(MakeDate(2026, 1, 5, 9, 0, 0)) {}

double Profile::Now() {
  if (clock_ != nullptr) return clock_->Now();
  double now = virtual_now_;
  virtual_now_ = DateAdd("s", 1, virtual_now_);
  return now;
}

void Profile::SetCurrentUser(Person person) {
  if (FindPerson(person.smtp) == nullptr) AddPerson(person);
  current_user_ = std::move(person);
}

void Profile::AddPerson(Person person) {
  size_t index = people_.size();
  for (const std::string* key : {&person.smtp, &person.ex_dn, &person.name}) {
    if (!key->empty()) people_by_address_.emplace(text::LCase(*key), index);
  }
  people_.push_back(std::move(person));
}

const Person* Profile::FindPerson(const std::string& name_or_address) const {
  auto it = people_by_address_.find(text::LCase(name_or_address));
  return it == people_by_address_.end() ? nullptr : &people_[it->second];
}

StoreRecord& Profile::AddStore(const std::string& name, bool is_public, bool is_default) {
  auto store = std::make_unique<StoreRecord>();
  store->index = static_cast<int>(stores_.size()) + 1;
  store->name = name;
  store->is_public = is_public;
  store->is_default = is_default || stores_.empty();
  store->uid.resize(16);
  for (int i = 0; i < 16; ++i) {
    store->uid[i] = static_cast<uint8_t>((store->index * 37 + i * 11 + 0x5A) & 0xFF);
  }
  if (store->is_default) {
    for (auto& other : stores_) other->is_default = false;
  }
  StoreRecord& ref = *store;
  stores_.push_back(std::move(store));
  ref.root = AddFolder(nullptr, is_public ? "Public Folders" : name, kOlMailItem);
  ref.root->store = &ref;
  return ref;
}

StoreRecord* Profile::DefaultStore() const {
  for (const auto& store : stores_) {
    if (store->is_default) return store.get();
  }
  return nullptr;
}

std::shared_ptr<FolderRecord> Profile::AddFolder(const std::shared_ptr<FolderRecord>& parent,
                                                 const std::string& name,
                                                 int32_t default_item_type) {
  auto folder = std::make_shared<FolderRecord>();
  folder->name = name;
  folder->default_item_type = default_item_type;
  // A top folder is created by AddStore before its store pointer is set.
  folder->store = parent ? parent->store : stores_.back().get();
  folder->number = folder->store->next_number++;
  folder->parent = parent;
  Bytes search_key = folder->store->uid;
  for (int shift = 24; shift >= 0; shift -= 8) {
    search_key.push_back(static_cast<uint8_t>(folder->number >> shift));
  }
  folder->props.Set(kPrSearchKey, Value(search_key));
  if (parent) {
    CheckAlive(*parent);
    for (const auto& child : parent->children) {
      if (text::EqualsNoCase(child->name, name)) {
        throw ZError(kMapiCallFailed, "A folder with this name already exists");
      }
    }
    parent->children.push_back(folder);
  }
  folders_[Key(folder->store->index, folder->number)] = folder;
  return folder;
}

void Profile::SetDefaultFolder(int32_t folder_type, const std::shared_ptr<FolderRecord>& folder) {
  default_folders_[folder_type] = folder;
}

std::shared_ptr<FolderRecord> Profile::DefaultFolder(int32_t folder_type) const {
  auto it = default_folders_.find(folder_type);
  if (it == default_folders_.end()) return nullptr;
  auto folder = it->second.lock();
  return folder && !folder->deleted ? folder : nullptr;
}

void Profile::DeleteFolder(const std::shared_ptr<FolderRecord>& folder) {
  CheckAlive(*folder);
  auto parent = folder->parent.lock();
  if (!parent) throw ZError(kMapiNoAccess, "The top folder of a store cannot be deleted");
  std::vector<std::shared_ptr<FolderRecord>> doomed{folder};
  for (size_t i = 0; i < doomed.size(); ++i) {
    doomed[i]->deleted = true;
    for (auto& m : doomed[i]->messages) m->deleted = true;
    for (auto& child : doomed[i]->children) doomed.push_back(child);
  }
  auto& siblings = parent->children;
  siblings.erase(std::remove(siblings.begin(), siblings.end(), folder), siblings.end());
}

std::shared_ptr<MessageRecord> Profile::NewMessage(ItemClass item_class,
                                                   const std::shared_ptr<FolderRecord>& home) {
  if (!home) throw ZError(kMapiNotFound, "The folder for the new item does not exist");
  CheckAlive(*home);
  auto message = std::make_shared<MessageRecord>();
  message->item_class = item_class;
  message->serial = next_serial_++;
  message->folder = home;
  message->props.Set(kPrMessageClass, Value(DefaultMessageClass(item_class)));
  message->props.Set(kPrSensitivity, Value(int32_t{kOlNormal}));
  return message;
}

void Profile::Index(const std::shared_ptr<MessageRecord>& message) {
  messages_[Key(message->store->index, message->number)] = message;
}

void Profile::SaveMessage(const std::shared_ptr<MessageRecord>& message) {
  CheckAlive(*message);
  auto folder = message->folder.lock();
  if (!folder) throw ZError(kMapiObjectDeleted, "The folder of the item has been deleted");
  CheckAlive(*folder);
  double now = Now();
  message->props.Set(kPrLastModificationTime, Value::Date(now));
  if (message->stored) {
    for (const auto& index : folder->indexes) index->Update(message);
    folder->changed.Raise(message);
    return;
  }
  if (message->props.Get(kPrCreationTime) == nullptr) {
    message->props.Set(kPrCreationTime, Value::Date(now));
  }
  message->store = folder->store;
  message->number = folder->store->next_number++;
  message->stored = true;
  folder->messages.push_back(message);
  for (const auto& index : folder->indexes) index->Insert(message);
  Index(message);
  folder->added.Raise(message);
}

std::shared_ptr<MessageRecord> Profile::Duplicate(const MessageRecord& message,
                                                  StoreRecord* to) const {
  auto copy = std::make_shared<MessageRecord>(MessageRecord{});
  copy->item_class = message.item_class;
  copy->unreadable = message.unreadable;
  copy->user_props = message.user_props;
  copy->recipients = message.recipients;
  copy->attachments = message.attachments;
  StoreRecord* from = StoreOf(message);
  for (const Property& p : message.props.All()) {
    uint16_t id = p.id;
    if (id >= 0x8000 && from != to) {
      // Named properties take the target store's id for the same name.
      const NamedPropKey* name = from->names.NameOf(id);
      if (name == nullptr) continue;
      id = *to->names.IdFor(*name, true);
    }
    copy->props.Mutable().push_back(Property{id, p.type, p.value});
  }
  return copy;
}

std::shared_ptr<MessageRecord> Profile::CopyMessage(const std::shared_ptr<MessageRecord>& message,
                                                    const std::shared_ptr<FolderRecord>& target) {
  CheckAlive(*message);
  CheckAlive(*target);
  auto copy = Duplicate(*message, target->store);
  copy->serial = next_serial_++;
  copy->folder = target;
  copy->props.Remove(PropId(kPrCreationTime));
  SaveMessage(copy);
  return copy;
}

void Profile::Unlink(const std::shared_ptr<MessageRecord>& message) {
  auto folder = message->folder.lock();
  message->deleted = true;
  if (message->stored) messages_.erase(Key(message->store->index, message->number));
  if (folder && message->stored) {
    RemoveFrom(folder->messages, message.get());
    for (const auto& index : folder->indexes) index->Erase(*message);
    folder->removed.Raise(message);
  }
}

std::shared_ptr<MessageRecord> Profile::MoveMessage(const std::shared_ptr<MessageRecord>& message,
                                                    const std::shared_ptr<FolderRecord>& target) {
  CheckAlive(*message);
  CheckAlive(*target);
  if (!message->stored) SaveMessage(message);
  auto moved = Duplicate(*message, target->store);
  moved->serial = message->serial;
  moved->folder = target;
  Unlink(message);
  SaveMessage(moved);
  return moved;
}

void Profile::DestroyMessage(const std::shared_ptr<MessageRecord>& message) {
  CheckAlive(*message);
  Unlink(message);
}

void Profile::DeleteMessage(const std::shared_ptr<MessageRecord>& message) {
  CheckAlive(*message);
  auto deleted_items = DefaultFolder(kOlFolderDeletedItems);
  auto folder = message->folder.lock();
  if (!message->stored) {
    message->deleted = true;
    return;
  }
  if (!deleted_items || folder == deleted_items || folder->store != deleted_items->store) {
    Unlink(message);
    return;
  }
  MoveMessage(message, deleted_items);
}

std::string Profile::EntryIdOf(const MessageRecord& message) const {
  if (!message.stored) return {};
  return ToHex(MakeEntryId(message.store->uid, EntryKind::kMessage, message.number));
}

std::string Profile::EntryIdOf(const FolderRecord& folder) const {
  return ToHex(MakeEntryId(folder.store->uid, EntryKind::kFolder, folder.number));
}

std::string Profile::StoreIdOf(const StoreRecord& store) const {
  return ToHex(MakeStoreId(store.uid));
}

StoreRecord* Profile::StoreByUid(const Bytes& uid) const {
  for (const auto& store : stores_) {
    if (store->uid == uid) return store.get();
  }
  return nullptr;
}

std::shared_ptr<MessageRecord> Profile::FindMessage(const std::string& entry_id,
                                                    const std::string& store_id) const {
  auto bytes = FromHex(entry_id);
  auto parsed = bytes ? ParseEntryId(*bytes) : std::nullopt;
  StoreRecord* store = parsed ? StoreByUid(parsed->store_uid) : nullptr;
  if (store != nullptr && !store_id.empty()) {
    auto sid = FromHex(store_id);
    auto suid = sid ? ParseStoreId(*sid) : std::nullopt;
    if (!suid || *suid != store->uid) store = nullptr;
  }
  if (store != nullptr && parsed->kind == EntryKind::kMessage) {
    auto it = messages_.find(Key(store->index, parsed->number));
    if (it != messages_.end()) {
      if (auto message = it->second.lock(); message && !message->deleted) return message;
    }
  }
  throw ZError(kMapiNotFound, "The message could not be found");
}

std::shared_ptr<FolderRecord> Profile::FindFolder(const std::string& entry_id,
                                                  const std::string& store_id) const {
  auto bytes = FromHex(entry_id);
  auto parsed = bytes ? ParseEntryId(*bytes) : std::nullopt;
  StoreRecord* store = parsed ? StoreByUid(parsed->store_uid) : nullptr;
  if (store != nullptr && !store_id.empty()) {
    auto sid = FromHex(store_id);
    auto suid = sid ? ParseStoreId(*sid) : std::nullopt;
    if (!suid || *suid != store->uid) store = nullptr;
  }
  if (store != nullptr && parsed->kind == EntryKind::kFolder) {
    auto it = folders_.find(Key(store->index, parsed->number));
    if (it != folders_.end()) {
      if (auto folder = it->second.lock(); folder && !folder->deleted) return folder;
    }
  }
  throw ZError(kMapiNotFound, "The folder could not be found");
}

std::shared_ptr<Inspector> Profile::OpenInspector(const std::shared_ptr<Item>& item, bool modal) {
  if (!inspector_opener_) throw ZError(kMapiNoSupport, "No window can be opened");
  return inspector_opener_(item, modal);
}

std::optional<std::string> Profile::ReadFile(const std::string& path) const {
  if (file_reader_) return file_reader_(path);
  std::ifstream in(path, std::ios::binary);
  if (!in) return std::nullopt;
  std::ostringstream data;
  data << in.rdbuf();
  return data.str();
}

StoreRecord* Profile::StoreOf(const MessageRecord& message) {
  if (message.store != nullptr) return message.store;
  auto folder = message.folder.lock();
  if (!folder) throw ZError(kMapiObjectDeleted, "The folder of the item has been deleted");
  return folder->store;
}

void Profile::CheckAlive(const MessageRecord& message) {
  if (message.deleted) throw ZError(kMapiObjectDeleted, "The item has been moved or deleted");
}

void Profile::CheckAlive(const FolderRecord& folder) {
  if (folder.deleted) throw ZError(kMapiObjectDeleted, "The folder has been deleted");
}

}  // namespace zintra::sim
