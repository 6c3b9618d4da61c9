// The add-in's life in a simulated Outlook: start modes, window tracking, unloading,
// quitting, and shut-downs deferred by a job in the middle of an activation.
#include <algorithm>
#include <functional>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/addin/addin_fixture.h"

namespace zintra::testing {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

// A job whose activation pumps messages: whatever the test posted arrives inside it.
class PumpingJob : public IJob {
 public:
  explicit PumpingJob(MessagePump& pump) : pump_(pump) {}
  void Activate() override {
    ++activations;
    if (during) during();  // posts the window messages that arrive while it pumps
    pump_.DoEvents();
  }
  void Abort() override { ++aborts; }
  std::string JobDescription() override { return "Process email: Budget"; }
  int activations = 0;
  int aborts = 0;
  std::function<void()> during;

 private:
  MessagePump& pump_;
};

class LifecycleTest : public ::testing::Test, public AddinFixture {};

TEST_F(LifecycleTest, BothStartModesCreateTheAddinOnceOutlookHasAWindow) {
  for (bool at_startup : {true, false}) {
    AddinFixture f;
    if (at_startup) {
      f.outlook.Start(sim::StartWindows::kExplorer, true);
    } else {
      f.outlook.Start(sim::StartWindows::kExplorer, false);
      f.outlook.LoadAddin();
    }
    auto connect = f.connect();
    ASSERT_TRUE(connect);
    EXPECT_TRUE(connect->AddinCreated());
    EXPECT_EQ(connect->StartModeIsHostStartup(), at_startup);
    EXPECT_EQ(connect->ProgID(), "ZintraAddin.Connect");
    EXPECT_EQ(f.addin()->ProgID(), "ZintraAddin.Connect");
    EXPECT_EQ(connect->TrackedExplorer(), f.outlook.app().OpenExplorers()[0]);
    std::vector<std::string> expected = {"M Gaining reference to Outlook application"};
    if (at_startup) expected.push_back("M IDTExtensibility2_OnStartupComplete fired");
    for (const char* l : {"M Startup() called", "M Creating the addin", "M Initializing the addin"})
      expected.push_back(l);
    EXPECT_EQ(f.Lines(), expected);
    EXPECT_THAT(f.outlook.objects.Requests(),
                ElementsAre("TovuRedemption.TovuMAPIUtils", "TovuRedemption.TovuRDOSession"));
  }
}

TEST_F(LifecycleTest, StartWithoutWindowsLeavesOutlookFree) {
  outlook.Start(sim::StartWindows::kNone, true);
  EXPECT_FALSE(connect()->HoldsOutlook());
  EXPECT_FALSE(addin());
  EXPECT_EQ(outlook.ApplicationHolders(), 0);
  EXPECT_THAT(Lines(), ElementsAre("M Gaining reference to Outlook application",
                                   "M IDTExtensibility2_OnStartupComplete fired",
                                   "M Startup() called", "W Outlook opened with no windows"));
  EXPECT_THAT(outlook.objects.Requests(), IsEmpty());
  outlook.EndProcess();
  EXPECT_TRUE(outlook.Ended());
  EXPECT_FALSE(connect());
}

TEST_F(LifecycleTest, UnknownConnectModeStaysInert) {
  outlook.Start(sim::StartWindows::kExplorer, false);
  zintra::Connect connect(outlook.host(), errors, strings, parts);
  std::vector<Value> custom;
  connect.OnConnection(std::shared_ptr<Application>(&outlook.app(), [](Application*) {}), 3,
                       nullptr, custom);
  connect.OnStartupComplete(custom);
  EXPECT_FALSE(connect.HoldsOutlook());
  EXPECT_FALSE(connect.AddinApp());
  EXPECT_THAT(Lines(), Contains("W Unknown COM connect mode: 3"));
  EXPECT_THAT(Lines(), ::testing::Not(Contains("M Startup() called")));
}

TEST_F(LifecycleTest, TrackingMovesBetweenWindowsUntilTheLastOneCloses) {
  outlook.Start(sim::StartWindows::kExplorer, true);
  auto first = outlook.app().OpenExplorers()[0];
  auto second = outlook.OpenExplorer();
  auto inspector = outlook.OpenInspector(nullptr);
  first->Close(0);
  EXPECT_EQ(connect()->TrackedExplorer(), second);
  second->Close(0);  // the last explorer, an inspector still open
  EXPECT_FALSE(connect()->TrackedExplorer());
  EXPECT_EQ(connect()->TrackedInspector(), inspector);
  EXPECT_FALSE(addin()->Quitting());
  auto third = outlook.OpenExplorer();
  inspector->Close(0);
  EXPECT_EQ(connect()->TrackedExplorer(), third);
  std::weak_ptr<ZintraAddinApp> app = addin();
  third->Close(0);
  EXPECT_TRUE(app.expired());
  EXPECT_TRUE(outlook.Ended());
  EXPECT_EQ(outlook.ApplicationHolders(), 0);
  EXPECT_THAT(Warnings(), IsEmpty());
}

TEST_F(LifecycleTest, FullLifeEndsInOrderWithNothingLeftBehind) {
  outlook.Start(sim::StartWindows::kExplorer, true);
  std::weak_ptr<ZintraAddinApp> app = addin();
  std::weak_ptr<JobQueue> queue = app.lock()->GetJobQueue();
  outlook.OpenInspector(nullptr);
  outlook.Quit();
  EXPECT_THAT(
      trace,
      ElementsAre("TrackedContacts.Initialize queue session first-run",
                  "Toolbars.Initialize queue session first-run",
                  "Monitoring.Initialize queue session first-run", "Monitoring.StopMonitoring",
                  "TrackedContacts.Addin_Kill", "Toolbars.Addin_Kill", "Monitoring.Addin_Kill",
                  "Monitoring.Kill queue", "Toolbars.Kill queue", "TrackedContacts.Kill queue"));
  EXPECT_TRUE(outlook.Ended());
  EXPECT_TRUE(app.expired());
  EXPECT_TRUE(queue.expired());
  EXPECT_FALSE(connect());
  EXPECT_EQ(outlook.ApplicationHolders(), 0);
  EXPECT_EQ(outlook.forms.task_list(), nullptr);
  EXPECT_EQ(outlook.loop.EnabledTimerCount(), 0);
  EXPECT_THAT(Warnings(), IsEmpty());
  EXPECT_THAT(Lines(), Contains("M ZintraAddinApp Quit method called, pQuitting = False"));
  EXPECT_FALSE(
      outlook.registry.GetValue(kHKeyCurrentUser, "Software\\Brellow\\Zintra", "UserFirstRun")
          ->AsDword()
          .value_or(1));
}

TEST_F(LifecycleTest, UnloadDuringAJobThenQuitWaitsForTheJob) {
  outlook.Start(sim::StartWindows::kExplorer, true);
  std::weak_ptr<ZintraAddinApp> app = addin();
  auto job = std::make_shared<PumpingJob>(outlook.loop);
  bool held_during_job = false;
  job->during = [&] {
    outlook.loop.Post([this] { outlook.UnloadAddin(); });
    outlook.loop.Post([this] { outlook.Quit(); });
    outlook.loop.Post([&] { held_during_job = outlook.HeldByKeepAlive(); });
  };
  app.lock()->GetJobQueue()->Queue(job, false);
  job.reset();
  outlook.loop.RunUntilIdle();
  EXPECT_TRUE(held_during_job);
  EXPECT_TRUE(outlook.Ended());
  EXPECT_TRUE(app.expired());
  EXPECT_THAT(outlook.objects.Requests(), Contains("ZintraKeepAlive.KeepAlive"));
  EXPECT_EQ(outlook.KeepAliveHolds(), 0);
  EXPECT_THAT(Lines(),
              Contains("M User manually unloaded Zintra and then quit Outlook before job "
                       "'Process email: Budget' could complete its current chunk of work."));
  EXPECT_THAT(Warnings(), IsEmpty());
  EXPECT_EQ(outlook.ApplicationHolders(), 0);
}

TEST_F(LifecycleTest, OutlookClosingDuringAJobShutsDownWhenTheJobReturns) {
  for (const char* version : {"9.0.0.2416", "11.0.0.8312"}) {
    AddinFixture f;
    f.outlook.profile().SetVersion(version);
    f.outlook.Start(sim::StartWindows::kExplorer, true);
    std::weak_ptr<ZintraAddinApp> app = f.addin();
    auto job = std::make_shared<PumpingJob>(f.outlook.loop);
    std::weak_ptr<PumpingJob> weak_job = job;
    bool pending = false;
    job->during = [&] {
      f.outlook.loop.Post([&] { f.outlook.Quit(); });
      f.outlook.loop.Post([&] { pending = app.lock() && app.lock()->ShutdownPending(); });
    };
    app.lock()->GetJobQueue()->Queue(job, false);
    job.reset();
    f.outlook.loop.RunUntilIdle();
    EXPECT_TRUE(pending) << version;
    EXPECT_TRUE(app.expired()) << version;
    EXPECT_TRUE(weak_job.expired()) << version;
    EXPECT_TRUE(f.outlook.Ended()) << version;
    const bool keep_alive = std::string(version) != "9.0.0.2416";
    EXPECT_EQ(std::count(f.outlook.objects.Requests().begin(), f.outlook.objects.Requests().end(),
                         "ZintraKeepAlive.KeepAlive"),
              keep_alive ? 1 : 0);
    EXPECT_THAT(f.Warnings(), IsEmpty()) << version;
  }
}

TEST_F(LifecycleTest, AFailedStartLeavesTheAddinInertAndOutlookFree) {
  outlook.objects.Unregister("TovuRedemption.TovuRDOSession");
  outlook.Start(sim::StartWindows::kExplorer, true);
  EXPECT_FALSE(addin());
  EXPECT_FALSE(connect()->HoldsOutlook());
  EXPECT_EQ(outlook.ApplicationHolders(), 0);
  EXPECT_THAT(Lines(), Contains("E Could not create class: TovuRedemption.TovuRDOSession"));
  EXPECT_THAT(Lines(), Contains(::testing::StartsWith("E Please reinstall this product.")));
  outlook.Quit();
  EXPECT_TRUE(outlook.Ended());
}

TEST_F(LifecycleTest, ReleasedWithNoWindowClosedLetsGoWithoutRunningQueuedWork) {
  outlook.Start(sim::StartWindows::kExplorer, true);
  std::weak_ptr<ZintraAddinApp> app = addin();
  auto job = std::make_shared<PumpingJob>(outlook.loop);
  app.lock()->GetJobQueue()->SetPaused(true);
  app.lock()->GetJobQueue()->Queue(job, false);
  outlook.EndProcess();  // Outlook disconnects (host shut-down) and releases the add-in
  EXPECT_EQ(job->activations, 0);
  EXPECT_EQ(job->aborts, 1);
  EXPECT_TRUE(app.expired());
  EXPECT_EQ(outlook.ApplicationHolders(), 0);
  EXPECT_THAT(Lines(), ::testing::Not(Contains("M Shutting down")));
  EXPECT_THAT(Lines(),
              ::testing::Not(Contains("M ZintraAddinApp Quit method called, pQuitting = False")));
  EXPECT_THAT(Warnings(), ElementsAre("W Outlook released the add-in before its last window "
                                      "closed; queued work is left for the next start"));
}

TEST_F(LifecycleTest, AnOversizedNumberInTheSettingsStopsTheStartInsteadOfHalfReadingThem) {
  // A folder set stored after the oversized value would be lost if the add-in ran on.
  outlook.registry.SetDword(kHKeyCurrentUser, "Software\\Brellow\\Zintra\\Foldersets",
                            "GetRowChunkSize", 40000);
  outlook.Start(sim::StartWindows::kExplorer, true);
  EXPECT_FALSE(addin());
  EXPECT_FALSE(connect()->HoldsOutlook());
  EXPECT_EQ(outlook.ApplicationHolders(), 0);
  EXPECT_THAT(trace, IsEmpty());  // no part was started
  bool named = false;
  for (const std::string& line : Lines()) {
    named = named || (line.rfind("E ", 0) == 0 &&
                      line.find("'Foldersets\\GetRowChunkSize' holds 40000") != std::string::npos);
  }
  EXPECT_TRUE(named) << ::testing::PrintToString(Lines());
}

}  // namespace
}  // namespace zintra::testing
