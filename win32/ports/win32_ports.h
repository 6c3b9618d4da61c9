// Win32Ports: every platform port of the Windows host, owned together. Create it on
// Outlook's user-interface thread: the timers, windows and tray icon belong to the thread
// that creates them. The composition root (the add-in DLL) keeps it alive until the
// add-in object is gone, and adds the ports that are not the platform's own (objects by
// ProgID, the toolbar library, Word) when it makes the Host bundle.
#pragma once

#include "src/host/host.h"
#include "win32/ports/win32_clock.h"
#include "win32/ports/win32_dialog_views.h"
#include "win32/ports/win32_error_log_factory.h"
#include "win32/ports/win32_file_system.h"
#include "win32/ports/win32_form_factory.h"
#include "win32/ports/win32_message_pump.h"
#include "win32/ports/win32_msg_box.h"
#include "win32/ports/win32_platform.h"
#include "win32/ports/win32_registry.h"
#include "win32/ports/win32_shell.h"
#include "win32/ports/win32_timer_factory.h"
#include "win32/ports/win32_window_manager.h"

namespace zintra::win32 {

struct Win32Ports {
  // Throws ZError when the timers' window cannot be created.
  Win32Ports() = default;

  // The bundle the add-in borrows; valid while this object lives.
  Host MakeHost(ObjectFactory& objects, ToolbarLibrary* toolbar_library = nullptr,
                Word* word = nullptr) {
    return Host{registry, file_system, platform, clock,           timers,
                pump,     forms,       windows,  shell,           msg_box,
                dialogs,  error_logs,  objects,  toolbar_library, word};
  }

  Win32Registry registry;
  Win32FileSystem file_system;
  Win32Platform platform;
  Win32Clock clock;
  Win32TimerFactory timers;
  Win32MessagePump pump;
  Win32FormFactory forms;
  Win32WindowManager windows;
  Win32Shell shell;
  Win32MsgBox msg_box;
  Win32DialogViewFactory dialogs;
  Win32ErrorLogFactory error_logs;
};

}  // namespace zintra::win32
