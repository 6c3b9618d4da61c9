// Members of Outlook's items, whatever their kind: the item refuses a member its kind
// lacks (438) exactly as Outlook's late binding would.
#include "win32/sim_server/outlook_declarations.h"
#include "win32/sim_server/server_members.h"

namespace zintra::win32 {
namespace {

namespace item_ev = declared::item_events_10;

using TextGet = std::string (Item::*)() const;
using TextSet = void (Item::*)(const std::string&);

// A text property with get and put.
void TextMember(DispatchObject& d, const std::shared_ptr<Item>& p, const char* name, TextGet get,
                TextSet set) {
  d.Member(
      name, [p, get](const DispatchArgs&) { return Ret(((*p).*get)()); },
      [p, set](const DispatchArgs& a) { ((*p).*set)(ValueOf(a.PutValue()).ToString()); });
}

}  // namespace

void AddItem(DispatchObject& d, const std::shared_ptr<Item>& p) {
  d.Member("Class", [p](const DispatchArgs&) { return Ret(static_cast<int32_t>(p->Class())); });
  TextMember(d, p, "Subject", &Item::Subject, &Item::SetSubject);
  TextMember(d, p, "Body", &Item::Body, &Item::SetBody);
  TextMember(d, p, "Categories", &Item::Categories, &Item::SetCategories);
  TextMember(d, p, "Companies", &Item::Companies, &Item::SetCompanies);
  TextMember(d, p, "MessageClass", &Item::MessageClass, &Item::SetMessageClass);
  d.Member(
      "Sensitivity", [p](const DispatchArgs&) { return Ret(p->Sensitivity()); },
      [p](const DispatchArgs& a) { p->SetSensitivity(ValueOf(a.PutValue()).ToLong()); });
  d.Member("CreationTime", [p](const DispatchArgs&) { return RetDate(p->CreationTime()); });
  d.Member("LastModificationTime",
           [p](const DispatchArgs&) { return RetDate(p->LastModificationTime()); });
  d.Member("SentOn", [p](const DispatchArgs&) { return RetDate(p->SentOn()); });
  d.Member("ReceivedTime", [p](const DispatchArgs&) { return RetDate(p->ReceivedTime()); });
  d.Member("EntryID", [p](const DispatchArgs&) { return Ret(p->EntryID()); });
  d.Member("Parent", [p](const DispatchArgs&) { return ServeVariant(p->Parent()); });
  TextMember(d, p, "FullName", &Item::FullName, &Item::SetFullName);
  TextMember(d, p, "Email1Address", &Item::Email1Address, &Item::SetEmail1Address);
  TextMember(d, p, "Email2Address", &Item::Email2Address, &Item::SetEmail2Address);
  TextMember(d, p, "Email3Address", &Item::Email3Address, &Item::SetEmail3Address);
  TextMember(d, p, "Owner", &Item::Owner, &Item::SetOwner);
  d.Member("Ownership", [p](const DispatchArgs&) { return Ret(p->Ownership()); });
  TextMember(d, p, "Type", &Item::Type, &Item::SetType);
  d.Member("UserProperties",
           [p](const DispatchArgs&) { return ServeVariant(p->UserProperties()); });
  d.Member("Links", [p](const DispatchArgs&) { return ServeVariant(p->Links()); });
  d.Member("Recipients", [p](const DispatchArgs&) { return ServeVariant(p->Recipients()); });
  d.Member("Attachments", [p](const DispatchArgs&) { return ServeVariant(p->Attachments()); });
  d.Member("Save", [p](const DispatchArgs&) {
    p->Save();
    return Nothing();
  });
  d.Member("Delete", [p](const DispatchArgs&) {
    p->Delete();
    return Nothing();
  });
  d.Member("Copy", [p](const DispatchArgs&) { return ServeVariant(p->Copy()); });
  d.Member("Move",
           [p](const DispatchArgs& a) { return ServeVariant(p->Move(a.ObjectAs<Folder>(0))); });
  d.Member("Display", [p](const DispatchArgs& a) {
    p->Display(a.Bool(0, false));
    return Nothing();
  });
  d.Member("Close", [p](const DispatchArgs& a) {
    p->Close(a.Long(0));
    return Nothing();
  });
  d.Member("GetInspector", [p](const DispatchArgs&) { return ServeVariant(p->GetInspector()); });
  d.Member("MAPIOBJECT", [p](const DispatchArgs&) { return ServeVariant(p->MAPIOBJECT()); });

  DispatchObject* raw = &d;
  d.Source(item_ev::kIid);
  d.Keep(p->CloseEvent.Connect([raw](bool& cancel) {
    VARIANT_BOOL flag = cancel ? VARIANT_TRUE : VARIANT_FALSE;
    std::vector<Variant> args;
    args.push_back(ByRefBool(&flag));
    raw->Fire(item_ev::kIid, item_ev::kClose, args);
    cancel = flag != VARIANT_FALSE;
  }));
}

void AddUserProperties(DispatchObject& d, const std::shared_ptr<UserProperties>& p) {
  AddClass(d, kOlUserProperties);
  d.Member("Count", [p](const DispatchArgs&) { return Ret(p->Count()); });
  // By position or, given a text, by name (Nothing when absent).
  d.Member("Item", [p](const DispatchArgs& a) {
    Value key = a.Get(0);
    if (key.Type() == ValueType::kString) return ServeVariant(p->Find(key.ToString()));
    return ServeVariant(p->Item(key.ToLong()));
  });
  d.Member("Find", [p](const DispatchArgs& a) { return ServeVariant(p->Find(a.Text(0))); });
  d.Member("Add", [p](const DispatchArgs& a) {
    return ServeVariant(p->Add(a.Text(0), a.Long(1), a.Bool(2, true)));
  });
  d.Member("Remove", [p](const DispatchArgs& a) {
    p->Remove(a.Long(0));
    return Nothing();
  });
}

void AddUserProperty(DispatchObject& d, const std::shared_ptr<UserProperty>& p) {
  AddClass(d, kOlUserProperty);
  d.Member("Name", [p](const DispatchArgs&) { return Ret(p->Name()); });
  d.Member("Type", [p](const DispatchArgs&) { return Ret(p->Type()); });
  d.Member(
      "Value", [p](const DispatchArgs&) { return Ret(p->GetValue()); },
      [p](const DispatchArgs& a) { p->SetValue(ValueOf(a.PutValue())); });
}

void AddLinks(DispatchObject& d, const std::shared_ptr<Links>& p) {
  AddClass(d, kOlLinks);
  d.Member("Count", [p](const DispatchArgs&) { return Ret(p->Count()); });
  d.Member("Item", [p](const DispatchArgs& a) { return ServeVariant(p->Item(a.Long(0))); });
  d.Member("Add", [p](const DispatchArgs& a) { return ServeVariant(p->Add(a.ObjectAs<Item>(0))); });
  d.Member("Remove", [p](const DispatchArgs& a) {
    p->Remove(a.Long(0));
    return Nothing();
  });
}

void AddLink(DispatchObject& d, const std::shared_ptr<Link>& p) {
  AddClass(d, kOlLink);
  d.Member("Name", [p](const DispatchArgs&) { return Ret(p->Name()); });
  d.Member("Item", [p](const DispatchArgs&) { return ServeVariant(p->Item()); });
}

void AddRecipients(DispatchObject& d, const std::shared_ptr<Recipients>& p) {
  AddClass(d, kOlRecipients);
  d.Member("Count", [p](const DispatchArgs&) { return Ret(p->Count()); });
  d.Member("Item", [p](const DispatchArgs& a) { return ServeVariant(p->Item(a.Long(0))); });
  d.Member("Add", [p](const DispatchArgs& a) { return ServeVariant(p->Add(a.Text(0))); });
  d.Member("Remove", [p](const DispatchArgs& a) {
    p->Remove(a.Long(0));
    return Nothing();
  });
}

void AddRecipient(DispatchObject& d, const std::shared_ptr<Recipient>& p) {
  AddClass(d, kOlRecipient);
  d.Member("Name", [p](const DispatchArgs&) { return Ret(p->Name()); });
  d.Member("Address", [p](const DispatchArgs&) { return Ret(p->Address()); });
  d.Member(
      "Type", [p](const DispatchArgs&) { return Ret(p->Type()); },
      [p](const DispatchArgs& a) { p->SetType(ValueOf(a.PutValue()).ToLong()); });
  d.Member("Resolved", [p](const DispatchArgs&) { return Ret(p->Resolved()); });
  d.Member("AddressEntry", [p](const DispatchArgs&) { return ServeVariant(p->AddressEntry()); });
}

void AddAttachments(DispatchObject& d, const std::shared_ptr<Attachments>& p) {
  AddClass(d, kOlAttachments);
  d.Member("Count", [p](const DispatchArgs&) { return Ret(p->Count()); });
  d.Member("Item", [p](const DispatchArgs& a) { return ServeVariant(p->Item(a.Long(0))); });
  d.Member("Add", [p](const DispatchArgs& a) {
    return ServeVariant(p->Add(a.Text(0), a.Long(1, kOlByValue), a.Long(2, 0), a.Text(3, "")));
  });
  d.Member("Remove", [p](const DispatchArgs& a) {
    p->Remove(a.Long(0));
    return Nothing();
  });
}

void AddAttachment(DispatchObject& d, const std::shared_ptr<Attachment>& p) {
  AddClass(d, kOlAttachment);
  d.Member("DisplayName", [p](const DispatchArgs&) { return Ret(p->DisplayName()); });
  d.Member("FileName", [p](const DispatchArgs&) { return Ret(p->FileName()); });
  d.Member("PathName", [p](const DispatchArgs&) { return Ret(p->PathName()); });
  d.Member("Type", [p](const DispatchArgs&) { return Ret(p->Type()); });
  d.Member("Index", [p](const DispatchArgs&) { return Ret(p->Index()); });
  d.Member("Size", [p](const DispatchArgs&) { return Ret(p->Size()); });
  d.Member("Delete", [p](const DispatchArgs&) {
    p->Delete();
    return Nothing();
  });
}

}  // namespace zintra::win32
