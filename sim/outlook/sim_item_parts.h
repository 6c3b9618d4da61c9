// The collections of a simulated item: user properties, links, recipients and
// attachments, as views over the item's MessageRecord. Writes go to the record at
// once (the item's Save raises the event that tells the folder).
#pragma once

#include <memory>
#include <string>

#include "sim/outlook/profile.h"
#include "sim/outlook/sim_keys.h"
#include "src/host/outlook_item_parts.h"

namespace zintra::sim {

// Base of the views: the item's record and the fault check of each member.
class RecordView : public SimKeyed {
 public:
  RecordView(Profile* profile, std::shared_ptr<MessageRecord> record)
      : profile_(profile), record_(std::move(record)) {}
  const void* FaultKey() const override { return record_.get(); }

 protected:
  // Fault rules first, then a deleted item fails as Outlook's would.
  [[nodiscard]] HostCall Hit(std::string_view member) const {
    HostCall call = profile_->Faults().Check(member, record_.get());
    Profile::CheckAlive(*record_);
    return call;
  }
  Profile* profile_;
  std::shared_ptr<MessageRecord> record_;
};

class SimUserProperty : public UserProperty, public RecordView {
 public:
  SimUserProperty(Profile* profile, std::shared_ptr<MessageRecord> record, std::string name);
  std::string TypeName() const override { return "UserProperty"; }
  std::string Name() const override;
  int32_t Type() const override;
  Value GetValue() const override;
  void SetValue(const Value& value) override;

 private:
  const UserPropDef& Def() const;
  std::string name_;
};

class SimUserProperties : public UserProperties, public RecordView {
 public:
  using RecordView::RecordView;
  std::string TypeName() const override { return "UserProperties"; }
  int32_t Count() const override;
  std::shared_ptr<UserProperty> Item(int32_t index) override;
  std::shared_ptr<UserProperty> Find(std::string_view name) override;
  std::shared_ptr<UserProperty> Add(std::string_view name, int32_t type,
                                    bool add_to_folder_fields) override;
  void Remove(int32_t index) override;
};

class SimLink : public Link, public RecordView {
 public:
  SimLink(Profile* profile, std::shared_ptr<MessageRecord> record, std::string name,
          std::string target);
  std::string TypeName() const override { return "Link"; }
  std::string Name() const override;
  std::shared_ptr<zintra::Item> Item() override;

 private:
  std::string name_;
  std::string target_;  // store id + ":" + entry id
};

class SimLinks : public Links, public RecordView {
 public:
  using RecordView::RecordView;
  std::string TypeName() const override { return "Links"; }
  int32_t Count() const override;
  std::shared_ptr<zintra::Link> Item(int32_t index) override;
  std::shared_ptr<zintra::Link> Add(const std::shared_ptr<zintra::Item>& item) override;
  void Remove(int32_t index) override;

 private:
  Value::StringArray Ids() const;
  Value::StringArray Names() const;
  void Store(const Value::StringArray& ids, const Value::StringArray& names);
};

class SimRecipient : public Recipient, public RecordView {
 public:
  SimRecipient(Profile* profile, std::shared_ptr<MessageRecord> record, size_t index);
  std::string TypeName() const override { return "Recipient"; }
  std::string Name() const override;
  std::string Address() const override;
  int32_t Type() const override;
  void SetType(int32_t type) override;
  bool Resolved() const override;
  std::shared_ptr<zintra::AddressEntry> AddressEntry() override;

 private:
  RecipientRecord& Rec() const;
  size_t index_;
};

class SimRecipients : public Recipients, public RecordView {
 public:
  using RecordView::RecordView;
  std::string TypeName() const override { return "Recipients"; }
  int32_t Count() const override;
  std::shared_ptr<Recipient> Item(int32_t index) override;
  std::shared_ptr<Recipient> Add(const std::string& name) override;
  void Remove(int32_t index) override;

  // A recipient record for a name or address, resolved against the directory.
  static RecipientRecord Resolve(const Profile& profile, const std::string& name);
};

class SimAttachment : public Attachment, public RecordView {
 public:
  SimAttachment(Profile* profile, std::shared_ptr<MessageRecord> record, size_t index);
  std::string TypeName() const override { return "Attachment"; }
  std::string DisplayName() const override;
  std::string FileName() const override;
  std::string PathName() const override;
  int32_t Type() const override;
  int32_t Index() const override;
  int32_t Size() const override;
  void Delete() override;

 private:
  AttachmentRecord& Rec() const;
  size_t index_;
};

class SimAttachments : public Attachments, public RecordView {
 public:
  using RecordView::RecordView;
  std::string TypeName() const override { return "Attachments"; }
  int32_t Count() const override;
  std::shared_ptr<Attachment> Item(int32_t index) override;
  std::shared_ptr<Attachment> Add(const std::string& source, int32_t type, int32_t position,
                                  const std::string& display_name) override;
  void Remove(int32_t index) override;
};

// 1-based index check shared by the collections: throws 5 when out of range.
size_t CheckIndex(int32_t index, size_t count);

}  // namespace zintra::sim
