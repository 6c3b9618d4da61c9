// Pre-screening of the processing job: which items are skipped (nothing written),
// which are marked not-logged for good, and what a passing item carries.
#include <gtest/gtest.h>

#include "src/host/outlook_folder.h"
#include "src/host/outlook_item.h"
#include "src/host/outlook_item_parts.h"
#include "src/jobs/job_queue.h"
#include "src/logging/job_process.h"
#include "tests/logging/logging_env.h"

namespace zintra::testing_support {
namespace {

using sim::MailSpec;
using sim::ProfileBuilder;

class PreScreenTest : public ::testing::Test {
 protected:
  PreScreenTest() {
    env.settings.CacheContactFolders = false;
    env.AddFolderSet("Customers");
  }
  std::shared_ptr<Item> Mail(const sim::Person& from, const std::string& subject = "Offer") {
    return env.ItemOf(env.builder.MailFrom(from, MailSpec{subject}));
  }
  // Runs Initialize only (the queue is paused, so nothing is activated).
  std::shared_ptr<JobProcess> Screen(const std::shared_ptr<Item>& item, bool incoming = true) {
    if (!env.queue) {
      env.Start();
      env.queue->SetPaused(true);
    }
    auto job = std::make_shared<JobProcess>(env.addin);
    queued = job->Initialize("test", item, incoming, false);
    return job;
  }

