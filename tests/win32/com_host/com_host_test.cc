// The add-in DLL loaded by ProgID through real COM over the served profile: the
// end-to-end scenarios from start-up to shut-down, with the add-in's timer driving its
// queue while the host pumps messages, and faults injected into the calls it makes.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

#include "sim/outlook/sim_command_bars.h"
#include "sim/outlook/sim_item.h"
#include "src/host/idt_extensibility2.h"
#include "src/host/mapi_object.h"
#include "src/logging/zintra_utils.h"
#include "tests/win32/com_host/com_host.h"
#include "tests/win32/controls/page_container.h"
#include "tests/win32/keepalive/keep_alive_host.h"
#include "win32/com/dispatch_client.h"
#include "win32/com/unique_handles.h"
#include "win32/sim_server/dispatch_args.h"
#include "win32/sim_server/dispatch_object.h"
#include "win32/sim_server/outlook_declarations.h"

namespace zintra::win32 {
namespace {

constexpr int kPatienceMs = 20000;  // generous: a slow machine only makes a run longer

std::vector<std::string> Sorted(std::vector<std::string> v) {
  std::sort(v.begin(), v.end());
  return v;
}

// The add-in makes hidden top-level windows, which need a desktop: without a display
// (Wine with no X server) the suites are skipped, and tools/test-windows.sh runs the
// suites named *OnDesktop again under a virtual X server. A DLL that is not registered
// skips them too, unless ZINTRA_REQUIRE_ADDIN is set (the script registers it first).
class ComHostTest : public ::testing::Test {
 protected:
  void SetUp() override {
    UniqueHWnd probe(
        CreateWindowExA(0, "STATIC", "", WS_POPUP, 0, 0, 1, 1, nullptr, nullptr, nullptr, nullptr));
    if (!probe) GTEST_SKIP() << "the add-in's windows need a display";
    probe.reset();
    CLSID clsid{};
    if (FAILED(CLSIDFromProgID(L"ZintraAddin.Connect", &clsid)) &&
        !getenv("ZINTRA_REQUIRE_ADDIN")) {
      GTEST_SKIP() << "ZintraAddin.Connect is not registered";
    }
    live_before_ = DispatchObject::LiveCount();
  }
  void TearDown() override {
    host_.reset();
    std::string held;
    for (const std::string& object : DispatchObject::LiveObjects()) held += " " + object;
    EXPECT_EQ(DispatchObject::LiveCount(), live_before_)
        << "the add-in still holds objects of the host after it was unloaded:" << held;
  }

  // Loads and starts the add-in as Outlook does at its own start-up.
  void Start() {
    ASSERT_EQ(host_->ClassFailures(), std::vector<std::string>{});
    host_->WriteSettings();
    ASSERT_EQ(host_->Load(), S_OK) << "is ZintraAddin.dll registered (regsvr32)?";
    ASSERT_EQ(host_->OnConnection(kExtCmStartup), S_OK);
    ASSERT_EQ(host_->OnStartupComplete(), S_OK);
  }
  bool WaitForCopies(size_t n) {
    return host_->PumpUntil([&] { return host_->Copies().size() >= n; }, kPatienceMs);
  }
  void ExpectCleanShutdown() {
    EXPECT_EQ(host_->QuitOutlook(), S_OK);
    EXPECT_FALSE(host_->Loaded());
    EXPECT_EQ(DispatchObject::FailedSinkCalls(), sink_failures_before_)
        << "an event handler of the add-in failed";
  }

