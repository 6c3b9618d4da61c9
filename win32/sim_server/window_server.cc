// Members of Outlook's explorers and inspectors, their lists and the selection.
#include "win32/sim_server/outlook_declarations.h"
#include "win32/sim_server/server_members.h"

namespace zintra::win32 {
namespace {

namespace explorer_ev = declared::explorer_events_10;
namespace inspector_ev = declared::inspector_events_10;

// What explorers and inspectors share: `source` is the window's event interface, with
// its own numbers for Activate, Deactivate and Close.
struct WindowEvents {
  IID source;
  DISPID activate, deactivate, close;
};

void AddWindow(DispatchObject& d, const std::shared_ptr<OutlookWindow>& p,
               const WindowEvents& events) {
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
  d.Source(events.source);
  d.Keep(p->ActivateEvent.Connect([raw, e = events] { FireBare(raw, e.source, e.activate); }));
  d.Keep(p->Deactivate.Connect([raw, e = events] { FireBare(raw, e.source, e.deactivate); }));
  d.Keep(p->CloseEvent.Connect([raw, e = events] { FireBare(raw, e.source, e.close); }));
}

}  // namespace

void AddExplorer(DispatchObject& d, const std::shared_ptr<Explorer>& p) {
  AddClass(d, kOlExplorer);
  AddWindow(
      d, p,
      {explorer_ev::kIid, explorer_ev::kActivate, explorer_ev::kDeactivate, explorer_ev::kClose});
  d.Member("Selection", [p](const DispatchArgs&) { return ServeVariant(p->Selection()); });
  d.Member("CurrentFolder", [p](const DispatchArgs&) { return ServeVariant(p->CurrentFolder()); });
  DispatchObject* raw = &d;
  d.Keep(p->SelectionChange.Connect(
      [raw] { FireBare(raw, explorer_ev::kIid, explorer_ev::kSelectionChange); }));
}

void AddInspector(DispatchObject& d, const std::shared_ptr<Inspector>& p) {
  AddClass(d, kOlInspector);
  AddWindow(d, p,
            {inspector_ev::kIid, inspector_ev::kActivate, inspector_ev::kDeactivate,
             inspector_ev::kClose});
  d.Member("CurrentItem", [p](const DispatchArgs&) { return ServeVariant(p->CurrentItem()); });
  d.Member("Hwnd", [p](const DispatchArgs&) { return Ret(p->Hwnd()); });
}

void AddExplorers(DispatchObject& d, const std::shared_ptr<Explorers>& p) {
  AddClass(d, kOlExplorers);
  d.Member("Count", [p](const DispatchArgs&) { return Ret(p->Count()); });
  d.Member("Item", [p](const DispatchArgs& a) { return ServeVariant(p->Item(a.Long(0))); });
  DispatchObject* raw = &d;
  d.Source(declared::explorers_events::kIid);
  d.Keep(p->NewExplorer.Connect([raw](std::shared_ptr<Explorer> explorer) {
    FireObject(raw, declared::explorers_events::kIid, declared::explorers_events::kNewExplorer,
               explorer);
  }));
}

void AddInspectors(DispatchObject& d, const std::shared_ptr<Inspectors>& p) {
  AddClass(d, kOlInspectors);
  d.Member("Count", [p](const DispatchArgs&) { return Ret(p->Count()); });
  d.Member("Item", [p](const DispatchArgs& a) { return ServeVariant(p->Item(a.Long(0))); });
  DispatchObject* raw = &d;
  d.Source(declared::inspectors_events::kIid);
  d.Keep(p->NewInspector.Connect([raw](std::shared_ptr<Inspector> inspector) {
    FireObject(raw, declared::inspectors_events::kIid, declared::inspectors_events::kNewInspector,
               inspector);
  }));
}

void AddSelection(DispatchObject& d, const std::shared_ptr<Selection>& p) {
  AddClass(d, kOlSelection);
  d.Member("Count", [p](const DispatchArgs&) { return Ret(p->Count()); });
  d.Member("Item", [p](const DispatchArgs& a) { return ServeVariant(p->Item(a.Long(0))); });
}

}  // namespace zintra::win32
