// What the keep-alive tests do from Outlook's side: run the program's registration, pump
// this thread's messages, find the keep-alive processes, call members by name, and play
// an Outlook in a child process that can be killed.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "win32/com/com_ptr.h"
#include "win32/com/windows_api.h"

namespace zintra::win32::testing {

// ZintraKeepAlive.exe next to the test program.
std::wstring KeepAliveExe();
// Runs `command_line` (program and arguments), waits at most `timeout_ms`; its exit
// code, or -1 when it could not start or did not end in time (it is then killed).
int RunProgram(const std::wstring& command_line, DWORD timeout_ms);
// Pumps messages until `done` holds or `timeout_ms` passed; whether `done` held.
bool PumpUntil(const std::function<bool()>& done, DWORD timeout_ms);
// Waits until COM's running object table answers (Wine starts its service on first use,
// and a fresh prefix may not have it ready); whether it did within `timeout_ms`.
bool WaitForRunningObjectTable(DWORD timeout_ms);
// Ids of the running keep-alive processes.
std::vector<DWORD> KeepAliveProcesses();
// A keep-alive process that is not in `before`, opened to wait on; null if none came
// within `timeout_ms`.
HANDLE NewKeepAliveProcess(const std::vector<DWORD>& before, DWORD timeout_ms);
// Calls member `name` as a method with `args` (in the natural order).
HRESULT CallByName(IDispatch* object, const wchar_t* name, std::vector<VARIANT> args,
                   EXCEPINFO* excepinfo = nullptr);

// This test program started again as an Outlook that publishes itself and lives until
// it is killed (at most a minute); null when it did not come up in time.
HANDLE StartOutlookProcess();
// The child side of StartOutlookProcess: returns the program's exit code.
int PlayOutlook(const std::wstring& ready_event);
inline constexpr wchar_t kPlayOutlookSwitch[] = L"--play-outlook";

}  // namespace zintra::win32::testing
