// The source interfaces and DISPIDs of the object-model events the add-in listens to.
// The Windows adapters advise IDispatch sinks on these connection points. The served
// Outlook of the tests keeps its own table, transcribed from Outlook's type library
// (win32/sim_server/outlook_declarations.h), and a test holds this one against it.
#pragma once

#include "win32/com/windows_api.h"

namespace zintra::win32::outlook_events {

// {0006302C-0000-0000-C000-000000000046}
inline constexpr IID kApplicationEvents11 = {
    0x0006302C, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};
inline constexpr DISPID kItemSend = 0xF002;  // (Item, Cancel&)
inline constexpr DISPID kNewMail = 0xF003;
inline constexpr DISPID kOptionsPagesAdd = 0xF005;  // (Pages)
inline constexpr DISPID kStartup = 0xF006;
inline constexpr DISPID kQuit = 0xF007;

// {00063077-0000-0000-C000-000000000046}
inline constexpr IID kItemsEvents = {
    0x00063077, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};
inline constexpr DISPID kItemAdd = 0xF001;     // (Item)
inline constexpr DISPID kItemChange = 0xF002;  // (Item)
inline constexpr DISPID kItemRemove = 0xF003;

// {00063078-0000-0000-C000-000000000046}
inline constexpr IID kExplorersEvents = {
    0x00063078, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};
inline constexpr DISPID kNewExplorer = 0xF001;  // (Explorer)

// {00063079-0000-0000-C000-000000000046}
inline constexpr IID kInspectorsEvents = {
    0x00063079, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};
inline constexpr DISPID kNewInspector = 0xF001;  // (Inspector)

// {0006300F-0000-0000-C000-000000000046}
inline constexpr IID kExplorerEvents10 = {
    0x0006300F, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};
inline constexpr DISPID kExplorerClose = 0xF008;
// Explorer and inspector windows share these numbers.
inline constexpr DISPID kWindowActivate = 0xF001;
inline constexpr DISPID kWindowDeactivate = 0xF006;
inline constexpr DISPID kExplorerSelectionChange = 0xF007;

// {0006302A-0000-0000-C000-000000000046}: InspectorEvents_10, the one inspectors raise
// their events on ({0006307D-...}, the older InspectorEvents, is not).
inline constexpr IID kInspectorEvents10 = {
    0x0006302A, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};
inline constexpr DISPID kInspectorClose = 0xF008;

// {0006302B-0000-0000-C000-000000000046}
inline constexpr IID kItemEvents10 = {
    0x0006302B, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};
inline constexpr DISPID kItemClose = 0xF004;  // (Cancel&)

// {0006308C-0000-0000-C000-000000000046}
inline constexpr IID kNameSpaceEvents = {
    0x0006308C, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};
inline constexpr DISPID kNameSpaceOptionsPagesAdd = 0xF005;  // (Pages, Folder)

// {000C0351-0000-0000-C000-000000000046}: a command bar button's events.
inline constexpr IID kCommandBarButtonEvents = {
    0x000C0351, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};
inline constexpr DISPID kButtonClick = 1;  // (Ctrl, CancelDefault&)

// The MAPI library's utility object {6F8B3D21-4C7A-4E52-A1D9-3B0E5C7F9A12}. Adapters
// ask the object for its default source interface first and use this one only when
// it does not say.
inline constexpr IID kMapiUtilsEvents = {
    0x6F8B3D21, 0x4C7A, 0x4E52, {0xA1, 0xD9, 0x3B, 0x0E, 0x5C, 0x7F, 0x9A, 0x12}};
inline constexpr DISPID kMapiUtilsNewMail = 1;  // (EntryID)

// The toolbar library's helper {3C5E7A90-2B4D-4F61-8E17-9A0B1C2D3E4F}, likewise asked
// for its default source interface first.
inline constexpr IID kToolbarHelperEvents = {
    0x3C5E7A90, 0x2B4D, 0x4F61, {0x8E, 0x17, 0x9A, 0x0B, 0x1C, 0x2D, 0x3E, 0x4F}};
inline constexpr DISPID kBarCreated = 1;      // (Bar)
inline constexpr DISPID kControlCreated = 2;  // (Control)
inline constexpr DISPID kUpdateBar = 3;       // (Bar)
inline constexpr DISPID kUpdateControl = 4;   // (Control)
inline constexpr DISPID kButtonClicked = 5;   // (Control, Window)

}  // namespace zintra::win32::outlook_events
