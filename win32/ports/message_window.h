// MessageWindow: a window owned by this object that hands every message it receives to a
// handler. A message-only window (the default) takes timers and posted messages; a hidden
// top-level one can also own a tray icon's pop-up menu and come to the foreground; a form
// or dialog is a captioned top-level window, created hidden. The window belongs to the thread that
// created it and is destroyed with the object. The handler runs inside the window procedure: an
// exception it throws is reported (ReportFailure) and the message gets the default handling; it
// never reaches the caller of DispatchMessage.
#pragma once

#include <functional>
#include <string>

#include "win32/com/unique_handles.h"
#include "win32/com/windows_api.h"

namespace zintra::win32 {

class MessageWindow {
 public:
  // Returns true when it handled the message, with *result its result.
  using Handler = std::function<bool(UINT message, WPARAM wparam, LPARAM lparam, LRESULT* result)>;
  enum class Kind {
    kMessageOnly,
    kHiddenTopLevel,  // borderless, never in the task bar
    kForm,            // caption and minimise box, no close box (the owner decides)
    kDialog,          // caption and close box, fixed size
  };

  // Throws ZError (the platform's error) when the window cannot be created.
  MessageWindow(Handler handler, Kind kind = Kind::kMessageOnly,
                const std::string& title = "Zintra");
  ~MessageWindow();
  MessageWindow(const MessageWindow&) = delete;
  MessageWindow& operator=(const MessageWindow&) = delete;

  HWND hwnd() const { return hwnd_.get(); }

 private:
  static LRESULT CALLBACK Procedure(HWND hwnd, UINT message, WPARAM wparam, LPARAM lparam);

  Handler handler_;
  UniqueHWnd hwnd_;
};

// The module (DLL or program) this code is linked into; window classes and resources
// are registered against it.
HINSTANCE ThisModule();

// Throws ZError with the platform's last error: number GetLastError(), description naming
// `what` and the system's message.
[[noreturn]] void ThrowLastError(const std::string& what, const std::string& source);

}  // namespace zintra::win32
