#include "src/addin/connect.h"

#include <utility>

#include "src/errors/cached_error.h"
#include "src/errors/programming_error.h"

namespace zintra {

Connect::Connect(const zintra::Host& host, ErrorHandling& errors, const StringTable& strings,
                 AddinParts parts)
    : host_(host), errors_(errors), strings_(strings), parts_(std::move(parts)) {}

Connect::~Connect() {
  // Released with the add-in still running (no window close was seen): a disconnect by
  // Outlook does nothing, so nothing of the shut-down runs here either; the add-in only
  // lets go of Outlook, leaving its queued work for the next start.
  try {
    ClearTrackedExplorer();
    ClearTrackedInspectorMon();
    theOLApp.reset();
    if (std::shared_ptr<ZintraAddinApp> addin = std::move(addin_)) addin->LetGo();
  } catch (...) {
    IgnoreCurrentException();
  }
}

void Connect::LogError(const char* proc_name) {
  CachedError rec;
  rec.SetToCurrentException("Connect", proc_name);
  errors_.LogCachedError(rec);
}

std::shared_ptr<Inspector> Connect::TrackedInspector() const {
  return pTrackedInspectorMon ? pTrackedInspectorMon->Inspector() : nullptr;
}

void Connect::OnConnection(const std::shared_ptr<Application>& Application, int32_t ConnectMode,
                           const std::shared_ptr<ComAddIn>& AddInInst,
                           std::vector<Value>& /*custom*/) {
  try {
    errors_.WriteLogMessage("Gaining reference to Outlook application", false);
    theOLApp = Application;
    if (!theOLApp) throw ZError(kErrObjectNotSet, "Outlook passed no application object");
    errors_.SetOutlookVersions(theOLApp->Version(), theOLApp->ProductCode());
    ProgID_ = AddInInst ? AddInInst->ProgId() : std::string();
    switch (ConnectMode) {
      case kExtCmAfterStartup:
        Startup();
        break;
      case kExtCmStartup:
        StartModeIsHostStartup_ = true;  // Startup waits for OnStartupComplete
        break;
      default:
        errors_.LogWarning("Unknown COM connect mode: " + std::to_string(ConnectMode));
        theOLApp.reset();
        break;
    }
  } catch (...) {
    LogError("IDTExtensibility2_OnConnection");
  }
}

void Connect::OnStartupComplete(std::vector<Value>& /*custom*/) {
  try {
    errors_.WriteLogMessage("IDTExtensibility2_OnStartupComplete fired", false);
    if (theOLApp && !addin_) Startup();
  } catch (...) {
    LogError("IDTExtensibility2_OnStartupComplete");
  }
}

void Connect::OnDisconnection(int32_t RemoveMode, std::vector<Value>& /*custom*/) {
  // When Outlook itself disconnects, the last window's close has already shut down.
  try {
    if (RemoveMode == kExtDmUserClosed) ShutdownAddin(false);
  } catch (...) {
    IgnoreCurrentException();
  }
}

void Connect::OnAddInsUpdate(std::vector<Value>& /*custom*/) {}

void Connect::OnBeginShutdown(std::vector<Value>& /*custom*/) {}

void Connect::Startup() {
  errors_.WriteLogMessage("Startup() called", false);
  std::shared_ptr<Explorers> explorers = theOLApp->Explorers();
  if (explorers->Count() > 0) {
    SetTrackedExplorer(explorers->Item(1));
  } else {
    std::shared_ptr<Inspectors> inspectors = theOLApp->Inspectors();
    if (inspectors->Count() > 0) {
      SetTrackedInspectorMon(inspectors->Item(1));
    } else {
      // Started by another program without a window: Outlook must be free to exit.
      errors_.LogWarning("Outlook opened with no windows");
      theOLApp.reset();
      ClearTrackedExplorer();
      ClearTrackedInspectorMon();
      return;
    }
  }
  errors_.WriteLogMessage("Creating the addin", false);
  addin_ = std::make_shared<ZintraAddinApp>(host_, errors_, strings_, parts_);
  errors_.WriteLogMessage("Initializing the addin", false);
  try {
    addin_->Initialize(theOLApp, ProgID_, StartModeIsHostStartup_);
  } catch (...) {
    // The add-in has torn itself down; stay inert and let Outlook go.
    LogError("Startup");
    addin_.reset();
    ClearTrackedExplorer();
    ClearTrackedInspectorMon();
    theOLApp.reset();
    return;
  }
  addin_created_ = true;
}

void Connect::ShutdownAddin(bool OutlookClosing) {
  errors_.WriteLogMessage("Shutting down", false);
  ClearTrackedExplorer();
  ClearTrackedInspectorMon();
  theOLApp.reset();
  if (!addin_created_ || !addin_) return;
  std::shared_ptr<ZintraAddinApp> addin = std::move(addin_);
  addin->Quit(OutlookClosing);
  const bool pending = addin->ShutdownPending();
  std::weak_ptr<ZintraAddinApp> weak = addin;
  addin.reset();
  // A finished shut-down must leave nothing holding the add-in, or Outlook stays in memory.
  if (!pending && !weak.expired()) {
    errors_.LogWarning("ZintraAddinApp is still referenced after shut-down");
  }
}

// --- Window tracking ---

void Connect::SetTrackedExplorer(const std::shared_ptr<Explorer>& explorer) {
  tracked_explorer_close_.Disconnect();
  pTrackedExplorer = explorer;
  if (pTrackedExplorer) {
    tracked_explorer_close_ =
        pTrackedExplorer->CloseEvent.Connect([this] { pTrackedExplorer_Close(); });
  }
}

void Connect::ClearTrackedExplorer() { SetTrackedExplorer(nullptr); }

void Connect::SetTrackedInspectorMon(const std::shared_ptr<Inspector>& inspector) {
  ClearTrackedInspectorMon();
  auto mon = std::make_shared<InspMon>();
  // A note window tells of its closing only through the subclassing service.
  try {
    std::shared_ptr<Item> item = inspector ? inspector->CurrentItem() : nullptr;
    if (item && item->Class() == ItemClass::kNote) {
      mon->SetSubclasser(InspMon::CreateSubclasser(host_.objects));
    }
  } catch (...) {
    LogError("SetTrackedInspectorMon");
  }
  tracked_inspector_closed_ =
      mon->InspectorClosed.Connect([this] { pTrackedInspectorMon_InspectorClosed(); });
  pTrackedInspectorMon = mon;
  try {
    mon->SetInspector(inspector);
  } catch (...) {
    // The note window could not be hooked: its inspector's own Close is still watched.
    LogError("SetTrackedInspectorMon");
  }
}

void Connect::ClearTrackedInspectorMon() {
  tracked_inspector_closed_.Disconnect();
  if (pTrackedInspectorMon) pTrackedInspectorMon->SetInspector(nullptr);
  pTrackedInspectorMon.reset();
}

int32_t Connect::OtherExplorerIndex(const std::shared_ptr<Explorer>& closing) {
  std::shared_ptr<Explorers> explorers = theOLApp->Explorers();
  const int32_t count = explorers->Count();
  if (count > 1) return explorers->Item(1) == closing ? 2 : 1;
  if (count == 1 && explorers->Item(1) != closing) return 1;
  return 0;
}

int32_t Connect::OtherInspectorIndex(const std::shared_ptr<Inspector>& closing) {
  std::shared_ptr<Inspectors> inspectors = theOLApp->Inspectors();
  const int32_t count = inspectors->Count();
  if (count > 1) return inspectors->Item(1) == closing ? 2 : 1;
  if (count == 1 && inspectors->Item(1) != closing) return 1;
  return 0;
}

void Connect::pTrackedExplorer_Close() {
  try {
    if (!theOLApp) return;
    const int32_t other = OtherExplorerIndex(pTrackedExplorer);
    if (other > 0) {
      SetTrackedExplorer(theOLApp->Explorers()->Item(other));
      return;
    }
    ClearTrackedExplorer();
    std::shared_ptr<Inspectors> inspectors = theOLApp->Inspectors();
    if (inspectors->Count() == 0) {
      ShutdownAddin(true);
    } else {
      SetTrackedInspectorMon(inspectors->Item(1));
    }
  } catch (...) {
    LogError("pTrackedExplorer_Close");
  }
}

void Connect::pTrackedInspectorMon_InspectorClosed() {
  try {
    if (!theOLApp) return;
    const int32_t other = OtherInspectorIndex(TrackedInspector());
    if (other > 0) {
      SetTrackedInspectorMon(theOLApp->Inspectors()->Item(other));
      return;
    }
    ClearTrackedInspectorMon();
    std::shared_ptr<Explorers> explorers = theOLApp->Explorers();
    if (explorers->Count() == 0) {
      ShutdownAddin(true);
    } else {
      SetTrackedExplorer(explorers->Item(1));
    }
  } catch (...) {
    LogError("pTrackedInspectorMon_InspectorClosed");
  }
}

}  // namespace zintra
