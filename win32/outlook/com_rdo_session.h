// The MAPI library's session, folders and messages ("TovuRedemption.RDOSession" and
// what it opens) over their automation objects. Objects handed in (an Outlook folder,
// a MAPI object) go out as the automation objects they wrap.
#pragma once

#include "src/host/mapi_session.h"
#include "win32/outlook/com_adapter.h"

namespace zintra::win32 {

class ComRdoMessage final : public RdoMessage, public ComAdapter {
 public:
  explicit ComRdoMessage(const ComPtr<IDispatch>& o) : ComAdapter(DispatchClient(o, "RDOMail")) {}
  std::string TypeName() const override { return "RDOMail"; }
  std::string EntryID() const override { return Text("EntryID"); }
  std::string StoreID() const override { return Text("StoreID"); }
  std::string MessageClass() const override { return Text("MessageClass"); }
  std::string Subject() const override { return Text("Subject"); }
  void SetSubject(const std::string& v) override { Write("Subject", Value(v)); }
  std::string Body() const override { return Text("Body"); }
  void SetBody(const std::string& v) override { Write("Body", Value(v)); }
  std::shared_ptr<RdoFolder> Parent() override;
  Value Fields(int32_t prop_tag) override;
  void SetFields(int32_t prop_tag, const Value& value) override;
  std::shared_ptr<zintra::UserProperties> UserProperties() override;
  std::shared_ptr<zintra::Recipients> Recipients() override;
  std::shared_ptr<zintra::Attachments> Attachments() override;
  std::shared_ptr<AddressEntry> Sender() override;
  void Save() override { client_.Call("Save"); }
  void Delete() override { client_.Call("Delete"); }
  std::shared_ptr<RdoMessage> CopyTo(const std::shared_ptr<AutomationObject>& folder) override;
  std::shared_ptr<RdoMessage> Move(const std::shared_ptr<AutomationObject>& folder) override;
  std::shared_ptr<MapiObject> MAPIOBJECT() override;
};

class ComRdoFolder final : public RdoFolder, public ComAdapter {
 public:
  explicit ComRdoFolder(const ComPtr<IDispatch>& o) : ComAdapter(DispatchClient(o, "RDOFolder")) {}
  std::string TypeName() const override { return "RDOFolder"; }
  void SetMAPIOBJECT(const std::shared_ptr<MapiObject>& folder) override;
  std::shared_ptr<MapiObject> MAPIOBJECT() override;
  std::string Name() const override { return Text("Name"); }
  std::string EntryID() const override { return Text("EntryID"); }
  std::string StoreID() const override { return Text("StoreID"); }
  int32_t DefaultItemType() const override { return Long("DefaultItemType"); }
  std::shared_ptr<RdoFolder> Parent() override;
  int32_t ItemCount() override { return Long("ItemCount"); }
  Value Fields(int32_t prop_tag) override;
  std::shared_ptr<RdoMessage> AddItem(const std::string& message_class) override;
};

class ComRdoSession final : public RdoSession, public ComAdapter {
 public:
  explicit ComRdoSession(const ComPtr<IDispatch>& o)
      : ComAdapter(DispatchClient(o, "RDOSession")) {}
  std::string TypeName() const override { return "RDOSession"; }
  void SetMAPIOBJECT(const std::shared_ptr<MapiObject>& session) override;
  std::shared_ptr<MapiObject> MAPIOBJECT() override;
  bool LoggedOn() const override { return Bool("LoggedOn"); }
  std::shared_ptr<AddressEntry> CurrentUser() override;
  std::shared_ptr<RdoMessage> GetMessageFromID(const std::string& entry_id,
                                               const std::string& store_id) override;
  std::shared_ptr<RdoFolder> GetFolderFromID(const std::string& entry_id,
                                             const std::string& store_id) override;
  std::shared_ptr<RdoFolder> GetDefaultFolder(int32_t folder_type) override;
  std::shared_ptr<zintra::AddressLists> AddressLists() override;
};

// Reads and writes of a MAPI object property through a library object's Fields.
Value FieldOf(const DispatchClient& client, int32_t prop_tag);
void SetFieldOf(const DispatchClient& client, int32_t prop_tag, const Value& value);
// Sets a library object's MAPIOBJECT to a MAPI object of Outlook's.
void SetMapiObjectOf(const DispatchClient& client, const std::shared_ptr<MapiObject>& object);

}  // namespace zintra::win32
