// ComItem: an Outlook item of any kind over its automation object. The kind comes from
// the item's Class, read once; every member maps to the member of the same name, and a
// member the kind lacks comes back from the server as 438. The Close event is advised
// only while it has handlers, so reading items costs no connection.
#pragma once

#include "src/host/outlook_item.h"
#include "win32/outlook/com_adapter.h"
#include "win32/outlook/lazy_advise.h"

namespace zintra::win32 {

// "MailItem", "ContactItem", ... for a kind; "Object" for an unknown number.
std::string ItemTypeName(ItemClass item_class);

class ComItem final : public Item, public ComAdapter {
 public:
  explicit ComItem(const ComPtr<IDispatch>& object);

  // The kind's name; for a kind without one, the object's own type name.
  std::string TypeName() const override;
  ItemClass Class() const override { return class_; }

  std::string Subject() const override { return Text("Subject"); }
  void SetSubject(const std::string& v) override { Write("Subject", Value(v)); }
  std::string Body() const override { return Text("Body"); }
  void SetBody(const std::string& v) override { Write("Body", Value(v)); }
  std::string Categories() const override { return Text("Categories"); }
  void SetCategories(const std::string& v) override { Write("Categories", Value(v)); }
  std::string Companies() const override { return Text("Companies"); }
  void SetCompanies(const std::string& v) override { Write("Companies", Value(v)); }
  std::string MessageClass() const override { return Text("MessageClass"); }
  void SetMessageClass(const std::string& v) override { Write("MessageClass", Value(v)); }
  int32_t Sensitivity() const override { return Long("Sensitivity"); }
  void SetSensitivity(int32_t v) override { Write("Sensitivity", Value(v)); }

  double CreationTime() const override { return Date("CreationTime"); }
  double LastModificationTime() const override { return Date("LastModificationTime"); }
  double SentOn() const override { return Date("SentOn"); }
  double ReceivedTime() const override { return Date("ReceivedTime"); }

  std::string EntryID() const override { return Text("EntryID"); }
  std::shared_ptr<zintra::Folder> Parent() override;

  std::string FullName() const override { return Text("FullName"); }
  void SetFullName(const std::string& v) override { Write("FullName", Value(v)); }
  std::string Email1Address() const override { return Text("Email1Address"); }
  void SetEmail1Address(const std::string& v) override { Write("Email1Address", Value(v)); }
  std::string Email2Address() const override { return Text("Email2Address"); }
  void SetEmail2Address(const std::string& v) override { Write("Email2Address", Value(v)); }
  std::string Email3Address() const override { return Text("Email3Address"); }
  void SetEmail3Address(const std::string& v) override { Write("Email3Address", Value(v)); }

  std::string Owner() const override { return Text("Owner"); }
  void SetOwner(const std::string& v) override { Write("Owner", Value(v)); }
  int32_t Ownership() const override { return Long("Ownership"); }

  std::string Type() const override { return Text("Type"); }
  void SetType(const std::string& v) override { Write("Type", Value(v)); }

  std::shared_ptr<zintra::UserProperties> UserProperties() override;
  std::shared_ptr<zintra::Links> Links() override;
  std::shared_ptr<zintra::Recipients> Recipients() override;
  std::shared_ptr<zintra::Attachments> Attachments() override;

  void Save() override { client_.Call("Save"); }
  void Delete() override { client_.Call("Delete"); }
  std::shared_ptr<Item> Copy() override;
  std::shared_ptr<Item> Move(const std::shared_ptr<zintra::Folder>& folder) override;
  void Display(bool modal) override { client_.Call("Display", {Arg(Value(modal))}); }
  void Close(int32_t save_mode) override { client_.Call("Close", {Arg(Value(save_mode))}); }
  std::shared_ptr<Inspector> GetInspector() override;
  std::shared_ptr<MapiObject> MAPIOBJECT() override;

 private:
  ComItem(const ComPtr<IDispatch>& object, ItemClass item_class);
  void OnEvent(DISPID id, const EventArgs& args);

  ItemClass class_;
  LazyAdvise events_;
};

}  // namespace zintra::win32
