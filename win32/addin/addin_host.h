// AddinHost: the composition root of the add-in inside Outlook. It owns the Windows
// ports (registry, files, platform, clock, timers on a message-only window, the message
// pump, the forms and windows, the tray shell, message boxes and dialogs, the SQLite
// error log, the object factory for the MAPI library's classes, the toolbar library and
// Word), the string table in the user interface's language and the ErrorHandling, bundles
// the ports as one Host and makes the host-neutral Connect over them with the add-in's
// parts. It also turns the IDispatch objects Outlook and Word pass in into the ports'
// objects.
//
// Ownership: ConnectObject holds the host; the add-in borrows everything here, so the
// host must outlive a ZintraAddinApp whose deferred shut-down is still pending
// (AddinPending). Built on Outlook's user-interface thread on the first OnConnection,
// never in DllMain. The constructor throws ZError when a port cannot be created (no
// message-only window for the timer, for example); failures the ports meet later inside
// window procedures and timer callbacks are written to the add-in's log.
#pragma once

#include <memory>

#include "src/addin/connect.h"
#include "src/errors/error_handling.h"
#include "src/host/host.h"
#include "src/host/idt_extensibility2.h"
#include "src/host/outlook_application.h"
#include "src/host/word.h"
#include "src/resources/string_table.h"
#include "win32/com/com_ptr.h"
#include "win32/outlook/com_object_factory.h"
#include "win32/outlook/com_toolbar_library.h"
#include "win32/outlook/com_word.h"
#include "win32/ports/failure_log.h"
#include "win32/ports/win32_ports.h"
#include "win32/ports/win32_subclasser.h"

namespace zintra::win32 {

class AddinHost {
 public:
  AddinHost();
  ~AddinHost();
  AddinHost(const AddinHost&) = delete;
  AddinHost& operator=(const AddinHost&) = delete;

  // Valid until EndConnection.
  zintra::Connect& Connect() { return *connect_; }
  // Lets go of the Connect, which shuts down an add-in that still runs (its shut-down
  // may then wait for a job: AddinPending).
  void EndConnection() { connect_.reset(); }
  ErrorHandling& Errors() { return *errors_; }
  const zintra::Host& Host() const { return host_; }

  // The ports' objects over what Outlook and Word pass in (each holds its own
  // reference); a null object gives nullptr.
  std::shared_ptr<Application> WrapApplication(const ComPtr<IDispatch>& application);
  std::shared_ptr<ComAddIn> WrapAddIn(const ComPtr<IDispatch>& add_in);
  std::shared_ptr<WordDocument> WrapDocument(const ComPtr<IDispatch>& document);

  // The add-in once it has started (held weakly here).
  void NoteAddin(const std::shared_ptr<ZintraAddinApp>& app) { addin_ = app; }
  // The started add-in while it runs and is not quitting; else nullptr.
  std::shared_ptr<ZintraAddinApp> RunningAddin() const;
  // Whether a started add-in still exists and has not torn down: its shut-down waits
  // for a job, and this host must stay.
  bool AddinPending() const;

 private:
  Win32Ports ports_;
  // Classes by ProgID: the MAPI library over COM, the subclassing service in our own code.
  ComObjectFactory objects_;
  std::shared_ptr<Win32Subclasser> subclasser_;
  ComToolbarLibrary toolbar_library_;
  ComWord word_;
  StringTable strings_;
  std::unique_ptr<ErrorHandling> errors_;
  FailureSink previous_failure_sink_;
  // The Application the started add-in holds; null before it starts or once it let go.
  ComPtr<IDispatch> OutlookOfAddin() const;

  zintra::Host host_;
  std::shared_ptr<zintra::Connect> connect_;
  std::weak_ptr<ZintraAddinApp> addin_;
};

}  // namespace zintra::win32
