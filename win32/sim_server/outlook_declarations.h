// Outlook's and Office's automation contracts as their type libraries declare them: the
// served objects raise their events and number their members from this table. It is
// transcribed from public dumps of the type libraries, never from the add-in's own
// table (win32/com/outlook_events.h), so that a wrong number on either side fails a
// test instead of agreeing with itself.
//
// Sources:
// - Outlook (MSOUTL.OLB): the bindings generated from its type library in
//   github.com/matthiasblaesing/COMTypelibraries,
//   outlook9/src/main/java/eu/doppel_helix/jna/tlb/outlook9/<Interface>.java
//   (uuid(...) and id(...) of each dispinterface).
// - Office (MSO.DLL, "Microsoft Office 11.0 Object Library"): the Delphi import of its
//   type library in github.com/maximmasiutin/FastCodeBenchmark,
//   SpreadsheetCreator130/Office_TLB.pas (COMAddIn, _CommandBarButtonEvents); that
//   importer writes a property put as Set_X and a put-ref as _Set_X, and COMAddIn's
//   Object has only Set_Object_: a plain put.
// - The add-in designer (MSADDNDR.DLL, "Microsoft Add-In Designer"): the Delphi import
//   of its type library in github.com/edhn3000/DBConnector,
//   src/MyPub/Office/AddInDesignerObjects_TLB_Word.pas (_IDTExtensibility2).
#pragma once

#include <cstddef>

#include "win32/com/windows_api.h"

