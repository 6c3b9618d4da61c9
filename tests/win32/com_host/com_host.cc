#include "tests/win32/com_host/com_host.h"

#include <chrono>

#include "sim/outlook/sim_item.h"
#include "src/host/idt_extensibility2.h"
#include "tests/win32/support/pump_messages.h"
#include "win32/com/windows_api.h"
#include "win32/sim_server/dispatch_object.h"
#include "win32/sim_server/outlook_declarations.h"
#include "win32/sim_server/serve.h"

namespace zintra::win32 {
namespace {

// The add-in instance Outlook hands to OnConnection.
class HostComAddIn : public ComAddIn {
 public:
  std::string TypeName() const override { return "COMAddIn"; }
  std::string ProgId() const override { return "ZintraAddin.Connect"; }
  std::string Description() const override { return "Zintra 3.0"; }
  bool Connect() const override { return true; }
};

// The empty `custom` array Outlook passes to every IDTExtensibility2 call.
class CustomArray {
 public:
  CustomArray() : array_(SafeArrayCreateVector(VT_VARIANT, 0, 0)) {}
  ~CustomArray() { SafeArrayDestroy(array_); }
  SAFEARRAY** Put() { return &array_; }

 private:
  SAFEARRAY* array_;
};

void RemoveSettings() { RegDeleteTreeA(HKEY_CURRENT_USER, kProductKey); }

}  // namespace

ComHost::ComApartment::ComApartment() { CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED); }
ComHost::ComApartment::~ComApartment() { CoUninitialize(); }

ComHost::ComHost()
    : outlook_(std::make_unique<sim::SimOutlookHost>(clock_.get())),
      builder_(outlook_->profile),
      settings_(registry_, files_, platform_),
      live_at_start_(DispatchObject::LiveCount()) {
  RemoveSettings();
  auto top = builder_.Mailbox(sim::ProfileBuilder::Exchange("Jane Doe", "jdoe", "CONTOSO"));
  clients_ = builder_.ContactFolder("Clients", top);
  journal_ = builder_.Folder("Clients Journal", kOlJournalItem, top);
  ann_ = builder_.Contact(clients_, {"Ann Lee", {"ann@fabrikam.com"}});
  classes_ = std::make_unique<ServedClasses>(outlook_->factory, ServedClasses::LibraryProgIds());
  app().OpenExplorer(profile().DefaultFolder(kOlFolderInbox));

  settings_.Read(false, false, false);
  auto& p = profile();
  settings_.ContactFolderEntryIDs.Add(p.EntryIdOf(*clients_));
  settings_.ContactFolderStoreIDs.Add(p.StoreIdOf(*clients_->store));
  settings_.JournalFolderEntryIDs.Add(p.EntryIdOf(*journal_));
  settings_.JournalFolderStoreIDs.Add(p.StoreIdOf(*journal_->store));
  for (StringList* list : {&settings_.EmailFolderEntryIDs, &settings_.EmailFolderStoreIDs,
                           &settings_.SharedCalendarEntryIDs, &settings_.SharedCalendarStoreIDs,
                           &settings_.SharedJournalEntryIDs, &settings_.SharedJournalStoreIDs,
                           &settings_.SharedTaskListEntryIDs, &settings_.SharedTaskListStoreIDs}) {
    list->Add(std::string());
  }
  settings_.FoldersetFlags.Add(0);
  settings_.FoldersetCount = 1;
  settings_.LogLevel = 3;  // everything: a failed run then tells its story
  // The toolbar library is a separate product that this host does not serve.
  settings_.NeverLoadToolbars = true;
}

ComHost::~ComHost() {
  if (addin_) QuitOutlook();
  ReleaseAddin();
  CoFreeUnusedLibraries();
  classes_.reset();
  RemoveSettings();
  // Objects an add-in still holds point into the profile: like Outlook, which stays in
  // memory while an add-in holds its objects, the profile then outlives this host, so
  // that a late call from the add-in cannot reach freed memory. The test reports them.
  if (DispatchObject::LiveCount() > live_at_start_) {
    outlook_.release();  // NOLINT: kept on purpose, with the clock it reads
    clock_.release();    // NOLINT
  }
}