  LoggingEnv env;
  sim::Person outsider = ProfileBuilder::Smtp("Ann Lee", "ann@fabrikam.com");
  bool queued = false;
};

TEST_F(PreScreenTest, PassingItemIsMarkedProcessingSavedAndQueued) {
  auto mail = Mail(outsider);
  auto job = Screen(mail);
  EXPECT_TRUE(queued);
  // The mark is on the stored item: a fresh look at the message sees it.
  auto stored = env.app->Session()->GetItemFromID(mail->EntryID());
  EXPECT_EQ(env.UserProp(stored, kPropZintraTag).ToString(), "Processing");
  EXPECT_EQ(env.queue->QueuedJobsCount(), 1);
  EXPECT_EQ(job->JobDescription().rfind("Process item: Offer [Recieved ", 0), 0u);
  EXPECT_TRUE(env.Logged("JobProcess queuing Offer"));
  EXPECT_TRUE(env.Logged("Item 'Offer' has Zintra Logged property of ''; continuing screening."));
  // A second event for the same item is refused by the tag.
  auto again = Screen(stored);
  EXPECT_FALSE(queued);
  EXPECT_EQ(again->ScreenReason(), "ZINTRAPROP_TAG is not empty");
}

TEST_F(PreScreenTest, ItemAlreadyMarkedEitherWayIsSkipped) {
  for (bool value : {true, false}) {
    auto mail = Mail(outsider);
    env.utils.SetUserProperty(mail->UserProperties(), kPropZintraLogged, kOlYesNo, Value(value),
                              false);
    mail->Save();
    auto job = Screen(mail);
    EXPECT_FALSE(queued);
    EXPECT_EQ(job->ScreenReason(), "already marked logged");
    EXPECT_TRUE(env.UserProp(mail, kPropZintraTag).IsEmpty());
  }
  EXPECT_EQ(env.CountLines("Item 'Offer' skipped because already marked logged"), 2);
}

TEST_F(PreScreenTest, VoiceMailClassIsSkippedInAnyCaseButOnlyAsAPrefix) {
  struct Case {
    std::string message_class;
    bool skipped;
  };
  for (const Case& c : {Case{"IPM.Note.AppliedVoiceTechnology.Message", true},
                        Case{"ipm.note.appliedvoicetechnology.x", true},
                        Case{"IPM.Note.X.IPM.NOTE.APPLIEDVOICETECHNOLOGY.", false}}) {
    auto mail = Mail(outsider);
    mail->SetMessageClass(c.message_class);
    mail->Save();
    auto job = Screen(mail);
    EXPECT_EQ(queued, !c.skipped) << c.message_class;
    EXPECT_EQ(job->ScreenReason() == "AVT MessageClass", c.skipped) << c.message_class;
    EXPECT_TRUE(env.UserProp(mail, kPropZintraLogged).IsEmpty()) << c.message_class;
  }
}

// Rules 4-8: the item is marked "Zintra Logged" = False and never screened again.
TEST_F(PreScreenTest, NotLoggedPathMarksTheItemForGood) {
  struct Case {
    const char* name;
    std::function<std::shared_ptr<Item>()> make;
    std::string reason;
  };
  const sim::Person colleague = ProfileBuilder::Exchange("Bob Stone", "bstone", "CONTOSO");
  std::vector<Case> cases = {
      {"confidential",
       [&] {
         auto m = Mail(outsider);
         m->SetSensitivity(kOlConfidential);
         m->Save();
         return m;
       },
       "Item is marked personal/private/confidential"},
      {"internal sender", [&] { return Mail(colleague); }, "Item has no links or recipients"},
      {"no recipients",
       [&] {
         return env.ItemOf(
             env.builder.Item(env.builder.Default(kOlFolderJournal), ItemClass::kJournal, "Call"));
       },
       "Item has no links or recipients"},
  };
  for (const Case& c : cases) {
    auto item = c.make();
    auto job = Screen(item);
    EXPECT_FALSE(queued) << c.name;
    EXPECT_EQ(job->ScreenReason(), c.reason) << c.name;
    EXPECT_FALSE(env.UserProp(item, kPropZintraLogged).ToBool()) << c.name;
    EXPECT_FALSE(env.UserProp(item, kPropZintraLogged).IsEmpty()) << c.name;
    auto again = Screen(item);
    EXPECT_EQ(again->ScreenReason(), "already marked logged") << c.name;
  }
  EXPECT_TRUE(
      env.Logged("Item 'Offer' being marked not-logged and aborted because Item is "
                 "marked personal/private/confidential"));
}

TEST_F(PreScreenTest, InternalSenderIsLoggedWhenTheSettingAllowsIt) {
  env.settings.IgnoreItemsFromInternal = false;
  auto mail = Mail(ProfileBuilder::Exchange("Bob Stone", "bstone", "CONTOSO"));
  Screen(mail);
  EXPECT_TRUE(queued);
}

TEST_F(PreScreenTest, TaskInDefaultTasksOwnedBySomeoneElseIsRefused) {
  auto task =
      env.ItemOf(env.builder.Item(env.builder.Default(kOlFolderTasks), ItemClass::kTask, "Plan"));
  task->Recipients()->Add("Bob Stone");
  task->SetOwner("Bob Stone");
  task->Save();
  auto job = Screen(task);
  EXPECT_FALSE(queued);
  EXPECT_EQ(job->ScreenReason(),
            "Task (owned by 'Bob Stone') is not owned by the current user ('Jane Doe').");

  auto mine =
      env.ItemOf(env.builder.Item(env.builder.Default(kOlFolderTasks), ItemClass::kTask, "Mine"));
  mine->Recipients()->Add("Bob Stone");
  mine->SetOwner("Jane Doe");
  mine->Save();
  Screen(mine);
  EXPECT_TRUE(queued);
}

TEST_F(PreScreenTest, SenderAddressGivesNativeAndSmtpForms) {
  env.Start();
  auto job = std::make_shared<JobProcess>(env.addin);
  auto from_ex = Mail(ProfileBuilder::Exchange("Bob Stone", "bstone", "CONTOSO"));
  EXPECT_EQ(job->SenderAddress(from_ex, false),
            "/O=CONTOSO/OU=FIRST ADMINISTRATIVE GROUP/CN=RECIPIENTS/CN=BSTONE");
  EXPECT_EQ(job->SenderAddress(from_ex, true), "bstone@contoso.com");
  EXPECT_TRUE(job->ItemFromInternalUser(from_ex));
  auto from_smtp = Mail(outsider);
  EXPECT_EQ(job->SenderAddress(from_smtp, false), "ann@fabrikam.com");
  EXPECT_EQ(job->SenderAddress(from_smtp, true), "ann@fabrikam.com");
  EXPECT_FALSE(job->ItemFromInternalUser(from_smtp));
  // An SMTP sender of the user's own domain is a colleague too.
  EXPECT_TRUE(job->ItemFromInternalUser(Mail(ProfileBuilder::Smtp("Cy", "cy@contoso.com"))));
  // Domains and organisations compare without regard to case.
  EXPECT_TRUE(job->ItemFromInternalUser(Mail(ProfileBuilder::Smtp("Di", "di@Contoso.COM"))));
  EXPECT_TRUE(
      job->ItemFromInternalUser(Mail(ProfileBuilder::Smtp("Ed", "/o=Contoso/ou=Group/cn=ed"))));
  EXPECT_FALSE(
      job->ItemFromInternalUser(Mail(ProfileBuilder::Smtp("Flo", "/o=Fabrikam/ou=Group/cn=flo"))));
  EXPECT_FALSE(
      job->ItemFromInternalUser(Mail(ProfileBuilder::Smtp("Gil", "/ou=Contoso/cn=gil@x.org"))));

  // Without an address entry the sender's MAPI properties are read instead.
  env.profile.Faults().FailAlways("SafeItem.Sender", kMapiCallFailed);
  EXPECT_EQ(job->SenderAddress(from_smtp, true), "ann@fabrikam.com");
  EXPECT_EQ(job->SenderAddress(from_ex, true), "");
  EXPECT_EQ(job->SenderAddress(from_ex, false),
            "/O=CONTOSO/OU=FIRST ADMINISTRATIVE GROUP/CN=RECIPIENTS/CN=BSTONE");
  EXPECT_EQ(env.CountLines("AddressEntry could not be retrieved for the sender of 'Offer' .  "
                           "Resorting to old method of retrieving originator address."),
            3);
}

}  // namespace
}  // namespace zintra::testing_support
