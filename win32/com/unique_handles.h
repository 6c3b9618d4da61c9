// The owners of the platform's handles, each a UniqueHandle (src/core/unique_handle.h):
// one alias per kind of handle, with the function that releases it.
#pragma once

#include "src/core/unique_handle.h"
#include "win32/com/windows_api.h"

namespace zintra::win32 {

namespace handle_close {
// Plain functions, so that their addresses are constants; the import library's entry
// points are not.
inline BOOL KernelObject(HANDLE handle) noexcept { return CloseHandle(handle); }
inline LONG Key(HKEY key) noexcept { return RegCloseKey(key); }
inline BOOL Menu(HMENU menu) noexcept { return DestroyMenu(menu); }
inline BOOL Icon(HICON icon) noexcept { return DestroyIcon(icon); }
inline BOOL Window(HWND window) noexcept { return DestroyWindow(window); }
inline BOOL GdiObject(HGDIOBJ object) noexcept { return DeleteObject(object); }
inline BOOL MemoryDc(HDC dc) noexcept { return DeleteDC(dc); }
inline BOOL Module(HMODULE module) noexcept { return FreeLibrary(module); }
}  // namespace handle_close

// A kernel object (file, event): functions that open one answer INVALID_HANDLE_VALUE or
// null on failure, so neither is closed.
struct KernelHandleTraits {
  using Handle = HANDLE;
  static HANDLE Invalid() noexcept { return INVALID_HANDLE_VALUE; }
  static bool IsValid(HANDLE handle) noexcept {
    return handle != INVALID_HANDLE_VALUE && handle != nullptr;
  }
  void Close(HANDLE handle) const noexcept { handle_close::KernelObject(handle); }
};
using UniqueKernelHandle = UniqueHandle<KernelHandleTraits>;

// An open registry key (RegOpenKeyEx, RegCreateKeyEx).
using UniqueHKey = UniqueAny<HKEY, &handle_close::Key>;
// A menu that is not attached to a window.
using UniqueHMenu = UniqueAny<HMENU, &handle_close::Menu>;
// An icon made at run time (CreateIconIndirect), not a shared one.
using UniqueHIcon = UniqueAny<HICON, &handle_close::Icon>;
// A window this code created and nothing else destroys.
using UniqueHWnd = UniqueAny<HWND, &handle_close::Window>;
// A GDI object: font, bitmap, brush, pen (not selected into a device context when it goes).
using UniqueGdiObject = UniqueAny<HGDIOBJ, &handle_close::GdiObject>;
// A memory device context (CreateCompatibleDC).
using UniqueMemoryDc = UniqueAny<HDC, &handle_close::MemoryDc>;
// A library loaded with LoadLibrary.
using UniqueHModule = UniqueAny<HMODULE, &handle_close::Module>;

}  // namespace zintra::win32
