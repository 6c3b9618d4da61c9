// The keep-alive program as Outlook's add-in meets it: registered with its own
// /RegServer, created by ProgID through COM in a process of its own, holding Outlook's
// Application, and ending by itself when released or when Outlook ends.
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

#include "tests/win32/keepalive/fake_outlook.h"
#include "tests/win32/keepalive/keep_alive_host.h"
#include "win32/com/com_ptr.h"

namespace zintra::win32::testing {
namespace {

constexpr DWORD kPatienceMs = 15000;  // generous: a slow machine only makes a run longer
constexpr auto kTestLimit = std::chrono::seconds(90);

// A call into a keep-alive process that never answers would block its caller for good:
// past the limit the watchdog ends the test's keep-alive processes, which fails the call.
class Watchdog {
 public:
  explicit Watchdog(std::vector<DWORD> before)
      : thread_([this, before = std::move(before)] {
          std::unique_lock lock(mutex_);
          if (stop_.wait_for(lock, kTestLimit, [this] { return stopped_; })) return;
          fired_ = true;
          for (DWORD id : KeepAliveProcesses()) {
            if (std::find(before.begin(), before.end(), id) != before.end()) continue;
            if (HANDLE p = OpenProcess(PROCESS_TERMINATE, FALSE, id)) {
              TerminateProcess(p, 1);
              CloseHandle(p);
            }
          }
        }) {}
  ~Watchdog() {
    {
      std::lock_guard lock(mutex_);
      stopped_ = true;
    }
    stop_.notify_all();
    thread_.join();
  }
  bool Fired() const { return fired_; }

 private:
  std::mutex mutex_;
  std::condition_variable stop_;
  bool stopped_ = false;
  std::atomic<bool> fired_ = false;
  std::thread thread_;
};

bool Ended(HANDLE process) { return WaitForSingleObject(process, 0) == WAIT_OBJECT_0; }

class KeepAliveProcessTest : public ::testing::Test {
 protected:
  void SetUp() override {
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    CLSID clsid{};
    if (SUCCEEDED(CLSIDFromProgID(L"ZintraKeepAlive.KeepAlive", &clsid))) {
      GTEST_SKIP() << "the keep-alive program is registered on this machine; these tests "
                      "would remove it";
    }
    ASSERT_TRUE(WaitForRunningObjectTable(kPatienceMs)) << "COM's services did not start";
    // Per machine: Wine resolves classes from HKEY_LOCAL_MACHINE only.
    ASSERT_EQ(RunProgram(L"\"" + KeepAliveExe() + L"\" /RegServer /Machine", kPatienceMs), 0);
    registered_ = true;
    ASSERT_EQ(CLSIDFromProgID(L"ZintraKeepAlive.KeepAlive", &clsid), S_OK);
    before_ = KeepAliveProcesses();
    watchdog_ = std::make_unique<Watchdog>(before_);
  }
  void TearDown() override {
    keep_alive_.Reset();
    if (watchdog_ && watchdog_->Fired()) ADD_FAILURE() << "a call into the keep-alive hung";
    watchdog_.reset();
    if (process_) {
      if (!PumpUntil([&] { return Ended(process_); }, kPatienceMs)) {
        ADD_FAILURE() << "a keep-alive process outlived its test";
        TerminateProcess(process_, 1);
      }
      CloseHandle(process_);
    }
    if (registered_) {
      EXPECT_EQ(RunProgram(L"\"" + KeepAliveExe() + L"\" /UnregServer /Machine", kPatienceMs), 0);
      CLSID clsid{};
      EXPECT_TRUE(FAILED(CLSIDFromProgID(L"ZintraKeepAlive.KeepAlive", &clsid)));
    }
    CoUninitialize();
  }

  // CreateObject("ZintraKeepAlive.KeepAlive"), and the process COM started for it.
  void Create() {
    CLSID clsid{};
    ASSERT_EQ(CLSIDFromProgID(L"ZintraKeepAlive.KeepAlive", &clsid), S_OK);
    ASSERT_EQ(CoCreateInstance(clsid, nullptr, CLSCTX_LOCAL_SERVER, IID_IDispatch,
                               reinterpret_cast<void**>(keep_alive_.Put())),
              S_OK);
    process_ = NewKeepAliveProcess(before_, kPatienceMs);
    ASSERT_NE(process_, nullptr) << "no ZintraKeepAlive.exe process came up";
  }
  // Releases the object; whether its process then ended by itself, with exit code 0.
  bool ReleaseAndWaitForTheEnd() {
    keep_alive_.Reset();
    if (!PumpUntil([&] { return Ended(process_); }, kPatienceMs)) return false;
    DWORD code = 1;
    GetExitCodeProcess(process_, &code);
    return code == 0;
  }

