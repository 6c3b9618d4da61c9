// Members of Outlook's Application, NameSpace and the Options dialog's pages.
#include "win32/com/com_error.h"
#include "win32/com/unicode.h"
#include "win32/sim_server/outlook_declarations.h"
#include "win32/sim_server/server_members.h"

namespace zintra::win32 {

namespace app_ev = declared::application_events_11;
namespace ns_ev = declared::name_space_events;

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
  d.Source(app_ev::kIid);
  d.Keep(p->Quit.Connect([raw] { FireBare(raw, app_ev::kIid, app_ev::kQuit); }));
  d.Keep(p->NewMail.Connect([raw] { FireBare(raw, app_ev::kIid, app_ev::kNewMail); }));
  d.Keep(p->ItemSend.Connect([raw](std::shared_ptr<Item> item, bool& cancel) {
    VARIANT_BOOL flag = cancel ? VARIANT_TRUE : VARIANT_FALSE;
    std::vector<Variant> args;
    args.push_back(ServeVariant(item));
    args.push_back(ByRefBool(&flag));
    raw->Fire(app_ev::kIid, app_ev::kItemSend, args);
    cancel = flag != VARIANT_FALSE;
  }));
  d.Keep(p->OptionsPagesAdd.Connect([raw](std::shared_ptr<PropertyPages> pages) {
    FireObject(raw, app_ev::kIid, app_ev::kOptionsPagesAdd, pages);
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
  d.Source(ns_ev::kIid);
  d.Keep(p->OptionsPagesAdd.Connect(
      [raw](std::shared_ptr<PropertyPages> pages, std::shared_ptr<Folder> folder) {
        std::vector<Variant> args;
        args.push_back(ServeVariant(pages));
        args.push_back(ServeVariant(folder));
        raw->Fire(ns_ev::kIid, ns_ev::kOptionsPagesAdd, args);
      }));
}

void AddComAddIn(DispatchObject& d, const std::shared_ptr<ComAddIn>& p) {
  namespace add_in = declared::com_add_in;
  d.Member(add_in::kDescription, "Description",
           [p](const DispatchArgs&) { return Ret(p->Description()); });
  d.Member(add_in::kProgId, "ProgId", [p](const DispatchArgs&) { return Ret(p->ProgId()); });
  d.Member(add_in::kConnect, "Connect", [p](const DispatchArgs&) { return Ret(p->Connect()); });
  // What the add-in publishes to other programs (Word's letter macro reads it). Office
  // declares a plain put, so a put-ref alone is refused as Office refuses it.
  auto published = std::make_shared<ComPtr<IDispatch>>();
  d.Member(
      add_in::kObject, "Object", [published](const DispatchArgs&) { return Variant(*published); },
      [published](const DispatchArgs& a) { *published = ObjectOf(a.PutValue()); });
}

namespace {

ComPtr<IDispatch> CreateByProgId(const std::string& prog_id) {
  CLSID clsid{};
  std::wstring wide = Widen(prog_id);
  HRESULT hr = CLSIDFromProgID(wide.c_str(), &clsid);
  ComPtr<IDispatch> object;
  if (SUCCEEDED(hr)) {
    hr = CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch,
                          reinterpret_cast<void**>(object.Put()));
  }
  if (FAILED(hr)) ThrowComError(hr, nullptr, "PropertyPages.Add(" + prog_id + ")");
  return object;
}

}  // namespace

void AddPropertyPages(DispatchObject& d, const std::shared_ptr<PropertyPages>& p) {
  AddClass(d, kOlPropertyPages);
  d.Member("Count", [p](const DispatchArgs&) { return Ret(p->Count()); });
  d.Member("Item", [p](const DispatchArgs& a) { return ServeVariant(p->Item(a.Long(0))); });
  // Page is the page object, or the ProgID of a control that Outlook creates itself.
  d.Member("Add", [p](const DispatchArgs& a) {
    const VARIANT& page = a.Raw(0);
    if (page.vt == VT_BSTR) {
      p->Add(std::make_shared<ForeignObject>(CreateByProgId(a.Text(0))), a.Text(1, ""));
    } else {
      p->Add(a.Object(0), a.Text(1, ""));
    }
    return Nothing();
  });
}

}  // namespace zintra::win32