  std::unique_ptr<ComHost> host_ = std::make_unique<ComHost>();
  int64_t live_before_ = 0;
  int64_t sink_failures_before_ = DispatchObject::FailedSinkCalls();
};

using ComHostOnDesktop = ComHostTest;

// The toolbar library is a DLL of its own, registered beside the add-in's.
TEST_F(ComHostOnDesktop, APhoneCallButtonOfTheToolbarOpensAJournalEntryForTheSelectedContact) {
  CLSID clsid{};
  if (FAILED(CLSIDFromProgID(L"Quillbar.ToolbarHelper", &clsid))) {
    if (getenv("ZINTRA_REQUIRE_ADDIN")) FAIL() << "Quillbar.ToolbarHelper is not registered";
    GTEST_SKIP() << "Quillbar.ToolbarHelper is not registered";
  }
  host_->settings().NeverLoadToolbars = false;
  auto explorer = host_->app().OpenExplorers().front();
  explorer->Select({sim::MakeItem(&host_->profile(), host_->ann())});
  Start();
  std::vector<std::string> captions;
  std::shared_ptr<sim::SimCommandBarControl> phone_call;
  auto controls = explorer->CommandBars()->Item("Zintra")->Controls();
  for (int32_t i = 1; i <= controls->Count(); ++i) {
    auto control = std::dynamic_pointer_cast<sim::SimCommandBarControl>(controls->Item(i));
    ASSERT_TRUE(control);
    EXPECT_TRUE(control->Visible());
    captions.push_back(control->Caption());
    if (control->Tag().rfind("Zintra_PhoneCall", 0) == 0) phone_call = control;
  }
  EXPECT_EQ(captions, (std::vector<std::string>{"Phone Call", "Email", "File Link", "Note",
                                                "Appointment", "Letter"}));
  ASSERT_TRUE(phone_call);
  const size_t open_before = host_->app().OpenInspectors().size();
  phone_call->ClickByUser();
  auto inspectors = host_->app().OpenInspectors();
  ASSERT_EQ(inspectors.size(), open_before + 1) << "the click did not reach the add-in";
  auto entry = inspectors.back()->CurrentItem();
  EXPECT_EQ(entry->Class(), ItemClass::kJournal);
  EXPECT_EQ(entry->Type(), "Phone Call");
  auto links = entry->Links();
  ASSERT_EQ(links->Count(), 1);
  EXPECT_EQ(links->Item(1)->Name(), "Ann Lee");
  inspectors.back()->Close(/*olDiscard=*/1);
  ExpectCleanShutdown();
}

TEST_F(ComHostOnDesktop, InboxBacklogIsScannedAndLoggedAtStartup) {
  auto quote = host_->MailFromAnn("Quote");
  auto order = host_->MailFromAnn("Order");
  auto spam = host_->builder().MailFrom(sim::ProfileBuilder::Smtp("Bob", "bob@spam.example"),
                                        {"Offer", "", 0});
  ASSERT_NO_FATAL_FAILURE(Start());
  ASSERT_TRUE(WaitForCopies(2)) << "copies: " << host_->Copies().size();
  host_->PumpFor(300);
  EXPECT_EQ(Sorted(host_->Copies()), (std::vector<std::string>{"Order", "Quote"}));
  EXPECT_TRUE(host_->UserProperty(quote, kPropZintraLogged).ToBool());
  EXPECT_FALSE(host_->UserProperty(spam, kPropZintraLogged).ToBool());
  EXPECT_GT(host_->LibraryObjectsCreated(), 0) << "the MAPI library was reached by ProgID";
  ExpectCleanShutdown();
}

// The user opens Outlook's Options dialog: the add-in puts its page there, the user
// sets up a contact folder set on it and applies, and the running add-in takes the
// new settings: a mail from that folder's contact is logged.
TEST_F(ComHostOnDesktop, AFolderSetConfiguredOnTheOptionsPageLogsTheNextMail) {
  CLSID clsid{};
  if (FAILED(CLSIDFromProgID(L"ZintraControls.OutlookPropertiesPage", &clsid)) &&
      !getenv("ZINTRA_REQUIRE_ADDIN")) {
    GTEST_SKIP() << "ZintraControls.OutlookPropertiesPage is not registered";
  }
  RegSettings& settings = host_->settings();
  settings.FoldersetCount = 0;  // nothing tracked until the user sets it up
  ASSERT_NO_FATAL_FAILURE(Start());
  host_->PumpFor(200);
  host_->MailFromAnn("Before");
  host_->PumpFor(500);
  EXPECT_EQ(host_->Copies().size(), 0u);

  auto pages = host_->app().ShowOptions();
  ASSERT_EQ(pages->Count(), 1) << "the add-in adds its page";
  EXPECT_EQ(pages->Titles()[0], "Zintra");
  auto page = std::dynamic_pointer_cast<ForeignObject>(pages->Item(1));
  ASSERT_TRUE(page && page->Dispatch()) << "the page is the control's own object";
  {
    PageContainer dialog(host_->Session());
    ASSERT_EQ(dialog.Host(page->Dispatch()), S_OK);
    dialog.Click(dialog.Named("Add"));
    ASSERT_TRUE(dialog.Choose(dialog.After("Contact folder:"), "\\Clients"));
    ASSERT_TRUE(dialog.Choose(dialog.After("Journal folder:"), "\\Clients Journal"));
    EXPECT_EQ(dialog.StatusChanges(), 1);
    DISPPARAMS none{};
    ASSERT_EQ(
        page->Dispatch()->Invoke(declared::property_page::kApply, IID_NULL, LOCALE_USER_DEFAULT,
                                 DISPATCH_METHOD, &none, nullptr, nullptr, nullptr),
        S_OK);
  }
  pages.reset();
  page.reset();
  host_->MailFromAnn("After");
  auto logged = [&] {
    auto copies = host_->Copies();
    return std::find(copies.begin(), copies.end(), "After") != copies.end();
  };
  EXPECT_TRUE(host_->PumpUntil(logged, kPatienceMs))
      << "the running add-in took the new folder set";
  ExpectCleanShutdown();
}

TEST_F(ComHostOnDesktop, NewMailIsLoggedOnceAndSentMailAgainstItsRecipients) {
  ASSERT_NO_FATAL_FAILURE(Start());
  host_->PumpFor(200);
  host_->MailFromAnn("New order");
  ASSERT_TRUE(WaitForCopies(1));
  host_->PumpFor(500);
  EXPECT_EQ(host_->Copies(), std::vector<std::string>{"New order"});

  auto mail = host_->app().CreateItem(kOlMailItem);
  mail->SetSubject("Delivery date");
  mail->Recipients()->Add("ann@fabrikam.com");
  ASSERT_TRUE(host_->app().Send(mail)) << "the add-in's ItemSend handler cancelled the send";
  ASSERT_TRUE(WaitForCopies(2));
  host_->PumpFor(300);
  EXPECT_EQ(host_->Copies(), (std::vector<std::string>{"New order", "Delivery date"}));
  ExpectCleanShutdown();
}

TEST_F(ComHostOnDesktop, DelayedProcessingLogsABurstOnceAfterTheDelay) {
  host_->settings().ProcessingDelay = 1000;
  ASSERT_NO_FATAL_FAILURE(Start());
  host_->PumpFor(200);
  for (int i = 1; i <= 5; ++i) host_->MailFromAnn("Burst " + std::to_string(i));
  host_->PumpFor(300);
  EXPECT_EQ(host_->Copies().size(), 0u) << "processed before the delay ran out";
  ASSERT_TRUE(WaitForCopies(5));
  host_->PumpFor(500);
  EXPECT_EQ(Sorted(host_->Copies()),
            (std::vector<std::string>{"Burst 1", "Burst 2", "Burst 3", "Burst 4", "Burst 5"}));
  ExpectCleanShutdown();
}

TEST_F(ComHostOnDesktop, EditedLoggedItemHasItsCopyAudited) {
  host_->settings().AuditTrail = true;
  host_->settings().ProcessingDelay = 0;
  host_->settings().MinAuditInterval = 1;  // seconds: the test waits for it on a real clock
  ASSERT_NO_FATAL_FAILURE(Start());
  auto item = host_->app().CreateItem(kOlAppointmentItem);
  item->SetSubject("Site visit");
  item->Links()->Add(sim::MakeItem(&host_->profile(), host_->ann()));
  item->Save();
  ASSERT_TRUE(WaitForCopies(1));
  host_->PumpFor(2200);  // past the audit interval since the item was logged
  item->SetBody("Moved to Friday");
  item->Save();
  auto copy = sim::MakeItem(&host_->profile(), host_->journal()->messages[0]);
  EXPECT_TRUE(host_->PumpUntil([&] { return copy->Body().find("Changed by") != std::string::npos; },
                               kPatienceMs))
      << copy->Body();
  ExpectCleanShutdown();
}

TEST_F(ComHostOnDesktop, OutlookClosesWithJobsQueuedAndTheAddinLetsGoOfEverything) {
  host_->settings().ProcessingDelay = 0;
  ASSERT_NO_FATAL_FAILURE(Start());
  for (int i = 1; i <= 5; ++i) host_->MailFromAnn("Late " + std::to_string(i));
  ExpectCleanShutdown();
  // TearDown checks that no served object outlives the add-in.
}

TEST_F(ComHostOnDesktop, UnloadedByTheUserWhileOutlookRuns) {
  ASSERT_NO_FATAL_FAILURE(Start());
  host_->PumpFor(300);
  EXPECT_EQ(host_->OnDisconnection(kExtDmUserClosed), S_OK);
  host_->ReleaseAddin();
  host_->MailFromAnn("After unload");
  host_->PumpFor(300);
  EXPECT_TRUE(host_->Copies().empty()) << "an unloaded add-in still listens";
}

TEST_F(ComHostOnDesktop, WordsLetterMacroFindsTheHandlerTheAddinPublished) {
  ASSERT_NO_FATAL_FAILURE(Start());
  // The macro's route: COMAddIns("ZintraAddin.Connect").Object.LogDocument.
  DispatchClient add_in(host_->AddInInstance(), "COMAddIn");
  DispatchClient handler(add_in.GetDispatch("Object"), "");
  ASSERT_TRUE(handler) << "the add-in did not set its Object as Office declares it";
  EXPECT_TRUE(handler.Has("LogDocument"));
  ExpectCleanShutdown();
}

TEST_F(ComHostOnDesktop, TheDllStaysLoadedWhileOutlookStillHoldsOneOfItsSinks) {
  ASSERT_NO_FATAL_FAILURE(Start());
  // Held as Outlook holds a sink while it raises an event on it.
  std::vector<ComPtr<IDispatch>> held = host_->ApplicationSinks();
  ASSERT_FALSE(held.empty());
  ExpectCleanShutdown();
  EXPECT_EQ(ComHost::DllCanUnloadNow(), S_FALSE) << "unloading would leave Outlook a dangling sink";
  held.clear();
  EXPECT_EQ(ComHost::DllCanUnloadNow(), S_OK);
}

// A thread timer that closes Outlook's windows from inside the add-in's own message
// pump: the add-in pumps messages while a job is active (its task list does on Outlook
// 2003), which is when a user's closing the last window defers the shut-down.
class CloseInsideAJob {
 public:
  explicit CloseInsideAJob(std::function<void()> close) : close_(std::move(close)) {
    current_ = this;
    timer_ = SetTimer(nullptr, 0, 10, &CloseInsideAJob::Tick);
  }
  ~CloseInsideAJob() {
    if (timer_) KillTimer(nullptr, timer_);
    current_ = nullptr;
  }
  bool Closed() const { return closed_; }
  // Pumps as Outlook does, noting which message is being dispatched.
  bool PumpUntil(const std::function<bool()>& done, DWORD timeout_ms) {
    const DWORD start = GetTickCount();
    while (!(done && done())) {
      if (GetTickCount() - start >= timeout_ms) return false;
      MSG msg;
      while (PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE)) {
        outer_is_ours_ = msg.hwnd == nullptr && msg.message == WM_TIMER;
        ++depth_;
        DispatchMessageW(&msg);
        --depth_;
      }
      MsgWaitForMultipleObjects(0, nullptr, FALSE, 5, QS_ALLINPUT);
    }
    return true;
  }

