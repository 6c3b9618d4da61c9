// What logging one simple item costs in calls into Outlook and the MAPI library. Calls
// are deterministic, so the budget is pinned: a change that adds calls to the road of
// every item fails here and has to say why.
#include <gtest/gtest.h>

#include "sim/outlook/call_counter.h"
#include "src/logging/job_process.h"
#include "src/settings/reg_settings.h"
#include "tests/logging/logging_env.h"

namespace zintra::testing_support {
namespace {

using Kind = sim::CallCounter::Kind;

class HostCallsTest : public ::testing::Test {
 protected:
  HostCallsTest() {
    customers = env.AddFolderSet("Customers");
    env.builder.Contact(customers.contacts, {"Ann Lee", {"ann@fabrikam.com"}});
    env.Start();
    env.profile.Faults().SetCounter(&counter);
    const auto registry = counter.Observer("Registry.");
    env.registry.SetCallObserver(registry.enter, registry.leave);
  }
  ~HostCallsTest() override {
    env.profile.Faults().SetCounter(nullptr);
    env.registry.SetCallObserver(nullptr);
  }

  sim::CallCounter counter;
  LoggingEnv env;
  LoggingEnv::FolderSet customers;
};

TEST_F(HostCallsTest, OneMailFromATrackedContactStaysWithinItsBudget) {
  auto mail = env.ItemOf(
      env.builder.MailFrom(sim::ProfileBuilder::Smtp("Ann", "ann@fabrikam.com"), {"Quote"}));
  counter.Reset();
  auto job = std::make_shared<JobProcess>(env.addin);
  ASSERT_TRUE(job->Initialize("test", mail, true, false));
  env.RunQueue();
  ASSERT_TRUE(job->LoggedFlag());

  const sim::CallCounter::Tally t = counter.Totals();
  // The store writes the road needs: the "Processing" mark on the item, the copy saved
  // with it, the copy's mark cleared, the item's final marks; one copy.
  EXPECT_EQ(t.Of(Kind::kSave), 4) << t.ToString();
  EXPECT_EQ(t.Of(Kind::kCopyMove), 1) << t.ToString();
  // Settings are read once at start-up, never per item.
  EXPECT_EQ(t.Of(Kind::kRegistryRead), 0) << t.ToString();
  // Reading a value once is enough: the class, the sender and the final item are not
  // asked for again.
  EXPECT_EQ(counter.CallsOf("Item.Class"), 1);
  EXPECT_EQ(counter.CallsOf("SafeItem.Sender"), 1);
  EXPECT_LE(t.Total(), 84) << t.ToString();
}

TEST_F(HostCallsTest, NothingIsReadForDebugLinesTheLogDoesNotKeep) {
  auto log_one = [&](const std::string& subject) {
    auto mail = env.ItemOf(
        env.builder.MailFrom(sim::ProfileBuilder::Smtp("Ann", "ann@fabrikam.com"), {subject}));
    counter.Reset();
    auto job = std::make_shared<JobProcess>(env.addin);
    EXPECT_TRUE(job->Initialize("test", mail, true, false));
    env.RunQueue();
    EXPECT_TRUE(job->LoggedFlag());
    return counter.Totals().Total();
  };
  const int64_t keeping = log_one("Kept");
  EXPECT_GT(counter.CallsOf("Item.FullName"), 0);
  EXPECT_GT(counter.CallsOf("Folder.Parent"), 0);

  RegSettings quiet = env.settings;
  quiet.LogLevel = 1;  // errors only
  env.errors.Addin_RegSettingsChanged(env.settings, quiet);
  const int64_t quiet_calls = log_one("Quiet");
  // The contact's name, the copy folder's path and the tracked folder's name only
  // ever go to debug lines.
  EXPECT_EQ(counter.CallsOf("Item.FullName"), 0);
  EXPECT_EQ(counter.CallsOf("Folder.Parent"), 0);
  EXPECT_EQ(counter.CallsOf("Folder.Name"), 1);  // the item's folder, which screening names
  EXPECT_LT(quiet_calls, keeping);
  EXPECT_EQ(env.CountLines("Adding result: "), 1);  // from the first mail only
}

TEST_F(HostCallsTest, TheCurrentUserIsAskedForOncePerSession) {
  env.settings.IgnoreItemsFromInternal = true;
  for (const char* subject : {"One", "Two"}) {
    auto mail = env.ItemOf(
        env.builder.MailFrom(sim::ProfileBuilder::Smtp("Ann", "ann@fabrikam.com"), {subject}));
    auto job = std::make_shared<JobProcess>(env.addin);
    EXPECT_TRUE(job->Initialize("test", mail, true, false));
    env.RunQueue();
    EXPECT_TRUE(job->LoggedFlag());
  }
  // Two received items compared with the user, who does not change while Outlook runs.
  EXPECT_EQ(counter.CallsOf("RdoSession.CurrentUser"), 1);
  EXPECT_EQ(counter.CallsOf("AddressEntry.Fields"), 1);  // the user's SMTP address
  // One safe item per item serves its sender and its library copy.
  EXPECT_EQ(counter.CallsOf("SafeItem.SetItem"), 2);
}

}  // namespace
}  // namespace zintra::testing_support
