// The MAPI library's session, folders and messages over the simulated profile (see
// src/host/mapi_session.h). A library message and the Outlook item for the same
// stored message share one record, so the two facades always agree. Fault keys: the
// record (message or folder), the Profile for the session.
#pragma once

#include <memory>
#include <string>

#include "sim/outlook/profile.h"
#include "sim/outlook/sim_item_parts.h"
#include "sim/outlook/sim_keys.h"
#include "src/host/mapi_session.h"

namespace zintra::sim {

// The sender of a message as an address entry; nullptr when it has none.
std::shared_ptr<AddressEntry> SenderOf(Profile* profile, const MessageRecord& message);

class SimRdoMessage : public RdoMessage, public RecordView, public MessageHolder {
 public:
  SimRdoMessage(Profile* profile, std::shared_ptr<MessageRecord> record)
      : RecordView(profile, std::move(record)) {}
  std::string TypeName() const override { return "RDOMail"; }
  std::shared_ptr<MessageRecord> Message() const override { return record_; }

  std::string EntryID() const override;
  std::string StoreID() const override;
  std::string MessageClass() const override;
  std::string Subject() const override;
  void SetSubject(const std::string& subject) override;
  std::string Body() const override;
  void SetBody(const std::string& body) override;
  std::shared_ptr<RdoFolder> Parent() override;
  Value Fields(int32_t prop_tag) override;
  void SetFields(int32_t prop_tag, const Value& value) override;
  std::shared_ptr<zintra::UserProperties> UserProperties() override;
  std::shared_ptr<zintra::Recipients> Recipients() override;
  std::shared_ptr<zintra::Attachments> Attachments() override;
  std::shared_ptr<AddressEntry> Sender() override;
  void Save() override;
  void Delete() override;
  std::shared_ptr<RdoMessage> CopyTo(const std::shared_ptr<AutomationObject>& folder) override;
  std::shared_ptr<RdoMessage> Move(const std::shared_ptr<AutomationObject>& folder) override;
  std::shared_ptr<MapiObject> MAPIOBJECT() override;
};

class SimRdoFolder : public RdoFolder, public SimKeyed, public FolderHolder {
 public:
  // class_name: "TovuMAPIFolder" (kind 2) or "TovuRDOFolder" (kind 17).
  SimRdoFolder(Profile* profile, std::string class_name,
               std::shared_ptr<FolderRecord> folder = nullptr)
      : profile_(profile), class_name_(std::move(class_name)), folder_(std::move(folder)) {}
  std::string TypeName() const override { return class_name_; }
  const void* FaultKey() const override {
    return folder_ ? static_cast<const void*>(folder_.get()) : profile_;
  }
  std::shared_ptr<FolderRecord> FolderRec() const override { return folder_; }

  void SetMAPIOBJECT(const std::shared_ptr<MapiObject>& folder) override;
  std::shared_ptr<MapiObject> MAPIOBJECT() override;
  std::string Name() const override;
  std::string EntryID() const override;
  std::string StoreID() const override;
  int32_t DefaultItemType() const override;
  std::shared_ptr<RdoFolder> Parent() override;
  int32_t ItemCount() override;
  Value Fields(int32_t prop_tag) override;
  std::shared_ptr<RdoMessage> AddItem(const std::string& message_class) override;

 private:
  [[nodiscard]] HostCall Hit(std::string_view member) const;
  Profile* profile_;
  std::string class_name_;
  std::shared_ptr<FolderRecord> folder_;
};

class SimRdoSession : public RdoSession, public SimKeyed {
 public:
  explicit SimRdoSession(Profile* profile) : profile_(profile) {}
  std::string TypeName() const override { return "TovuRDOSession"; }
  const void* FaultKey() const override { return profile_; }

  void SetMAPIOBJECT(const std::shared_ptr<MapiObject>& session) override;
  std::shared_ptr<MapiObject> MAPIOBJECT() override;
  bool LoggedOn() const override { return logged_on_; }
  std::shared_ptr<AddressEntry> CurrentUser() override;
  std::shared_ptr<RdoMessage> GetMessageFromID(const std::string& entry_id,
                                               const std::string& store_id) override;
  std::shared_ptr<RdoFolder> GetFolderFromID(const std::string& entry_id,
                                             const std::string& store_id) override;
  std::shared_ptr<RdoFolder> GetDefaultFolder(int32_t folder_type) override;
  std::shared_ptr<zintra::AddressLists> AddressLists() override;

 private:
  [[nodiscard]] HostCall Hit(std::string_view member) const;
  Profile* profile_;
  std::shared_ptr<MapiObject> session_;
  bool logged_on_ = false;
};

// Library kind 1: the global address list of the profile's directory.
class SimAddressLists : public AddressLists {
 public:
  explicit SimAddressLists(Profile* profile) : profile_(profile) {}
  std::string TypeName() const override { return "TovuAddressLists"; }
  int32_t Count() const override;
  std::shared_ptr<AddressList> Item(int32_t index) override;

 private:
  Profile* profile_;
};

}  // namespace zintra::sim
