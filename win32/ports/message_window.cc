#include "win32/ports/message_window.h"

#include <utility>

#include "src/core/z_error.h"
#include "win32/ports/failure_log.h"

namespace zintra::win32 {
namespace {

constexpr char kClassName[] = "ZintraMessageWindow";

void RegisterClassOnce() {
  static const bool registered = [] {
    WNDCLASSEXA wc{};
    wc.cbSize = sizeof(wc);
    wc.lpfnWndProc = DefWindowProcA;  // replaced per window once `this` is known
    wc.hInstance = ThisModule();
    wc.lpszClassName = kClassName;
    wc.hCursor = LoadCursorA(nullptr, reinterpret_cast<LPCSTR>(IDC_ARROW));
    wc.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
    // A second module in the process may have registered the class already.
    return RegisterClassExA(&wc) != 0 || GetLastError() == ERROR_CLASS_ALREADY_EXISTS;
  }();
  if (!registered) ThrowLastError("Cannot register the window class", "MessageWindow");
}

std::string SystemMessage(DWORD code) {
  char* text = nullptr;
  DWORD length = FormatMessageA(
      FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
      nullptr, code, 0, reinterpret_cast<char*>(&text), 0, nullptr);
  std::string message = length > 0 && text != nullptr ? std::string(text, length) : "";
  if (text != nullptr) LocalFree(text);
  while (!message.empty() && (message.back() == '\n' || message.back() == '\r' ||
                              message.back() == ' ' || message.back() == '.')) {
    message.pop_back();
  }
  return message.empty() ? "system error " + std::to_string(code) : message;
}

}  // namespace

HINSTANCE ThisModule() {
  HMODULE module = nullptr;
  GetModuleHandleExA(
      GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
      reinterpret_cast<LPCSTR>(&ThisModule), &module);
  return module;
}

void ThrowLastError(const std::string& what, const std::string& source) {
  DWORD code = GetLastError();
  throw ZError(static_cast<int32_t>(code), what + ": " + SystemMessage(code), source);
}

MessageWindow::MessageWindow(Handler handler, Kind kind, const std::string& title)
    : handler_(std::move(handler)) {
  RegisterClassOnce();
  DWORD style = 0, ex_style = 0;
  int width = 0, height = 0;
  switch (kind) {
    case Kind::kMessageOnly:
      break;
    case Kind::kHiddenTopLevel:
      style = WS_POPUP;
      ex_style = WS_EX_TOOLWINDOW;
      break;
    case Kind::kForm:
      style = WS_CAPTION | WS_MINIMIZEBOX | WS_CLIPCHILDREN;
      width = 320;
      height = 200;
      break;
    case Kind::kDialog:
      style = WS_CAPTION | WS_SYSMENU | WS_CLIPCHILDREN;
      ex_style = WS_EX_DLGMODALFRAME | WS_EX_CONTROLPARENT;
      width = 320;
      height = 200;
      break;
  }
  hwnd_.reset(CreateWindowExA(
      ex_style, kClassName, title.c_str(), style, CW_USEDEFAULT, CW_USEDEFAULT, width, height,
      kind == Kind::kMessageOnly ? HWND_MESSAGE : nullptr, nullptr, ThisModule(), nullptr));
  if (!hwnd_) ThrowLastError("Cannot create a window", "MessageWindow");
  SetWindowLongPtrA(hwnd_.get(), GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  SetWindowLongPtrA(hwnd_.get(), GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&Procedure));
}

MessageWindow::~MessageWindow() {
  // Messages the window still gets while it is destroyed no longer reach this object.
  if (hwnd_) SetWindowLongPtrA(hwnd_.get(), GWLP_USERDATA, 0);
}

LRESULT CALLBACK MessageWindow::Procedure(HWND hwnd, UINT message, WPARAM wparam, LPARAM lparam) {
  auto* self = reinterpret_cast<MessageWindow*>(GetWindowLongPtrA(hwnd, GWLP_USERDATA));
  if (self != nullptr && self->handler_) {
    try {
      LRESULT result = 0;
      // The handler may destroy this object (a click that closes the form), so it runs
      // from a copy and nothing of the object is touched afterwards.
      const Handler handler = self->handler_;
      if (handler(message, wparam, lparam, &result)) return result;
    } catch (...) {
      ReportCurrentException("window message " + std::to_string(message));
    }
  }
  return DefWindowProcA(hwnd, message, wparam, lparam);
}

}  // namespace zintra::win32
