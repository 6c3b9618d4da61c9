// Members of Outlook's MAPIFolder, Folders and Items.
#include "win32/sim_server/outlook_declarations.h"
#include "win32/sim_server/server_members.h"

namespace zintra::win32 {

namespace ev = declared::items_events;

void AddFolder(DispatchObject& d, const std::shared_ptr<Folder>& p) {
  AddClass(d, kOlFolder);
  d.Member(
      "Name", [p](const DispatchArgs&) { return Ret(p->Name()); },
      [p](const DispatchArgs& a) { p->SetName(ValueOf(a.PutValue()).ToString()); });
  d.Member("EntryID", [p](const DispatchArgs&) { return Ret(p->EntryID()); });
  d.Member("StoreID", [p](const DispatchArgs&) { return Ret(p->StoreID()); });
  d.Member("DefaultItemType", [p](const DispatchArgs&) { return Ret(p->DefaultItemType()); });
  d.Member("Parent", [p](const DispatchArgs&) { return ServeVariant(p->Parent()); });
  d.Member("Folders", [p](const DispatchArgs&) { return ServeVariant(p->Folders()); });
  d.Member("Items", [p](const DispatchArgs&) { return ServeVariant(p->Items()); });
  d.Member("MAPIOBJECT", [p](const DispatchArgs&) { return ServeVariant(p->MAPIOBJECT()); });
  d.Member("Delete", [p](const DispatchArgs&) {
    p->Delete();
    return Nothing();
  });
}

void AddFolders(DispatchObject& d, const std::shared_ptr<Folders>& p) {
  AddClass(d, kOlFolders);
  d.Member("Count", [p](const DispatchArgs&) { return Ret(p->Count()); });
  // By position or, given a text, by name.
  d.Member("Item", [p](const DispatchArgs& a) {
    Value key = a.Get(0);
    if (key.Type() == ValueType::kString) return ServeVariant(p->Item(key.ToString()));
    return ServeVariant(p->Item(key.ToLong()));
  });
  d.Member("Add", [p](const DispatchArgs& a) {
    return ServeVariant(p->Add(a.Text(0), a.Long(1, kOlFolderInbox)));
  });
}

void AddItems(DispatchObject& d, const std::shared_ptr<Items>& p) {
  AddClass(d, kOlItems);
  d.Member("Count", [p](const DispatchArgs&) { return Ret(p->Count()); });
  d.Member("Item", [p](const DispatchArgs& a) { return ServeVariant(p->Item(a.Long(0))); });
  d.Member("Sort", [p](const DispatchArgs& a) {
    p->Sort(a.Text(0), a.Bool(1, false));
    return Nothing();
  });
  d.Member("GetFirst", [p](const DispatchArgs&) { return ServeVariant(p->GetFirst()); });
  d.Member("GetNext", [p](const DispatchArgs&) { return ServeVariant(p->GetNext()); });
  d.Member("GetLast", [p](const DispatchArgs&) { return ServeVariant(p->GetLast()); });
  d.Member("GetPrevious", [p](const DispatchArgs&) { return ServeVariant(p->GetPrevious()); });
  d.Member("Find", [p](const DispatchArgs& a) { return ServeVariant(p->Find(a.Text(0))); });
  d.Member("FindNext", [p](const DispatchArgs&) { return ServeVariant(p->FindNext()); });
  d.Member("Add",
           [p](const DispatchArgs& a) { return ServeVariant(p->Add(a.Long(0, kOlMailItem))); });
  d.Member("Remove", [p](const DispatchArgs& a) {
    p->Remove(a.Long(0));
    return Nothing();
  });

  DispatchObject* raw = &d;
  d.Source(ev::kIid);
  d.Keep(p->ItemAdd.Connect(
      [raw](std::shared_ptr<Item> item) { FireObject(raw, ev::kIid, ev::kItemAdd, item); }));
  d.Keep(p->ItemChange.Connect(
      [raw](std::shared_ptr<Item> item) { FireObject(raw, ev::kIid, ev::kItemChange, item); }));
  d.Keep(p->ItemRemove.Connect([raw] { FireBare(raw, ev::kIid, ev::kItemRemove); }));
}

}  // namespace zintra::win32
