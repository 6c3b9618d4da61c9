// Win32Subclasser: the window-subclassing service over comctl32's SetWindowSubclass.
// A window is subclassed while at least one (client, message) is attached to it, and
// released when the last one is detached or the window is destroyed. For each attached
// message the clients run in attach order: pre-processing clients before the window's
// own procedure, post-processing ones after it; a consuming client's result replaces the
// window's own handling. A client may detach itself or others from its WindowProc. An
// exception from a client is reported (ReportFailure) and the message goes on. Windows
// must belong to the calling thread (Outlook's user-interface thread).
#pragma once

#include <map>
#include <string>
#include <vector>

#include "src/host/subclasser.h"
#include "win32/com/windows_api.h"

namespace zintra::win32 {

class Win32Subclasser : public Subclasser {
 public:
  Win32Subclasser() = default;
  ~Win32Subclasser() override;
  Win32Subclasser(const Win32Subclasser&) = delete;
  Win32Subclasser& operator=(const Win32Subclasser&) = delete;

  std::string TypeName() const override { return "Subclasser"; }
  // Throws ZError 1400 (invalid window handle) for a window that does not exist, and the
  // platform's error when the window cannot be subclassed.
  void AttachMessage(ISubclass* client, WindowHandle hwnd, int32_t message) override;
  void DetachMessage(ISubclass* client, WindowHandle hwnd, int32_t message) override;

  // Windows currently subclassed.
  size_t HookedWindowCount() const { return windows_.size(); }

 private:
  struct Hook {
    ISubclass* client;
    int32_t message;
    bool operator==(const Hook&) const = default;
  };

  static LRESULT CALLBACK Procedure(HWND hwnd, UINT message, WPARAM wparam, LPARAM lparam,
                                    UINT_PTR id, DWORD_PTR self);
  LRESULT Dispatch(HWND hwnd, UINT message, WPARAM wparam, LPARAM lparam);
  bool Attached(HWND hwnd, const Hook& hook) const;
  void Release(HWND hwnd);

  std::map<HWND, std::vector<Hook>> windows_;
};

}  // namespace zintra::win32
