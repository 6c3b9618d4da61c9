// The collections an item carries — user properties, links, recipients, attachments —
// over their automation objects, one member each.
#pragma once

#include "src/host/mapi_address.h"
#include "src/host/outlook_item.h"
#include "src/host/outlook_item_parts.h"
#include "win32/outlook/com_adapter.h"

namespace zintra::win32 {

class ComUserProperty final : public UserProperty, public ComAdapter {
 public:
  explicit ComUserProperty(const ComPtr<IDispatch>& o)
      : ComAdapter(DispatchClient(o, "UserProperty")) {}
  std::string TypeName() const override { return "UserProperty"; }
  std::string Name() const override { return Text("Name"); }
  int32_t Type() const override { return Long("Type"); }
  Value GetValue() const override { return Read("Value"); }
  void SetValue(const Value& value) override { Write("Value", value); }
};

class ComUserProperties final : public UserProperties, public ComAdapter {
 public:
  explicit ComUserProperties(const ComPtr<IDispatch>& o)
      : ComAdapter(DispatchClient(o, "UserProperties")) {}
  std::string TypeName() const override { return "UserProperties"; }
  int32_t Count() const override { return Long("Count"); }
  std::shared_ptr<UserProperty> Item(int32_t index) override;
  std::shared_ptr<UserProperty> Find(std::string_view name) override;
  std::shared_ptr<UserProperty> Add(std::string_view name, int32_t type,
                                    bool add_to_folder_fields) override;
  void Remove(int32_t index) override { client_.Call("Remove", {Arg(Value(index))}); }
};

class ComLink final : public Link, public ComAdapter {
 public:
  explicit ComLink(const ComPtr<IDispatch>& o) : ComAdapter(DispatchClient(o, "Link")) {}
  std::string TypeName() const override { return "Link"; }
  std::string Name() const override { return Text("Name"); }
  std::shared_ptr<zintra::Item> Item() override;
};

class ComLinks final : public Links, public ComAdapter {
 public:
  explicit ComLinks(const ComPtr<IDispatch>& o) : ComAdapter(DispatchClient(o, "Links")) {}
  std::string TypeName() const override { return "Links"; }
  int32_t Count() const override { return Long("Count"); }
  std::shared_ptr<zintra::Link> Item(int32_t index) override;
  std::shared_ptr<zintra::Link> Add(const std::shared_ptr<zintra::Item>& item) override;
  void Remove(int32_t index) override { client_.Call("Remove", {Arg(Value(index))}); }
};

class ComRecipient final : public Recipient, public ComAdapter {
 public:
  explicit ComRecipient(const ComPtr<IDispatch>& o) : ComAdapter(DispatchClient(o, "Recipient")) {}
  std::string TypeName() const override { return "Recipient"; }
  std::string Name() const override { return Text("Name"); }
  std::string Address() const override { return Text("Address"); }
  int32_t Type() const override { return Long("Type"); }
  void SetType(int32_t type) override { Write("Type", Value(type)); }
  bool Resolved() const override { return Bool("Resolved"); }
  std::shared_ptr<zintra::AddressEntry> AddressEntry() override;
};

class ComRecipients final : public Recipients, public ComAdapter {
 public:
  explicit ComRecipients(const ComPtr<IDispatch>& o)
      : ComAdapter(DispatchClient(o, "Recipients")) {}
  std::string TypeName() const override { return "Recipients"; }
  int32_t Count() const override { return Long("Count"); }
  std::shared_ptr<Recipient> Item(int32_t index) override;
  std::shared_ptr<Recipient> Add(const std::string& name) override;
  void Remove(int32_t index) override { client_.Call("Remove", {Arg(Value(index))}); }
};

class ComAttachment final : public Attachment, public ComAdapter {
 public:
  explicit ComAttachment(const ComPtr<IDispatch>& o)
      : ComAdapter(DispatchClient(o, "Attachment")) {}
  std::string TypeName() const override { return "Attachment"; }
  std::string DisplayName() const override { return Text("DisplayName"); }
  std::string FileName() const override { return Text("FileName"); }
  std::string PathName() const override { return Text("PathName"); }
  int32_t Type() const override { return Long("Type"); }
  int32_t Index() const override { return Long("Index"); }
  int32_t Size() const override { return Long("Size"); }
  void Delete() override { client_.Call("Delete"); }
};

class ComAttachments final : public Attachments, public ComAdapter {
 public:
  explicit ComAttachments(const ComPtr<IDispatch>& o)
      : ComAdapter(DispatchClient(o, "Attachments")) {}
  std::string TypeName() const override { return "Attachments"; }
  int32_t Count() const override { return Long("Count"); }
  std::shared_ptr<Attachment> Item(int32_t index) override;
  std::shared_ptr<Attachment> Add(const std::string& source, int32_t type, int32_t position,
                                  const std::string& display_name) override;
  void Remove(int32_t index) override { client_.Call("Remove", {Arg(Value(index))}); }
};

}  // namespace zintra::win32
