// The processing job from end to end over the simulated host: which items are
// logged, where their copies go, and the marks left on items and copies.
#include "src/logging/job_process.h"

#include <gtest/gtest.h>

#include "src/core/date.h"
#include "src/host/outlook_folder.h"
#include "src/host/outlook_item.h"
#include "src/logging/logged_items_link.h"
#include "tests/logging/logging_env.h"

namespace zintra::testing_support {
namespace {

using sim::ContactSpec;
using sim::MailSpec;
using sim::ProfileBuilder;

class JobProcessTest : public ::testing::Test {
 protected:
  JobProcessTest() {
    env.settings.CacheContactFolders = false;
    customers = env.AddFolderSet("Customers");
    ann = env.builder.Contact(customers.contacts, {"Ann Lee", {"ann@fabrikam.com"}});
  }

  // Starts the add-in's parts and processes the item as an incoming (or outgoing) one.
  std::shared_ptr<JobProcess> Process(const std::shared_ptr<Item>& item, bool incoming = true,
                                      bool outgoing = false) {
    if (!env.queue) env.Start();
    auto job = std::make_shared<JobProcess>(env.addin);
    queued = job->Initialize("test", item, incoming, outgoing);
    env.RunQueue();
    return job;
  }
  std::shared_ptr<Item> MailFromAnn(const std::string& subject = "Quote") {
    return env.ItemOf(env.builder.MailFrom(ProfileBuilder::Smtp("Ann Lee", "ann@fabrikam.com"),
                                           MailSpec{subject}));
  }
  std::vector<std::shared_ptr<Item>> ItemsIn(const std::shared_ptr<sim::FolderRecord>& folder) {
    std::vector<std::shared_ptr<Item>> out;
    auto items = env.FolderOf(folder)->Items();
    for (int32_t i = 1; i <= items->Count(); ++i) out.push_back(items->Item(i));
    return out;
  }