namespace zintra::win32::declared {

// Outlook's and Office's IIDs share this tail: {xxxxxxxx-0000-0000-C000-000000000046}.
constexpr IID OfficeIid(unsigned long data1) {
  return {data1, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};
}

namespace application_events_11 {  // ApplicationEvents_11.java
inline constexpr IID kIid = OfficeIid(0x0006302C);
inline constexpr DISPID kItemSend = 0xF002;  // (Item, [inout] Cancel)
inline constexpr DISPID kNewMail = 0xF003;
inline constexpr DISPID kReminder = 0xF004;
inline constexpr DISPID kOptionsPagesAdd = 0xF005;  // (Pages)
inline constexpr DISPID kStartup = 0xF006;
inline constexpr DISPID kQuit = 0xF007;
}  // namespace application_events_11

namespace name_space_events {  // NameSpaceEvents.java
inline constexpr IID kIid = OfficeIid(0x0006308C);
inline constexpr DISPID kOptionsPagesAdd = 0xF005;  // (Pages, Folder)
}  // namespace name_space_events

namespace items_events {  // ItemsEvents.java
inline constexpr IID kIid = OfficeIid(0x00063077);
inline constexpr DISPID kItemAdd = 0xF001;     // (Item)
inline constexpr DISPID kItemChange = 0xF002;  // (Item)
inline constexpr DISPID kItemRemove = 0xF003;
}  // namespace items_events

namespace explorers_events {  // ExplorersEvents.java
inline constexpr IID kIid = OfficeIid(0x00063078);
inline constexpr DISPID kNewExplorer = 0xF001;  // (Explorer)
}  // namespace explorers_events

namespace inspectors_events {  // InspectorsEvents.java
inline constexpr IID kIid = OfficeIid(0x00063079);
inline constexpr DISPID kNewInspector = 0xF001;  // (Inspector)
}  // namespace inspectors_events

namespace explorer_events_10 {  // ExplorerEvents_10.java
inline constexpr IID kIid = OfficeIid(0x0006300F);
inline constexpr DISPID kActivate = 0xF001;
inline constexpr DISPID kFolderSwitch = 0xF002;
inline constexpr DISPID kDeactivate = 0xF006;
inline constexpr DISPID kSelectionChange = 0xF007;
inline constexpr DISPID kClose = 0xF008;
}  // namespace explorer_events_10

namespace inspector_events_10 {  // InspectorEvents_10.java
inline constexpr IID kIid = OfficeIid(0x0006302A);
inline constexpr DISPID kActivate = 0xF001;
inline constexpr DISPID kDeactivate = 0xF006;
inline constexpr DISPID kClose = 0xF008;
}  // namespace inspector_events_10

// The older inspector events (InspectorEvents.java), kept by Outlook for old clients:
// an inspector does not raise its events on this one.
namespace inspector_events {
inline constexpr IID kIid = OfficeIid(0x0006307D);
}  // namespace inspector_events

namespace item_events_10 {  // ItemEvents_10.java
inline constexpr IID kIid = OfficeIid(0x0006302B);
inline constexpr DISPID kRead = 0xF001;
inline constexpr DISPID kWrite = 0xF002;  // ([inout] Cancel)
inline constexpr DISPID kOpen = 0xF003;   // ([inout] Cancel)
inline constexpr DISPID kClose = 0xF004;  // ([inout] Cancel)
inline constexpr DISPID kSend = 0xF005;   // ([inout] Cancel)
}  // namespace item_events_10

// The command bar members the add-in and the toolbar library call, with the number of
// parameters each declares (all optional); Style is declared by _CommandBarButton only,
// not by CommandBarControl or the popups of the menu bar.
namespace command_bars {                     // Office_TLB.pas: _CommandBars
inline constexpr size_t kAddParameters = 4;  // Add(Name, Position, MenuBar, Temporary)
inline constexpr size_t kAddTemporary = 3;
inline constexpr size_t kFindControlParameters = 4;  // FindControl(Type, Id, Tag, Visible)
}  // namespace command_bars

namespace command_bar {  // Office_TLB.pas: CommandBar
// FindControl(Type, Id, Tag, Visible, Recursive)
inline constexpr size_t kFindControlParameters = 5;
}  // namespace command_bar

namespace command_bar_controls {  // Office_TLB.pas: CommandBarControls
// Add(Type, Id, Parameter, Before, Temporary)
inline constexpr size_t kAddParameters = 5;
}  // namespace command_bar_controls

namespace command_bar_button_events {  // Office_TLB.pas: _CommandBarButtonEvents
inline constexpr IID kIid = OfficeIid(0x000C0351);
inline constexpr DISPID kClick = 1;  // (Ctrl, var CancelDefault)
}  // namespace command_bar_button_events

// The Options dialog's page (an interface a page implements) and the page's site.
namespace property_page {  // PropertyPage.java
inline constexpr IID kIid = OfficeIid(0x0006307E);
inline constexpr DISPID kGetPageInfo = 0x2100;  // vtable slot 7: ([inout] HelpFile, HelpContext)
inline constexpr DISPID kDirty = 0x2101;        // slot 8: read-only
inline constexpr DISPID kApply = 0x2102;        // slot 9
}  // namespace property_page

namespace property_page_site {  // PropertyPageSite.java
inline constexpr IID kIid = OfficeIid(0x0006307F);
inline constexpr DISPID kApplication = 0xF000;
inline constexpr DISPID kParent = 0xF001;
inline constexpr DISPID kClass = 0xF00A;
inline constexpr DISPID kSession = 0xF00B;
inline constexpr DISPID kOnStatusChange = 0x2100;
}  // namespace property_page_site

namespace com_add_in {  // Office_TLB.pas: COMAddIn, COMAddInDisp
inline constexpr IID kIid = OfficeIid(0x000C033A);
inline constexpr DISPID kDescription = 0;  // get, put
inline constexpr DISPID kProgId = 3;       // get
inline constexpr DISPID kGuid = 4;         // get
inline constexpr DISPID kConnect = 6;      // get, put
inline constexpr DISPID kObject = 7;       // get, put (no put-ref)
inline constexpr DISPID kParent = 8;       // get
}  // namespace com_add_in

namespace idt_extensibility2 {  // AddInDesignerObjects_TLB_Word.pas: _IDTExtensibility2
inline constexpr IID kIid = {
    0xB65AD801, 0xABAF, 0x11D0, {0xBB, 0x8B, 0x00, 0xA0, 0xC9, 0x0F, 0x27, 0x44}};
inline constexpr DISPID kOnConnection = 1;
inline constexpr DISPID kOnDisconnection = 2;
inline constexpr DISPID kOnAddInsUpdate = 3;
inline constexpr DISPID kOnStartupComplete = 4;
inline constexpr DISPID kOnBeginShutdown = 5;
}  // namespace idt_extensibility2

}  // namespace zintra::win32::declared
