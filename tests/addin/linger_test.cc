// The lingering-reference check: ZintraUtils' registrations with their guard and
// per-check error handling, and the add-in's own report of what outlived Kill.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "src/monitoring/insp_mon.h"
#include "tests/addin/addin_fixture.h"

namespace zintra::testing {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class Check : public ICheckLinger {
 public:
  Check(std::string name, std::vector<std::string>& trace, bool fail = false)
      : name_(std::move(name)), trace_(trace), fail_(fail) {}
  void CheckLingeringRefs() override {
    trace_.push_back(name_);
    if (fail_) throw ZError(kErrObjectNotSet, "Object variable not set");
  }

 private:
  std::string name_;
  std::vector<std::string>& trace_;
  bool fail_;
};

class LingerTest : public ::testing::Test, public AddinFixture {};

TEST_F(LingerTest, ChecksRunOnceInOrderAndAFailingOneDoesNotStopTheOthers) {
  ZintraUtils utils(errors);
  std::vector<std::string> ran;
  auto first = std::make_shared<Check>("first", ran, /*fail=*/true);
  std::weak_ptr<Check> weak_first = first;
  utils.SetCheckLinger(std::move(first));
  utils.SetCheckLinger(std::make_shared<Check>("second", ran));
  utils.CheckLingering();
  EXPECT_THAT(ran, ElementsAre("first", "second"));
  EXPECT_TRUE(weak_first.expired());  // the list is released
  EXPECT_THAT(Lines(),
              ElementsAre("E Object variable not set", "W An ICheckLinger raised an error"));
  utils.CheckLingering();
  EXPECT_THAT(ran, ElementsAre("first", "second"));
  EXPECT_EQ(Lines().back(), "W CheckLingering entered more than once");
}

TEST_F(LingerTest, AddinReportsPartsAndListenersThatOutliveKill) {
  std::shared_ptr<AddinPart> leaked;
  // A monitoring part that a stray reference keeps alive, and a listener that never
  // lets go of the Kill event.
  parts.Monitoring = [&] {
    leaked = std::make_shared<RecordingPart>("Monitoring", trace);
    return leaked;
  };
  outlook.Start(sim::StartWindows::kExplorer, true);
  Connection stray = addin()->Kill.Connect([] {});
  outlook.Quit();
  EXPECT_THAT(Warnings(),
              ElementsAre("W Lingering objects exist after AddinApp fired Kill event.  They are "
                          "of the following types: RecordingPart",
                          "W Objects still connected to AddinApp's Kill event after it fired: 1"));
}

TEST_F(LingerTest, QueueReportsWaitingJobsOnce) {
  class WaitingJob : public IJob {
   public:
    void Activate() override {}
    void Abort() override {}
    std::string JobDescription() override { return "waiting"; }
  };
  outlook.Start(sim::StartWindows::kExplorer, true);
  addin()->GetJobQueue()->WaitListAdd(std::make_shared<WaitingJob>());
  addin()->GetJobQueue()->WaitListAdd(std::make_shared<WaitingJob>());
  outlook.Quit();
  EXPECT_THAT(Warnings(), ElementsAre("W Lingering Job objects exist in JobQueue's "
                                      "pWaitingOnEvent collection after AddinApp fired Kill "
                                      "event.  They are of the following types: WaitingJob"));
}

TEST_F(LingerTest, SecondQuitOrShutdownDoesNothing) {
  outlook.Start(sim::StartWindows::kExplorer, true);
  std::shared_ptr<ZintraAddinApp> app = addin();
  app->Quit(false);
  const size_t lines = Lines().size();
  app->Quit(true);
  app->Shutdown();
  EXPECT_EQ(Lines().size(), lines);
  EXPECT_TRUE(app->TornDown());
  EXPECT_TRUE(app->UserUnloaded());
  EXPECT_THAT(trace, Contains("Monitoring.Kill queue"));
}

TEST_F(LingerTest, NeverLoadToolbarsSkipsTheToolbarsBothWays) {
  outlook.registry.SetDword(kHKeyCurrentUser, "Software\\Brellow\\Zintra", "NeverLoadToolbars", 1);
  outlook.Start(sim::StartWindows::kExplorer, true);
  EXPECT_FALSE(addin()->Toolbars());
  outlook.Quit();
  for (const auto& t : trace) EXPECT_EQ(t.find("Toolbars"), std::string::npos) << t;
  EXPECT_THAT(Warnings(), IsEmpty());
}

TEST_F(LingerTest, OutlookOlderThan2000GetsTheMessageAndNoAddin) {
  outlook.profile().SetVersion("8.5.5104.6");
  outlook.Start(sim::StartWindows::kExplorer, true);
  ASSERT_EQ(outlook.msg_box.Shown().size(), 1u);
  EXPECT_EQ(outlook.msg_box.Shown()[0].prompt,
            "You must be running Outlook 2000 or later to use this add-in.");
  EXPECT_EQ(outlook.msg_box.Shown()[0].buttons, kMsgBoxCritical);
  EXPECT_TRUE(addin()->TornDown());
  EXPECT_THAT(outlook.objects.Requests(), IsEmpty());
  EXPECT_THAT(trace, IsEmpty());
  outlook.Quit();
  EXPECT_THAT(Lines(), ::testing::Not(Contains(::testing::HasSubstr("Quit method called"))));
}

}  // namespace
}  // namespace zintra::testing