  LoggingEnv env;
  LoggingEnv::FolderSet customers;
  std::shared_ptr<sim::MessageRecord> ann;
  bool queued = false;
};

TEST_F(JobProcessTest, MailFromTrackedContactIsLoggedToTheJournalAndLinked) {
  auto mail = MailFromAnn();
  auto job = Process(mail);
  ASSERT_TRUE(queued);
  EXPECT_TRUE(job->Killed());

  auto copies = ItemsIn(customers.journal);
  ASSERT_EQ(copies.size(), 1u);
  EXPECT_EQ(copies[0]->Subject(), "Quote");
  EXPECT_EQ(env.UserProp(copies[0], kPropZintraTag).ToString(), "");

  EXPECT_EQ(env.UserProp(mail, kPropZintraTag).ToString(), "");
  EXPECT_TRUE(env.UserProp(mail, kPropZintraLogged).ToBool());
  EXPECT_FALSE(env.UserProp(mail, kPropZintraShared).ToBool());
  EXPECT_FALSE(env.NamedProp(mail, kPropZintraLastAudited, kPtSystime).IsEmpty());
  LoggedItemsLink link(env.utils);
  link.InitializeLogged(mail);
  ASSERT_TRUE(link.Validate());
  auto links = link.Links();
  ASSERT_EQ(links.size(), 1u);
  EXPECT_EQ(links[0].first, copies[0]->EntryID());
  EXPECT_EQ(env.queue->WaitListCount(), 0);
  EXPECT_TRUE(env.Logged("Begin processing for item 'Quote'"));
  EXPECT_TRUE(env.Logged("Adding task Process email: Quote"));
  EXPECT_TRUE(env.Logged("Final post-processing for item 'Quote'"));
  EXPECT_TRUE(
      env.Logged("Linked 'Quote' from folder 'Inbox' to logged item in folder "
                 "'Customers Journal'"));
  EXPECT_TRUE(env.Errors().empty()) << env.Errors()[0];
}

TEST_F(JobProcessTest, CopyTargetsFollowTheFolderSetAndTheItemKind) {
  auto partners = env.AddFolderSet("Partners", true, true);
  auto bo = env.builder.Contact(partners.contacts, {"Bo Ek", {"bo@tailspin.com"}});
  env.builder.Contact(partners.contacts, {"Cy Ek", {"cy@tailspin.com"}});
  // A mail to two contacts of one set and one of another: one copy per target folder.
  auto sent = env.ItemOf(env.builder.MailTo(
      {ProfileBuilder::Smtp("Bo", "bo@tailspin.com"), ProfileBuilder::Smtp("Cy", "cy@tailspin.com"),
       ProfileBuilder::Smtp("Ann", "ann@fabrikam.com")},
      MailSpec{"Plans"}));
  auto job = Process(sent, false, true);
  EXPECT_EQ(job->SearchedAddresses().size(), 6u);  // three addresses and their domains
  EXPECT_EQ(ItemsIn(partners.email).size(), 1u);   // mail goes to the e-mail folder
  EXPECT_EQ(ItemsIn(partners.journal).size(), 0u);
  EXPECT_EQ(ItemsIn(customers.journal).size(), 1u);         // no e-mail folder: the journal
  EXPECT_EQ(ItemsIn(partners.shared_calendar).size(), 0u);  // mail is never shared

  // An appointment linked to a contact goes to the journal and the shared calendar.
  auto appt =
      env.builder.Item(env.builder.Default(kOlFolderCalendar), ItemClass::kAppointment, "Visit");
  env.builder.Link(appt, bo);
  auto item = env.ItemOf(appt);
  Process(item, false, false);
  EXPECT_EQ(ItemsIn(partners.journal).size(), 1u);
  ASSERT_EQ(ItemsIn(partners.shared_calendar).size(), 1u);
  EXPECT_TRUE(env.UserProp(item, kPropZintraShared).ToBool());
  EXPECT_TRUE(
      env.Logged("Item 'Visit' is in a folder which has AmIncomingFold and AmOutgoingFold "
                 "both set as false; email addresses were NOT searched."));
  // Every logged copy is made before any shared copy.
  int logs = -1, shared = -1;
  for (size_t i = 0; i < env.recorder.lines.size(); ++i) {
    if (env.recorder.lines[i].text == "Starting JobLogs for item 'Visit'") logs = int(i);
    if (env.recorder.lines[i].text == "Starting JobCreateShareds for item 'Visit'") shared = int(i);
  }
  EXPECT_LT(logs, shared);
  LoggedItemsLink link(env.utils);
  link.InitializeShared(item);
  EXPECT_EQ(link.Links().size(), 1u);
}

// The e-mail step's settings, each against the addresses it searched.
struct SearchCase {
  const char* name;
  bool blanket, only_if_no_links, link;
  std::vector<std::string> searched;
};

class EmailStepTest : public JobProcessTest, public ::testing::WithParamInterface<SearchCase> {};

TEST_P(EmailStepTest, SearchesWhatTheSettingsSay) {
  const SearchCase& c = GetParam();
  env.settings.EnableBlanketDomain = c.blanket;
  env.settings.OnlySearchIfNoLinks = c.only_if_no_links;
  auto record = env.builder.MailFrom(ProfileBuilder::Exchange("Al Ray", "aray", "FABRIKAM"),
                                     MailSpec{"Hello"});
  if (c.link) env.builder.Link(record, ann);
  auto job = Process(env.ItemOf(record));
  EXPECT_EQ(job->SearchedAddresses(), c.searched);
  EXPECT_EQ(job->HasLinks(), c.link);
}

INSTANTIATE_TEST_SUITE_P(
    Settings, EmailStepTest,
    ::testing::Values(SearchCase{"Blanket",
                                 true,
                                 false,
                                 false,
                                 {"/O=FABRIKAM/OU=FIRST ADMINISTRATIVE GROUP/CN=RECIPIENTS/CN=ARAY",
                                  "aray@fabrikam.com", "*@fabrikam.com"}},
                      SearchCase{"NoBlanket",
                                 false,
                                 false,
                                 false,
                                 {"/O=FABRIKAM/OU=FIRST ADMINISTRATIVE GROUP/CN=RECIPIENTS/CN=ARAY",
                                  "aray@fabrikam.com"}},
                      SearchCase{"LinkedNotSearched", true, true, true, {}},
                      SearchCase{"UnlinkedSearched",
                                 false,
                                 true,
                                 false,
                                 {"/O=FABRIKAM/OU=FIRST ADMINISTRATIVE GROUP/CN=RECIPIENTS/CN=ARAY",
                                  "aray@fabrikam.com"}}),
    [](const auto& param_info) { return std::string(param_info.param.name); });

TEST_F(JobProcessTest, BlanketDomainEntryOfAContactMatchesEveryoneOfTheDomain) {
  env.builder.Contact(customers.contacts, {"Fabrikam", {"*@fabrikam.com"}});
  auto mail = env.ItemOf(
      env.builder.MailFrom(ProfileBuilder::Smtp("New", "new@fabrikam.com"), MailSpec{"Intro"}));
  Process(mail);
  EXPECT_TRUE(env.UserProp(mail, kPropZintraLogged).ToBool());
  EXPECT_TRUE(env.Logged("FoundLinkedContact: 'Fabrikam'"));
}

TEST_F(JobProcessTest, UnresolvedLinkIsLoggedAndSkipped) {
  auto record =
      env.builder.MailFrom(ProfileBuilder::Smtp("Ann", "ann@fabrikam.com"), MailSpec{"Linked"});
  auto gone = env.builder.Contact(customers.contacts, {"Gone Soon", {"gone@x.com"}});
  env.builder.Link(record, gone);
  env.profile.DestroyMessage(gone);
  auto mail = env.ItemOf(record);
  Process(mail);
  EXPECT_TRUE(
      env.Logged("Link 'Gone Soon' on item 'Linked' is \"unresolved\"; cannot get "
                 "Contact Item.  Error logged in previous message."));
  EXPECT_EQ(ItemsIn(customers.journal).size(), 1u);  // Ann was still found by address
}

TEST_F(JobProcessTest, CopyOptionsStripAttachmentsWorkingCopyAndOutlookCopy) {
  for (int variant = 0; variant < 4; ++variant) {
    env.settings.StripAttachments = variant % 2 == 0;
    env.settings.UseRedemptionCopy = variant < 2;
    env.settings.MakeWorkingCopy = variant >= 2;
    auto record = env.builder.MailFrom(ProfileBuilder::Smtp("Ann", "ann@fabrikam.com"),
                                       MailSpec{"Files " + std::to_string(variant)});
    record->attachments.push_back({"a.txt", "a.txt", "", kOlByValue, "data"});
    auto mail = env.ItemOf(record);
    Process(mail);
    auto copies = ItemsIn(customers.journal);
    ASSERT_EQ(copies.size(), size_t(variant + 1));
    EXPECT_EQ(copies.back()->Attachments()->Count(), env.settings.StripAttachments ? 0 : 1);
    EXPECT_EQ(mail->Attachments()->Count(), 1);
    EXPECT_TRUE(env.UserProp(mail, kPropZintraLogged).ToBool());
    // No working copy is left behind in the Inbox.
    EXPECT_EQ(ItemsIn(env.builder.Default(kOlFolderInbox)).size(), size_t(variant + 1));
  }
  EXPECT_TRUE(env.Errors().empty());
}

TEST_F(JobProcessTest, ItemDeletedBeforeActivationIsReported) {
  env.Start();
  env.queue->SetPaused(true);
  auto record =
      env.builder.MailFrom(ProfileBuilder::Smtp("Ann", "ann@fabrikam.com"), MailSpec{"Vanishing"});
  auto job = std::make_shared<JobProcess>(env.addin);
  ASSERT_TRUE(job->Initialize("test", env.ItemOf(record), true, false));
  env.profile.DestroyMessage(record);
  env.queue->SetPaused(false);
  env.RunQueue();
  EXPECT_TRUE(job->Killed());
  const auto errors = env.Errors();
  ASSERT_GE(errors.size(), 1u);
  EXPECT_EQ(errors[0].rfind("Item 'Vanishing' [Recieved ", 0), 0u);
  EXPECT_NE(errors[0].find(" was deleted by another process."), std::string::npos);
  EXPECT_EQ(ItemsIn(customers.journal).size(), 0u);
}

// A log that keeps no debug lines has the item's description made only when a line
// shows it; it reads as it would have at screening: the sending time of a received
// mail in "dd-mmm/yy h:Nna/p".
TEST_F(JobProcessTest, AQuietLogDescribesTheItemInItsErrorLinesAndTheJobsDescription) {
  RegSettings quiet = env.settings;
  quiet.LogLevel = 1;  // errors only
  env.Start();
  env.errors.Addin_RegSettingsChanged(env.settings, quiet);
  env.queue->SetPaused(true);
  // Received at 15:17, sent a minute earlier.
  const double received = DateSerial(2026, 11, 25) + TimeSerial(15, 17, 0);
  auto record = env.builder.MailFrom(ProfileBuilder::Smtp("Ann", "ann@fabrikam.com"),
                                     MailSpec{"Vanishing", "", received});
  auto job = std::make_shared<JobProcess>(env.addin);
  ASSERT_TRUE(job->Initialize("test", env.ItemOf(record), true, false));
  EXPECT_EQ(job->JobDescription(), "Process item: Vanishing [Recieved 25-Nov/26 3:16p]");
  env.profile.DestroyMessage(record);
  env.queue->SetPaused(false);
  env.RunQueue();
  const auto errors = env.Errors();
  ASSERT_GE(errors.size(), 1u);
  EXPECT_EQ(errors[0].rfind(
                "Item 'Vanishing' [Recieved 25-Nov/26 3:16p] was deleted by another process.", 0),
            0u)
      << errors[0];
}

TEST_F(JobProcessTest, AddinKillEndsAWaitingJobAndClearsItsMark) {
  env.settings.CacheContactFolders = true;  // the search waits for the first fill
  env.settings.RunJobsAsync = true;
  env.Start();
  auto mail = MailFromAnn("Waiting");
  auto job = std::make_shared<JobProcess>(env.addin);
  ASSERT_TRUE(job->Initialize("test", mail, true, false));
  // One slice at a time until the job waits on the search.
  for (int i = 0; i < 50 && env.queue->WaitListCount() == 0; ++i) env.loop.AdvanceByMs(16);
  if (env.queue->WaitListCount() == 1) {
    env.addin->kill.Raise();
    EXPECT_TRUE(job->Killed());
    EXPECT_EQ(env.queue->WaitListCount(), 0);
    EXPECT_EQ(env.UserProp(mail, kPropZintraTag).ToString(), "");
    EXPECT_FALSE(env.UserProp(mail, kPropZintraLogged).ToBool());
  } else {
    env.RunQueue();  // the fill finished first: the item is logged normally
    EXPECT_TRUE(env.UserProp(mail, kPropZintraLogged).ToBool());
  }
  job->Kill();
  EXPECT_TRUE(env.Logged("JobProcess_Kill called more than once"));
}

TEST_F(JobProcessTest, AnItemThatWaitedForTheCacheIsSearchedOnce) {
  env.settings.CacheContactFolders = true;
  env.settings.RunJobsAsync = true;
  env.settings.GetRowChunkSize = 10;  // the first fill takes many activations
  for (int i = 0; i < 200; ++i) {
    env.builder.Contact(customers.contacts, {"Filler " + std::to_string(i),
                                             {"f" + std::to_string(i) + "@example.org"}});
  }
  env.Start(/*run=*/false);
  auto mail = MailFromAnn("Waited");
  auto job = std::make_shared<JobProcess>(env.addin);
  ASSERT_TRUE(job->Initialize("test", mail, true, false));
  env.RunQueue();
  auto first = [this](const std::string& prefix) {
    const auto& lines = env.recorder.lines;
    for (size_t i = 0; i < lines.size(); ++i) {
      if (lines[i].text.rfind(prefix, 0) == 0) return i;
    }
    return lines.size();
  };
  // The job was activated while the fill ran, so its search had to wait for it.
  ASSERT_LT(first("JobProcess Activate for item 'Waited'"),
            first("Cache for folder 'Customers' finished refresh process."));
  EXPECT_EQ(env.CountLines("JobProcess Activate for item 'Waited'"), 1);
  EXPECT_EQ(env.CountLines("Email search complete for item 'Waited'"), 1);
  EXPECT_EQ(ItemsIn(customers.journal).size(), 1u);
  EXPECT_TRUE(env.UserProp(mail, kPropZintraLogged).ToBool());
}

TEST_F(JobProcessTest, AJobLetGoBeforeCopyingLeavesItsItemForTheNextStart) {
  env.settings.RunJobsAsync = true;
  env.Start();
  env.queue->SetPaused(true);
  auto mail = MailFromAnn("Left");
  auto job = std::make_shared<JobProcess>(env.addin);
  ASSERT_TRUE(job->Initialize("test", mail, true, false));
  ASSERT_EQ(env.UserProp(mail, kPropZintraTag).ToString(), kZintraTagProcessing);
  env.addin->leaving_work = true;
  env.queue->Abandon();
  env.addin->kill.Raise();
  EXPECT_TRUE(job->Killed());
  // Neither logged nor marked not-logged: the next start's scan takes it up again.
  EXPECT_EQ(env.UserProp(mail, kPropZintraTag).ToString(), "");
  EXPECT_TRUE(env.UserProp(mail, kPropZintraLogged).IsEmpty());
  EXPECT_EQ(ItemsIn(customers.journal).size(), 0u);
}

}  // namespace
}  // namespace zintra::testing_support
