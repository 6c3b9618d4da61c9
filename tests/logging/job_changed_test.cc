// Change auditing: a change to a logged item appends one audit line to each copy.
#include "src/logging/job_changed.h"

#include <gtest/gtest.h>

#include "src/host/outlook_folder.h"
#include "src/host/outlook_item.h"
#include "src/logging/job_process.h"
#include "tests/logging/logging_env.h"

namespace zintra::testing_support {
namespace {

using sim::MailSpec;
using sim::ProfileBuilder;

class JobChangedTest : public ::testing::Test {
 protected:
  JobChangedTest() {
    env.settings.CacheContactFolders = false;
    env.settings.AuditTrail = true;
    customers = env.AddFolderSet("Customers", false, true);
    env.builder.Contact(customers.contacts, {"Ann Lee", {"ann@fabrikam.com"}});
    env.Start();
  }
  // A logged mail with its one journal copy.
  std::shared_ptr<Item> LoggedMail() {
    auto mail = env.ItemOf(env.builder.MailFrom(ProfileBuilder::Smtp("Ann Lee", "ann@fabrikam.com"),
                                                MailSpec{"Quote", "Dear Jane"}));
    auto job = std::make_shared<JobProcess>(env.addin);
    EXPECT_TRUE(job->Initialize("test", mail, true, false));
    env.RunQueue();
    return env.app->Session()->GetItemFromID(mail->EntryID());
  }
  std::shared_ptr<Item> OnlyCopy() {
    auto items = env.FolderOf(customers.journal)->Items();
    EXPECT_EQ(items->Count(), 1);
    return items->Item(1);
  }
  bool Audit(const std::shared_ptr<Item>& item) {
    auto job = std::make_shared<JobChanged>(env.addin);
    bool queued = job->Initialize(item);
    env.RunQueue();
    EXPECT_TRUE(!queued || job->Killed());
    return queued;
  }
  int Count(const std::string& body, const std::string& text) {
    int n = 0;
    for (size_t at = body.find(text); at != std::string::npos; at = body.find(text, at + 1)) ++n;
    return n;
  }

  LoggingEnv env;
  LoggingEnv::FolderSet customers;
};

TEST_F(JobChangedTest, ChangeAddsOneAuditLinePerDayAndUser) {
  auto mail = LoggedMail();
  env.clock.AdvanceMs(60 * 1000.0);
  mail->SetBody("Dear Jane, revised");
  mail->Save();
  ASSERT_TRUE(Audit(mail));
  const std::string line = "Changed by Jane Doe on 1/5/2026";
  EXPECT_EQ(Count(OnlyCopy()->Body(), line), 1);
  EXPECT_EQ(env.UserProp(OnlyCopy(), kPropZintraTag).ToString(), "");
  EXPECT_EQ(env.UserProp(mail, kPropZintraTag).ToString(), "");
  EXPECT_TRUE(env.Logged("Searching for derived items for item 'Quote'"));
  EXPECT_EQ(env.CountLines("Completed: Audit 'Quote' in folder 'Customers Journal'"), 1);

  // A second change the same day finds the line already there.
  env.clock.AdvanceMs(60 * 1000.0);
  ASSERT_TRUE(Audit(mail));
  EXPECT_EQ(Count(OnlyCopy()->Body(), line), 1);
  EXPECT_TRUE(env.Errors().empty());
}

TEST_F(JobChangedTest, ChangeWithinTheIntervalIsTheEchoOfTheLastSave) {
  auto mail = LoggedMail();
  env.clock.AdvanceMs(10 * 1000.0);
  EXPECT_FALSE(Audit(mail));
  env.clock.AdvanceMs(11 * 1000.0);
  EXPECT_TRUE(Audit(mail));
  // The audit itself set "Zintra Last Audited": an immediate change is ignored again.
  EXPECT_FALSE(Audit(mail));
}

TEST_F(JobChangedTest, OnlyLoggedOrSharedItemsWithAuditTrailAreAudited) {
  auto outsider = env.ItemOf(
      env.builder.MailFrom(ProfileBuilder::Smtp("Zed", "zed@nowhere.org"), MailSpec{"Spam"}));
  auto job = std::make_shared<JobProcess>(env.addin);
  job->Initialize("test", outsider, true, false);
  env.RunQueue();
  // Processed without a contact: "Zintra Logged" False, "Zintra Shared" absent.
  EXPECT_FALSE(env.UserProp(outsider, kPropZintraLogged).ToBool());
  env.clock.AdvanceMs(60 * 1000.0);
  EXPECT_FALSE(Audit(outsider));

  auto mail = LoggedMail();
  env.clock.AdvanceMs(60 * 1000.0);
  env.settings.AuditTrail = false;
  EXPECT_FALSE(Audit(mail));
  env.settings.AuditTrail = true;
  env.utils.SetUserProperty(mail->UserProperties(), kPropZintraTag, kOlText,
                            Value(std::string("Processing")), false);
  EXPECT_FALSE(Audit(mail));
}

}  // namespace
}  // namespace zintra::testing_support
