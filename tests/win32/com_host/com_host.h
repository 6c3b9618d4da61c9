// ComHost: plays Outlook for the add-in DLL through real COM. It builds a mailbox
// profile (a "Clients" contact folder with Ann Lee, a "Clients Journal" for the
// copies), serves it through IDispatch, serves the MAPI library's classes by ProgID
// from this process, writes the add-in's settings to the registry, activates
// "ZintraAddin.Connect" by ProgID and calls IDTExtensibility2 through its vtable in
// Outlook's order. It pumps this thread's messages so that the add-in's timer drives
// its job queue. Everything it registers or writes is removed on destruction.
//
// One ComHost at a time per thread (COM is initialised for its life).
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "sim/mapi/sim_outlook_host.h"
#include "sim/outlook/profile_builder.h"
#include "src/core/value.h"
#include "src/settings/reg_settings.h"
#include "win32/addin/idt_extensibility2_com.h"
#include "win32/com/com_ptr.h"
#include "win32/ports/win32_clock.h"
#include "win32/ports/win32_file_system.h"
#include "win32/ports/win32_platform.h"
#include "win32/ports/win32_registry.h"
#include "win32/sim_server/served_classes.h"

namespace zintra::win32 {

class ComHost {
 public:
  ComHost();
  ~ComHost();
  ComHost(const ComHost&) = delete;
  ComHost& operator=(const ComHost&) = delete;

  sim::Profile& profile() { return outlook_->profile; }
  sim::SimOlApplication& app() { return *outlook_->application; }
  sim::ProfileBuilder& builder() { return builder_; }
  // The settings written by WriteSettings: one folder set (Clients -> Clients Journal).
  RegSettings& settings() { return settings_; }

  // Saves settings() to the registry as a user who has run the add-in before.
  void WriteSettings();
  // CoCreateInstance by the ProgID "ZintraAddin.Connect", asking for IDTExtensibility2.
  HRESULT Load();
  HRESULT OnConnection(int connect_mode = 1);
  HRESULT OnStartupComplete();
  HRESULT OnBeginShutdown();
  HRESULT OnDisconnection(int remove_mode = 0);
  // Outlook ends: every window closes, Quit, then OnBeginShutdown and
  // OnDisconnection; the host then lets go of the add-in. Returns the first failure.
  HRESULT QuitOutlook();
  // Releases the add-in and the application object the host still holds.
  void ReleaseAddin();
  bool Loaded() const { return static_cast<bool>(addin_); }
  // The Application passed to OnConnection (empty before).
  const ComPtr<IDispatch>& Application() const { return application_; }
  // The add-in instance passed to OnConnection (empty before).
  const ComPtr<IDispatch>& AddInInstance() const { return add_in_instance_; }
  // The sinks advised on the application's events now, each with a reference.
  std::vector<ComPtr<IDispatch>> ApplicationSinks() const;
  // The loaded DLL's DllCanUnloadNow; E_FAIL when ZintraAddin.dll is not loaded.
  static HRESULT DllCanUnloadNow();

  // Pumps messages until `done` or `timeout_ms` has passed; whether `done` held.
  bool PumpUntil(const std::function<bool()>& done, int timeout_ms);
  void PumpFor(int ms);

  // Mail from Ann Lee arriving in the Inbox (ItemAdd there, NewMail).
  std::shared_ptr<sim::MessageRecord> MailFromAnn(const std::string& subject);
  // Subjects of the items in the journal, in the order stored.
  std::vector<std::string> Copies() const;
  // A user property of a stored item; Empty when it has none.
  Value UserProperty(const std::shared_ptr<sim::MessageRecord>& record, const std::string& name);

  const std::shared_ptr<sim::MessageRecord>& ann() const { return ann_; }
  const std::shared_ptr<sim::FolderRecord>& clients() const { return clients_; }
  const std::shared_ptr<sim::FolderRecord>& journal() const { return journal_; }
  // Outlook's NameSpace of the profile, served through IDispatch.
  ComPtr<IDispatch> Session();
  int64_t LibraryObjectsCreated() const { return classes_ ? classes_->Created() : 0; }
  // What failed to register of the library's classes (empty when all are served).
  std::vector<std::string> ClassFailures() const {
    return classes_ ? classes_->Failures() : std::vector<std::string>{};
  }

 private:
  struct ComApartment {
    ComApartment();
    ~ComApartment();
  };
  ComApartment apartment_;
  // The profile stamps items with the same clock the add-in reads, as Outlook does.
  std::unique_ptr<Win32Clock> clock_ = std::make_unique<Win32Clock>();
  std::unique_ptr<sim::SimOutlookHost> outlook_;
  sim::ProfileBuilder builder_;
  std::unique_ptr<ServedClasses> classes_;
  Win32Registry registry_;
  Win32FileSystem files_;
  Win32Platform platform_;
  RegSettings settings_;
  std::shared_ptr<sim::FolderRecord> clients_, journal_;
  std::shared_ptr<sim::MessageRecord> ann_;
  ComPtr<IDispatch> application_;
  ComPtr<IDispatch> add_in_instance_;
  ComPtr<IDTExtensibility2Com> addin_;
  int64_t live_at_start_;
};

}  // namespace zintra::win32
