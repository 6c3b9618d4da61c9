// IDTExtensibility2: the interface through which Outlook loads, starts and unloads a
// COM add-in, and ComAddIn, the add-in instance object Outlook passes with it. The
// Windows host forwards the COM calls one to one; the simulated Outlook makes the
// same calls in the same order as Outlook does.
//
// Call order: OnConnection; for ConnectMode kExtCmStartup, OnStartupComplete once
// Outlook's start-up is done; OnAddInsUpdate whenever the list of add-ins changes;
// OnBeginShutdown and OnDisconnection(kExtDmHostShutdown) when Outlook ends, or only
// OnDisconnection(kExtDmUserClosed) when the user unloads the add-in. `custom` is
// Outlook's array of host-specific values (always empty from Outlook). All calls
// arrive on Outlook's thread; implementations must not let an exception escape.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "src/core/value.h"
#include "src/host/automation_object.h"

namespace zintra {

class Application;

// ext_ConnectMode
inline constexpr int32_t kExtCmAfterStartup = 0;
inline constexpr int32_t kExtCmStartup = 1;
inline constexpr int32_t kExtCmExternal = 2;
inline constexpr int32_t kExtCmCommandLine = 3;
// ext_DisconnectMode
inline constexpr int32_t kExtDmHostShutdown = 0;
inline constexpr int32_t kExtDmUserClosed = 1;

// Office's COMAddIn: the loaded add-in as Outlook registers it.
class ComAddIn : public AutomationObject {
 public:
  virtual std::string ProgId() const = 0;  // "ZintraAddin.Connect"
  virtual std::string Description() const = 0;
  virtual bool Connect() const = 0;  // whether the add-in is loaded
};

class IDTExtensibility2 {
 public:
  virtual ~IDTExtensibility2() = default;
  virtual void OnConnection(const std::shared_ptr<Application>& Application, int32_t ConnectMode,
                            const std::shared_ptr<ComAddIn>& AddInInst,
                            std::vector<Value>& custom) = 0;
  virtual void OnDisconnection(int32_t RemoveMode, std::vector<Value>& custom) = 0;
  virtual void OnAddInsUpdate(std::vector<Value>& custom) = 0;
  virtual void OnStartupComplete(std::vector<Value>& custom) = 0;
  virtual void OnBeginShutdown(std::vector<Value>& custom) = 0;
};

}  // namespace zintra
