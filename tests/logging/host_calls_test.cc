// What logging one simple item costs in calls into Outlook and the MAPI library. Calls
// are deterministic, so the budget is pinned: a change that adds calls to the road of
// every item fails here and has to say why.
#include <gtest/gtest.h>

#include "sim/outlook/call_counter.h"
#include "src/logging/job_process.h"
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
    env.registry.SetCallObserver(counter.Observer("Registry."));
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
  EXPECT_LE(t.Total(), 89) << t.ToString();
}

}  // namespace
}  // namespace zintra::testing_support
