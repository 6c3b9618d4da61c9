// The keep-alive program's COM identity: the class the add-in creates by ProgID when a
// shut-down has to wait for a job, and Outlook's application class, under which Outlook
// publishes its running Application in the running object table.
#pragma once

#include "win32/com/windows_api.h"

namespace zintra::win32 {

inline constexpr wchar_t kKeepAliveProgIdW[] = L"ZintraKeepAlive.KeepAlive";
inline constexpr wchar_t kKeepAliveClassName[] = L"Zintra keep-alive";
inline constexpr wchar_t kKeepAliveExeName[] = L"ZintraKeepAlive.exe";

// {136B76B5-1DE6-4486-BA20-73E19DF74AAA}
inline constexpr CLSID kClsidKeepAlive = {
    0x136B76B5, 0x1DE6, 0x4486, {0xBA, 0x20, 0x73, 0xE1, 0x9D, 0xF7, 0x4A, 0xAA}};

// Outlook.Application, {0006F03A-0000-0000-C000-000000000046}.
inline constexpr CLSID kClsidOutlookApplication = {
    0x0006F03A, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};

}  // namespace zintra::win32
