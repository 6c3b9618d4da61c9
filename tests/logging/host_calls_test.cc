// What logging one simple item costs in calls into Outlook and the MAPI library. Calls
// are deterministic, so the budget is pinned: a change that adds calls to the road of
// every item fails here and has to say why.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>

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

  // Logs a new mail from the tracked contact, counting from its arrival; returns the
  // calls it cost.
  int64_t LogOneMail(const std::string& subject) {
    auto mail = env.ItemOf(
        env.builder.MailFrom(sim::ProfileBuilder::Smtp("Ann", "ann@fabrikam.com"), {subject}));
    counter.Reset();
    auto job = std::make_shared<JobProcess>(env.addin);
    EXPECT_TRUE(job->Initialize("test", mail, true, false));
    env.RunQueue();
    EXPECT_TRUE(job->LoggedFlag());
    return counter.Totals().Total();
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

// The second mail from a tracked contact, in the default settings, with a log that
// keeps no debug lines: every call is one the item needs. The first mail has asked
// once for what never changes (the current user, the store's named-property tags, the
// journal's search key).
TEST_F(HostCallsTest, ASecondMailCostsWhatItsRoadNeedsAndNothingMore) {
  RegSettings quiet = env.settings;
  quiet.LogLevel = 1;
  env.errors.Addin_RegSettingsChanged(env.settings, quiet);
  LogOneMail("First");
  EXPECT_EQ(counter.CallsOf("MapiUtils.GetIDsFromNames"), 4);  // three names, one read first
  LogOneMail("Second");

  // Initialize: screening reads the kind, the folder, the subject, the folder's name
  // and the sending time (screening line, task text), finds "Zintra Tag" and "Zintra
  // Logged" in the item's user properties (3), reads the message class, the
  // sensitivity and the recipients (2: collection and count; with recipients the
  // links are not counted) = 12. The sender, through a new safe item: create, set,
  // sender, type, address = 5. The item's EntryID and its folder's StoreID = 2. The
  // "Processing" mark (already looked for: add, value) and the save = 3.
  const int64_t initialize = 12 + 5 + 2 + 3;
  // Search: the item still there (subject), its links and their count; the cached
  // contact opened, checked against the address, its sensitivity read = 6.
  const int64_t search = 3 + 3;
  // Copy: the item still there (1); the library copy (1), its tag read (collection,
  // find, value: 3), its save (1), EntryID and StoreID (2); the copy opened in the
  // object model (1), its folder and that folder's search key (3; the journal's is
  // known); its tag cleared (collection, find, value) and saved (4) = 16.
  const int64_t copy = 1 + 1 + 3 + 1 + 2 + 1 + 3 + 4;
  // Final: the item still there (1), its MAPI object (1), the link list read (1) and
  // both lists written (2), "Zintra Logged" and "Zintra Shared" (find, add, value:
  // 6), "Zintra Last Audited" (1), "Zintra Tag" (find, value: 2) and the save (1).
  const int64_t final_marks = 1 + 1 + 1 + 2 + 6 + 1 + 2 + 1;
  const sim::CallCounter::Tally t = counter.Totals();
  EXPECT_EQ(t.Total(), initialize + search + copy + final_marks) << t.ToString();
  EXPECT_EQ(counter.CallsOf("MapiUtils.GetIDsFromNames"), 0);
  EXPECT_EQ(counter.CallsOf("Folder.MAPIOBJECT"), 1);  // the copy's folder, not the journal
  EXPECT_EQ(counter.CallsOf("Item.EntryID"), 1);       // the item's; the copy's is known
  EXPECT_EQ(counter.CallsOf("Item.MAPIOBJECT"), 1);    // links and last-audited share it
  EXPECT_EQ(counter.CallsOf("Item.Links"), 1);
}

TEST_F(HostCallsTest, NothingIsReadForDebugLinesTheLogDoesNotKeep) {
  const int64_t keeping = LogOneMail("Kept");
  EXPECT_GT(counter.CallsOf("Item.FullName"), 0);
  EXPECT_GT(counter.CallsOf("Folder.Parent"), 0);

  RegSettings quiet = env.settings;
  quiet.LogLevel = 1;  // errors only
  env.errors.Addin_RegSettingsChanged(env.settings, quiet);
  const int64_t quiet_calls = LogOneMail("Quiet");
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
