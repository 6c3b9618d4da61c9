// Members of Outlook's Application, NameSpace and the Options dialog's pages.
#include "win32/com/outlook_events.h"
#include "win32/sim_server/server_members.h"

namespace zintra::win32 {

namespace ev = outlook_events;

void AddApplication(DispatchObject& d, const std::shared_ptr<Application>& p) {
  AddClass(d, kOlApplication);
  d.Member("Name", [](const DispatchArgs&) { return Ret("Outlook"); });
  d.Member("Explorers", [p](const DispatchArgs&) { return ServeVariant(p->Explorers()); });
  d.Member("Inspectors", [p](const DispatchArgs&) { return ServeVariant(p->Inspectors()); });
  d.Member("Version", [p](const DispatchArgs&) { return Ret(p->Version()); });
  d.Member("ProductCode", [p](const DispatchArgs&) { return Ret(p->ProductCode()); });
  d.Member("Session", [p](const DispatchArgs&) { return ServeVariant(p->Session()); });
  // "MAPI" is the only namespace there is; Outlook ignores the text as well.
  d.Member("GetNamespace", [p](const DispatchArgs&) { return ServeVariant(p->Session()); });
  d.Member("ActiveExplorer",
           [p](const DispatchArgs&) { return ServeVariant(p->ActiveExplorer()); });
  d.Member("ActiveInspector",
           [p](const DispatchArgs&) { return ServeVariant(p->ActiveInspector()); });
  d.Member("CreateItem",
           [p](const DispatchArgs& a) { return ServeVariant(p->CreateItem(a.Long(0))); });

  DispatchObject* raw = &d;
  d.Source(ev::kApplicationEvents11);
  d.Keep(p->Quit.Connect([raw] { FireBare(raw, ev::kApplicationEvents11, ev::kQuit); }));
  d.Keep(p->NewMail.Connect([raw] { FireBare(raw, ev::kApplicationEvents11, ev::kNewMail); }));
  d.Keep(p->ItemSend.Connect([raw](std::shared_ptr<Item> item, bool& cancel) {
    VARIANT_BOOL flag = cancel ? VARIANT_TRUE : VARIANT_FALSE;
    std::vector<Variant> args;
    args.push_back(ServeVariant(item));
    args.push_back(ByRefBool(&flag));
    raw->Fire(ev::kApplicationEvents11, ev::kItemSend, args);
    cancel = flag != VARIANT_FALSE;
  }));
  d.Keep(p->OptionsPagesAdd.Connect([raw](std::shared_ptr<PropertyPages> pages) {
    FireObject(raw, ev::kApplicationEvents11, ev::kOptionsPagesAdd, pages);
  }));
}

void AddNamespace(DispatchObject& d, const std::shared_ptr<Namespace>& p) {
  AddClass(d, kOlNamespace);
  d.Member("Type", [](const DispatchArgs&) { return Ret("MAPI"); });
  d.Member("GetDefaultFolder",
           [p](const DispatchArgs& a) { return ServeVariant(p->GetDefaultFolder(a.Long(0))); });
  d.Member("GetItemFromID", [p](const DispatchArgs& a) {
    return ServeVariant(p->GetItemFromID(a.Text(0), a.Text(1, "")));
  });
  d.Member("GetFolderFromID", [p](const DispatchArgs& a) {
    return ServeVariant(p->GetFolderFromID(a.Text(0), a.Text(1, "")));
  });
  d.Member("Folders", [p](const DispatchArgs&) { return ServeVariant(p->Folders()); });
  d.Member("CurrentUser", [p](const DispatchArgs&) { return ServeVariant(p->CurrentUser()); });
  d.Member("MAPIOBJECT", [p](const DispatchArgs&) { return ServeVariant(p->MAPIOBJECT()); });

  DispatchObject* raw = &d;
  d.Source(outlook_events::kNameSpaceEvents);
  d.Keep(p->OptionsPagesAdd.Connect([raw](std::shared_ptr<PropertyPages> pages,
                                          std::shared_ptr<Folder> folder) {
    std::vector<Variant> args;
    args.push_back(ServeVariant(pages));
    args.push_back(ServeVariant(folder));
    raw->Fire(outlook_events::kNameSpaceEvents, outlook_events::kNameSpaceOptionsPagesAdd, args);
  }));
}

void AddComAddIn(DispatchObject& d, const std::shared_ptr<ComAddIn>& p) {
  d.Member("ProgId", [p](const DispatchArgs&) { return Ret(p->ProgId()); });
  d.Member("Description", [p](const DispatchArgs&) { return Ret(p->Description()); });
  d.Member("Connect", [p](const DispatchArgs&) { return Ret(p->Connect()); });
}

void AddPropertyPages(DispatchObject& d, const std::shared_ptr<PropertyPages>& p) {
  AddClass(d, kOlPropertyPages);
  d.Member("Count", [p](const DispatchArgs&) { return Ret(p->Count()); });
  d.Member("Item", [p](const DispatchArgs& a) { return ServeVariant(p->Item(a.Long(0))); });
  d.Member("Add", [p](const DispatchArgs& a) {
    p->Add(a.Object(0), a.Text(1, ""));
    return Nothing();
  });
}

}  // namespace zintra::win32
