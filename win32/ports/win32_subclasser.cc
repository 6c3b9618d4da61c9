#include "win32/ports/win32_subclasser.h"

#include <algorithm>

#include "src/core/z_error.h"
#include "win32/ports/failure_log.h"
#include "win32/ports/handles.h"
#include "win32/ports/message_window.h"

#include <commctrl.h>

namespace zintra::win32 {
namespace {

constexpr char kSubclasserSource[] = "Subclasser";
constexpr UINT_PTR kSubclassId = 0x5A53;  // one subclass per window and service object

}  // namespace

Win32Subclasser::~Win32Subclasser() {
  for (const auto& [hwnd, hooks] : windows_) {
    RemoveWindowSubclass(hwnd, &Procedure, kSubclassId);
  }
}

void Win32Subclasser::AttachMessage(ISubclass* client, WindowHandle handle, int32_t message) {
  HWND hwnd = ToHwnd(handle);
  if (!IsWindow(hwnd)) {
    throw ZError(ERROR_INVALID_WINDOW_HANDLE, "Invalid window handle " + std::to_string(handle),
                 kSubclasserSource);
  }
  const Hook hook{client, message};
  auto it = windows_.find(hwnd);
  if (it == windows_.end()) {
    if (!SetWindowSubclass(hwnd, &Procedure, kSubclassId, reinterpret_cast<DWORD_PTR>(this))) {
      ThrowLastError("Cannot subclass window " + std::to_string(handle), kSubclasserSource);
    }
    it = windows_.emplace(hwnd, std::vector<Hook>{}).first;
  }
  if (std::find(it->second.begin(), it->second.end(), hook) == it->second.end()) {
    it->second.push_back(hook);
  }
}

void Win32Subclasser::DetachMessage(ISubclass* client, WindowHandle handle, int32_t message) {
  HWND hwnd = ToHwnd(handle);
  auto it = windows_.find(hwnd);
  if (it == windows_.end()) return;
  std::erase(it->second, Hook{client, message});
  if (it->second.empty()) Release(hwnd);
}

void Win32Subclasser::Release(HWND hwnd) {
  RemoveWindowSubclass(hwnd, &Procedure, kSubclassId);
  windows_.erase(hwnd);
}

bool Win32Subclasser::Attached(HWND hwnd, const Hook& hook) const {
  auto it = windows_.find(hwnd);
  return it != windows_.end() &&
         std::find(it->second.begin(), it->second.end(), hook) != it->second.end();
}

LRESULT CALLBACK Win32Subclasser::Procedure(HWND hwnd, UINT message, WPARAM wparam, LPARAM lparam,
                                            UINT_PTR, DWORD_PTR self) {
  return reinterpret_cast<Win32Subclasser*>(self)->Dispatch(hwnd, message, wparam, lparam);
}

LRESULT Win32Subclasser::Dispatch(HWND hwnd, UINT message, WPARAM wparam, LPARAM lparam) {
  if (message == WM_NCDESTROY) {
    // The window goes away: its hooks go with it.
    Release(hwnd);
    return DefSubclassProc(hwnd, message, wparam, lparam);
  }
  auto it = windows_.find(hwnd);
  if (it == windows_.end()) return DefSubclassProc(hwnd, message, wparam, lparam);

  // Clients may detach (themselves or others) while they run: work on a copy and call
  // only those still attached.
  std::vector<Hook> hooks;
  for (const Hook& hook : it->second) {
    if (hook.message == static_cast<int32_t>(message)) hooks.push_back(hook);
  }
  if (hooks.empty()) return DefSubclassProc(hwnd, message, wparam, lparam);

  const WindowHandle handle = ToWindowHandle(hwnd);
  const auto message32 = static_cast<int32_t>(message);
  const auto wparam32 = static_cast<int32_t>(wparam);
  const auto lparam32 = static_cast<int32_t>(lparam);
  std::vector<std::pair<Hook, int32_t>> answered;
  for (const Hook& hook : hooks) {
    try {
      answered.emplace_back(hook, hook.client->MsgResponse(handle, message32));
    } catch (...) {
      ReportCurrentException("Subclass MsgResponse");
    }
  }

  LRESULT result = 0;
  bool consumed = false;
  for (const auto& [hook, response] : answered) {
    if (response != kSubclassPreProcess && response != kSubclassConsume) continue;
    if (!Attached(hwnd, hook)) continue;
    try {
      int32_t answer = hook.client->WindowProc(handle, message32, wparam32, lparam32);
      if (response == kSubclassConsume && !consumed) {
        consumed = true;
        result = answer;
      }
    } catch (...) {
      ReportCurrentException("Subclass WindowProc");
    }
  }
  if (!consumed) result = DefSubclassProc(hwnd, message, wparam, lparam);
  for (const auto& [hook, response] : answered) {
    if (response == kSubclassPreProcess || response == kSubclassConsume) continue;
    if (!Attached(hwnd, hook)) continue;
    try {
      hook.client->WindowProc(handle, message32, wparam32, lparam32);
    } catch (...) {
      ReportCurrentException("Subclass WindowProc");
    }
  }
  return result;
}

}  // namespace zintra::win32
