// Subclasser: the window-subclassing service (the maker's separate component, created
// by ProgID kSubclasserProgId). A client asks for chosen messages of one window; the
// service hooks that window's procedure and calls the client's ISubclass::WindowProc
// for each of those messages, before or after the window's own procedure as the
// client's MsgResponse says. Other messages pass untouched.
//
// Ownership: the service does not own its clients; a client detaches every message it
// attached before it goes away. Attaching the same (client, window, message) twice is
// harmless. A window that no longer exists throws the platform's error from Attach.
// Called and calling back on Outlook's thread only.
#pragma once

#include <cstdint>

#include "src/host/automation_object.h"
#include "src/host/window.h"

namespace zintra {

inline constexpr char kSubclasserProgId[] = "TovuSubclasser.Subclasser";

// Window messages the system listens for.
inline constexpr int32_t kWmShowWindow = 24;

// MsgResponse codes: where the client's WindowProc runs relative to the window's own.
inline constexpr int32_t kSubclassPostProcess = 1;  // after it (the default)
inline constexpr int32_t kSubclassPreProcess = 2;   // before it
inline constexpr int32_t kSubclassConsume = 3;      // instead of it

class ISubclass {
 public:
  virtual ~ISubclass() = default;
  virtual int32_t MsgResponse(WindowHandle hwnd, int32_t message) = 0;
  // The result is the message's result when the client consumes it.
  virtual int32_t WindowProc(WindowHandle hwnd, int32_t message, int32_t wParam,
                             int32_t lParam) = 0;
};

class Subclasser : public AutomationObject {
 public:
  virtual void AttachMessage(ISubclass* client, WindowHandle hwnd, int32_t message) = 0;
  virtual void DetachMessage(ISubclass* client, WindowHandle hwnd, int32_t message) = 0;
};

}  // namespace zintra