void ComHost::WriteSettings() {
  settings_.Save();
  settings_.UserFirstRun(false);
}

HRESULT ComHost::Load() {
  CLSID clsid{};
  HRESULT hr = CLSIDFromProgID(L"ZintraAddin.Connect", &clsid);
  if (FAILED(hr)) return hr;
  // Asked for by the IID Office declares, not the DLL's own spelling of it.
  return CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, declared::idt_extensibility2::kIid,
                          reinterpret_cast<void**>(addin_.Put()));
}

ComPtr<IDispatch> ComHost::Session() { return Serve(outlook_->application->Session()); }

HRESULT ComHost::OnConnection(int connect_mode) {
  if (!addin_) return E_POINTER;
  application_ = Serve(outlook_->application);
  add_in_instance_ = Serve(std::make_shared<HostComAddIn>());
  CustomArray custom;
  return addin_->OnConnection(application_.Get(), connect_mode, add_in_instance_.Get(),
                              custom.Put());
}

HRESULT ComHost::OnStartupComplete() {
  if (!addin_) return E_POINTER;
  CustomArray custom;
  return addin_->OnStartupComplete(custom.Put());
}

HRESULT ComHost::OnBeginShutdown() {
  if (!addin_) return E_POINTER;
  CustomArray custom;
  return addin_->OnBeginShutdown(custom.Put());
}

HRESULT ComHost::OnDisconnection(int remove_mode) {
  if (!addin_) return E_POINTER;
  CustomArray custom;
  return addin_->OnDisconnection(remove_mode, custom.Put());
}

HRESULT ComHost::QuitOutlook() {
  app().QuitOutlook();
  PumpFor(50);
  HRESULT first = OnBeginShutdown();
  HRESULT hr = OnDisconnection(kExtDmHostShutdown);
  if (SUCCEEDED(first)) first = hr;
  ReleaseAddin();
  return first;
}

void ComHost::ReleaseAddin() {
  addin_.Reset();
  add_in_instance_.Reset();
  application_.Reset();
}

std::vector<ComPtr<IDispatch>> ComHost::ApplicationSinks() const {
  DispatchObject* served = nullptr;
  if (!application_ ||
      FAILED(application_->QueryInterface(kIidDispatchObject, reinterpret_cast<void**>(&served)))) {
    return {};
  }
  auto sinks = served->Sinks(declared::application_events_11::kIid);
  served->Release();
  return sinks;
}

HRESULT ComHost::DllCanUnloadNow() {
  HMODULE dll = GetModuleHandleW(L"ZintraAddin.dll");
  if (!dll) return E_FAIL;
  // Through void*: a FARPROC does not convert to a function type of its own.
  auto can_unload = reinterpret_cast<HRESULT(STDAPICALLTYPE*)()>(
      reinterpret_cast<void*>(GetProcAddress(dll, "DllCanUnloadNow")));
  return can_unload ? can_unload() : E_FAIL;
}

bool ComHost::PumpUntil(const std::function<bool()>& done, int timeout_ms) {
  // Wakes for a message (the add-in's timer) or every 5 ms.
  return testing::PumpMessagesUntil(done, static_cast<DWORD>(timeout_ms), 5);
}

void ComHost::PumpFor(int ms) { PumpUntil(nullptr, ms); }

std::shared_ptr<sim::MessageRecord> ComHost::MailFromAnn(const std::string& subject) {
  return builder_.MailFrom(sim::ProfileBuilder::Smtp("Ann Lee", "ann@fabrikam.com"),
                           {subject, "", 0});
}

std::vector<std::string> ComHost::Copies() const {
  std::vector<std::string> out;
  for (const auto& m : journal_->messages) {
    if (!m->deleted) out.push_back(sim::MakeItem(&outlook_->profile, m)->Subject());
  }
  return out;
}

Value ComHost::UserProperty(const std::shared_ptr<sim::MessageRecord>& record,
                            const std::string& name) {
  auto property = sim::MakeItem(&profile(), record)->UserProperties()->Find(name);
  return property ? property->GetValue() : Value{};
}

}  // namespace zintra::win32
