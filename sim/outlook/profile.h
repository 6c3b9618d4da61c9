// Profile: the simulated Outlook profile and its store engine. It owns the stores
// (each with its folders, messages and named-property mapping), the address book, the
// current user, Outlook's version and the fault injector. Every change of stored data
// goes through it, so that the item events are raised the way Outlook raises them:
// synchronously, inside the Save, Copy, Move or Delete that causes them, on the
// folder concerned (FolderRecord::added/changed/removed, forwarded by every live
// Items collection of that folder).
//
// Time: creation and modification times come from the Clock given, or, without one,
// from an internal clock that starts on 5 January 2026 09:00 and advances one second
// per reading, so that items stored one after another have distinct, ordered times.
//
// Single-threaded (Outlook's thread). Operations on deleted records throw
// kMapiObjectDeleted; unknown identifiers kMapiNotFound.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "sim/outlook/entry_id.h"
#include "sim/outlook/fault_injector.h"
#include "sim/outlook/sim_records.h"
#include "src/host/automation_object.h"
#include "src/host/clock.h"
#include "src/host/outlook_constants.h"

namespace zintra {
class Inspector;
class Item;
}  // namespace zintra

namespace zintra::sim {

// A person of the organisation's directory (Exchange) or an outside SMTP contact.
struct Person {
  std::string name;
  std::string smtp;  // "jane.doe@contoso.com"
  std::string
      ex_dn;  // "/O=CONTOSO/OU=FIRST ADMINISTRATIVE GROUP/CN=RECIPIENTS/CN=JDOE"; "" for SMTP
  bool IsExchange() const { return !ex_dn.empty(); }
};

class Profile {
 public:
  explicit Profile(Clock* clock = nullptr);
  Profile(const Profile&) = delete;
  Profile& operator=(const Profile&) = delete;

  FaultInjector& Faults() { return faults_; }
  double Now();

  // Outlook's version text ("11.0.0.8312") and the logged-on user.
  const std::string& Version() const { return version_; }
  void SetVersion(std::string version) { version_ = std::move(version); }
  const Person& CurrentUser() const { return current_user_; }
  void SetCurrentUser(Person person);

  // Address book: the directory the Exchange addresses resolve in.
  void AddPerson(Person person);
  // By SMTP address, distinguished name or display name, without regard to case.
  const Person* FindPerson(const std::string& name_or_address) const;
  const std::vector<Person>& People() const { return people_; }

  // Stores and folders.
  StoreRecord& AddStore(const std::string& name, bool is_public = false, bool is_default = false);
  const std::vector<std::unique_ptr<StoreRecord>>& Stores() const { return stores_; }
  StoreRecord* DefaultStore() const;
  std::shared_ptr<FolderRecord> AddFolder(const std::shared_ptr<FolderRecord>& parent,
                                          const std::string& name, int32_t default_item_type);
  void SetDefaultFolder(int32_t folder_type, const std::shared_ptr<FolderRecord>& folder);
  // nullptr when the profile has none of that number.
  std::shared_ptr<FolderRecord> DefaultFolder(int32_t folder_type) const;
  void DeleteFolder(const std::shared_ptr<FolderRecord>& folder);

  // Messages. NewMessage makes an unsaved message whose first Save stores it in `home`.
  std::shared_ptr<MessageRecord> NewMessage(ItemClass item_class,
                                            const std::shared_ptr<FolderRecord>& home);
  // Stores a new message (ItemAdd) or rewrites a stored one (ItemChange).
  void SaveMessage(const std::shared_ptr<MessageRecord>& message);
  // A stored duplicate in `target` (ItemAdd there); named properties are mapped into
  // the target's store.
  std::shared_ptr<MessageRecord> CopyMessage(const std::shared_ptr<MessageRecord>& message,
                                             const std::shared_ptr<FolderRecord>& target);
  // ItemRemove in the source, ItemAdd in the target; the moved message has a new
  // entry identifier (the old record is marked deleted).
  std::shared_ptr<MessageRecord> MoveMessage(const std::shared_ptr<MessageRecord>& message,
                                             const std::shared_ptr<FolderRecord>& target);
  // Removes for good (ItemRemove).
  void DestroyMessage(const std::shared_ptr<MessageRecord>& message);
  // Outlook's Delete: to Deleted Items, or destroyed when already there.
  void DeleteMessage(const std::shared_ptr<MessageRecord>& message);

