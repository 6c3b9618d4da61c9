// SimItem: an Outlook item of the simulated profile, a view over its MessageRecord.
// Members a kind lacks throw 438; a deleted item throws kMapiObjectDeleted; every
// member first asks the fault injector ("Item.<Member>", keyed by the record).
#pragma once

#include <memory>
#include <string>

#include "sim/outlook/profile.h"
#include "sim/outlook/sim_item_parts.h"
#include "src/host/outlook_item.h"

namespace zintra::sim {

class SimItem : public Item,
                public RecordView,
                public MessageHolder,
                public std::enable_shared_from_this<SimItem> {
 public:
  SimItem(Profile* profile, std::shared_ptr<MessageRecord> record);
  std::shared_ptr<MessageRecord> Message() const override { return record_; }

  const std::shared_ptr<MessageRecord>& Record() const { return record_; }

  std::string TypeName() const override;
  ItemClass Class() const override;
  std::string Subject() const override;
  void SetSubject(const std::string& subject) override;
  std::string Body() const override;
  void SetBody(const std::string& body) override;
  std::string Categories() const override;
  void SetCategories(const std::string& categories) override;
  std::string Companies() const override;
  void SetCompanies(const std::string& companies) override;
  std::string MessageClass() const override;
  void SetMessageClass(const std::string& message_class) override;
  int32_t Sensitivity() const override;
  void SetSensitivity(int32_t sensitivity) override;
  double CreationTime() const override;
  double LastModificationTime() const override;
  double SentOn() const override;
  double ReceivedTime() const override;
  std::string EntryID() const override;
  std::shared_ptr<Folder> Parent() override;
  std::string FullName() const override;
  void SetFullName(const std::string& full_name) override;
  std::string Email1Address() const override;
  void SetEmail1Address(const std::string& address) override;
  std::string Email2Address() const override;
  void SetEmail2Address(const std::string& address) override;
  std::string Email3Address() const override;
  void SetEmail3Address(const std::string& address) override;
  std::string Owner() const override;
  void SetOwner(const std::string& owner) override;
  int32_t Ownership() const override;
  std::string Type() const override;
  void SetType(const std::string& type) override;
  std::shared_ptr<zintra::UserProperties> UserProperties() override;
  std::shared_ptr<zintra::Links> Links() override;
  std::shared_ptr<zintra::Recipients> Recipients() override;
  std::shared_ptr<zintra::Attachments> Attachments() override;
  void Save() override;
  void Delete() override;
  std::shared_ptr<Item> Copy() override;
  std::shared_ptr<Item> Move(const std::shared_ptr<Folder>& folder) override;
  void Display(bool modal) override;
  void Close(int32_t save_mode) override;
  std::shared_ptr<Inspector> GetInspector() override;
  std::shared_ptr<MapiObject> MAPIOBJECT() override;

 private:
  void Need(bool has, std::string_view member) const;
  std::string EmailAddress(int index, std::string_view member) const;
  void SetEmailAddress(int index, const std::string& address, std::string_view member);
};

// Which members an item kind has.
bool KindHasRecipients(ItemClass c);
bool KindHasSentReceived(ItemClass c);
bool KindHasCompanies(ItemClass c);
bool KindHasUserProperties(ItemClass c);

std::shared_ptr<SimItem> MakeItem(Profile* profile, std::shared_ptr<MessageRecord> record);
// The record behind an object model or library message; nullptr for a foreign object.
std::shared_ptr<MessageRecord> RecordOf(const std::shared_ptr<AutomationObject>& item);
// The record behind an Outlook or library folder; nullptr for a foreign object.
std::shared_ptr<FolderRecord> FolderRecordOf(const std::shared_ptr<AutomationObject>& folder);

}  // namespace zintra::sim
