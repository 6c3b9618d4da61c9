// Host: the bundle of port references that the composition root (the Windows DLL's
// entry point, the simulated Outlook, a test fixture) builds once and hands to the
// add-in. The add-in and everything it creates borrow these ports; the composition
// root owns them and keeps them alive until the add-in object is gone. Ports are
// called on Outlook's user-interface thread only.
#pragma once

#include "src/host/clock.h"
#include "src/host/decision_log.h"
#include "src/host/dialog_views.h"
#include "src/host/error_log_store.h"
#include "src/host/file_system.h"
#include "src/host/form_factory.h"
#include "src/host/message_pump.h"
#include "src/host/msg_box.h"
#include "src/host/object_factory.h"
#include "src/host/platform.h"
#include "src/host/registry.h"
#include "src/host/shell.h"
#include "src/host/timer.h"
#include "src/host/toolbar_library.h"
#include "src/host/window.h"
#include "src/host/word.h"

namespace zintra {

struct Host {
  Registry& registry;
  FileSystem& file_system;
  Platform& platform;
  Clock& clock;
  TimerFactory& timers;
  MessagePump& pump;
  FormFactory& forms;
  WindowManager& windows;
  Shell& shell;
  MsgBox& msg_box;
  DialogViewFactory& dialogs;
  ErrorLogFactory& error_logs;
  // Classes created by ProgID: the MAPI library, the keep-alive program, the options page.
  ObjectFactory& objects;
  // The toolbar library and Word; nullptr on a host without them (then the add-in has
  // no toolbar, and no letters).
  ToolbarLibrary* toolbar_library = nullptr;
  Word* word = nullptr;
  // Where the add-in states its decisions about items; nullptr: nowhere (the records
  // serve a dry run, not the add-in).
  DecisionLog* decisions = nullptr;
};

}  // namespace zintra