 private:
  static void CALLBACK Tick(HWND, UINT, UINT_PTR, DWORD) {
    CloseInsideAJob* self = current_;
    // Only inside another message's dispatch (the add-in's timer, running its queue).
    if (!self || self->closed_ || self->depth_ == 0 || self->outer_is_ours_) return;
    KillTimer(nullptr, self->timer_);
    self->timer_ = 0;
    self->closed_ = true;
    self->close_();
  }

  static inline CloseInsideAJob* current_ = nullptr;
  std::function<void()> close_;
  UINT_PTR timer_ = 0;
  int depth_ = 0;
  bool outer_is_ours_ = false;
  bool closed_ = false;
};

TEST_F(ComHostOnDesktop, ClosingOutlookDuringAJobKeepsItAliveUntilTheJobIsDone) {
  CLSID keep_alive{};
  if (FAILED(CLSIDFromProgID(L"ZintraKeepAlive.KeepAlive", &keep_alive)) &&
      !getenv("ZINTRA_REQUIRE_ADDIN")) {
    GTEST_SKIP() << "ZintraKeepAlive.KeepAlive is not registered";
  }
  host_->settings().ProcessingDelay = 0;
  // A backlog long enough that the add-in is still at work when the timer next fires
  // inside its pump (with three mails a loaded machine sometimes finished first).
  for (int i = 1; i <= 12; ++i) host_->MailFromAnn("Backlog " + std::to_string(i));
  ASSERT_NO_FATAL_FAILURE(Start());
  DispatchObject* outlook = nullptr;
  ASSERT_EQ(
      host_->Application()->QueryInterface(kIidDispatchObject, reinterpret_cast<void**>(&outlook)),
      S_OK);
  outlook->Release();  // the host holds it
  // What holds Outlook is another process: COM counts its strong connections.
  auto held = [outlook] { return outlook->ExternalConnections(); };
  ASSERT_EQ(held(), 0u);
  const std::vector<DWORD> before = testing::KeepAliveProcesses();

  DWORD held_while_job_ran = 0;
  HANDLE process = nullptr;
  CloseInsideAJob closer([&] {
    host_->app().QuitOutlook();  // the last window closes, then Outlook's Quit
    held_while_job_ran = held();
    process = testing::NewKeepAliveProcess(before, 0);
  });
  ASSERT_TRUE(closer.PumpUntil([&] { return closer.Closed(); }, kPatienceMs))
      << "the add-in never pumped messages inside a job";
  EXPECT_GT(held_while_job_ran, 0u) << "nothing held Outlook while the job finished";
  ASSERT_NE(process, nullptr) << "no ZintraKeepAlive.exe process";
  // Outlook ends only once no other process holds it: the job returns, the add-in
  // shuts down and lets go of the keep-alive object, whose process then ends by itself.
  EXPECT_TRUE(closer.PumpUntil([&] { return held() == 0; }, kPatienceMs));
  EXPECT_TRUE(closer.PumpUntil([&] { return WaitForSingleObject(process, 0) == WAIT_OBJECT_0; },
                               kPatienceMs))
      << "the keep-alive process outlived the add-in's shut-down";
  if (WaitForSingleObject(process, 0) != WAIT_OBJECT_0) TerminateProcess(process, 1);
  CloseHandle(process);
  EXPECT_EQ(host_->OnBeginShutdown(), S_OK);
  EXPECT_EQ(host_->OnDisconnection(kExtDmHostShutdown), S_OK);
  host_->ReleaseAddin();
}

// Faults in the calls the add-in makes: Outlook (this host) keeps running, every call
// into the add-in returns an HRESULT, and the work that can be done is done.
struct FaultCase {
  const char* member;
  sim::FaultInjector::Mode mode;
  int64_t n;
  int32_t number;
};

class ComHostFaultOnDesktop : public ComHostTest,
                              public ::testing::WithParamInterface<FaultCase> {};

TEST_P(ComHostFaultOnDesktop, TheHostSurvivesAndEveryCallReturns) {
  const FaultCase& c = GetParam();
  host_->MailFromAnn("Before");
  host_->profile().Faults().Add(c.member, c.mode, c.n, c.number, "injected");
  host_->WriteSettings();
  ASSERT_EQ(host_->Load(), S_OK);
  // The add-in may report a failure, but must answer rather than throw or crash.
  HRESULT connected = host_->OnConnection(kExtCmStartup);
  HRESULT started = host_->OnStartupComplete();
  (void)connected;
  (void)started;
  host_->MailFromAnn("During");
  host_->PumpFor(1500);
  host_->profile().Faults().Clear();
  host_->QuitOutlook();
  EXPECT_FALSE(host_->Loaded());
  // The profile is still whole: the mail is where it was delivered.
  EXPECT_EQ(host_->profile().DefaultFolder(kOlFolderInbox)->messages.size(), 2u);
}

INSTANTIATE_TEST_SUITE_P(
    Faults, ComHostFaultOnDesktop,
    ::testing::Values(
        FaultCase{"Application.Explorers", sim::FaultInjector::Mode::kAlways, 0, kMapiCallFailed},
        FaultCase{"Application.Session", sim::FaultInjector::Mode::kAlways, 0, kMapiNoAccess},
        FaultCase{"ObjectFactory.CreateObject", sim::FaultInjector::Mode::kAlways, 0,
                  kMapiNotInitialized},
        FaultCase{"Items.GetNext", sim::FaultInjector::Mode::kOnCall, 1, kMapiNetworkError},
        FaultCase{"Item.Save", sim::FaultInjector::Mode::kAlways, 0, kMapiCallFailed},
        FaultCase{"Item.*", sim::FaultInjector::Mode::kAfterCalls, 5, kMapiObjectDeleted},
        FaultCase{"MapiUtils.*", sim::FaultInjector::Mode::kAlways, 0, kMapiCallFailed},
        FaultCase{"Items.Find", sim::FaultInjector::Mode::kAlways, 0, kMapiInvalidParameter}),
    [](const ::testing::TestParamInfo<FaultCase>& param_info) {
      std::string name = param_info.param.member;
      std::replace_if(
          name.begin(), name.end(), [](char ch) { return !isalnum(static_cast<uint8_t>(ch)); },
          '_');
      return name + "_" + std::to_string(param_info.index);
    });

}  // namespace
}  // namespace zintra::win32
