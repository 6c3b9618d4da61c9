#include "tests/win32/keepalive/keep_alive_host.h"

#include <tlhelp32.h>

#include <algorithm>
#include <chrono>

#include "tests/win32/keepalive/fake_outlook.h"
#include "tests/win32/support/pump_messages.h"

namespace zintra::win32::testing {

std::wstring KeepAliveExe() {
  wchar_t self[MAX_PATH] = {};
  GetModuleFileNameW(nullptr, self, MAX_PATH);
  std::wstring path = self;
  return path.substr(0, path.find_last_of(L"\\/") + 1) + L"ZintraKeepAlive.exe";
}

int RunProgram(const std::wstring& command_line, DWORD timeout_ms) {
  std::wstring line = command_line;
  STARTUPINFOW startup{};
  startup.cb = sizeof(startup);
  PROCESS_INFORMATION process{};
  if (!CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                      &process)) {
    return -1;
  }
  CloseHandle(process.hThread);
  DWORD code = static_cast<DWORD>(-1);
  if (WaitForSingleObject(process.hProcess, timeout_ms) == WAIT_OBJECT_0) {
    GetExitCodeProcess(process.hProcess, &code);
  } else {
    TerminateProcess(process.hProcess, 1);
  }
  CloseHandle(process.hProcess);
  return static_cast<int>(code);
}

bool PumpUntil(const std::function<bool()>& done, DWORD timeout_ms) {
  return PumpMessagesUntil(done, timeout_ms, 10);
}

bool WaitForRunningObjectTable(DWORD timeout_ms) {
  return PumpUntil(
      [] {
        FakeOutlook probe;
        if (FAILED(probe.Publish())) return false;
        probe.Revoke();
        return true;
      },
      timeout_ms);
}

std::vector<DWORD> KeepAliveProcesses() {
  std::vector<DWORD> ids;
  HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
  if (snapshot == INVALID_HANDLE_VALUE) return ids;
  PROCESSENTRY32W entry{};
  entry.dwSize = sizeof(entry);
  for (BOOL more = Process32FirstW(snapshot, &entry); more;
       more = Process32NextW(snapshot, &entry)) {
    if (lstrcmpiW(entry.szExeFile, L"ZintraKeepAlive.exe") == 0) {
      ids.push_back(entry.th32ProcessID);
    }
  }
  CloseHandle(snapshot);
  return ids;
}

HANDLE NewKeepAliveProcess(const std::vector<DWORD>& before, DWORD timeout_ms) {
  HANDLE found = nullptr;
  PumpUntil(
      [&] {
        for (DWORD id : KeepAliveProcesses()) {
          if (std::find(before.begin(), before.end(), id) != before.end()) continue;
          found = OpenProcess(SYNCHRONIZE | PROCESS_QUERY_LIMITED_INFORMATION | PROCESS_TERMINATE,
                              FALSE, id);
          if (found) return true;
        }
        return false;
      },
      timeout_ms);
  return found;
}

HRESULT CallByName(IDispatch* object, const wchar_t* name, std::vector<VARIANT> args,
                   EXCEPINFO* excepinfo) {
  DISPID id = DISPID_UNKNOWN;
  LPOLESTR names[] = {const_cast<LPOLESTR>(name)};
  HRESULT hr = object->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id);
  if (FAILED(hr)) return hr;
  std::reverse(args.begin(), args.end());  // IDispatch takes them last first
  DISPPARAMS params{args.data(), nullptr, static_cast<UINT>(args.size()), 0};
  VARIANT result;
  VariantInit(&result);
  EXCEPINFO ignored{};
  hr = object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &params, &result,
                      excepinfo ? excepinfo : &ignored, nullptr);
  VariantClear(&result);
  if (!excepinfo) {
    SysFreeString(ignored.bstrSource);
    SysFreeString(ignored.bstrDescription);
    SysFreeString(ignored.bstrHelpFile);
  }
  return hr;
}

HANDLE StartOutlookProcess() {
  const std::wstring event_name =
      L"ZintraKeepAliveTestOutlook" + std::to_wstring(GetCurrentProcessId());
  HANDLE ready = CreateEventW(nullptr, TRUE, FALSE, event_name.c_str());
  wchar_t self[MAX_PATH] = {};
  GetModuleFileNameW(nullptr, self, MAX_PATH);
  std::wstring line = L"\"" + std::wstring(self) + L"\" " + kPlayOutlookSwitch + L" " + event_name;
  STARTUPINFOW startup{};
  startup.cb = sizeof(startup);
  PROCESS_INFORMATION process{};
  if (!ready || !CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                                &startup, &process)) {
    if (ready) CloseHandle(ready);
    return nullptr;
  }
  CloseHandle(process.hThread);
  HANDLE both[] = {ready, process.hProcess};
  DWORD woke = WaitForMultipleObjects(2, both, FALSE, 30000);
  CloseHandle(ready);
  if (woke != WAIT_OBJECT_0) {
    TerminateProcess(process.hProcess, 1);
    CloseHandle(process.hProcess);
    return nullptr;
  }
  return process.hProcess;
}

int PlayOutlook(const std::wstring& ready_event) {
  if (FAILED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) return 1;
  int code = 1;
  {
    FakeOutlook outlook;
    if (SUCCEEDED(outlook.Publish())) {
      HANDLE ready = OpenEventW(EVENT_MODIFY_STATE, FALSE, ready_event.c_str());
      if (ready) {
        SetEvent(ready);
        CloseHandle(ready);
        PumpUntil(nullptr, 60000);  // until killed; a minute at most
        code = 0;
      }
    }
  }
  CoUninitialize();
  return code;
}

}  // namespace zintra::win32::testing
