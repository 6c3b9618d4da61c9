// Members of Outlook's explorers and inspectors, their lists and the selection.
#include "win32/com/outlook_events.h"
#include "win32/sim_server/server_members.h"

namespace zintra::win32 {
namespace {

namespace ev = outlook_events;

// What explorers and inspectors share; `source` is the window's event interface.
void AddWindow(DispatchObject& d, const std::shared_ptr<OutlookWindow>& p, const IID& source,
               DISPID close) {
  d.Member("Caption", [p](const DispatchArgs&) { return Ret(p->Caption()); });
  d.Member("CommandBars", [p](const DispatchArgs&) { return ServeVariant(p->CommandBars()); });
  d.Member("Activate", [p](const DispatchArgs&) {
    p->Activate();
    return Nothing();
  });
  d.Member("Close", [p](const DispatchArgs& a) {
    p->Close(a.Long(0, 1));
    return Nothing();
  });
  DispatchObject* raw = &d;
  d.Source(source);
  d.Keep(p->ActivateEvent.Connect(
      [raw, iid = source] { FireBare(raw, iid, outlook_events::kWindowActivate); }));
  d.Keep(p->Deactivate.Connect(
      [raw, iid = source] { FireBare(raw, iid, outlook_events::kWindowDeactivate); }));
  d.Keep(p->CloseEvent.Connect([raw, iid = source, close] { FireBare(raw, iid, close); }));
}

}  // namespace

void AddExplorer(DispatchObject& d, const std::shared_ptr<Explorer>& p) {
  AddClass(d, kOlExplorer);
  AddWindow(d, p, ev::kExplorerEvents10, ev::kExplorerClose);
  d.Member("Selection", [p](const DispatchArgs&) { return ServeVariant(p->Selection()); });
  d.Member("CurrentFolder", [p](const DispatchArgs&) { return ServeVariant(p->CurrentFolder()); });
  DispatchObject* raw = &d;
  d.Keep(p->SelectionChange.Connect(
      [raw] { FireBare(raw, ev::kExplorerEvents10, outlook_events::kExplorerSelectionChange); }));
}

void AddInspector(DispatchObject& d, const std::shared_ptr<Inspector>& p) {
  AddClass(d, kOlInspector);
  AddWindow(d, p, ev::kInspectorEvents10, ev::kInspectorClose);
  d.Member("CurrentItem", [p](const DispatchArgs&) { return ServeVariant(p->CurrentItem()); });
  d.Member("Hwnd", [p](const DispatchArgs&) { return Ret(p->Hwnd()); });
}

void AddExplorers(DispatchObject& d, const std::shared_ptr<Explorers>& p) {
  AddClass(d, kOlExplorers);
  d.Member("Count", [p](const DispatchArgs&) { return Ret(p->Count()); });
  d.Member("Item", [p](const DispatchArgs& a) { return ServeVariant(p->Item(a.Long(0))); });
  DispatchObject* raw = &d;
  d.Source(ev::kExplorersEvents);
  d.Keep(p->NewExplorer.Connect([raw](std::shared_ptr<Explorer> explorer) {
    FireObject(raw, ev::kExplorersEvents, ev::kNewExplorer, explorer);
  }));
}

void AddInspectors(DispatchObject& d, const std::shared_ptr<Inspectors>& p) {
  AddClass(d, kOlInspectors);
  d.Member("Count", [p](const DispatchArgs&) { return Ret(p->Count()); });
  d.Member("Item", [p](const DispatchArgs& a) { return ServeVariant(p->Item(a.Long(0))); });
  DispatchObject* raw = &d;
  d.Source(ev::kInspectorsEvents);
  d.Keep(p->NewInspector.Connect([raw](std::shared_ptr<Inspector> inspector) {
    FireObject(raw, ev::kInspectorsEvents, ev::kNewInspector, inspector);
  }));
}

void AddSelection(DispatchObject& d, const std::shared_ptr<Selection>& p) {
  AddClass(d, kOlSelection);
  d.Member("Count", [p](const DispatchArgs&) { return Ret(p->Count()); });
  d.Member("Item", [p](const DispatchArgs& a) { return ServeVariant(p->Item(a.Long(0))); });
}

}  // namespace zintra::win32