  // Identifiers.
  std::string EntryIdOf(const MessageRecord& message) const;
  std::string EntryIdOf(const FolderRecord& folder) const;
  std::string StoreIdOf(const StoreRecord& store) const;
  // store_id "" searches every store. Throws kMapiNotFound.
  std::shared_ptr<MessageRecord> FindMessage(const std::string& entry_id,
                                             const std::string& store_id = {}) const;
  std::shared_ptr<FolderRecord> FindFolder(const std::string& entry_id,
                                           const std::string& store_id = {}) const;

  // Windows: the application registers how an item's inspector is opened
  // (Item::Display, Item::GetInspector); without one those throw kMapiNoSupport.
  using InspectorOpener =
      std::function<std::shared_ptr<Inspector>(const std::shared_ptr<Item>&, bool modal)>;
  void SetInspectorOpener(InspectorOpener opener) { inspector_opener_ = std::move(opener); }
  std::shared_ptr<Inspector> OpenInspector(const std::shared_ptr<Item>& item, bool modal);

  // Files attached by path are read through this (default: the real disk); nullopt
  // means the file does not exist.
  using FileReader = std::function<std::optional<std::string>(const std::string& path)>;
  void SetFileReader(FileReader reader) { file_reader_ = std::move(reader); }
  std::optional<std::string> ReadFile(const std::string& path) const;

  // The profile's one Namespace object (created by MakeNamespace on first use).
  std::shared_ptr<AutomationObject>& NamespaceSlot() { return namespace_; }

  // Raised when mail is delivered to a store (the library's NewMail listens).
  Event<const std::shared_ptr<MessageRecord>&> new_mail;

  // The store a message belongs to (an unsaved one: its home folder's).
  static StoreRecord* StoreOf(const MessageRecord& message);
  // A message or folder that is gone throws kMapiObjectDeleted.
  static void CheckAlive(const MessageRecord& message);
  static void CheckAlive(const FolderRecord& folder);

 private:
  void Index(const std::shared_ptr<MessageRecord>& message);
  void Unlink(const std::shared_ptr<MessageRecord>& message);
  std::shared_ptr<MessageRecord> Duplicate(const MessageRecord& message, StoreRecord* to) const;
  static uint64_t Key(int store_index, uint32_t number) {
    return (static_cast<uint64_t>(store_index) << 32) | number;
  }
  StoreRecord* StoreByUid(const Bytes& uid) const;

  Clock* clock_;
  double virtual_now_;
  FaultInjector faults_;
  std::string version_ = "11.0.0.8312";
  Person current_user_;
  std::vector<Person> people_;
  std::unordered_map<std::string, size_t> people_by_address_;
  std::vector<std::unique_ptr<StoreRecord>> stores_;
  std::unordered_map<int32_t, std::weak_ptr<FolderRecord>> default_folders_;
  std::unordered_map<uint64_t, std::weak_ptr<MessageRecord>> messages_;
  std::unordered_map<uint64_t, std::weak_ptr<FolderRecord>> folders_;
  uint64_t next_serial_ = 1;
  InspectorOpener inspector_opener_;
  std::shared_ptr<AutomationObject> namespace_;
  FileReader file_reader_;
};

// The message class Outlook gives a new item of the kind ("IPM.Note", "IPM.Contact").
const char* DefaultMessageClass(ItemClass item_class);
// The item kind CreateItem / Items.Add make for an OlItemType; 438 otherwise.
ItemClass ItemClassForType(int32_t item_type);
// The default folder (OlDefaultFolders) a new item of the kind is saved into.
int32_t DefaultFolderForType(int32_t item_type);

}  // namespace zintra::sim