  ComPtr<IDispatch> keep_alive_;
  HANDLE process_ = nullptr;
  std::vector<DWORD> before_;
  std::unique_ptr<Watchdog> watchdog_;
  bool registered_ = false;
};

TEST_F(KeepAliveProcessTest, HoldsTheRunningOutlookUntilReleasedThenEnds) {
  FakeOutlook outlook;
  ASSERT_EQ(outlook.Publish(), S_OK);
  ASSERT_NO_FATAL_FAILURE(Create());
  EXPECT_EQ(outlook.Held(), 0u) << "held before Initialize";
  ASSERT_EQ(CallByName(keep_alive_.Get(), L"initialize", {}), S_OK);
  EXPECT_TRUE(PumpUntil([&] { return outlook.Held() > 0; }, kPatienceMs));
  EXPECT_EQ(CallByName(keep_alive_.Get(), L"Initialize", {}), S_OK) << "a second call";
  EXPECT_EQ(CallByName(keep_alive_.Get(), L"Quit", {}), DISP_E_UNKNOWNNAME);
  // Several watch ticks with Outlook alive: the process keeps holding it.
  PumpUntil(nullptr, 2000);
  EXPECT_FALSE(Ended(process_));
  EXPECT_GT(outlook.Held(), 0u);
  EXPECT_TRUE(ReleaseAndWaitForTheEnd());
  EXPECT_TRUE(PumpUntil([&] { return outlook.Held() == 0; }, kPatienceMs))
      << "Outlook is still held after the keep-alive process ended";
}

TEST_F(KeepAliveProcessTest, HoldsTheApplicationItIsHanded) {
  FakeOutlook outlook;  // not published: only the argument leads to it
  ASSERT_NO_FATAL_FAILURE(Create());
  VARIANT app;
  V_VT(&app) = VT_DISPATCH;
  V_DISPATCH(&app) = &outlook;
  ASSERT_EQ(CallByName(keep_alive_.Get(), L"Initialize", {app}), S_OK);
  EXPECT_TRUE(PumpUntil([&] { return outlook.Held() > 0; }, kPatienceMs));
  VARIANT number;
  V_VT(&number) = VT_I4;
  V_I4(&number) = 3;
  EXPECT_EQ(CallByName(keep_alive_.Get(), L"Initialize", {number}), S_OK)
      << "already holding: a second call changes nothing";
  EXPECT_TRUE(ReleaseAndWaitForTheEnd());
  EXPECT_TRUE(PumpUntil([&] { return outlook.Held() == 0; }, kPatienceMs));
}

TEST_F(KeepAliveProcessTest, WithoutOutlookInitializeFailsWithAReasonAndTheProcessEnds) {
  ASSERT_NO_FATAL_FAILURE(Create());
  EXCEPINFO error{};
  EXPECT_EQ(CallByName(keep_alive_.Get(), L"Initialize", {}, &error), DISP_E_EXCEPTION);
  EXPECT_EQ(error.scode, MK_E_UNAVAILABLE);
  EXPECT_STREQ(error.bstrSource, L"ZintraKeepAlive.KeepAlive");
  EXPECT_NE(error.bstrDescription, nullptr);
  SysFreeString(error.bstrSource);
  SysFreeString(error.bstrDescription);
  SysFreeString(error.bstrHelpFile);
  VARIANT number;
  V_VT(&number) = VT_I4;
  V_I4(&number) = 3;
  EXPECT_EQ(CallByName(keep_alive_.Get(), L"Initialize", {number}), DISP_E_TYPEMISMATCH);
  EXPECT_TRUE(ReleaseAndWaitForTheEnd());
}

TEST_F(KeepAliveProcessTest, EndsWhenOutlookEndsAbruptlyThoughStillReferenced) {
  HANDLE outlook = StartOutlookProcess();
  ASSERT_NE(outlook, nullptr) << "the Outlook process did not come up";
  ASSERT_NO_FATAL_FAILURE(Create());
  EXPECT_EQ(CallByName(keep_alive_.Get(), L"Initialize", {}), S_OK);
  TerminateProcess(outlook, 9);
  WaitForSingleObject(outlook, kPatienceMs);
  CloseHandle(outlook);
  // This process still holds the object; only the watch on Outlook can end it.
  EXPECT_TRUE(PumpUntil([&] { return Ended(process_); }, kPatienceMs))
      << "the keep-alive process outlived Outlook";
}

}  // namespace
}  // namespace zintra::win32::testing
