// View ports of the two small modal forms: the optional message box
// (frmOptionalMsgBox) and the message form (frmMessage). The core in src/ui/ decides
// what they show and what a click does; the host only draws and reports clicks.
//
// Lifetime: a view is created per showing by DialogViewFactory and owned by the form
// object that uses it; releasing it unloads the window. All calls come from the
// user-interface thread. ShowModal blocks until the form is hidden (by the core's
// cmdOk handler calling Hide) or closed by the user; the cmdOk_Click event is raised
// inside ShowModal. No member throws.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "src/core/event.h"
#include "src/host/window.h"

namespace zintra {

// The controls of frmOptionalMsgBox as the core fills them.
struct OptionalMsgBoxContent {
  std::string caption;            // the form's caption
  std::string lblMsg;             // the message
  std::string chkDontShow;        // the check box caption
  std::string cmdOk;              // the button caption
  int32_t chkDontShow_value = 0;  // 1 ticked, 0 clear
  // The caller's dialog number, whose suppression flag the check box sets; not drawn, but
  // lets a host that records showings tell one message from another (0: none given).
  int32_t dialog = 0;

  bool operator==(const OptionalMsgBoxContent&) const = default;
};

class OptionalMsgBoxView {
 public:
  virtual ~OptionalMsgBoxView() = default;
  // Fills the controls of the loaded, still hidden form.
  virtual void Load(const OptionalMsgBoxContent& content) = 0;
  // Brings the form's window to the front (SetForegroundWindow on its handle).
  virtual void SetForegroundWindow() = 0;
  // Shows the form modally, over `owner` when it is not 0.
  virtual void ShowModal(WindowHandle owner) = 0;
  virtual void Hide() = 0;
  // The check box as the user left it: 1 ticked, 0 clear.
  virtual int32_t chkDontShowValue() const = 0;

  Event<> cmdOk_Click;
};

// A size or position in pixels.
struct ViewSize {
  int32_t width = 0;
  int32_t height = 0;
  bool operator==(const ViewSize&) const = default;
};

struct ViewRect {
  int32_t left = 0;
  int32_t top = 0;
  int32_t width = 0;
  int32_t height = 0;
  bool operator==(const ViewRect&) const = default;
};

// Where frmMessage puts its controls, computed by the core from the text's size.
struct MessageFormLayout {
  std::string caption;
  std::string lblMessage;
  ViewRect label;
  ViewRect button;
  std::string cmdOk;  // the button caption
  ViewSize client;    // the form's inner size
  bool operator==(const MessageFormLayout&) const = default;
};

class MessageFormView {
 public:
  virtual ~MessageFormView() = default;
  // The size `text` takes in the label's font, wrapped at `max_width`.
  virtual ViewSize MeasureText(const std::string& text, int32_t max_width) = 0;
  virtual void Apply(const MessageFormLayout& layout) = 0;
  virtual void ShowModal(WindowHandle owner) = 0;
  virtual void Hide() = 0;

  Event<> cmdOk_Click;
};

class DialogViewFactory {
 public:
  virtual ~DialogViewFactory() = default;
  virtual std::unique_ptr<OptionalMsgBoxView> CreateOptionalMsgBoxView() = 0;
  virtual std::unique_ptr<MessageFormView> CreateMessageFormView() = 0;
};

}  // namespace zintra
