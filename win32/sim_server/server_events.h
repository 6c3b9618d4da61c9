// Source interfaces and DISPIDs the test host raises besides those the add-in's
// adapters share in win32/com/outlook_events.h: the window events beyond Close, the
// namespace's OptionsPagesAdd and the MAPI library's NewMail.
#pragma once

#include "win32/com/outlook_events.h"
#include "win32/com/windows_api.h"

namespace zintra::win32::server_events {

// ExplorerEvents_10 and InspectorEvents_10 (source IIDs in outlook_events.h).
inline constexpr DISPID kWindowActivate = 0xF001;
inline constexpr DISPID kWindowDeactivate = 0xF006;
inline constexpr DISPID kExplorerSelectionChange = 0xF007;

// NameSpaceEvents {0006308C-0000-0000-C000-000000000046}.
inline constexpr IID kNameSpaceEvents = {
    0x0006308C, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};
inline constexpr DISPID kNameSpaceOptionsPagesAdd = 0xF005;  // (Pages, Folder)

// The MAPI library utility object's events {6F8B3D21-4C7A-4E52-A1D9-3B0E5C7F9A12}.
inline constexpr IID kMapiUtilsEvents = {
    0x6F8B3D21, 0x4C7A, 0x4E52, {0xA1, 0xD9, 0x3B, 0x0E, 0x5C, 0x7F, 0x9A, 0x12}};
inline constexpr DISPID kMapiUtilsNewMail = 1;  // (EntryID)

}  // namespace zintra::win32::server_events
